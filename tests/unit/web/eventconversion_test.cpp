// Tests of what events mean: one row for each rule, and the stories of typed text.
#include "eventrecorder.h"

#include "support/messagecapture.h"
#include "support/tracecapture.h"

#include <gtest/gtest.h>

using namespace Ostrel;
using namespace Ostrel::Test;
using namespace Qt::StringLiterals;

namespace {

class Conversion : public testing::Test
{
protected:
    void key(const QString &object, const QString &value, int keyCode = 65, const QString &type = u"text"_s)
    {
        recorder.logEvent(
            text(u"keyup"_s, type, object, u"keyCode=%1&value=%2"_s.arg(QString::number(keyCode), value)));
    }
    void press(const QString &type, const QString &object, const QString &more = {})
    {
        recorder.logEvent(text(u"mousedown"_s, type, object, more));
    }

    static inline EventTexts text;
    MessageCapture messages;
    EventRecorder recorder;
};

struct EventCase
{
    QString event;
    QString type;
    QString more;
    QStringList lines;
};

void PrintTo(const EventCase &row, std::ostream *out)
{
    *out << row.event.toStdString() << " " << row.type.toStdString() << " " << row.more.toStdString();
}

class Events : public Conversion, public testing::WithParamInterface<EventCase>
{
};

TEST_P(Events, Mean)
{
    recorder.adaptsNames = true;

    recorder.logEvent(text(GetParam().event, GetParam().type, u"o"_s, GetParam().more));

    EXPECT_EQ(recorder.take(), GetParam().lines);
}

QList<EventCase> eachType(
    const QString &event, const QStringList &types, const QString &more, const QStringList &lines)
{
    QList<EventCase> rows;
    for (const QString &type : types)
        rows.append({event, type, more, lines});
    return rows;
}

const QStringList textTypes{u"text"_s, u"textarea"_s, u"email"_s, u"number"_s, u"url"_s, u"tel"_s,
    u"password"_s, u"search"_s, u"bb_spinner"_s, u"custom_text_x"_s};
const QStringList buttonTypes{u"button"_s, u"checkbox"_s, u"submit"_s, u"image"_s, u"radio"_s, u"bb_button"_s,
    u"bb_toolbaritem"_s, u"bb_tabselector"_s, u"bb_sidebarselector"_s, u"bb_navpanelhead"_s, u"bb_navhead"_s,
    u"bb_treeleaf"_s, u"bb_tree"_s, u"bb_treehandle"_s, u"bb_accordeon"_s, u"bb_menucell"_s,
    u"bb_spinnerupbutton"_s, u"bb_spinnerdownbutton"_s, u"bb_card"_s, u"custom_button_x"_s,
    u"custom_checkbox_x"_s, u"custom_radiobutton_x"_s, u"menubutton_x"_s};
const QStringList selectTypes{
    u"select-one"_s, u"select-multiple"_s, u"select"_s, u"custom_combobox_x"_s, u"custom_selectlist_x"_s};
const QStringList treeHandleTypes{
    u"kiwi_treenode_handle"_s, u"dojo_treeNodeHandle"_s, u"custom_itemhandle_x"_s};
const QStringList itemTypes{u"kiwi_treenode_label"_s, u"dojo_treeNodeLabel"_s, u"dojo_splitpaneItem"_s,
    u"bb_listview_item"_s, u"gwc_tableitem"_s, u"gwc_comboitem"_s, u"custom_item_x"_s};

const QString down = u"mousedown"_s;
const QString at = u"x=3&y=4"_s;
const QString withControl = u"x=3&y=4&ctrlKey=true"_s;

INSTANTIATE_TEST_SUITE_P(PressOnAReadOnlyField, Events,
    testing::ValuesIn(eachType(down, textTypes, at + u"&readonly=true"_s, {u"mouseClick('<o>', 3, 4)"_s})
        + eachType(down, {u"text"_s}, withControl + u"&readonly=true"_s, {u"mouseClick('<o>', 2, 3, 4)"_s})));

INSTANTIATE_TEST_SUITE_P(PressOnAnEditableField, Events,
    testing::ValuesIn(eachType(down, textTypes, at + u"&readonly=false"_s, {u"setFocus('<o>')"_s})
        + eachType(down, {u"text"_s}, withControl, {u"setFocus('<o>')"_s})));

INSTANTIATE_TEST_SUITE_P(PressOnAMenuItem, Events,
    testing::ValuesIn(eachType(down, {u"menuitem_x"_s}, withControl + u"&menuname=m&menuitemtext=Save%20as"_s,
        {u"clickItem('<m>', 'Save as')"_s})));

INSTANTIATE_TEST_SUITE_P(PressOnADateChooser, Events,
    testing::ValuesIn(
        eachType(down, {u"datechooser_x"_s}, u"selectedYear=2024&selectedMonth=2&selectedDay=29"_s,
            {u"chooseDate('<o>', 2024-02-29T00:00:00)"_s})));

INSTANTIATE_TEST_SUITE_P(PressOnAButton, Events,
    testing::ValuesIn(eachType(down, buttonTypes, at, {u"clickButton('<o>')"_s})
        + eachType(down, buttonTypes, withControl, {u"mouseClick('<o>', 2)"_s})));

INSTANTIATE_TEST_SUITE_P(PressOnASelect, Events,
    testing::ValuesIn(eachType(down, selectTypes, at + u"&value=a&clickHandler"_s, {})));

INSTANTIATE_TEST_SUITE_P(PressOnALink, Events,
    testing::ValuesIn(eachType(down, {u"A"_s, u"AREA"_s}, at, {u"mouseClick('<o>')"_s})
        + eachType(
            down, {u"A"_s, u"AREA"_s}, at + u"&button=2&shiftKey=true"_s, {u"mouseClick('<o>', 20)"_s})));

INSTANTIATE_TEST_SUITE_P(PressOnAChoice, Events,
    testing::ValuesIn(eachType(down, {u"kiwi_choice"_s}, u"value=red"_s,
                          {u"noteOptionChoice"_s, u"selectOption('<o>', 'red')"_s})
        + eachType(
            down, {u"kiwi_choice"_s}, u"value="_s, {u"noteOptionChoice"_s, u"selectOption('<o>', '')"_s})));

INSTANTIATE_TEST_SUITE_P(PressOnATreeHandle, Events,
    testing::ValuesIn(
        eachType(down, treeHandleTypes, u"itemText=a.b"_s, {u"clickTreeHandle('<o>', 'a.b')"_s})));

INSTANTIATE_TEST_SUITE_P(PressOnACell, Events,
    testing::ValuesIn(
        eachType(down, itemTypes, u"itemRow=5&itemColumn=6&itemText=t"_s, {u"clickItem('<o>', 5, 6)"_s})
        + eachType(down, {u"custom_item_x"_s}, u"itemRow=5&itemColumn=6&altKey=true&checkTreeItem"_s,
            {u"clickItem('<o>', 5, 6, 1)"_s})));

INSTANTIATE_TEST_SUITE_P(PressOnAnItem, Events,
    testing::ValuesIn(eachType(down, itemTypes, u"itemText=t"_s, {u"clickItem('<o>', 't')"_s})
        + eachType(down, itemTypes, u"itemText=t&ctrlKey=true"_s, {u"clickItem('<o>', 't', 2)"_s})
        + eachType(
            down, itemTypes, u"itemText=t&checkTreeItem=1&ctrlKey=true"_s, {u"checkTreeItem('<o>', 't')"_s})
        + eachType(down, {u"custom_item_x"_s}, u"itemText=t&itemRow=5"_s, {u"clickItem('<o>', 't')"_s})
        + eachType(down, {u"custom_item_x"_s}, u"itemText=t&itemColumn=5"_s, {u"clickItem('<o>', 't')"_s})));

INSTANTIATE_TEST_SUITE_P(PressOnATableItem, Events,
    testing::ValuesIn(eachType(down, {u"kiwi_table_item"_s, u"kiwi_treetable_item"_s},
                          u"itemText=t&itemRow=1&itemColumn=2"_s, {u"clickItem('<o>', 't')"_s})
        + eachType(down, {u"kiwi_table_item"_s, u"kiwi_treetable_item"_s}, u"itemText=t&shiftKey=true"_s,
            {u"clickItem('<o>', 't', 4)"_s})));

INSTANTIATE_TEST_SUITE_P(PressOnOtherControls, Events,
    testing::ValuesIn(eachType(down, {u"bb_combobox"_s}, u"value=v"_s, {u"selectOption('<o>', 'v')"_s})
        + eachType(down, {u"tabitem_x"_s}, u"tabTitle=News&tabWidgetName=w"_s, {u"clickTab('<w>', 'News')"_s})
        + eachType(down, {u"expandablesectionheader_x"_s}, at, {u"toggleExpandable('<o>')"_s})));

INSTANTIATE_TEST_SUITE_P(PressOnAClickHandler, Events,
    testing::ValuesIn(eachType(down, {u"DIV"_s, u"kiwi_more_menu"_s, QString()}, at + u"&clickHandler"_s,
                          {u"mouseClick('<o>', 3, 4)"_s})
        + eachType(down, {u"DIV"_s}, withControl + u"&clickHandler"_s, {u"mouseClick('<o>', 2, 3, 4)"_s})
        + eachType(down, {u"calendarevent_x"_s}, withControl + u"&clickHandler"_s, {u"mouseClick('<o>')"_s})
        + eachType(down, {u"file"_s}, at + u"&clickHandler"_s, {})
        + eachType(down, {u"file_x"_s}, at + u"&clickHandler"_s, {u"mouseClick('<o>', 3, 4)"_s})
        + eachType(down, {u"DIV"_s, u"calendarevent_x"_s, u"file"_s, QString()}, at, {})));

// Names are compared exactly, and a prefix has to stand in front.
INSTANTIATE_TEST_SUITE_P(PressOnATypeOfNoGroup, Events,
    testing::ValuesIn(eachType(down,
        {u"Text"_s, u"textfield"_s, u"xcustom_text_"_s, u"Submit"_s, u"buttonx"_s, u"xmenuitem_"_s,
            u"xselect"_s, u"a"_s, u"AREA2"_s, u"kiwi_choices"_s, u"kiwi_treenode_handle2"_s,
            u"gwc_tableitems"_s, u"bb_combobox2"_s, u"xtabitem_"_s},
        at + u"&clickHandler&value=v&itemText=t"_s, {u"mouseClick('<o>', 3, 4)"_s})));

INSTANTIATE_TEST_SUITE_P(Tap, Events,
    testing::ValuesIn(
        eachType(u"touchend"_s, {u"button"_s}, u"button=0&keyCode=undefined"_s, {u"clickButton('<o>')"_s})));

const QStringList toldByThePress = textTypes + buttonTypes + selectTypes
    + QStringList{u"menuitem_x"_s, u"datechooser_x"_s, u"A"_s, u"AREA"_s};

QStringList without(QStringList types, const QString &type)
{
    types.removeAll(type);
    return types;
}

INSTANTIATE_TEST_SUITE_P(Click, Events,
    testing::ValuesIn(eachType(u"click"_s, {u"kiwi_more_menu"_s}, u"itemText=More&clickHandler"_s,
                          {u"activateItem('<o>', 'More')"_s})
        + eachType(u"click"_s, {u"DIV"_s, u"custom_item_x"_s, QString()}, at + u"&clickHandler"_s,
            {u"mouseClick('<o>')"_s})
        + eachType(u"click"_s, {u"DIV"_s}, withControl + u"&clickHandler"_s, {u"mouseClick('<o>', 2)"_s})
        + eachType(u"click"_s, without(toldByThePress, u"submit"_s), at + u"&clickHandler"_s, {})
        + eachType(u"click"_s, {u"submit"_s}, withControl + u"&clickHandler"_s, {u"clickButton('<o>')"_s})
        + eachType(u"click"_s, {u"submit"_s}, at, {u"clickButton('<o>')"_s})
        + eachType(u"click"_s, {u"DIV"_s, u"button"_s, QString()}, at, {})));

INSTANTIATE_TEST_SUITE_P(Change, Events,
    testing::ValuesIn(
        eachType(u"change"_s, selectTypes, u"value=a%2Cb%3B"_s, {u"selectOption('<o>', 'a,b;')"_s})
        + eachType(u"change"_s, {u"file"_s}, u"value=C%3A%5Ca.txt"_s, {u"setText('<o>', 'C:\\a.txt')"_s})
        + eachType(u"change"_s, {u"file_x"_s}, u"value=a"_s, {u"setText('<o>', 'a')"_s})
        + eachType(u"change"_s, {u"text"_s, u"checkbox"_s, u"radio"_s, u"xfile"_s, u"xselect"_s, QString()},
            u"value=a"_s, {})));

INSTANTIATE_TEST_SUITE_P(Others, Events,
    testing::ValuesIn(eachType(u"unload"_s, {QString()}, QString(), {u"closeWindow('<o>')"_s})
        + eachType(u"dblclick"_s, {u"DIV"_s, u"text"_s, QString()}, at + u"&ctrlKey=true"_s,
            {u"noteDoubleClick <o> x=3"_s, u"doubleClick('<o>', 3, 4)"_s})
        + eachType(
            u"chooseColor"_s, {u"x"_s}, u"colorFieldValue=%23ff0000"_s, {u"chooseColor('<o>', '#ff0000')"_s})
        + eachType(u"chooseColor"_s, {u"x"_s}, u"colorFieldValue=red&colorFieldName=f"_s,
            {u"chooseColor('<f>', 'red')"_s})
        + eachType(u"chooseColor"_s, {u"x"_s}, u"colorFieldValue=red&colorFieldName="_s,
            {u"chooseColor('<>', 'red')"_s})
        + eachType(u"ignoreEvent"_s, {u"text"_s}, u"value=a"_s, {})));

TEST_F(Conversion, ReadsWhatIsMissingAsNothing)
{
    recorder.logEvent(u"logevent11&event=dblclick"_s);
    recorder.logEvent(u"logevent12&event=mousedown&type=menuitem_x"_s);
    recorder.logEvent(u"logevent13&event=mousedown&type=custom_item_x&itemRow=one&itemColumn=&object=o"_s);
    recorder.logEvent(u"logevent14&event=chooseColor&object=o"_s);

    EXPECT_EQ(recorder.take(),
        (QStringList{u"noteDoubleClick  x="_s, u"doubleClick('', 0, 0)"_s, u"clickItem('', '')"_s,
            u"clickItem('o', 0, 0)"_s, u"chooseColor('o', '')"_s}));
}

TEST_F(Conversion, ReadsADateThatIsMissingOrNoneAsNoDate)
{
    press(u"datechooser_x"_s, u"o"_s);
    press(u"datechooser_x"_s, u"o"_s, u"selectedYear=2023&selectedMonth=2&selectedDay=29"_s);

    EXPECT_EQ(recorder.take(), QStringList(2, u"chooseDate('o', )"_s));
}

TEST_F(Conversion, GivesStatementsTheTimeOfTheirEvent)
{
    press(u"A"_s, u"link"_s);

    EXPECT_EQ(recorder.times, QList<QTime>{text.timeOfDay()});
}

TEST_F(Conversion, LeavesAChoiceWithoutAValueToTheHost)
{
    key(u"field"_s, u"abc"_s);

    press(u"kiwi_choice"_s, u"o"_s, u"x=1&y=2&button=2&altKey=true"_s);

    EXPECT_EQ(recorder.take(), QStringList{u"typeText('field', 'abc')"_s});
    EXPECT_EQ(messages.take(), QStringList{u"Unhandled event: 'mousedown' for 'o'."_s});
    ASSERT_EQ(recorder.unhandledArguments.size(), 4);
    QList<int> values;
    for (const SharedPtr<Object> &argument : std::as_const(recorder.unhandledArguments)) {
        values.append(argument->toInt());
        EXPECT_TRUE(argument->isEventArgument());
    }
    EXPECT_EQ(values, (QList<int>{1, 2, 17, 2}));
}

TEST_F(Conversion, ClicksTextFieldsWhereTheHostWantsIt)
{
    recorder.clicksTextFields = true;

    press(u"text"_s, u"field"_s, at);
    press(u"text"_s, u"fixed"_s, at + u"&readonly=true"_s);

    EXPECT_EQ(recorder.take(),
        (QStringList{u"nativeMouseClick('field', 3, 4, 1)"_s, u"mouseClick('fixed', 3, 4)"_s}));
}

TEST_F(Conversion, LeavesOutWhatIsRecordedAlready)
{
    recorder.already = {u"clickButton b"_s, u"mouseClick l"_s, u"mouseClick d"_s, u"mouseClick b"_s};

    press(u"submit"_s, u"b"_s);
    press(u"submit"_s, u"b"_s, u"ctrlKey=true"_s);
    press(u"A"_s, u"l"_s);
    recorder.logEvent(text(u"click"_s, u"DIV"_s, u"d"_s, u"clickHandler"_s));
    recorder.logEvent(text(u"click"_s, u"submit"_s, u"b"_s));

    EXPECT_EQ(recorder.take(), QStringList());
    EXPECT_EQ(recorder.asked,
        (QStringList{u"clickButton b"_s, u"mouseClick b"_s, u"mouseClick l"_s, u"mouseClick d"_s,
            u"clickButton b"_s}));
}

TEST_F(Conversion, AsksOnlyWhereButtonsAndLinksAreRecorded)
{
    press(u"DIV"_s, u"d"_s, u"clickHandler"_s);
    press(u"text"_s, u"t"_s);
    press(u"custom_item_x"_s, u"i"_s);
    recorder.logEvent(text(u"click"_s, u"kiwi_more_menu"_s, u"m"_s));

    EXPECT_EQ(recorder.asked, QStringList());
}

TEST_F(Conversion, ASubmitPressedAndClickedIsRecordedOnce)
{
    press(u"submit"_s, u"b"_s);
    recorder.already = {u"clickButton b"_s};
    recorder.logEvent(text(u"click"_s, u"submit"_s, u"b"_s));

    EXPECT_EQ(recorder.take(), QStringList{u"clickButton('b')"_s});
}

TEST_F(Conversion, TracesAClickForItsHandler)
{
    TraceCapture traces(u"WebEventCompression"_s);

    recorder.logEvent(text(u"click"_s, u"DIV"_s, u"d"_s, u"clickHandler"_s));

    EXPECT_EQ(traces.lines().constLast(), u"Recording a mouseClick due to seeing a clickHandler for: d"_s);
}

using ColorChoice = Conversion;

TEST_F(ColorChoice, OfTheSameColorIsOneStatement)
{
    const auto choose = [this](const QString &color) {
        recorder.logEvent(
            text(u"chooseColor"_s, QString(), u"o"_s, u"colorFieldName=f&colorFieldValue="_s + color));
    };
    const auto wasRecorded = [this](const QString &method, const QString &object, const QString &color) {
        recorder.last = EventData::methodCall(method, object, {Inspector::self()->createPrimitive(color)});
    };

    choose(u"red"_s);
    wasRecorded(u"chooseColor"_s, u"f"_s, u"red"_s);
    choose(u"red"_s);
    EXPECT_EQ(recorder.take(), QStringList{u"chooseColor('f', 'red')"_s});

    choose(u"blue"_s);
    wasRecorded(u"chooseColor"_s, u"g"_s, u"blue"_s);
    choose(u"blue"_s);
    wasRecorded(u"setText"_s, u"f"_s, u"blue"_s);
    choose(u"blue"_s);
    EXPECT_EQ(recorder.take(), QStringList(3, u"chooseColor('f', 'blue')"_s));
}

TEST_F(ColorChoice, IsNotComparedWithARawEvent)
{
    recorder.last = EventData(nullptr, u"o"_s, {Inspector::self()->createPrimitive(u"red"_s)});

    recorder.logEvent(text(u"chooseColor"_s, QString(), u"o"_s, u"colorFieldValue=red"_s));

    EXPECT_EQ(recorder.take(), QStringList{u"chooseColor('o', 'red')"_s});
}

using Typing = Conversion;

TEST_F(Typing, IsOneStatementBetweenTwoPresses)
{
    press(u"text"_s, u"field"_s);
    key(u"field"_s, u"a"_s);
    key(u"field"_s, u"ab"_s);
    key(u"field"_s, u"abc"_s);
    const QTime typed = text.timeOfDay();
    press(u"A"_s, u"link"_s);

    EXPECT_EQ(recorder.take(),
        (QStringList{u"setFocus('field')"_s, u"typeText('field', 'abc')"_s, u"mouseClick('link')"_s}));
    EXPECT_EQ(recorder.times.at(1), typed);
    EXPECT_EQ(recorder.keys, QStringList(3, u"field"_s));
}

TEST_F(Typing, IsTheWholeValueOfTheFieldAtTheEnd)
{
    key(u"field"_s, u"old text x"_s);
    key(u"field"_s, u"old text"_s, 8);
    key(u"field"_s, QString(), 46);
    recorder.flushRecordedTextInput();
    recorder.flushRecordedTextInput();

    EXPECT_EQ(recorder.take(), QStringList{u"typeText('field', '')"_s});
}

TEST_F(Typing, IntoTheNextFieldEndsTheFirst)
{
    key(u"a"_s, u"one"_s);
    key(u"b"_s, u"two"_s);
    EXPECT_EQ(recorder.take(), QStringList{u"typeText('a', 'one')"_s});

    recorder.flushRecordedTextInput();
    EXPECT_EQ(recorder.take(), QStringList{u"typeText('b', 'two')"_s});
}

TEST_F(Typing, IntoAFileFieldIsNoText)
{
    key(u"a"_s, u"one"_s, 65, u"file"_s);
    recorder.flushRecordedTextInput();

    EXPECT_EQ(recorder.take(), QStringList());
}

TEST_F(Typing, OfReturnIsAStatementOfItsOwn)
{
    key(u"search"_s, u"a"_s, 65, u"search"_s);
    key(u"search"_s, u"a"_s, 13, u"search"_s);
    EXPECT_EQ(recorder.take(), QStringList{u"typeText('search', 'a')"_s});

    press(u"A"_s, u"link"_s);
    EXPECT_EQ(recorder.take(), (QStringList{u"typeText('search', '<Return>')"_s, u"mouseClick('link')"_s}));
}

TEST_F(Typing, OfReturnIsKnownByItsCodeAsItStands)
{
    recorder.logEvent(text(u"keyup"_s, u"text"_s, u"field"_s, u"keyCode=013&value=a"_s));
    recorder.flushRecordedTextInput();

    EXPECT_EQ(recorder.take(), QStringList{u"typeText('field', 'a')"_s});
}

TEST_F(Typing, BehindAReturnReplacesItInATextArea)
{
    key(u"area"_s, u"a"_s, 65, u"textarea"_s);
    key(u"area"_s, u"a%0A"_s, 13, u"textarea"_s);
    key(u"area"_s, u"a%0Ab"_s, 66, u"textarea"_s);
    recorder.flushRecordedTextInput();

    EXPECT_EQ(recorder.take(), (QStringList{u"typeText('area', 'a')"_s, u"typeText('area', 'a b')"_s}));
}

TEST_F(Typing, OfReturnInAFrameCountsTwice)
{
    recorder.logEvent(text(u"keydown"_s, u"text"_s, u"field"_s, u"keyCode=13&value=a"_s));
    recorder.logEvent(text(u"keyup"_s, u"text"_s, u"field"_s, u"keyCode=13&value=a"_s));
    recorder.flushRecordedTextInput();

    EXPECT_EQ(recorder.take(), QStringList(2, u"typeText('field', '<Return>')"_s));
}

TEST_F(Typing, OutOfOrderKeepsTheNewerText)
{
    const quint64 start = text.time() + 1000;
    text.setTime(start);
    key(u"field"_s, u"ab"_s);
    text.setTime(start - 10);
    key(u"field"_s, u"a"_s);
    text.setTime(start + 20);
    recorder.flushRecordedTextInput();

    EXPECT_EQ(recorder.take(), QStringList{u"typeText('field', 'ab')"_s});
}

TEST_F(Typing, AtTheSameTimeKeepsTheLaterText)
{
    const quint64 start = text.time() + 1000;
    text.setTime(start);
    key(u"field"_s, u"a"_s);
    text.setTime(start);
    key(u"field"_s, u"ab"_s);
    recorder.flushRecordedTextInput();

    EXPECT_EQ(recorder.take(), QStringList{u"typeText('field', 'ab')"_s});
}

TEST_F(Typing, OutOfOrderIsTakenWhereNothingIsPending)
{
    const quint64 start = text.time() + 1000;
    text.setTime(start);
    press(u"text"_s, u"field"_s);
    text.setTime(start - 10);
    key(u"field"_s, u"a"_s);
    text.setTime(start + 20);
    recorder.flushRecordedTextInput();

    EXPECT_EQ(recorder.take(), (QStringList{u"setFocus('field')"_s, u"typeText('field', 'a')"_s}));
}

TEST_F(Typing, AcrossMidnightIsDroppedUntilTheNextFlush)
{
    const QDateTime midnight
        = QDateTime::fromMSecsSinceEpoch(qint64(text.time())).date().addDays(1).startOfDay();
    text.setTime(quint64(midnight.toMSecsSinceEpoch()) - 5);
    key(u"field"_s, u"a"_s);
    text.setTime(quint64(midnight.toMSecsSinceEpoch()) + 5);
    key(u"field"_s, u"ab"_s);
    recorder.flushRecordedTextInput();
    key(u"field"_s, u"abc"_s);
    recorder.flushRecordedTextInput();

    EXPECT_EQ(recorder.take(), (QStringList{u"typeText('field', 'a')"_s, u"typeText('field', 'abc')"_s}));
}

TEST_F(Typing, HasBlanksForWhatCannotBePrinted)
{
    TraceCapture traces(u"WebEventCompression"_s);
    key(u"field"_s, u"a%09%uD83D%uDE00%E4%u20AC"_s);
    recorder.flushRecordedTextInput();

    EXPECT_EQ(recorder.take(), QStringList{u"typeText('field', 'a   ä€')"_s});
    EXPECT_EQ(traces.lines().filter(u"Non-Printable"_s),
        (QStringList{u"Non-Printable character (hex code: 0x0009) found in text, replacing with space"_s,
            u"Non-Printable character (hex code: 0xd83d) found in text, replacing with space"_s,
            u"Non-Printable character (hex code: 0xde00) found in text, replacing with space"_s}));
}

TEST_F(Typing, OnAnElementWithoutTextIsNotedOnly)
{
    key(u"field"_s, u"a"_s);
    key(u"box"_s, u"b"_s, 32, u"checkbox"_s);

    EXPECT_EQ(recorder.take(), QStringList());
    EXPECT_EQ(recorder.keys, (QStringList{u"field"_s, u"box"_s}));
    recorder.flushRecordedTextInput();
    EXPECT_EQ(recorder.take(), QStringList{u"typeText('field', 'a')"_s});
}

TEST_F(Typing, WithoutANameIsLost)
{
    key(QString(), u"a"_s);
    recorder.flushRecordedTextInput();

    EXPECT_EQ(recorder.take(), QStringList());
}

TEST_F(Typing, IsRecordedOnceAlsoFromInsideItsStatement)
{
    key(u"field"_s, u"a"_s);
    recorder.whileRecording = [this] { recorder.flushRecordedTextInput(); };
    recorder.flushRecordedTextInput();

    EXPECT_EQ(recorder.take(), QStringList{u"typeText('field', 'a')"_s});
}

TEST_F(Typing, EndsWithTheEventsThatSayMore)
{
    const QString flushing[] = {text(u"mousedown"_s, QString(), u"o"_s), text(u"click"_s, QString(), u"o"_s),
        text(u"change"_s, QString(), u"o"_s)};
    const QString leaving[]
        = {text(u"chooseColor"_s, QString(), u"o"_s), text(u"dblclick"_s, QString(), u"o"_s),
            text(u"ignoreEvent"_s, QString(), u"o"_s), text(u"keyup"_s, u"DIV"_s, u"o"_s)};
    const QString typed = u"typeText('field', 'a')"_s;

    for (const QString &event : flushing) {
        key(u"field"_s, u"a"_s);
        recorder.logEvent(event);
        EXPECT_EQ(recorder.take(), QStringList{typed}) << event.toStdString();
    }
    for (const QString &event : leaving) {
        key(u"field"_s, u"a"_s);
        recorder.logEvent(event);
        EXPECT_FALSE(recorder.take().contains(typed)) << event.toStdString();
        recorder.flushRecordedTextInput();
        EXPECT_EQ(recorder.take(), QStringList{typed}) << event.toStdString();
    }
    key(u"field"_s, u"a"_s);
    recorder.logEvent(text(u"unload"_s, QString(), u"w"_s));
    EXPECT_EQ(recorder.take(), (QStringList{typed, u"closeWindow('w')"_s}));
}

using SubmitByReturn = Conversion;

TEST_F(SubmitByReturn, RightBehindAPressOnTheButtonIsNotRecorded)
{
    press(u"submit"_s, u"b"_s);
    key(u"field"_s, u"a"_s, 13);
    recorder.flushRecordedTextInput();
    EXPECT_EQ(recorder.take(), QStringList{u"clickButton('b')"_s});

    key(u"field"_s, u"a"_s, 13);
    recorder.flushRecordedTextInput();
    EXPECT_EQ(recorder.take(), QStringList{u"typeText('field', '<Return>')"_s});
}

TEST_F(SubmitByReturn, CountsWithTheControlKeyToo)
{
    press(u"submit"_s, u"b"_s, u"ctrlKey=true"_s);
    key(u"field"_s, u"a"_s, 13);
    recorder.flushRecordedTextInput();

    EXPECT_EQ(recorder.take(), QStringList{u"mouseClick('b', 2)"_s});
}

TEST_F(SubmitByReturn, IsForgottenByAnyOtherEvent)
{
    const QString others[]
        = {text(u"ignoreEvent"_s, QString(), u"o"_s), text(u"click"_s, u"submit"_s, u"b"_s),
            text(u"mousedown"_s, u"button"_s, u"c"_s), text(u"clear"_s, QString(), QString()),
            text(u"keyup"_s, u"DIV"_s, u"o"_s), text(u"keyup"_s, u"text"_s, u"field"_s, u"value=a"_s)};

    for (const QString &other : others) {
        press(u"submit"_s, u"b"_s);
        recorder.logEvent(other);
        key(u"field"_s, u"a"_s, 13);
        recorder.flushRecordedTextInput();

        EXPECT_EQ(recorder.take().constLast(), u"typeText('field', '<Return>')"_s) << other.toStdString();
    }
}

TEST_F(SubmitByReturn, IsForgottenByALateKey)
{
    const quint64 start = text.time() + 1000;
    text.setTime(start);
    press(u"submit"_s, u"b"_s);
    key(u"field"_s, u"ab"_s);
    text.setTime(start - 10);
    key(u"field"_s, u"a"_s);
    text.setTime(start + 20);
    key(u"field"_s, u"ab"_s, 13);
    recorder.flushRecordedTextInput();

    EXPECT_EQ(recorder.take(),
        (QStringList{
            u"clickButton('b')"_s, u"typeText('field', 'ab')"_s, u"typeText('field', '<Return>')"_s}));
}

} // namespace
