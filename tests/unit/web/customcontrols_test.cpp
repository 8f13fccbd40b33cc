// Tests of the controls that a page extension operates.
#include "wrappers/web/controls/customcontrols.h"
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

class CustomControl : public Operations
{
};

} // namespace

// Operations that an extension has to have

TEST_P(CustomControl, SendsItsScriptAndReadsTheAnswer)
{
    sendsItsScriptAndReadsTheAnswer();
}

TEST_P(CustomControl, SaysWhatFailed)
{
    saysWhatFailed();
}

INSTANTIATE_TEST_SUITE_P(Buttons, CustomControl,
    testing::ValuesIn(QList<OperationCase>{
        {"visible", on<&HTML_CustomButtonBase::visible>(), u"AcmeExtension.isVisible(el);"_s, u"true"_s,
            u"true"_s, u"Error determining visibility: gone"_s},
        {"visible of a hidden one", on<&HTML_CustomButtonBase::visible>(), u"AcmeExtension.isVisible(el);"_s,
            u"True"_s, u"false"_s, u"Error determining visibility: gone"_s},
        {"text", on<&HTML_CustomButtonBase::text>(), u"AcmeExtension.getText(el);"_s, u"Save"_s, u"Save"_s,
            u"Error occurred while fetching text: gone"_s},
        {"text between blanks", on<&HTML_CustomButtonBase::text>(), u"AcmeExtension.getText(el);"_s,
            u"\n  Save all \t"_s, u"Save all"_s, u"Error occurred while fetching text: gone"_s},
        {"text of two lines", on<&HTML_CustomButtonBase::text>(), u"AcmeExtension.getText(el);"_s,
            u"Save\r\nall\nnow"_s, u"Saveall\nnow"_s, u"Error occurred while fetching text: gone"_s},
        {"no text", on<&HTML_CustomButtonBase::text>(), u"AcmeExtension.getText(el);"_s, u" undefined "_s,
            u""_s, u"Error occurred while fetching text: gone"_s},
        {"text that speaks of undefined", on<&HTML_CustomButtonBase::text>(), u"AcmeExtension.getText(el);"_s,
            u"undefined value"_s, u"undefined value"_s, u"Error occurred while fetching text: gone"_s},
        {"set text", on<&HTML_CustomButtonBase::setText>(u"it's"_s),
            u"AcmeExtension.setText(el, 'it\\'s' );"_s, u"undefined"_s, done,
            u"Error occurred while setting text 'it's': gone"_s},
        {"disabled", on<&HTML_CustomButtonBase::disabled>(), u"AcmeExtension.isDisabled(el);"_s, u"true"_s,
            u"true"_s, u"Error reading enablement: gone"_s},
        {"set disabled", on<&HTML_CustomButtonBase::setDisabled>(true),
            u"AcmeExtension.setDisabled(el, 'true' );"_s, u"undefined"_s, done,
            u"Error changing enablement to 'true': gone"_s},
        {"enabled", on<&HTML_CustomButtonBase::enabled>(), u"AcmeExtension.isDisabled(el);"_s, u"false"_s,
            u"true"_s, u"Error reading enablement: gone"_s},
        {"enabled of a disabled one", on<&HTML_CustomButtonBase::enabled>(),
            u"AcmeExtension.isDisabled(el);"_s, u"true"_s, u"false"_s, u"Error reading enablement: gone"_s},
        {"set enabled", on<&HTML_CustomButtonBase::setEnabled>(true),
            u"AcmeExtension.setDisabled(el, 'false' );"_s, u"undefined"_s, done,
            u"Error changing enablement to 'false': gone"_s},
        {"set not enabled", on<&HTML_CustomButtonBase::setEnabled>(false),
            u"AcmeExtension.setDisabled(el, 'true' );"_s, u"undefined"_s, done,
            u"Error changing enablement to 'true': gone"_s},
        {"click", on<&HTML_CustomButtonBase::click>(0, 3, 4, 1),
            u"AcmeExtension.click(el, false, false, false, 3, 4, 1);"_s, u"undefined"_s, done,
            u"Error clicking button: gone"_s},
        {"click with all keys and the right button",
            on<&HTML_CustomButtonBase::click>(ControlKey + ShiftKey + AltKey + RightButton, 3, 4, 1),
            u"AcmeExtension.click(el, true, true, true, 3, 4, 2);"_s, u"undefined"_s, done,
            u"Error clicking button: gone"_s},
        {"click with control", on<&HTML_CustomButtonBase::click>(int(ControlKey), 0, 0, 4),
            u"AcmeExtension.click(el, true, false, false, 0, 0, 4);"_s, u"undefined"_s, done,
            u"Error clicking button: gone"_s},
        {"click with shift", on<&HTML_CustomButtonBase::click>(int(ShiftKey), 0, 0, 1),
            u"AcmeExtension.click(el, false, true, false, 0, 0, 1);"_s, u"undefined"_s, done,
            u"Error clicking button: gone"_s},
        {"checked", on<&HTML_CustomCheckbox::checked>(), u"AcmeExtension.isChecked(el);"_s, u"true"_s,
            u"true"_s, u"Error retrieving checked property: gone"_s},
        {"set checked", on<&HTML_CustomCheckbox::setChecked>(true),
            u"AcmeExtension.setChecked(el, 'true' );"_s, u"undefined"_s, done,
            u"Error setting checked property: gone"_s},
        {"set not checked", on<&HTML_CustomCheckbox::setChecked>(false),
            u"AcmeExtension.setChecked(el, 'false' );"_s, u"undefined"_s, done,
            u"Error setting checked property: gone"_s},
        {"selected", on<&HTML_CustomRadioButton::selected>(), u"AcmeExtension.isSelected(el);"_s, u"false"_s,
            u"false"_s, u"Error retrieving selected property: gone"_s},
        {"set selected", on<&HTML_CustomRadioButton::setSelected>(true),
            u"AcmeExtension.setSelected(el, 'true' );"_s, u"undefined"_s, done,
            u"Error setting selected property: gone"_s},
    }),
    rowName<OperationCase>);

INSTANTIATE_TEST_SUITE_P(Lists, CustomControl,
    testing::ValuesIn(QList<OperationCase>{
        {"selected option", on<&HTML_CustomComboBox::selectedOption>(),
            u"AcmeExtension.getSelectedOption(el);"_s, u" Red "_s, u" Red "_s,
            u"Failed to read selected option: gone"_s},
        {"set selected option", on<&HTML_CustomComboBox::setSelectedOption>(u"it's"_s),
            u"AcmeExtension.setSelectedOption(el,'it\\'s');"_s, u"undefined"_s, done,
            u"Failed to select option text 'it's': gone"_s},
        {"has option", on<&HTML_CustomComboBox::hasOption>(u"it's"_s),
            u"AcmeExtension.hasOption(el,'it\\'s');"_s, u"True"_s, u"true"_s,
            u"Failed to check for options 'it's': gone"_s},
        {"has no such option", on<&HTML_CustomComboBox::hasOption>(u"Red"_s),
            u"AcmeExtension.hasOption(el,'Red');"_s, u"false"_s, u"false"_s,
            u"Failed to check for options 'Red': gone"_s},
        {"selected options", on<&HTML_CustomSelectList::selectedOptions>(),
            u"AcmeExtension.getSelectedOptions(el);"_s, u"Red, Blue"_s, u"Red, Blue"_s,
            u"Error while reading selected option: gone"_s},
        {"set selected options", on<&HTML_CustomSelectList::setSelectedOptions>(u"it's, Blue"_s),
            u"AcmeExtension.setSelectedOptions(el,'it\\'s, Blue');"_s, u"undefined"_s, done,
            u"Error while setting selected option text 'it's, Blue': gone"_s},
        {"has options", on<&HTML_CustomSelectList::hasOptions>(u"it's, Blue"_s),
            u"AcmeExtension.hasOptions(el,'it\\'s, Blue');"_s, u"TRUE"_s, u"true"_s,
            u"Error while checking for options 'it's, Blue': gone"_s},
    }),
    rowName<OperationCase>);

INSTANTIATE_TEST_SUITE_P(Texts, CustomControl,
    testing::ValuesIn(QList<OperationCase>{
        {"value", on<&HTML_CustomText::value>(), u"AcmeExtension.getValue(el);"_s, u" Ada\r\n "_s, u"Ada"_s,
            u"Error while obtaining value of text field: gone"_s},
        {"no value", on<&HTML_CustomText::value>(), u"AcmeExtension.getValue(el);"_s, u"undefined"_s, u""_s,
            u"Error while obtaining value of text field: gone"_s},
        {"focus", on<&HTML_CustomText::focus>(), u"AcmeExtension.setFocus(el);"_s, u"undefined"_s, done,
            u"Error while focussing text field: gone"_s},
        {"is file upload field", on<&HTML_CustomText::isFileUploadField>(),
            u"AcmeExtension.isFileUploadField(el);"_s, u"true"_s, u"true"_s,
            u"Error while obtaining type of text field: gone"_s},
    }),
    rowName<OperationCase>);

INSTANTIATE_TEST_SUITE_P(ColorFields, CustomControl,
    testing::ValuesIn(QList<OperationCase>{
        {"enabled", on<&HTML_ColorField::isEnabled>(), u"AcmeExtension.isEnabled(el);"_s, u"true"_s,
            u"true"_s, u"Error checking enablement: gone"_s},
        {"set enabled", on<&HTML_ColorField::setEnabled>(false), u"AcmeExtension.setEnabled(el, false);"_s,
            u"undefined"_s, done, u"Error changing enablement to 'false': gone"_s},
        {"field name", on<&HTML_ColorField::fieldName>(), u"AcmeExtension.getFieldName(el);"_s,
            u" back\r\nground "_s, u"background"_s, u"Error reading field name: gone"_s},
        {"no field name", on<&HTML_ColorField::fieldName>(), u"AcmeExtension.getFieldName(el);"_s,
            u"undefined"_s, u""_s, u"Error reading field name: gone"_s},
        {"colour", on<&HTML_ColorField::rgbColor>(), u"AcmeExtension.getRgbColor(el);"_s, u" #ff0000 "_s,
            u" #ff0000 "_s, u"Error reading color value: gone"_s},
        {"no colour", on<&HTML_ColorField::rgbColor>(), u"AcmeExtension.getRgbColor(el);"_s, u"undefined"_s,
            u""_s, u"Error reading color value: gone"_s},
        {"set colour", on<&HTML_ColorField::setRgbColor>(u"#00f"_s),
            u"AcmeExtension.setRgbColor(el, '#00f');"_s, u"undefined"_s, done,
            u"Error setting color '#00f': gone"_s},
    }),
    rowName<OperationCase>);

INSTANTIATE_TEST_SUITE_P(SectionHeaders, CustomControl,
    testing::ValuesIn(QList<OperationCase>{
        {"enabled", on<&HTML_ExpandableSectionHeader::isEnabled>(), u"AcmeExtension.isEnabled(el);"_s,
            u"true"_s, u"true"_s, u"Error fetching enabled state: gone"_s},
        {"set enabled", on<&HTML_ExpandableSectionHeader::setEnabled>(true),
            u"AcmeExtension.setEnabled(el, true);"_s, u"undefined"_s, done,
            u"Error setting enabled state to true: gone"_s},
        {"expanded", on<&HTML_ExpandableSectionHeader::isExpanded>(), u"AcmeExtension.isExpanded(el);"_s,
            u"false"_s, u"false"_s, u"Error fetching expanded state: gone"_s},
        {"set expanded", on<&HTML_ExpandableSectionHeader::setExpanded>(false),
            u"AcmeExtension.setExpanded(el, false);"_s, u"undefined"_s, done,
            u"Error setting expanded state to false: gone"_s},
        {"title", on<&HTML_ExpandableSectionHeader::title>(), u"AcmeExtension.getTitle(el);"_s,
            u" Pay\r\nment "_s, u"Payment"_s, u"Error fetching title value: gone"_s},
        {"no title", on<&HTML_ExpandableSectionHeader::title>(), u"AcmeExtension.getTitle(el);"_s,
            u"undefined"_s, u""_s, u"Error fetching title value: gone"_s},
        {"set title", on<&HTML_ExpandableSectionHeader::setTitle>(u"Payment"_s),
            u"AcmeExtension.setTitle(el, 'Payment');"_s, u"undefined"_s, done,
            u"Error setting title to  'Payment': gone"_s},
    }),
    rowName<OperationCase>);

INSTANTIATE_TEST_SUITE_P(ProgressBars, CustomControl,
    testing::ValuesIn(QList<OperationCase>{
        {"value", on<&HTML_ProgressBar::value>(), u"AcmeExtension.getValue(el);"_s, u"40"_s, u"40"_s,
            u"Error while fetching value: gone"_s},
        {"set value", on<&HTML_ProgressBar::setValue>(-5), u"AcmeExtension.setValue(el, '-5');"_s,
            u"undefined"_s, done, u"Error setting value to  '-5': gone"_s},
        {"minimum", on<&HTML_ProgressBar::minimum>(), u"AcmeExtension.getMinimum(el);"_s, u"0"_s, u"0"_s,
            u"Error while fetching minimum: gone"_s},
        {"maximum", on<&HTML_ProgressBar::maximum>(), u"AcmeExtension.getMaximum(el);"_s, u"100"_s, u"100"_s,
            u"Error while fetching maximum: gone"_s},
    }),
    rowName<OperationCase>);

TEST(CustomControlAnswers, EitherFlagOfAnEvaluationIsAFailure)
{
    FakePage page;
    page.failWith(u"refused"_s, true, false);
    page.failWith(u"threw"_s, false, true);
    const auto button = acme<HTML_CustomButtonBase>(page);

    EXPECT_EQ(button.text().error, u"Error occurred while fetching text: refused"_s);
    EXPECT_EQ(button.text().error, u"Error occurred while fetching text: threw"_s);
}

TEST(CustomControlAnswers, ANumberThatIsNoneIsShown)
{
    FakePage page;
    for (int i = 0; i < 3; ++i)
        page.answer(u"half"_s);
    const auto bar = acme<HTML_ProgressBar>(page);

    EXPECT_EQ(bar.value().error, u"Error: cannot convert 'half' into value number"_s);
    EXPECT_EQ(bar.minimum().error, u"Error: cannot convert 'half' into minimum number"_s);
    EXPECT_EQ(bar.maximum().error, u"Error: cannot convert 'half' into maximum number"_s);
}

TEST(CustomControlAnswers, APlaceholderInATextStaysAsItIs)
{
    FakePage page;
    page.fail(u"no %1"_s);
    auto button = acme<HTML_CustomButtonBase>(page);

    EXPECT_EQ(button.setText(u"%2 of %1"_s).error, u"Error occurred while setting text '%2 of %1': no %1"_s);
    EXPECT_EQ(page.scripts(), QStringList{u"AcmeExtension.setText(el, '%2 of %1' );"_s});
}

TEST(CustomControlAnswers, TheExtensionNameKeepsItsCase)
{
    FakePage page;
    HTML_CustomButton button({}, u"top.__ostrel__globalObjectRefStore[7]"_s, u"aCme_Kit"_s, &page);

    (void)button.text();

    EXPECT_EQ(
        page.scripts(), QStringList{u"aCme_KitExtension.getText(top.__ostrel__globalObjectRefStore[7]);"_s});
}

// Operations that an extension may lack

namespace {

/// An operation that bears a failing page, with the line that it traces; none where it is silent.
struct OptionalCase
{
    const char *name;
    std::function<Outcome(FakePage &)> call;
    QString script;
    QString answer;
    QString value;
    QString valueOnFailure;
    QString traced;
};

void PrintTo(const OptionalCase &row, std::ostream *stream)
{
    *stream << row.name;
}

class OptionalOperation : public testing::TestWithParam<OptionalCase>
{
};

} // namespace

TEST_P(OptionalOperation, SendsItsScriptAndReadsTheAnswer)
{
    FakePage page;
    page.answer(GetParam().answer);
    TraceCapture traces(u"WebObject"_s);

    const Outcome outcome = GetParam().call(page);

    EXPECT_EQ(page.scripts(), QStringList{GetParam().script});
    EXPECT_EQ(outcome.error, QString());
    EXPECT_EQ(outcome.value, GetParam().value);
    EXPECT_EQ(traces.lines(), QStringList());
}

TEST_P(OptionalOperation, IsNoErrorWhereItIsMissing)
{
    for (const bool failed : {true, false}) {
        FakePage page;
        page.failWith(u"is not a function"_s, failed, !failed);
        TraceCapture traces(u"WebObject"_s);

        const Outcome outcome = GetParam().call(page);

        EXPECT_EQ(outcome.error, QString());
        EXPECT_EQ(outcome.value, GetParam().valueOnFailure);
        EXPECT_EQ(
            traces.lines(), GetParam().traced.isEmpty() ? QStringList() : QStringList{GetParam().traced});
    }
}

INSTANTIATE_TEST_SUITE_P(CustomControls, OptionalOperation,
    testing::ValuesIn(QList<OptionalCase>{
        {"tooltip", on<&HTML_CustomButtonBase::tooltip>(),
            u"try{AcmeExtension.getTooltip(el);}catch(e){undefined;}"_s, u" Saves\r\n all "_s, u"Saves all"_s,
            {}, {}},
        {"no tooltip", on<&HTML_CustomButtonBase::tooltip>(),
            u"try{AcmeExtension.getTooltip(el);}catch(e){undefined;}"_s, u"undefined"_s, u""_s, {}, {}},
        {"set tooltip", on<&HTML_CustomButtonBase::setTooltip>(u"it's\nhere"_s),
            u"AcmeExtension.setTooltip(el, 'it\\'s\\nhere' );"_s, u"undefined"_s, done, done, {}},
        {"show text", on<&HTML_CustomButtonBase::showText>(), u"AcmeExtension.isTextShown(el);"_s, u"true"_s,
            u"true"_s, u"false"_s, {}},
        {"set show text", on<&HTML_CustomButtonBase::setShowText>(false),
            u"AcmeExtension.setTextShown(el, 'false' );"_s, u"undefined"_s, done, done, {}},
        {"value of a button", on<&HTML_CustomButton::value>(), u"AcmeExtension.getValue(el);"_s, u" 7 "_s,
            u" 7 "_s, {}, u"Ignoring error from optional API Extension.getHasFocus: is not a function"_s},
        {"no value of a button", on<&HTML_CustomButton::value>(), u"AcmeExtension.getValue(el);"_s,
            u"undefined"_s, u""_s, {},
            u"Ignoring error from optional API Extension.getHasFocus: is not a function"_s},
        {"set value of a button", on<&HTML_CustomButton::setValue>(u"it's\nhere"_s),
            u"AcmeExtension.setValue(el, 'it\\'s\\nhere' );"_s, u"undefined"_s, done, done,
            u"Ignoring error from optional API Extension.setValue: is not a function"_s},
        {"label of a combo box", on<&HTML_CustomComboBox::label>(), u"AcmeExtension.getLabel(el);"_s,
            u"Colour"_s, u"Colour"_s, {},
            u"Error while invoking optional API Extension.getLabel: is not a function"_s},
        {"label of a select list", on<&HTML_CustomSelectList::label>(), u"AcmeExtension.getLabel(el);"_s,
            u"Colours"_s, u"Colours"_s, {},
            u"Error while invoking optional API Extension.getLabel: is not a function"_s},
        {"label of a text field", on<&HTML_CustomText::label>(), u"AcmeExtension.getLabel(el);"_s, u"Name"_s,
            u"Name"_s, {}, u"Error while invoking optional API Extension.getLabel: is not a function"_s},
        {"has focus", on<&HTML_CustomText::hasFocus>(), u"AcmeExtension.getHasFocus(el);"_s, u"true"_s,
            u"true"_s, u"false"_s,
            u"Ignoring error from optional API Extension.getHasFocus: is not a function"_s},
        {"disabled text field", on<&HTML_CustomText::disabled>(), u"AcmeExtension.isDisabled(el);"_s,
            u"true"_s, u"true"_s, u"false"_s, {}},
        {"set disabled text field", on<&HTML_CustomText::setDisabled>(true),
            u"AcmeExtension.setDisabled(el, 'true' );"_s, u"undefined"_s, done, done, {}},
    }),
    rowName<OptionalCase>);

// Filling text fields

TEST(CustomText, ValueGoesToTheExtension)
{
    FakePage page;
    page.answer(u"false"_s);
    auto field = acme<HTML_CustomText>(page);

    const FunctionCallResult<void> set = field.setValue(u"it's\r\n\\here"_s);

    EXPECT_EQ(set.error, QString());
    EXPECT_EQ(page.scripts(),
        (QStringList{u"AcmeExtension.isFileUploadField(el);"_s,
            u"AcmeExtension.setValue(el, 'it\\'s\\n\\\\here' );"_s}));
    EXPECT_EQ(page.files(), QStringList());
}

TEST(CustomText, FailingToSetTheValueIsAnError)
{
    FakePage page;
    page.answer(u"false"_s);
    page.fail(u"gone"_s);

    EXPECT_EQ(acme<HTML_CustomText>(page).setValue(u"Ada"_s).error,
        u"Error while setting value 'Ada' on text field: gone"_s);
}

TEST(CustomText, FailingToTellTheTypeSetsNothing)
{
    FakePage page;
    page.fail(u"gone"_s);

    EXPECT_EQ(acme<HTML_CustomText>(page).setValue(u"Ada"_s).error,
        u"Error while determining type of text field, cannot set value 'Ada': "
        "Error while obtaining type of text field: gone"_s);
    EXPECT_EQ(page.scripts(), QStringList{u"AcmeExtension.isFileUploadField(el);"_s});
}

TEST(CustomText, FileFieldsTakeAPathAndSucceedWhateverTheBridgeSays)
{
    FakePage page;
    page.answer(u"true"_s);
    page.fileResult = Failure(u"no such file"_s);

    const FunctionCallResult<void> set = acme<HTML_CustomText>(page).setValue(u"/tmp/it's.txt"_s);

    EXPECT_EQ(set.error, QString());
    EXPECT_EQ(page.files(), QStringList{u"/tmp/it's.txt"_s});
    EXPECT_EQ(page.scripts(), QStringList{u"AcmeExtension.isFileUploadField(el);"_s});
}

TEST(CustomText, FormElementOperationsReachTheExtension)
{
    FakePage page;
    auto field = acme<HTML_CustomText>(page);
    HTML_FormElement &element = field;

    (void)element.focus();
    (void)element.disabled();
    (void)element.setDisabled(false);
    (void)element.hasFocus();

    EXPECT_EQ(page.scripts(),
        (QStringList{u"AcmeExtension.setFocus(el);"_s, u"AcmeExtension.isDisabled(el);"_s,
            u"AcmeExtension.setDisabled(el, 'false' );"_s, u"AcmeExtension.getHasFocus(el);"_s}));
}

// Waits

TEST(CustomButton, ClickDoesNotWait)
{
    FakePage page;
    auto button = acme<HTML_CustomButton>(page);
    QElapsedTimer watch;
    watch.start();

    const FunctionCallResult<void> clicked = button.click(0, 0, 0, 1);

    EXPECT_EQ(clicked.error, QString());
    EXPECT_LT(watch.elapsed(), 150);
}

TEST(ExpandableSectionHeader, ClickIsDeferredAndWaitsEvenWhenItFails)
{
    FakePage page;
    page.fail(u"gone"_s);
    auto header = acme<HTML_ExpandableSectionHeader>(page);
    QElapsedTimer watch;
    watch.start();

    const FunctionCallResult<void> clicked = header.click(ControlShift + RightButton, 3, 4, 1);

    EXPECT_GE(watch.elapsed(), 190);
    EXPECT_EQ(clicked.error, u"Error clicking expandable section: gone"_s);
    EXPECT_EQ(page.scripts(),
        QStringList{
            u"setTimeout(function(e){AcmeExtension.click(el, true, true, false, 3, 4, 2);}, 100);"_s});
}

// What a script engine makes of the composed script

namespace {

struct TextSetter
{
    const char *name;
    QString function;
    std::function<void(FakePage &, const QString &)> send;
    bool takesLineBreaks;
};

void PrintTo(const TextSetter &row, std::ostream *stream)
{
    *stream << row.name;
}

template <auto Operation>
void send(FakePage &page, const QString &text)
{
    on<Operation>(text)(page);
}

class EscapedText : public testing::TestWithParam<TextSetter>
{
};

} // namespace

TEST_P(EscapedText, ReachesTheExtensionUnchanged)
{
    for (const HostileText &hostile : hostileTexts()) {
        if (hostile.hasLineBreak() && !GetParam().takesLineBreaks)
            continue;
        FakePage page;
        PageScript engine({GetParam().function});

        GetParam().send(page, hostile.text);
        engine.run(page.scripts().constLast());

        EXPECT_EQ(engine.error(), QString()) << hostile.name;
        EXPECT_EQ(engine.arguments(), QVariantList{QString(hostile.text).remove(u'\r')}) << hostile.name;
    }
}

INSTANTIATE_TEST_SUITE_P(CustomControls, EscapedText,
    testing::ValuesIn(QList<TextSetter>{
        {"text", u"AcmeExtension.setText"_s, send<&HTML_CustomButtonBase::setText>, true},
        {"tooltip", u"AcmeExtension.setTooltip"_s, send<&HTML_CustomButtonBase::setTooltip>, true},
        {"value of a button", u"AcmeExtension.setValue"_s, send<&HTML_CustomButton::setValue>, true},
        {"value of a text field", u"AcmeExtension.setValue"_s, send<&HTML_CustomText::setValue>, true},
        {"selected option", u"AcmeExtension.setSelectedOption"_s,
            send<&HTML_CustomComboBox::setSelectedOption>, false},
        {"has option", u"AcmeExtension.hasOption"_s, send<&HTML_CustomComboBox::hasOption>, false},
        {"selected options", u"AcmeExtension.setSelectedOptions"_s,
            send<&HTML_CustomSelectList::setSelectedOptions>, false},
        {"has options", u"AcmeExtension.hasOptions"_s, send<&HTML_CustomSelectList::hasOptions>, false},
    }),
    rowName<TextSetter>);

TEST(RawText, AQuoteBreaksTheScriptAndThePageReportsIt)
{
    FakePage page;
    PageScript engine({u"AcmeExtension.setRgbColor"_s, u"AcmeExtension.setTitle"_s});

    (void)acme<HTML_ColorField>(page).setRgbColor(u"it's"_s);
    (void)acme<HTML_ExpandableSectionHeader>(page).setTitle(u"it's"_s);

    EXPECT_EQ(page.scripts(),
        (QStringList{u"AcmeExtension.setRgbColor(el, 'it's');"_s, u"AcmeExtension.setTitle(el, 'it's');"_s}));
    for (const QString &script : page.scripts()) {
        engine.run(script);
        EXPECT_TRUE(engine.error().startsWith(u"SyntaxError"_s)) << engine.error().toStdString();
    }
    EXPECT_EQ(engine.calls(), QStringList());
}

TEST(CustomButton, StatesArriveAsTextsAndThoseOfColourFieldsAsBooleans)
{
    FakePage page;
    PageScript engine({u"AcmeExtension.setChecked"_s, u"AcmeExtension.setEnabled"_s});

    (void)acme<HTML_CustomCheckbox>(page).setChecked(false);
    (void)acme<HTML_ColorField>(page).setEnabled(false);

    engine.run(page.scripts()[0]);
    EXPECT_EQ(engine.arguments(), QVariantList{u"false"_s});
    engine.run(page.scripts()[1]);
    EXPECT_EQ(engine.arguments(), QVariantList{false});
}

TEST(CustomButton, TooltipProtectsItselfInThePage)
{
    FakePage page;
    PageScript engine;
    engine.run(u"var AcmeExtension = {};"_s);

    (void)acme<HTML_CustomButton>(page).tooltip();
    const QJSValue value = engine.run(page.scripts().constLast());

    EXPECT_EQ(engine.error(), QString());
    EXPECT_TRUE(value.isUndefined());
}

// What scripts see

TEST_P(EachWebClass, HasItsMembersInOrder)
{
    EXPECT_EQ(classText(QString::fromLatin1(GetParam().name)), QString::fromLatin1(GetParam().text));
}

INSTANTIATE_TEST_SUITE_P(CustomControls, EachWebClass,
    testing::ValuesIn(std::initializer_list<ClassCase>{
        {"HTML_CustomButtonBase", R"(base HTML_Object
disabled bool
showText bool
tooltip String
enabled bool
text String
setText(String txt) void
text() String
setTooltip(String tooltip) void
tooltip() String
setEnabled(bool enable) void
enabled() bool
setDisabled(bool disable) void
disabled() bool
setShowText(bool showText) void
showText() bool)"},
        {"HTML_CustomButton", R"(base HTML_CustomButtonBase
value String
setValue(String val) void
value() String)"},
        {"HTML_CustomCheckbox", R"(base HTML_CustomButtonBase
checked bool
checked() bool
setChecked(bool b) void)"},
        {"HTML_CustomRadioButton", R"(base HTML_CustomButtonBase
selected bool
selected() bool
setSelected(bool b) void)"},
        {"HTML_CustomComboBox", R"(base HTML_FormElement
selectedOption String
label String read-only
selectedOption() String
label() String
hasOption(String options) bool
setSelectedOption(String options) void)"},
        {"HTML_CustomSelectList", R"(base HTML_FormElement
selectedOptions String
label String read-only
selectedOptions() String
label() String
hasOptions(String options) bool
setSelectedOptions(String options) void)"},
        {"HTML_CustomText", R"(base HTML_FormElement
hasFocus bool read-only
value String
label String read-only
hasFocus() bool
label() String
setValue(String str) void
value() String)"},
        {"HTML_ColorField", R"(base HTML_Object
isEnabled bool
fieldName String read-only
rgbColor String
rgbColor() String
setRgbColor(String) void
fieldName() String
setEnabled(bool b) void
isEnabled() bool)"},
        {"HTML_ExpandableSectionHeader", R"(base HTML_Object
isExpanded bool
isEnabled bool
title String
isExpanded() bool
setExpanded(bool b) void
isEnabled() bool
setEnabled(bool b) void
title() String
setTitle(String) void)"},
        {"HTML_ProgressBar", R"(base HTML_Object
minimum int read-only
maximum int read-only
value int
minimum() int
maximum() int
setValue(int) void
value() int)"},
    }),
    className);

TEST(CustomControlScript, AssignmentsAndReadsGoThroughTheExtension)
{
    createWebObjectClassesOnce();
    FakePage page;
    page.answer(u"false"_s);
    const SharedPtr<Object> field = wrapObject(new HTML_CustomText({}, u"el"_s, u"Acme"_s, &page));

    EXPECT_EQ(writeProperty(field, u"value"_s, u"Ada"_s), QString());
    EXPECT_EQ(writeProperty(field, u"disabled"_s, true), QString());
    EXPECT_EQ(writeProperty(field, u"label"_s, u"Name"_s), u"Cannot set read-only property label."_s);
    EXPECT_EQ(callMethod(field, u"hasFocus"_s).value->toBool(), false);

    EXPECT_EQ(page.scripts(),
        (QStringList{u"AcmeExtension.isFileUploadField(el);"_s, u"AcmeExtension.setValue(el, 'Ada' );"_s,
            u"AcmeExtension.setDisabled(el, 'true' );"_s, u"AcmeExtension.getHasFocus(el);"_s}));
}
