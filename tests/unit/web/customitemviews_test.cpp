// Tests of item views that a page extension describes, and of their items.
#include "wrappers/web/controls/customitemviews.h"
#include "wrappers/web/objectfactory.h"

#include "support/classcase.h"
#include "support/fakepage.h"
#include "support/hostiletexts.h"
#include "support/operationcase.h"
#include "support/pagescript.h"
#include "support/printers.h"
#include "support/scriptcalls.h"
#include "support/tracecapture.h"

#include <gtest/gtest.h>

#include <QElapsedTimer>

using namespace Ostrel;
using namespace Ostrel::Test;
using namespace Ostrel::WebWrapper;
using namespace Qt::StringLiterals;

namespace {

const QString done = u"done"_s;
const QString item = foundAnswer(u"custom_item_Acme"_s);
const QString view = foundAnswer(u"custom_itemview_Acme"_s);
const QString plain = foundAnswer(u"DIV"_s);
const QString nothing = nothingAnswer();

constexpr FunctionCallResult<HTML_CustomItem *> (HTML_CustomItemView::*findByText)(
    const char *) const = &HTML_CustomItemView::findItem;
constexpr FunctionCallResult<HTML_CustomItem *> (HTML_CustomItemView::*findByCell)(
    int, int) const = &HTML_CustomItemView::findItem;

/// The script of a click on "found", which findItem gave.
const QString plainClick
    = u"setTimeout(function(e){__ostrel__click(found, false, true, false, 0, 0, 1);}, 100);"_s;

class ItemViews : public Operations
{
};

} // namespace

TEST_P(ItemViews, SendsItsScriptAndReadsTheAnswer)
{
    sendsItsScriptAndReadsTheAnswer();
}

TEST_P(ItemViews, SaysWhatFailed)
{
    saysWhatFailed();
}

INSTANTIATE_TEST_SUITE_P(Items, ItemViews,
    testing::ValuesIn(QList<OperationCase>{
        {"text", on<&HTML_CustomItem::text>(),
            u"try {AcmeExtension.itemText(el);} catch (e) {el.innerText;}"_s, u" Inbox "_s, u" Inbox "_s,
            u"Error fetching text: gone"_s},
        {"is open", on<&HTML_CustomItem::isOpen>(), u"AcmeExtension.isItemOpen(el);"_s, u"true"_s, u"true"_s,
            u"Error fetching open state: gone"_s},
        {"is open as a number", on<&HTML_CustomItem::isOpen>(), u"AcmeExtension.isItemOpen(el);"_s, u"1"_s,
            u"true"_s, u"Error fetching open state: gone"_s},
        {"is not open", on<&HTML_CustomItem::isOpen>(), u"AcmeExtension.isItemOpen(el);"_s, u"0"_s,
            u"false"_s, u"Error fetching open state: gone"_s},
        {"set open", on<&HTML_CustomItem::setOpen>(true), u"AcmeExtension.setItemOpen(el, true);"_s,
            u"undefined"_s, done, u"Error setting open state to 'true': gone"_s},
        {"is selected", on<&HTML_CustomItem::isSelected>(), u"AcmeExtension.isItemSelected(el);"_s, u"true"_s,
            u"true"_s, u"Error fetching selected state: gone"_s},
        {"is selected as a number", on<&HTML_CustomItem::isSelected>(),
            u"AcmeExtension.isItemSelected(el);"_s, u"1"_s, u"true"_s,
            u"Error fetching selected state: gone"_s},
        {"is not selected", on<&HTML_CustomItem::isSelected>(), u"AcmeExtension.isItemSelected(el);"_s,
            u"undefined"_s, u"false"_s, u"Error fetching selected state: gone"_s},
        {"set selected", on<&HTML_CustomItem::setSelected>(false),
            u"AcmeExtension.setItemSelected(el, false);"_s, u"undefined"_s, done,
            u"Error setting selected state to 'false': gone"_s},
        {"row", on<&HTML_CustomItem::row>(), u"AcmeExtension.itemRow( el );"_s, u"3"_s, u"3"_s,
            u"Error fetching row: gone"_s},
        {"column", on<&HTML_CustomItem::column>(), u"AcmeExtension.itemColumn( el );"_s, u"2"_s, u"2"_s,
            u"Error fetching column: gone"_s},
        {"rows", on<&HTML_CustomItem::numRows>(), u"AcmeExtension.numRows( el);"_s, u"5"_s, u"5"_s,
            u"Error fetching number rows: gone"_s},
        {"handle", on<&HTML_CustomItem::itemHandle>(), identifying(u"AcmeExtension.itemHandle(el);"_s), plain,
            u"HTML_Object found"_s, u"Error fetching handle: gone"_s},
        {"no handle", on<&HTML_CustomItem::itemHandle>(), identifying(u"AcmeExtension.itemHandle(el);"_s),
            nothing, u"nothing"_s, u"Error fetching handle: gone"_s},
        {"view", on<&HTML_CustomItem::itemView>(), identifying(u"AcmeExtension.itemView(el);"_s), view,
            u"HTML_CustomItemView found"_s, u"Error fetching itemview: gone"_s},
        {"calendar as a view", on<&HTML_CustomItem::itemView>(),
            identifying(u"AcmeExtension.itemView(el);"_s), foundAnswer(u"calendarview_Acme"_s),
            u"HTML_CalendarView found"_s, u"Error fetching itemview: gone"_s},
        {"view that is none", on<&HTML_CustomItem::itemView>(), identifying(u"AcmeExtension.itemView(el);"_s),
            item, u"nothing"_s, u"Error fetching itemview: gone"_s},
        {"child item", on<&HTML_CustomItem::childItem>(2), identifying(u"AcmeExtension.childItem(el,2);"_s),
            item, u"HTML_CustomItem found"_s, u"Error fetching child item for column '2': gone"_s},
        {"parent item", on<&HTML_CustomItem::parentItem>(-1),
            identifying(u"AcmeExtension.parentItem(el,-1);"_s), nothing, u"nothing"_s,
            u"Error fetching parent item for column '-1': gone"_s},
        {"parent item that is an element", on<&HTML_CustomItem::parentItem>(0),
            identifying(u"AcmeExtension.parentItem(el,0);"_s), plain, u"nothing"_s,
            u"Error fetching parent item for column '0': gone"_s},
        {"next sibling", on<&HTML_CustomItem::nextSibling>(1),
            identifying(u"AcmeExtension.nextSibling(el,1);"_s), item, u"HTML_CustomItem found"_s,
            u"Error fetching sibling for column '1': gone"_s},
        {"find item", on<&HTML_CustomItem::findItem>(4, 5),
            identifying(u"AcmeExtension.findItemByRowAndColumn(el, 4, 5);"_s), item,
            u"HTML_CustomItem found"_s, u"Error finding item at row '4' and column '5': gone"_s},
        {"name", on<&HTML_CustomItem::name>(), u"__ostrel__hierarchicalItemName(AcmeExtension, el);"_s,
            u"item_3"_s, u"item_3"_s, u"Error obtaining item name: gone"_s},
    }),
    rowName<OperationCase>);

INSTANTIATE_TEST_SUITE_P(Views, ItemViews,
    testing::ValuesIn(QList<OperationCase>{
        {"item by text", on<findByText>("it's"), identifying(u"AcmeExtension.findItem(el,'it\\'s');"_s), item,
            u"HTML_CustomItem found"_s, u"Error occurred while finding item with text 'it's': gone"_s},
        {"no item by text", on<findByText>("Spam"), identifying(u"AcmeExtension.findItem(el,'Spam');"_s),
            nothing, u"nothing"_s, u"Error occurred while finding item with text 'Spam': gone"_s},
        {"element instead of an item", on<findByText>("Spam"),
            identifying(u"AcmeExtension.findItem(el,'Spam');"_s), plain, u"nothing"_s,
            u"Error occurred while finding item with text 'Spam': gone"_s},
        {"item by cell", on<findByCell>(4, 5),
            identifying(u"AcmeExtension.findItemByRowAndColumn(el, 4, 5);"_s), item,
            u"HTML_CustomItem found"_s,
            u"Error occurred while finding item with row '4' and column '5': gone"_s},
        {"child item", on<&HTML_CustomItemView::childItem>(2),
            identifying(u"AcmeExtension.childItem(el,2);"_s), item, u"HTML_CustomItem found"_s,
            u"Error occurred while fetching child item at column '2': gone"_s},
        {"caption", on<&HTML_CustomItemView::columnCaption>(1), u"AcmeExtension.columnCaption(el,1);"_s,
            u"Sender"_s, u"Sender"_s, u"Error occurred while fetching caption for column '1': gone"_s},
        {"columns", on<&HTML_CustomItemView::numColumns>(), u"AcmeExtension.numColumns(el);"_s, u"3"_s,
            u"3"_s, u"Error occurred while fetching number of columns: gone"_s},
        {"rows", on<&HTML_CustomItemView::numRows>(), u"try { AcmeExtension.numRows(el);}catch(e){-1;}"_s,
            u"12"_s, u"12"_s, u"Error occurred while fetching number of rows: gone"_s},
        {"has item", on<&HTML_CustomItemView::hasItem>("Inbox"),
            identifying(u"AcmeExtension.findItem(el,'Inbox');"_s), item, u"true"_s,
            u"Error occurred while finding item with text 'Inbox': gone"_s},
        {"has no such item", on<&HTML_CustomItemView::hasItem>("Spam"),
            identifying(u"AcmeExtension.findItem(el,'Spam');"_s), nothing, u"false"_s,
            u"Error occurred while finding item with text 'Spam': gone"_s},
    }),
    rowName<OperationCase>);

// Answers that are no numbers

namespace {

struct NumberCase
{
    const char *name;
    std::function<Outcome(FakePage &)> call;
    QString error;
};

void PrintTo(const NumberCase &row, std::ostream *stream)
{
    *stream << row.name;
}

class ItemViewNumber : public testing::TestWithParam<NumberCase>
{
};

} // namespace

TEST_P(ItemViewNumber, ShowsAnAnswerThatIsNone)
{
    FakePage page;
    page.answer(u"many"_s);

    EXPECT_EQ(GetParam().call(page).error, GetParam().error);
}

INSTANTIATE_TEST_SUITE_P(ItemViews, ItemViewNumber,
    testing::ValuesIn(QList<NumberCase>{
        {"row", on<&HTML_CustomItem::row>(), u"Could not convert value for row 'many' to number"_s},
        {"column", on<&HTML_CustomItem::column>(), u"Could not convert value for column 'many' to number"_s},
        {"rows of an item", on<&HTML_CustomItem::numRows>(),
            u"Could not convert value for number of rows 'many' to number"_s},
        {"columns", on<&HTML_CustomItemView::numColumns>(),
            u"Cannot convert obtained columncount 'many' to a number"_s},
        {"rows of a view", on<&HTML_CustomItemView::numRows>(),
            u"Cannot convert obtained rowcount 'many' to a number"_s},
    }),
    rowName<NumberCase>);

// Names and types

TEST(CustomItem, NameIsAskedForOnce)
{
    FakePage page;
    page.answer(u"item_3"_s);
    const auto cell = acme<HTML_CustomItem>(page);

    EXPECT_EQ(cell.name().value, u"item_3"_s);
    EXPECT_EQ(cell.name().value, u"item_3"_s);

    EXPECT_EQ(page.scripts(), QStringList{u"__ostrel__hierarchicalItemName(AcmeExtension, el);"_s});
}

TEST(CustomItem, AFailedNameIsAskedForAgain)
{
    FakePage page;
    page.fail(u"gone"_s);
    page.answer(u"item_3"_s);
    const auto cell = acme<HTML_CustomItem>(page);

    EXPECT_EQ(cell.name().error, u"Error obtaining item name: gone"_s);
    EXPECT_EQ(cell.name().value, u"item_3"_s);
}

TEST(CustomItem, AKnownNameMakesNoPageCall)
{
    FakePage page;
    const HTML_CustomItem cell(u"item_9"_s, u"el"_s, u"Acme"_s, &page);

    EXPECT_EQ(cell.name().value, u"item_9"_s);
    EXPECT_EQ(page.scripts(), QStringList());
}

TEST(CustomItem, RealTypeIsTheExtensionInThePagesCaseWithoutAPageCall)
{
    FakePage page;
    const std::unique_ptr<HTML_Object> cell(
        htmlObjectFromReferenceInfo(&page, u"custom_item_aCme_Kit"_s, u"el"_s, {}));
    const std::unique_ptr<HTML_Object> list(
        htmlObjectFromReferenceInfo(&page, u"CUSTOM_ITEMVIEW_aCme_Kit"_s, u"el"_s, {}));

    EXPECT_EQ(dynamic_cast<HTML_CustomItem &>(*cell).realType().value, u"aCme_Kit"_s);
    EXPECT_EQ(dynamic_cast<HTML_CustomItemView &>(*list).realType().value, u"aCme_Kit"_s);
    EXPECT_EQ(page.scripts(), QStringList());
}

// Clicks on items

TEST(CustomItem, WithoutClickSupportEachClickIsPlainAndTracedOnce)
{
    FakePage page;
    auto cell = acme<HTML_CustomItem>(page);
    TraceCapture traces(u"WebObject"_s);

    for (int click = 0; click < 2; ++click) {
        page.fail(u"supportsClickItem is not a function"_s);
        page.answer(u"1"_s);
        EXPECT_EQ(cell.click(ControlKey, 3, 4, 1).error, QString());
    }

    const QString ask = u"AcmeExtension.supportsClickItem(el);"_s;
    const QString click
        = u"setTimeout(function(e){__ostrel__click(el, true, false, false, 3, 4, 1);}, 100);"_s;
    EXPECT_EQ(page.scripts(), (QStringList{ask, click, ask, click}));
    const QString line = u"Ignoring error from optional API Extension.supportsClickItem: "
                         "supportsClickItem is not a function"_s;
    EXPECT_EQ(traces.lines(), (QStringList{line, line}));
}

TEST(CustomItem, RefusedClickSupportIsAPlainClickThatWaits)
{
    FakePage page;
    page.answer(u"false"_s);
    page.fail(u"gone"_s);
    auto cell = acme<HTML_CustomItem>(page);
    TraceCapture traces(u"WebObject"_s);
    QElapsedTimer watch;
    watch.start();

    const FunctionCallResult<void> clicked = cell.click(0, 0, 0, 1);

    EXPECT_GE(watch.elapsed(), 190);
    EXPECT_EQ(clicked.error, u"Error occurred while clicking on object: gone"_s);
    EXPECT_EQ(traces.lines(), QStringList());
}

TEST(CustomItem, ClickSupportHandsTheClickToTheExtensionWithoutAWait)
{
    FakePage page;
    page.answer(u"true"_s);
    auto cell = acme<HTML_CustomItem>(page);
    QElapsedTimer watch;
    watch.start();

    const FunctionCallResult<void> clicked = cell.click(ShiftAlt + RightButton, 3, 4, 1);

    EXPECT_LT(watch.elapsed(), 150);
    EXPECT_EQ(clicked.error, QString());
    EXPECT_EQ(page.scripts(),
        (QStringList{u"AcmeExtension.supportsClickItem(el);"_s,
            u"AcmeExtension.clickItem(el, false, true, true, 3, 4, 2);"_s}));
}

TEST(CustomItem, AFailingClickOfTheExtensionIsAnError)
{
    FakePage page;
    page.answer(u"true"_s);
    page.fail(u"gone"_s);

    EXPECT_EQ(
        acme<HTML_CustomItem>(page).click(0, 0, 0, 1).error, u"Error emulating click via extension: gone"_s);
}

TEST(CustomItem, WithoutDoubleClickSupportADoubleClickIsPlainAndTraced)
{
    FakePage page;
    page.fail(u"no such function"_s);
    auto cell = acme<HTML_CustomItem>(page);
    TraceCapture traces(u"WebObject"_s);

    EXPECT_EQ(cell.doubleClick(AltKey, 3, 4).error, QString());

    EXPECT_EQ(page.scripts(),
        (QStringList{u"AcmeExtension.supportsDoubleClickItem(el);"_s,
            u"setTimeout(function(e){__ostrel__dblclick(el, false, false, true, 3, 4, 1);}, 100);"_s}));
    EXPECT_EQ(traces.lines(),
        QStringList{
            u"Ignoring error from optional API Extension.supportsDoubleClickItem: no such function"_s});
}

TEST(CustomItem, DoubleClickSupportHandsItToTheExtensionWithoutAButton)
{
    FakePage page;
    page.answer(u"true"_s);

    const FunctionCallResult<void> clicked = acme<HTML_CustomItem>(page).doubleClick(ControlKey, 3, 4);

    EXPECT_EQ(clicked.error, QString());
    EXPECT_EQ(page.scripts(),
        (QStringList{u"AcmeExtension.supportsDoubleClickItem(el);"_s,
            u"AcmeExtension.doubleClickItem(el, true, false, false, 3, 4);"_s}));
}

TEST(CustomItem, AFailingDoubleClickOfTheExtensionIsAnError)
{
    FakePage page;
    page.answer(u"true"_s);
    page.fail(u"gone"_s);

    EXPECT_EQ(acme<HTML_CustomItem>(page).doubleClick(0, 0, 0).error,
        u"Error emulating double-click via extension: gone"_s);
}

// Operations of a view on an item

TEST(CustomItemView, ClickItemClicksTheItemThatItFinds)
{
    FakePage page;
    page.answer(item);
    page.answer(u"true"_s);

    const FunctionCallResult<void> clicked = acme<HTML_CustomItemView>(page).clickItem("Inbox", ShiftKey, 4);

    EXPECT_EQ(clicked.error, QString());
    EXPECT_EQ(page.scripts(),
        (QStringList{identifying(u"AcmeExtension.findItem(el,'Inbox');"_s),
            u"AcmeExtension.supportsClickItem(found);"_s,
            u"AcmeExtension.clickItem(found, false, true, false, 0, 0, 4);"_s}));
}

TEST(CustomItemView, ClickItemByCellClicksTheItemThatItFinds)
{
    FakePage page;
    page.answer(item);
    page.answer(u"false"_s);

    const FunctionCallResult<void> clicked
        = acme<HTML_CustomItemView>(page).clickItem(4, 5, int(ShiftKey), 1);

    EXPECT_EQ(clicked.error, QString());
    EXPECT_EQ(page.scripts(),
        (QStringList{identifying(u"AcmeExtension.findItemByRowAndColumn(el, 4, 5);"_s),
            u"AcmeExtension.supportsClickItem(found);"_s, plainClick}));
}

TEST(CustomItemView, DoubleClickItemDoubleClicksTheItemThatItFinds)
{
    FakePage page;
    page.answer(item);
    page.answer(u"true"_s);

    const FunctionCallResult<void> clicked
        = acme<HTML_CustomItemView>(page).doubleClickItem("Inbox", ControlKey);

    EXPECT_EQ(clicked.error, QString());
    EXPECT_EQ(page.scripts(),
        (QStringList{identifying(u"AcmeExtension.findItem(el,'Inbox');"_s),
            u"AcmeExtension.supportsDoubleClickItem(found);"_s,
            u"AcmeExtension.doubleClickItem(found, true, false, false, 0, 0);"_s}));
}

TEST(CustomItemView, ClickHandleClicksTheHandleOfTheItem)
{
    FakePage page;
    page.answer(item);
    page.answerObject(u"SPAN"_s, u"handle"_s);

    const FunctionCallResult<void> clicked = acme<HTML_CustomItemView>(page).clickHandle("Inbox");

    EXPECT_EQ(clicked.error, QString());
    EXPECT_EQ(page.scripts(),
        (QStringList{identifying(u"AcmeExtension.findItem(el,'Inbox');"_s),
            identifying(u"AcmeExtension.itemHandle(found);"_s),
            u"setTimeout(function(e){__ostrel__click(handle, false, false, false, 0, 0, 1);}, 100);"_s}));
}

TEST(CustomItemView, ClickHandleOfAnItemWithoutOneFails)
{
    FakePage page;
    page.answer(item);
    page.answer(nothing);

    EXPECT_EQ(acme<HTML_CustomItemView>(page).clickHandle("Inbox").error,
        u"Item with text 'Inbox' has no handle."_s);
}

TEST(CustomItemView, StatesAreThoseOfTheItem)
{
    FakePage page;
    const auto list = acme<HTML_CustomItemView>(page);

    page.answer(item);
    page.answer(u"1"_s);
    EXPECT_EQ(outcomeOf(list.isSelected("Inbox")).value, u"true"_s);
    page.answer(item);
    page.answer(u"false"_s);
    EXPECT_EQ(outcomeOf(list.isOpen("Inbox")).value, u"false"_s);
    page.answer(item);
    page.fail(u"gone"_s);
    EXPECT_EQ(list.isOpen("Inbox").error, u"Error fetching open state: gone"_s);

    const QString find = identifying(u"AcmeExtension.findItem(el,'Inbox');"_s);
    EXPECT_EQ(page.scripts(),
        (QStringList{find, u"AcmeExtension.isItemSelected(found);"_s, find,
            u"AcmeExtension.isItemOpen(found);"_s, find, u"AcmeExtension.isItemOpen(found);"_s}));
}

namespace {

struct MissingCase
{
    const char *name;
    std::function<Outcome(FakePage &)> call;
    QString notFound;
    QString failed;
};

void PrintTo(const MissingCase &row, std::ostream *stream)
{
    *stream << row.name;
}

class MissingItem : public testing::TestWithParam<MissingCase>
{
};

constexpr FunctionCallResult<void> (HTML_CustomItemView::*clickByText)(const char *, int, int)
    = &HTML_CustomItemView::clickItem;
constexpr FunctionCallResult<void> (HTML_CustomItemView::*clickByCell)(int, int, int, int)
    = &HTML_CustomItemView::clickItem;

const QString noSpam = u"No item found with text 'Spam'"_s;
const QString failedSpam = u"Error occurred while finding item with text 'Spam': gone"_s;

} // namespace

TEST_P(MissingItem, IsAnErrorOfTheOperation)
{
    FakePage page;
    page.answer(nothing);

    const Outcome outcome = GetParam().call(page);

    EXPECT_EQ(outcome.error, GetParam().notFound);
    EXPECT_EQ(page.scripts().size(), 1);
}

TEST_P(MissingItem, AFailingLookupIsToldAsItIs)
{
    FakePage page;
    page.fail(u"gone"_s);

    const Outcome outcome = GetParam().call(page);

    EXPECT_EQ(outcome.error, GetParam().failed);
    EXPECT_EQ(page.scripts().size(), 1);
}

INSTANTIATE_TEST_SUITE_P(Views, MissingItem,
    testing::ValuesIn(QList<MissingCase>{
        {"click item", on<clickByText>("Spam", 0, 1), noSpam, failedSpam},
        {"click item by cell", on<clickByCell>(4, 5, 0, 1), u"No item found with row '4' and column '5'"_s,
            u"Error occurred while finding item with row '4' and column '5': gone"_s},
        {"double click item", on<&HTML_CustomItemView::doubleClickItem>("Spam", 0), noSpam, failedSpam},
        {"click handle", on<&HTML_CustomItemView::clickHandle>("Spam"), noSpam, failedSpam},
        {"is selected", on<&HTML_CustomItemView::isSelected>("Spam"), noSpam, failedSpam},
        {"is open", on<&HTML_CustomItemView::isOpen>("Spam"), noSpam, failedSpam},
    }),
    rowName<MissingCase>);

TEST(CustomItemView, AFailingHandleIsToldAsItIs)
{
    FakePage page;
    page.answer(item);
    page.fail(u"gone"_s);

    EXPECT_EQ(acme<HTML_CustomItemView>(page).clickHandle("Inbox").error, u"Error fetching handle: gone"_s);
}

TEST(CustomItemView, CheckTreeItemGoesStraightToTheExtensionUnescaped)
{
    FakePage page;
    TraceCapture traces(u"WebObject"_s);

    EXPECT_EQ(acme<HTML_CustomItemView>(page).checkTreeItem("it's").error, QString());

    EXPECT_EQ(page.scripts(), QStringList{u"AcmeExtension.checkTreeItem(el, 'it's');"_s});
    EXPECT_EQ(traces.lines(), QStringList());
}

TEST(CustomItemView, CheckTreeItemIsNoErrorWhereItIsMissing)
{
    FakePage page;
    page.fail(u"is not a function"_s);
    TraceCapture traces(u"WebObject"_s);

    EXPECT_EQ(acme<HTML_CustomItemView>(page).checkTreeItem("Inbox").error, QString());

    EXPECT_EQ(traces.lines(),
        QStringList{u"Ignoring error from optional API Extension.checkTreeItem: is not a function"_s});
}

// What a script engine makes of the composed script

TEST(CustomItemView, FindItemTakesEveryTextOfOneLine)
{
    for (const HostileText &hostile : hostileTexts()) {
        if (hostile.hasLineBreak())
            continue;
        FakePage page;
        PageScript engine({u"AcmeExtension.findItem"_s});

        on<findByText>(hostile.text.toUtf8().constData())(page);
        engine.run(page.scripts().constLast());

        EXPECT_EQ(engine.arguments(), QVariantList{hostile.text}) << hostile.name;
    }
}

TEST(CustomItemView, NumRowsOfAnExtensionThatThrowsIsMinusOne)
{
    FakePage page;
    PageScript engine;
    engine.run(u"var AcmeExtension = { numRows: function() { throw 'no rows'; } };"_s);
    const auto list = acme<HTML_CustomItemView>(page);

    (void)list.numRows();
    const QJSValue answer = engine.run(page.scripts().constLast());
    page.answer(answer.toString());
    const FunctionCallResult<int> rows = list.numRows();

    EXPECT_EQ(rows.error, QString());
    EXPECT_EQ(rows.value, -1);
}

TEST(CustomItem, TextFallsBackToThatOfThePage)
{
    FakePage page;
    PageScript engine;
    engine.run(u"var AcmeExtension = {}; el.innerText = 'shown';"_s);

    (void)acme<HTML_CustomItem>(page).text();
    const QString withoutFunction = engine.run(page.scripts().constLast()).toString();
    engine.run(u"AcmeExtension.itemText = function(item) { return 'told'; };"_s);
    const QString withFunction = engine.run(page.scripts().constLast()).toString();

    EXPECT_EQ(withoutFunction, u"shown"_s);
    EXPECT_EQ(withFunction, u"told"_s);
}

// What scripts see

namespace {

class ItemViewScript : public WebClasses
{
protected:
    SharedPtr<Object> script(HTML_Object *wrapper) { return wrapObject(wrapper); }

    FakePage page;
};

} // namespace

TEST_P(EachWebClass, HasItsMembersInOrder)
{
    EXPECT_EQ(classText(QString::fromLatin1(GetParam().name)), QString::fromLatin1(GetParam().text));
}

INSTANTIATE_TEST_SUITE_P(ItemViews, EachWebClass,
    testing::ValuesIn(std::initializer_list<ClassCase>{
        {"HTML_CustomItem", R"(base HTML_Object
realType String read-only
column int read-only
text String read-only
selected bool
numRows int read-only
open bool
row int read-only
isOpen() bool
isSelected() bool
setOpen(bool open) void
setSelected(bool selected) void
text() String
itemHandle() HTML_Object
realType() String
childItem() HTML_CustomItem
childItem(int column) HTML_CustomItem
parentItem() HTML_CustomItem
parentItem(int column) HTML_CustomItem
nextSibling() HTML_CustomItem
nextSibling(int column) HTML_CustomItem
itemView() HTML_CustomItemView
row() int
column() int
findItem(int row, int column) HTML_CustomItem
numRows() int)"},
        {"HTML_CustomItemView", R"(base HTML_FormElement
numRows int read-only
numColumns int read-only
realType String read-only
clickHandle(String item) void
clickItem(String item, int m) void
clickItem(String item, int m, int button) void
clickItem(int row, int col, int m) void
clickItem(int row, int col, int m, int button) void
doubleClickItem(String item) void
doubleClickItem(String item, int m) void
checkTreeItem(String item) void
hasItem(String item) bool
isSelected(String item) bool
isOpen(String item) bool
findItem(String text) HTML_CustomItem
findItem(int row, int column) HTML_CustomItem
childItem() HTML_CustomItem
childItem(int column) HTML_CustomItem
columnCaption(int column) String
numColumns() int
numRows() int
realType() String)"},
    }),
    className);

TEST_F(ItemViewScript, WithoutAColumnTheExtensionGetsMinusOne)
{
    const SharedPtr<Object> cell = script(new HTML_CustomItem({}, u"el"_s, u"Acme"_s, &page));
    const SharedPtr<Object> list = script(new HTML_CustomItemView({}, u"el"_s, u"Acme"_s, &page));

    for (int i = 0; i < 4; ++i)
        page.answer(nothing);
    for (const QString &method : {u"childItem"_s, u"parentItem"_s, u"nextSibling"_s})
        EXPECT_EQ(callMethod(cell, method).error, QString());
    EXPECT_EQ(callMethod(list, u"childItem"_s).error, QString());

    EXPECT_EQ(page.scripts(),
        (QStringList{identifying(u"AcmeExtension.childItem(el,-1);"_s),
            identifying(u"AcmeExtension.parentItem(el,-1);"_s),
            identifying(u"AcmeExtension.nextSibling(el,-1);"_s),
            identifying(u"AcmeExtension.childItem(el,-1);"_s)}));
}

TEST_F(ItemViewScript, ClicksWithoutAButtonUseTheLeftOne)
{
    const SharedPtr<Object> list = script(new HTML_CustomItemView({}, u"el"_s, u"Acme"_s, &page));
    for (int i = 0; i < 4; ++i) {
        page.answer(item);
        page.answer(u"true"_s);
        page.answer(u"undefined"_s);
    }

    EXPECT_EQ(callMethod(list, u"clickItem"_s, u"Inbox"_s, 2).error, QString());
    EXPECT_EQ(callMethod(list, u"clickItem"_s, 4, 5, 2).error, QString());
    EXPECT_EQ(callMethod(list, u"clickItem"_s, 4, 5, 2, 4).error, QString());
    EXPECT_EQ(callMethod(list, u"doubleClickItem"_s, u"Inbox"_s).error, QString());

    const QStringList scripts = page.scripts();
    EXPECT_EQ(scripts.value(2), u"AcmeExtension.clickItem(found, true, false, false, 0, 0, 1);"_s);
    EXPECT_EQ(scripts.value(5), u"AcmeExtension.clickItem(found, true, false, false, 0, 0, 1);"_s);
    EXPECT_EQ(scripts.value(8), u"AcmeExtension.clickItem(found, true, false, false, 0, 0, 4);"_s);
    EXPECT_EQ(scripts.value(11), u"AcmeExtension.doubleClickItem(found, false, false, false, 0, 0);"_s);
}

TEST_F(ItemViewScript, PropertiesOfAnItemAreWrittenThroughTheExtension)
{
    const SharedPtr<Object> cell = script(new HTML_CustomItem({}, u"el"_s, u"Acme"_s, &page));

    EXPECT_EQ(writeProperty(cell, u"open"_s, true), QString());
    EXPECT_EQ(writeProperty(cell, u"selected"_s, false), QString());
    EXPECT_EQ(writeProperty(cell, u"text"_s, u"Inbox"_s), u"Cannot set read-only property text."_s);
    EXPECT_EQ(readProperty(cell, u"realType"_s).text(), u"Acme"_s);

    EXPECT_EQ(page.scripts(),
        (QStringList{
            u"AcmeExtension.setItemOpen(el, true);"_s, u"AcmeExtension.setItemSelected(el, false);"_s}));
}
