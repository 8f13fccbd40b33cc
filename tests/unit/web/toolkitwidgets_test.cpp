// Tests of the widgets of the Backbase, Dojo, GWC and qooxdoo toolkits.
#include "wrappers/web/objectfactory.h"
#include "wrappers/web/toolkits/backbase.h"
#include "wrappers/web/toolkits/dojo.h"
#include "wrappers/web/toolkits/gwc.h"
#include "wrappers/web/toolkits/qooxdoo.h"

#include "support/classcase.h"
#include "support/fakepage.h"
#include "support/hostiletexts.h"
#include "support/operationcase.h"
#include "support/pagescript.h"
#include "support/printers.h"
#include "support/scriptcalls.h"

#include <gtest/gtest.h>

#include <QElapsedTimer>

using namespace Ostrel;
using namespace Ostrel::Test;
using namespace Ostrel::WebWrapper;
using namespace Qt::StringLiterals;

namespace {

const QString done = u"done"_s;

/// A wait of 200 ms may end a twentieth early.
constexpr int shortestWait = 190;

/// What the operation does with the wrapper of the element "el".
template <typename Wrapper, typename Operation>
std::function<Outcome(FakePage &)> with(Operation operation)
{
    return [operation](FakePage &page) {
        if constexpr (std::derived_from<Wrapper, HTML_Select>) {
            Wrapper wrapper({}, u"el"_s, false, &page);
            return outcomeOf(operation(wrapper));
        } else {
            Wrapper wrapper({}, u"el"_s, &page);
            return outcomeOf(operation(wrapper));
        }
    };
}

class ToolkitOperation : public Operations
{
};

/// Operations that click, and so take 200 ms each: a page that fails gets the same script as any other.
class ToolkitClick : public testing::TestWithParam<OperationCase>
{
};

} // namespace

TEST_P(ToolkitOperation, SendsItsScriptAndReadsTheAnswer)
{
    sendsItsScriptAndReadsTheAnswer();
}

TEST_P(ToolkitOperation, SaysWhatFailed)
{
    saysWhatFailed();
}

TEST_P(ToolkitClick, SendsItsScriptAndSaysWhatFailed)
{
    FakePage page;
    page.fail(u"gone"_s);

    const Outcome outcome = GetParam().call(page);

    EXPECT_EQ(page.scripts(), QStringList{GetParam().script});
    EXPECT_EQ(outcome.error, GetParam().error);
}

// Backbase

INSTANTIATE_TEST_SUITE_P(BackBase, ToolkitOperation,
    testing::ValuesIn(QList<OperationCase>{
        {"start of a spinner", with<HTML_BackBaseSpinner>([](auto &spinner) { return spinner.startValue(); }),
            u"window.top.__ostrel.getPropertyValue( el, 'b:start');"_s, u"1"_s, u"1"_s,
            u"Error while obtaining property 'b:start': gone"_s},
        {"end of a spinner", with<HTML_BackBaseSpinner>([](auto &spinner) { return spinner.endValue(); }),
            u"window.top.__ostrel.getPropertyValue( el, 'b:end');"_s, u"9"_s, u"9"_s,
            u"Error while obtaining property 'b:end': gone"_s},
        {"step of a spinner", with<HTML_BackBaseSpinner>([](auto &spinner) { return spinner.step(); }),
            u"window.top.__ostrel.getPropertyValue( el, 'b:step');"_s, u"2"_s, u"2"_s,
            u"Error while obtaining property 'b:step': gone"_s},
        {"looping spinner", with<HTML_BackBaseSpinner>([](auto &spinner) { return spinner.isLooping(); }),
            u"window.top.__ostrel.getPropertyValue( el, 'b:loop');"_s, u"true"_s, u"true"_s,
            u"Error while obtaining property 'b:loop': gone"_s},
        {"spinner without a loop",
            with<HTML_BackBaseSpinner>([](auto &spinner) { return spinner.isLooping(); }),
            u"window.top.__ostrel.getPropertyValue( el, 'b:loop');"_s, u"True"_s, u"false"_s,
            u"Error while obtaining property 'b:loop': gone"_s},
        {"value of a spinner", with<HTML_BackBaseSpinner>([](auto &spinner) { return spinner.value(); }),
            u"__ostrel__backbase__getSpinnerValue(el);"_s, u"-5"_s, u"-5"_s,
            u"Failed to fetch value: gone"_s},
        {"set value of a spinner",
            with<HTML_BackBaseSpinner>([](auto &spinner) { return spinner.setValue(-5); }),
            u"__ostrel__backbase__setSpinnerValue(el, -5);"_s, u"undefined"_s, done,
            u"Failed to set value -5: gone"_s},
        {"focus of a spinner",
            with<HTML_BackBaseSpinner>([](HTML_FormElement &field) { return field.focus(); }),
            u"var c = __ostrel__backbase__inputElementOfSpinner(el);if ( c && c.focus )    c.focus();"_s,
            u"undefined"_s, done, u"Failed to focus spinner: gone"_s},
        {"selected index", with<HTML_BackBaseComboBox>([](HTML_Select &box) { return box.selectedIndex(); }),
            u"__ostrel__backbase__getSelectedComboBoxIndex(el);"_s, u"3"_s, u"3"_s,
            u"Error fetching selected index: gone"_s},
        {"set selected index",
            with<HTML_BackBaseComboBox>([](HTML_Select &box) { return box.setSelectedIndex(3); }),
            u"__ostrel__backbase__selectComboBoxIndex(el, 3);"_s, u"undefined"_s, done,
            u"Error setting selected index to 3: gone"_s},
        {"selected option",
            with<HTML_BackBaseComboBox>([](HTML_Select &box) { return box.selectedOption(); }),
            u"__ostrel__backbase__getSelectedComboBoxValue(el);"_s, u" Red "_s, u" Red "_s,
            u"Error fetching selected option: gone"_s},
        {"set selected option", with<HTML_BackBaseComboBox>([](HTML_Select &box) {
             return box.setSelectedOption(u"it's \\ %1"_s);
         }),
            u"__ostrel__backbase__selectComboBoxValue(el, 'it\\'s \\\\ %1');"_s, u"undefined"_s, done,
            u"Failed to select option text 'it's \\ %1': gone"_s},
        {"number of options", with<HTML_BackBaseComboBox>([](auto &box) { return box.numOptions(); }),
            u"el.aIndexElms.length;"_s, u"4"_s, u"4"_s, u"Error fetching number of option: gone"_s},
        {"option at", with<HTML_BackBaseComboBox>([](auto &box) { return box.optionAt(2); }),
            u"el.aIndexElms[2].innerText;"_s, u"Blue"_s, u"Blue"_s,
            u"Error fetching option text for '2': gone"_s},
        {"rows of a list view", with<HTML_BackBaseListView>([](auto &view) { return view.numRows(); }),
            u"__ostrel__backbase__lv__numRows(el);"_s, u"12"_s, u"12"_s,
            u"Error fetching number of rows: gone"_s},
        {"columns of a list view", with<HTML_BackBaseListView>([](auto &view) { return view.numColumns(); }),
            u"__ostrel__backbase__lv__numColumns(el);"_s, u"3"_s, u"3"_s,
            u"Error fetching number of columns: gone"_s},
        {"caption of a list view", with<HTML_BackBaseListView>([](auto &view) { return view.caption(1); }),
            u"__ostrel__backbase__lv__caption(el, 1);"_s, u"Price"_s, u"Price"_s,
            u"Error fetching caption for column 1: gone"_s},
        {"item text of a list view",
            with<HTML_BackBaseListView>([](auto &view) { return view.itemText(4, 1); }),
            u"__ostrel__backbase__lv__itemText(el, 4, 1);"_s, u"3.50"_s, u"3.50"_s,
            u"Error fetching text for item at row 4, column 1: gone"_s},
        {"click item of a list view",
            with<HTML_BackBaseListView>([](auto &view) { return view.clickItem(u"it's"_s, ControlKey); }),
            u"__ostrel__backbase__lv__clickItem(el, 'it's');"_s, u"undefined"_s, done,
            u"Error clicking item 'it's': gone"_s},
        {"has item of a list view",
            with<HTML_BackBaseListView>([](auto &view) { return view.hasItem(u"Ada"_s); }),
            u"__ostrel__backbase__lv__getItem(el, 'Ada') != undefined;"_s, u"true"_s, u"true"_s,
            u"Error checking for item 'Ada': gone"_s},
        {"item of a list view selected",
            with<HTML_BackBaseListView>([](auto &view) { return view.isSelected(u"Ada"_s); }),
            u"__ostrel__backbase__lv__isSelected(el, 'Ada');"_s, u"false"_s, u"false"_s,
            u"Error checking if item 'Ada' is selected: gone"_s},
    }),
    rowName<OperationCase>);

TEST(BackBase, SaysWhichAnswerIsNoNumber)
{
    FakePage page;
    for (int i = 0; i < 8; ++i)
        page.answer(u"many"_s);
    const HTML_BackBaseSpinner spinner({}, u"el"_s, &page);
    const HTML_BackBaseComboBox box({}, u"el"_s, false, &page);
    const HTML_BackBaseListView view({}, u"el"_s, &page);

    EXPECT_EQ(spinner.startValue().error, u"Could not convert obtained start 'many' to a number."_s);
    EXPECT_EQ(spinner.endValue().error, u"Could not convert obtained end 'many' to a number."_s);
    EXPECT_EQ(spinner.step().error, u"Could not convert obtained step 'many' to a number."_s);
    EXPECT_EQ(spinner.value().error, u"Could not convert obtained value 'many' to a number."_s);
    EXPECT_EQ(box.selectedIndex().error, u"Could not convert selected index value 'many' to integer."_s);
    EXPECT_EQ(box.numOptions().error, u"Could not convert number of options value 'many' to integer."_s);
    EXPECT_EQ(view.numRows().error, u"String value 'many' retrieved is not a number."_s);
    EXPECT_EQ(view.numColumns().error, u"String value 'many' retrieved is not a number."_s);
}

TEST(BackBase, SelectingAnOptionBearsAPageThatThrows)
{
    FakePage page;
    page.failWith(u"handler failed"_s, false, true);
    page.failWith(u"gone"_s, true, false);
    HTML_BackBaseComboBox box({}, u"el"_s, false, &page);

    EXPECT_EQ(box.setSelectedOption(u"Red"_s).error, QString());
    EXPECT_EQ(box.setSelectedOption(u"Red"_s).error, u"Failed to select option text 'Red': gone"_s);
}

TEST(BackBase, OptionTextsReachThePageAsTheyAre)
{
    for (const HostileText &hostile : hostileTexts()) {
        if (hostile.hasLineBreak() || hostile.text.contains(QChar::LineSeparator))
            continue; // the texts of options have none
        FakePage page;
        HTML_BackBaseComboBox box({}, u"el"_s, false, &page);
        PageScript engine({u"__ostrel__backbase__selectComboBoxValue"_s});

        (void)box.setSelectedOption(hostile.text);
        engine.run(page.scripts().constFirst());

        EXPECT_EQ(engine.error(), QString()) << hostile.name;
        EXPECT_EQ(engine.arguments(), QVariantList{hostile.text}) << hostile.name;
    }
}

// Dojo

INSTANTIATE_TEST_SUITE_P(Dojo, ToolkitOperation,
    testing::ValuesIn(QList<OperationCase>{
        {"has item of a tree", with<HTML_DojoTree>([](auto &tree) { return tree.hasItem(u"Rome"_s); }),
            u"var __ostrel__node = __ostrel__dojo__findTreeItem(el, 'Rome');!!__ostrel__node;"_s, u"true"_s,
            u"true"_s, u"Error checking if item 'Rome' exists: gone"_s},
        {"has no such item of a tree",
            with<HTML_DojoTree>([](auto &tree) { return tree.hasItem(u"Rome"_s); }),
            u"var __ostrel__node = __ostrel__dojo__findTreeItem(el, 'Rome');!!__ostrel__node;"_s, u"false"_s,
            u"false"_s, u"Error checking if item 'Rome' exists: gone"_s},
    }),
    rowName<OperationCase>);

INSTANTIATE_TEST_SUITE_P(Dojo, ToolkitClick,
    testing::ValuesIn(QList<OperationCase>{
        {"item of a tree", with<HTML_DojoTree>([](auto &tree) { return tree.clickItem(u"Rome"_s, AltKey); }),
            u"var __ostrel__node = __ostrel__dojo__findTreeItem(el, 'Rome');if (__ostrel__node) "
            "{setTimeout(function(e){__ostrel__click(__ostrel__node, false, false, true, 0, 0, 1);}, 100);}"_s,
            {}, {}, u"Error clicking item 'Rome': gone"_s},
        {"item of a tree twice",
            with<HTML_DojoTree>([](auto &tree) { return tree.doubleClickItem(u"Rome"_s, ShiftKey); }),
            u"var __ostrel__node = __ostrel__dojo__findTreeItem(el, 'Rome');if (__ostrel__node) "
            "{setTimeout(function(e){__ostrel__dblclick(__ostrel__node, false, true, false, 0, 0, 1);}, 100);}"_s,
            {}, {}, u"Error double clicking item 'Rome': gone"_s},
        {"handle of a tree", with<HTML_DojoTree>([](auto &tree) { return tree.clickHandle(u"Rome"_s); }),
            u"var __ostrel__node = __ostrel__dojo__findTreeItem(el, 'Rome');if (__ostrel__node) "
            "{var div = "
            "__ostrel__node.parentNode.previousSibling;setTimeout(function(e){__ostrel__click(div, "
            "false, false, false, 0, 0, 1);}, 100);}"_s,
            {}, {}, u"Error clicking handle of item 'Rome': gone"_s},
        {"item of a split pane",
            with<HTML_DojoSplitPane>([](auto &pane) { return pane.clickItem(u"Mail"_s, ControlShift); }),
            u"var __ostrel__node = __ostrel__dojo__findSplitPaneItem(el, 'Mail');if (__ostrel__node) "
            "{setTimeout(function(e){__ostrel__click(__ostrel__node, true, true, false, 0, 0, 1);}, 100);}"_s,
            {}, {}, u"Error while clicking on item 'Mail' with modifier '6': gone"_s},
    }),
    rowName<OperationCase>);

TEST(DojoTree, IsNeverAskedForStates)
{
    FakePage page;
    const HTML_DojoTree tree({}, u"el"_s, &page);

    const FunctionCallResult<bool> open = tree.isOpen(u"Rome"_s);
    const FunctionCallResult<bool> selected = tree.isSelected(u"Rome"_s);

    EXPECT_EQ(open.error, QString());
    EXPECT_FALSE(open.value);
    EXPECT_EQ(selected.error, QString());
    EXPECT_FALSE(selected.value);
    EXPECT_EQ(page.scripts(), QStringList());
}

TEST(DojoSplitPane, ClickOnNoItemIsASuccessThatWaits)
{
    FakePage page;
    HTML_DojoSplitPane pane({}, u"el"_s, &page);
    QElapsedTimer timer;
    timer.start();

    const FunctionCallResult<void> clicked = pane.clickItem(u"Mail"_s, 0);

    EXPECT_EQ(clicked.error, QString());
    EXPECT_GE(timer.elapsed(), shortestWait);
}

// GWC

INSTANTIATE_TEST_SUITE_P(Gwc, ToolkitOperation,
    testing::ValuesIn(QList<OperationCase>{
        {"item of a form field box sends no modifier",
            with<HTML_GWCFormFieldBox>([](auto &box) { return box.clickItem(u"Ada"_s, ControlKey); }),
            u"__ostrel__gwc__ffb__clickItem(el, 'Ada');"_s, u"undefined"_s, done,
            u"Error while clicking on item 'Ada': gone"_s},
        {"item of a table sends no modifier",
            with<HTML_GWCTable>([](auto &table) { return table.clickItem(u"it's"_s, ControlKey); }),
            u"__ostrel__gwc__tbl__clickItem(el, 'it's');"_s, u"undefined"_s, done,
            u"Error while clicking on item 'it's': gone"_s},
    }),
    rowName<OperationCase>);

// qooxdoo

INSTANTIATE_TEST_SUITE_P(Qooxdoo, ToolkitOperation,
    testing::ValuesIn(QList<OperationCase>{
        {"class name", with<HTML_QxWidget>([](auto &widget) { return widget.qxClassName(); }),
            u"window.top.__ostrel.getPropertyValue( el, 'classname');"_s, u"qx.ui.Button"_s,
            u"qx.ui.Button"_s, u"Error while obtaining property 'classname': gone"_s},
        {"label", with<HTML_QxWidget>([](auto &widget) { return widget.qxLabel(); }), u"el.getLabel();"_s,
            u"Save"_s, u"Save"_s, u"Error invoking function 'getLabel': gone"_s},
        {"caption", with<HTML_QxWidget>([](auto &widget) { return widget.qxCaption(); }),
            u"el.getCaption();"_s, u"Mail"_s, u"Mail"_s, u"Error invoking function 'getCaption': gone"_s},
        {"name", with<HTML_QxWidget>([](auto &widget) { return widget.qxName(); }), u"el.getName();"_s,
            u"save"_s, u"save"_s, u"Error invoking function 'getName': gone"_s},
        {"selected", with<HTML_QxWidget>([](auto &widget) { return widget.qxSelected(); }),
            u"el.getSelected();"_s, u"True"_s, u"true"_s, u"Error invoking function 'getSelected': gone"_s},
        {"checked", with<HTML_QxWidget>([](auto &widget) { return widget.qxChecked(); }),
            u"el.getChecked();"_s, u"false"_s, u"false"_s, u"Error invoking function 'getChecked': gone"_s},
        {"set selected", with<HTML_QxWidget>([](auto &widget) { return widget.qxSetSelected(true); }),
            u"el.setSelected(true);"_s, u"undefined"_s, done,
            u"Error invoking function 'setSelected(true)': gone"_s},
        {"set not checked", with<HTML_QxWidget>([](auto &widget) { return widget.qxSetChecked(false); }),
            u"el.setChecked(false);"_s, u"undefined"_s, done,
            u"Error invoking function 'setChecked(false)': gone"_s},
        {"number of children", with<HTML_QxWidget>([](auto &widget) { return widget.qxChildrenLength(); }),
            u"el.getChildrenLength();"_s, u"4"_s, u"4"_s,
            u"Error invoking function 'getChildrenLength': gone"_s},
        {"child", with<HTML_QxWidget>([](auto &widget) { return widget.qxChild(2); }),
            identifying(u"el.getChildren()[2];"_s), foundAnswer(u"qx_widget"_s), u"HTML_QxWidget found"_s,
            u"Error getting qxChild 2: gone"_s},
        {"child of another class", with<HTML_QxWidget>([](auto &widget) { return widget.qxChild(2); }),
            identifying(u"el.getChildren()[2];"_s), foundAnswer(u"qx_widget_container"_s), u"nothing"_s,
            u"Error getting qxChild 2: gone"_s},
        {"parent", with<HTML_QxWidget>([](auto &widget) { return widget.qxParent(); }),
            identifying(u"el.getParent();"_s), foundAnswer(u"qx_widget"_s), u"HTML_QxWidget found"_s,
            u"Error getting qxParent: gone"_s},
        {"no parent", with<HTML_QxWidget>([](auto &widget) { return widget.qxParent(); }),
            identifying(u"el.getParent();"_s), nothingAnswer(), u"nothing"_s,
            u"Error getting qxParent: gone"_s},
        {"element", with<HTML_QxWidget>([](auto &widget) { return widget.qxElement(); }),
            identifying(u"el.getElement();"_s), foundAnswer(u"qx_widget_container"_s),
            u"HTML_QxWidgetElement found"_s, u"Error getting qxElement: gone"_s},
        {"element of another class", with<HTML_QxWidget>([](auto &widget) { return widget.qxElement(); }),
            identifying(u"el.getElement();"_s), foundAnswer(u"DIV"_s), u"nothing"_s,
            u"Error getting qxElement: gone"_s},
        {"widget of an element", with<HTML_QxWidgetElement>([](auto &element) { return element.qxWidget(); }),
            identifying(u"el.qx_Widget;"_s), foundAnswer(u"qx_widget"_s), u"HTML_QxWidget found"_s,
            u"Error getting qxWidget: gone"_s},
    }),
    rowName<OperationCase>);

TEST(QxWidget, ChildrenStayInThePage)
{
    FakePage page;
    const HTML_QxWidget widget({}, u"el"_s, &page);

    const Outcome children = outcomeOf(widget.qxChildren());

    EXPECT_EQ(children.value, u"HTML_Array el.getChildren()"_s);
    EXPECT_EQ(page.scripts(), QStringList());
}

TEST(QxWidget, SaysWhichAnswerIsNoNumber)
{
    FakePage page;
    page.answer(u"many"_s);
    HTML_QxWidget widget({}, u"el"_s, &page);

    EXPECT_EQ(widget.qxChildrenLength().error, u"Error: cannot convert 'many' to length number"_s);
}

// What scripts see

TEST_F(WebClasses, OptionOfAComboBoxIsATextAndOneOfASelectAnObject)
{
    FakePage page;
    page.answer(u"Blue"_s);
    page.answer(u"3"_s);
    page.answerObject(u"option"_s, u"found"_s);
    const SharedPtr<Object> box = wrapObject(new HTML_BackBaseComboBox({}, u"el"_s, false, &page));
    const SharedPtr<Object> select = wrapObject(new HTML_Select({}, u"el"_s, false, &page));

    const ScriptAnswer text = callMethod(box, u"optionAt"_s, 2);
    const ScriptAnswer option = callMethod(select, u"optionAt"_s, 2);

    EXPECT_EQ(text.error, QString());
    EXPECT_EQ(text.value->objectClass()->name(), u"String"_s);
    EXPECT_EQ(text.text(), u"Blue"_s);
    EXPECT_EQ(option.error, QString());
    EXPECT_EQ(option.value->objectClass()->name(), u"HTML_Option"_s);
}

TEST_F(WebClasses, ComboBoxInheritsTheMembersOfSelects)
{
    FakePage page;
    page.answer(u"1"_s);
    const SharedPtr<Object> box = wrapObject(new HTML_BackBaseComboBox({}, u"el"_s, false, &page));

    EXPECT_EQ(readProperty(box, u"selectedIndex"_s).text(), u"1"_s);
    EXPECT_EQ(writeProperty(box, u"selectedOption"_s, u"Red"_s), QString());
    EXPECT_EQ(page.scripts(),
        (QStringList{u"__ostrel__backbase__getSelectedComboBoxIndex(el);"_s,
            u"__ostrel__backbase__selectComboBoxValue(el, 'Red');"_s}));
}

TEST_F(WebClasses, ValueOfASpinnerThatIsNoNumberIsAScriptError)
{
    FakePage page;
    page.answer(u"many"_s);
    const SharedPtr<Object> spinner = wrapObject(new HTML_BackBaseSpinner({}, u"el"_s, &page));

    EXPECT_EQ(
        readProperty(spinner, u"value"_s).error, u"Could not convert obtained value 'many' to a number."_s);
    EXPECT_EQ(writeProperty(spinner, u"value"_s, 4), QString());
    EXPECT_EQ(writeProperty(spinner, u"step"_s, 4), u"Cannot set read-only property step."_s);
}

TEST_F(WebClasses, WidgetsAreWrittenThroughTheirSetters)
{
    FakePage page;
    const SharedPtr<Object> widget = wrapObject(new HTML_QxWidget({}, u"el"_s, &page));

    EXPECT_EQ(writeProperty(widget, u"qxSelected"_s, true), QString());
    EXPECT_EQ(writeProperty(widget, u"qxChecked"_s, false), QString());
    EXPECT_EQ(page.scripts(), (QStringList{u"el.setSelected(true);"_s, u"el.setChecked(false);"_s}));
}
