#include "wrappers/web/toolkits/backbase.h"

#include "wrappers/web/controls/extensioncall.h"

namespace Ostrel::WebWrapper {

// Combo boxes

FunctionCallResult<void> HTML_BackBaseComboBox::setSelectedIndex(int index)
{
    return run(script(u"__ostrel__backbase__selectComboBoxIndex(%1, %2);", ref(), index),
        u"Error setting selected index to %1: %2", QString::number(index));
}

FunctionCallResult<int> HTML_BackBaseComboBox::selectedIndex() const
{
    return toNumber(evaluate(script(u"__ostrel__backbase__getSelectedComboBoxIndex(%1);", ref()),
                        u"Error fetching selected index: %1"),
        u"Could not convert selected index value '%1' to integer.");
}

FunctionCallResult<void> HTML_BackBaseComboBox::setSelectedOption(const QString &text)
{
    const HTMLComponent::EvalResult answer
        = evaluateJS(script(u"__ostrel__backbase__selectComboBoxValue(%1, '%2');", ref(), QuotedLine{text}));
    // Only this flag counts here.
    if (answer.failed)
        return Failure(message(u"Failed to select option text '%1': %2", text, answer.result));
    return {};
}

FunctionCallResult<QString> HTML_BackBaseComboBox::selectedOption() const
{
    return evaluate(script(u"__ostrel__backbase__getSelectedComboBoxValue(%1);", ref()),
        u"Error fetching selected option: %1");
}

FunctionCallResult<int> HTML_BackBaseComboBox::numOptions() const
{
    return toNumber(evaluate(script(u"%1.aIndexElms.length;", ref()), u"Error fetching number of option: %1"),
        u"Could not convert number of options value '%1' to integer.");
}

FunctionCallResult<QString> HTML_BackBaseComboBox::optionAt(int index) const
{
    return evaluate(script(u"%1.aIndexElms[%2].innerText;", ref(), index),
        u"Error fetching option text for '%1': %2", QString::number(index));
}

// Spinners. The attributes carry a namespace prefix.

FunctionCallResult<void> HTML_BackBaseSpinner::focus()
{
    return run(
        script(u"var c = __ostrel__backbase__inputElementOfSpinner(%1);if ( c && c.focus )    c.focus();",
            ref()),
        u"Failed to focus spinner: %1");
}

FunctionCallResult<int> HTML_BackBaseSpinner::startValue() const
{
    return toNumber(property("b:start"), u"Could not convert obtained start '%1' to a number.");
}

FunctionCallResult<int> HTML_BackBaseSpinner::endValue() const
{
    return toNumber(property("b:end"), u"Could not convert obtained end '%1' to a number.");
}

FunctionCallResult<int> HTML_BackBaseSpinner::step() const
{
    return toNumber(property("b:step"), u"Could not convert obtained step '%1' to a number.");
}

FunctionCallResult<bool> HTML_BackBaseSpinner::isLooping() const
{
    return isTrue(property("b:loop"));
}

FunctionCallResult<int> HTML_BackBaseSpinner::value() const
{
    return toNumber(
        evaluate(script(u"__ostrel__backbase__getSpinnerValue(%1);", ref()), u"Failed to fetch value: %1"),
        u"Could not convert obtained value '%1' to a number.");
}

FunctionCallResult<void> HTML_BackBaseSpinner::setValue(int value)
{
    return run(script(u"__ostrel__backbase__setSpinnerValue(%1, %2);", ref(), value),
        u"Failed to set value %1: %2", QString::number(value));
}

// List views

FunctionCallResult<int> HTML_BackBaseListView::numRows() const
{
    return toNumber(evaluate(script(u"__ostrel__backbase__lv__numRows(%1);", ref()),
                        u"Error fetching number of rows: %1"),
        u"String value '%1' retrieved is not a number.");
}

FunctionCallResult<int> HTML_BackBaseListView::numColumns() const
{
    return toNumber(evaluate(script(u"__ostrel__backbase__lv__numColumns(%1);", ref()),
                        u"Error fetching number of columns: %1"),
        u"String value '%1' retrieved is not a number.");
}

FunctionCallResult<QString> HTML_BackBaseListView::caption(int column) const
{
    return evaluate(script(u"__ostrel__backbase__lv__caption(%1, %2);", ref(), column),
        u"Error fetching caption for column %1: %2", QString::number(column));
}

FunctionCallResult<QString> HTML_BackBaseListView::itemText(int row, int column) const
{
    return evaluate(script(u"__ostrel__backbase__lv__itemText(%1, %2, %3);", ref(), row, column),
        u"Error fetching text for item at row %1, column %2: %3", QString::number(row),
        QString::number(column));
}

FunctionCallResult<void> HTML_BackBaseListView::clickItem(const QString &item, int)
{
    return run(script(u"__ostrel__backbase__lv__clickItem(%1, '%2');", ref(), Expr{item}),
        u"Error clicking item '%1': %2", item);
}

FunctionCallResult<bool> HTML_BackBaseListView::hasItem(const QString &item) const
{
    return isTrue(
        evaluate(script(u"__ostrel__backbase__lv__getItem(%1, '%2') != undefined;", ref(), Expr{item}),
            u"Error checking for item '%1': %2", item));
}

FunctionCallResult<bool> HTML_BackBaseListView::isSelected(const QString &item) const
{
    return isTrue(evaluate(script(u"__ostrel__backbase__lv__isSelected(%1, '%2');", ref(), Expr{item}),
        u"Error checking if item '%1' is selected: %2", item));
}

} // namespace Ostrel::WebWrapper
