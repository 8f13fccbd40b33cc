// Tests of the object factory: which class an element gets, and how a page identifies it.
#include "wrappers/web/objectfactory.h"

#include "wrappers/web/formelements.h"
#include "wrappers/web/htmlarray.h"
#include "wrappers/web/reflection/webclasses.h"

#include "support/fakepage.h"
#include "support/pagescript.h"
#include "support/printers.h"

#include "ostrelhook/class.h"

#include <gtest/gtest.h>

#include <memory>

using namespace Ostrel;
using namespace Ostrel::Test;
using namespace Ostrel::WebWrapper;
using namespace Qt::StringLiterals;

namespace {

/// The script that identifies an expression's value.
QString identifying(const QString &expression)
{
    return u"(function() {\n  try {\n    var dummy = "_s + expression
        + u";\n    if ( !dummy ) {\n        return JSON.stringify({'refName': null, 'type': '[unknown]'});\n "
          u"   }\n"
          "    var globalRefName = __ostrel__idForObject( dummy );\n"
          "    return JSON.stringify({'refName': globalRefName, 'type': __ostrel__typeOf( dummy ) });\n"
          "  } catch( e ) {\n    return JSON.stringify({'error': {'name': e['name'], 'message': "
          "e['message'], "
          "'file': e['fileName'], 'line': e['lineNumber'], 'stack': e['stack']}});  }\n})();"_s;
}

std::unique_ptr<HTML_Object> made(FakePage &page, const QString &type, const QString &name = u"its name"_s)
{
    return std::unique_ptr<HTML_Object>(htmlObjectFromReferenceInfo(&page, type, u"top.store[3]"_s, name));
}

/// The class that a type gives, "null" for no object.
QString classOf(const QString &type)
{
    FakePage page;
    const std::unique_ptr<HTML_Object> wrapper = made(page, type);
    return wrapper ? QString::fromLatin1(wrapper->className()) : u"null"_s;
}

/// The failure of identifying "f()" when the page gave this answer.
QString errorOf(const QString &answer)
{
    FakePage page;
    page.answer(answer);
    const FunctionCallResult<HTML_Object *> object = htmlObjectFromJavaScriptResult(&page, u"f()"_s, {}, 0);
    EXPECT_EQ(object.value, nullptr);
    return object.error;
}

/// Lets the reflection classes exist once for all tests.
class Classes : public ::testing::Environment
{
public:
    void SetUp() override { createWebObjectClasses(); }
};

const auto *const classes = ::testing::AddGlobalTestEnvironment(new Classes);

} // namespace

// From a type to a class

TEST(ObjectFactory, TypesSelectTheClass)
{
    struct Row
    {
        int number;
        QStringList types;
        const char *className;
    };
    const Row rows[] = {
        {1, {u"undefined"_s, u"Undefined"_s, u"[unknown]"_s, u"[UNKNOWN]"_s, u"true"_s, u"TRUE"_s, QString()},
            "null"},
        {2, {u"button"_s, u"BUTTON"_s, u"submit"_s, u"Submit"_s}, "HTML_Button"},
        {3, {u"radio"_s, u"Radio"_s}, "HTML_RadioButton"},
        {4, {u"checkbox"_s, u"CheckBox"_s}, "HTML_CheckBox"},
        {5, {u"image"_s, u"IMAGE"_s}, "HTML_ImageButton"},
        {6,
            {u"email"_s, u"password"_s, u"text"_s, u"TEXT"_s, u"file"_s, u"search"_s, u"number"_s, u"tel"_s,
                u"url"_s, u"Url"_s},
            "HTML_Text"},
        {7, {u"textarea"_s, u"TEXTAREA"_s}, "HTML_TextArea"},
        {8,
            {u"select"_s, u"SELECT"_s, u"select-one"_s, u"select-multiple"_s, u"Select-Multiple"_s,
                u"selection"_s},
            "HTML_Select"},
        {9, {u"form"_s, u"FORM"_s}, "HTML_Form"},
        {10, {u"a"_s, u"A"_s, u"area"_s, u"AREA"_s}, "HTML_Anchor"},
        {11, {u"option"_s, u"OPTION"_s}, "HTML_Option"},
        {12, {u"document"_s, u"Document"_s}, "HTML_Document"},
        {13, {u"img"_s, u"IMG"_s}, "HTML_Image"},
        {14, {u"shadowroot"_s, u"shadowRoot"_s}, "HTML_ShadowRoot"},
        {15, {u"kiwi_choice"_s, u"Kiwi_Choice"_s}, "HTML_KiwiChoice"},
        {16, {u"kiwi_tree"_s, u"KIWI_TREE"_s}, "HTML_KiwiTree"},
        {17, {u"kiwi_table"_s, u"KIWI_TABLE"_s}, "HTML_KiwiTable"},
        {18, {u"kiwi_treetable"_s, u"kiwi_treeTable"_s}, "HTML_KiwiTreeTable"},
        {19, {u"kiwi_more_menu"_s, u"Kiwi_More_Menu"_s}, "HTML_KiwiMoreMenu"},
        {20, {u"kiwi_more_menu_item"_s, u"KIWI_MORE_MENU_ITEM"_s}, "HTML_KiwiMoreMenuItem"},
        {21, {u"kiwi_table_item"_s, u"Kiwi_table_item"_s}, "HTML_KiwiTableCell"},
        {22, {u"kiwi_treetable_item"_s, u"kiwi_treeTable_item"_s}, "HTML_KiwiTreeTableCell"},
        {23, {u"kiwi_matrixtable"_s, u"kiwi_matrixTable"_s}, "HTML_KiwiMatrixTable"},
        {24, {u"kiwi_matrix"_s, u"Kiwi_Matrix"_s}, "HTML_KiwiMatrix"},
        {25, {u"kiwi_matrixcell"_s, u"kiwi_matrixCell"_s}, "HTML_KiwiMatrixCell"},
        {26, {u"dojo_tree"_s, u"Dojo_Tree"_s}, "HTML_DojoTree"},
        {27, {u"dojo_splitpane"_s, u"dojo_splitPane"_s}, "HTML_DojoSplitPane"},
        {28,
            {u"bb_button"_s, u"BB_BUTTON"_s, u"bb_menucell"_s, u"bb_toolbaritem"_s, u"bb_tabselector"_s,
                u"bb_sidebarselector"_s, u"bb_navpanelhead"_s, u"bb_navhead"_s, u"bb_treeleaf"_s,
                u"bb_tree"_s, u"bb_treehandle"_s, u"bb_accordeon"_s, u"bb_spinnerupbutton"_s,
                u"bb_spinnerdownbutton"_s, u"bb_card"_s, u"BB_Card"_s},
            "HTML_BackBaseButton"},
        {29, {u"bb_combobox"_s, u"bb_comboBox"_s}, "HTML_BackBaseComboBox"},
        {30, {u"bb_spinner"_s, u"BB_Spinner"_s}, "HTML_BackBaseSpinner"},
        {31, {u"bb_listview"_s, u"bb_listView"_s}, "HTML_BackBaseListView"},
        {32, {u"gwc_formfieldbox"_s, u"GWC_FormFieldBox"_s}, "HTML_GWCFormFieldBox"},
        {33, {u"gwc_table"_s, u"GWC_Table"_s}, "HTML_GWCTable"},
        {34, {u"qx_widget_container"_s, u"QX_Widget_Container"_s}, "HTML_QxWidgetElement"},
        {35, {u"qx_widget"_s, u"QX_Widget"_s}, "HTML_QxWidget"},
        {36, {u"custom_itemview_list"_s, u"Custom_ItemView_myList"_s, u"custom_itemview_"_s},
            "HTML_CustomItemView"},
        {37, {u"custom_item_list"_s, u"CUSTOM_ITEM_myList"_s, u"custom_item_"_s}, "HTML_CustomItem"},
        {38, {u"custom_combobox_my"_s, u"custom_ComboBox_my"_s}, "HTML_CustomComboBox"},
        {39, {u"custom_selectlist_my"_s, u"custom_SelectList_my"_s}, "HTML_CustomSelectList"},
        {40, {u"custom_text_my"_s, u"CUSTOM_TEXT_my"_s}, "HTML_CustomText"},
        {41, {u"custom_button_my"_s, u"custom_Button_my"_s}, "HTML_CustomButton"},
        {42, {u"custom_checkbox_my"_s, u"custom_CheckBox_my"_s}, "HTML_CustomCheckbox"},
        {43, {u"custom_radiobutton_my"_s, u"custom_RadioButton_my"_s}, "HTML_CustomRadioButton"},
        {44, {u"tabwidget_my"_s, u"TabWidget_my"_s}, "HTML_TabWidget"},
        {45, {u"tabitem_my"_s, u"TabItem_my"_s}, "HTML_Tab"},
        {46, {u"colorfield_my"_s, u"ColorField_my"_s}, "HTML_ColorField"},
        {47, {u"expandablesectionheader_my"_s, u"ExpandableSectionHeader_my"_s},
            "HTML_ExpandableSectionHeader"},
        {48, {u"progressbar_my"_s, u"ProgressBar_my"_s}, "HTML_ProgressBar"},
        {49, {u"menu_my"_s, u"MENU_my"_s, u"menu_item"_s}, "HTML_Menu"},
        {50, {u"menuitem_my"_s, u"MenuItem_my"_s}, "HTML_MenuItem"},
        {51, {u"menubutton_my"_s, u"MenuButton_my"_s}, "HTML_MenuButton"},
        {52, {u"datechooser_my"_s, u"DateChooser_my"_s}, "HTML_DateChooser"},
        {53, {u"calendarview_my"_s, u"CalendarView_my"_s}, "HTML_CalendarView"},
        {54, {u"calendarevent_my"_s, u"CalendarEvent_my"_s}, "HTML_CalendarEvent"},
        {55, {u"htmltable_my"_s, u"HtmlTable_my"_s}, "HTML_Table"},
        {56, {u"htmlarray"_s, u"HtmlArray"_s}, "HTML_Array"},
        {57,
            {u"INPUT"_s, u"div"_s, u"[unknown_type]"_s, u"false"_s, u"null"_s, u"range"_s, u"buttons"_s,
                u"anchor"_s, u"custom_item"_s, u"custom_textfield_my"_s, u"menu"_s, u"bb_menu"_s,
                u"kiwi_table_items"_s, u"htmlarrays"_s, u" text"_s},
            "HTML_Object"},
    };
    int number = 0;
    for (const Row &row : rows) {
        ASSERT_EQ(row.number, ++number);
        for (const QString &type : row.types)
            EXPECT_EQ(classOf(type), QString::fromLatin1(row.className))
                << "row " << number << ": " << type.toStdString();
    }
    EXPECT_EQ(number, 57);
}

TEST(ObjectFactory, WrapperKeepsWhatIsKnownOfTheElement)
{
    FakePage page;
    for (const QString &type : {u"div"_s, u"text"_s, u"select"_s, u"custom_text_my"_s, u"kiwi_table_item"_s,
             u"kiwi_matrixcell"_s, u"bb_combobox"_s, u"htmlarray"_s}) {
        SCOPED_TRACE(type.toStdString());

        const std::unique_ptr<HTML_Object> wrapper = made(page, type);

        EXPECT_EQ(wrapper->jsReference(), u"top.store[3]"_s);
        EXPECT_EQ(wrapper->component(), &page);
        EXPECT_EQ(wrapper->name().value, u"its name"_s);
    }
    EXPECT_EQ(page.scripts(), QStringList()) << "the factory never talks to the page";
}

TEST(ObjectFactory, OnlySelectMultipleSelectsMany)
{
    FakePage page;
    const auto isMulti = [&page](const QString &type) {
        return dynamic_cast<HTML_Select &>(*made(page, type)).isMulti().value;
    };

    EXPECT_TRUE(isMulti(u"select-multiple"_s));
    EXPECT_TRUE(isMulti(u"SELECT-MULTIPLE"_s));
    EXPECT_FALSE(isMulti(u"select-one"_s));
    EXPECT_FALSE(isMulti(u"SELECT"_s));
    EXPECT_FALSE(isMulti(u"select"_s));
    EXPECT_FALSE(isMulti(u"select-multiple-x"_s));
    EXPECT_FALSE(isMulti(u"bb_combobox"_s));
}

TEST(ObjectFactory, ExtensionNameKeepsItsCase)
{
    FakePage page;
    page.answer(u"false"_s);
    const std::unique_ptr<HTML_Object> button = made(page, u"CUSTOM_Button_myKit__Button"_s);

    (void)button->click(0, 3, 4, 1);

    ASSERT_EQ(page.scripts().size(), 1);
    EXPECT_TRUE(page.scripts().first().contains(u"myKit__ButtonExtension"_s))
        << page.scripts().first().toStdString();
}

// From an expression to a wrapper

TEST(ObjectFromJavaScript, AsksThePageToIdentifyTheValue)
{
    FakePage page;
    page.answerObject(u"text"_s, u"top.store[9]"_s);

    const FunctionCallResult<HTML_Object *> object
        = htmlObjectFromJavaScriptResult(&page, u"find('%1 %2')"_s, u"user"_s, 5000);
    const std::unique_ptr<HTML_Object> wrapper(object.value);

    EXPECT_EQ(object.error, QString());
    ASSERT_NE(wrapper, nullptr);
    EXPECT_STREQ(wrapper->className(), "HTML_Text");
    EXPECT_EQ(wrapper->jsReference(), u"top.store[9]"_s);
    EXPECT_EQ(wrapper->component(), &page);
    EXPECT_EQ(wrapper->name().value, u"user"_s);
    ASSERT_EQ(page.calls().size(), 1);
    EXPECT_EQ(page.calls().first().script, identifying(u"find('%1 %2')"_s));
    EXPECT_EQ(page.calls().first().timeoutMs, 5000U);
}

TEST(ObjectFromJavaScript, AbsentObjectIsNullAndNoError)
{
    for (const QString &answer : {u"{\"refName\":null,\"type\":\"[unknown]\"}"_s,
             u"{\"refName\":\"top.store[1]\",\"type\":\"undefined\"}"_s,
             u"{\"refName\":\"top.store[1]\",\"type\":true}"_s,
             u"{\"refName\":\"top.store[1]\",\"type\":null}"_s})
        EXPECT_EQ(errorOf(answer), QString()) << answer.toStdString();
}

TEST(ObjectFromJavaScript, BridgeFailureComesBackUnchanged)
{
    for (const bool threw : {false, true}) {
        FakePage page;
        page.failWith(u"gone %1"_s, true, threw);

        const FunctionCallResult<HTML_Object *> object
            = htmlObjectFromJavaScriptResult(&page, u"f()"_s, {}, 0);

        EXPECT_EQ(object.error, u"gone %1"_s);
        EXPECT_EQ(object.value, nullptr);
    }
}

TEST(ObjectFromJavaScript, AnswerThatThrewIsParsed)
{
    FakePage page;
    page.failWith(u"{\"refName\":\"top.store[1]\",\"type\":\"a\"}"_s, false, true);
    page.failWith(u"{"_s, false, true);

    const std::unique_ptr<HTML_Object> wrapper(htmlObjectFromJavaScriptResult(&page, u"f()"_s, {}, 0).value);
    const QString error = htmlObjectFromJavaScriptResult(&page, u"f()"_s, {}, 0).error;

    ASSERT_NE(wrapper, nullptr);
    EXPECT_STREQ(wrapper->className(), "HTML_Anchor");
    EXPECT_EQ(error,
        u"Failed to parse JSON return value '{':* Line 1, Column 2\n  Missing '}' or object member name\n"_s);
}

TEST(ObjectFromJavaScript, MalformedAnswersAreReported)
{
    struct Row
    {
        const char *name;
        QString answer;
        QString error;
    };
    const QString nested(2000, u'[');
    const Row rows[] = {
        {"no JSON", u"oops"_s,
            u"Failed to parse JSON return value 'oops':* Line 1, Column 1\n"
            "  Syntax error: value, object or array expected.\n"_s},
        {"too deep for the parser", nested,
            u"Failed to parse JSON return value '%1': Exceeded stackLimit in readValue()."_s.arg(nested)},
        {"null", u"null"_s,
            u"Failed to parse JSON return value 'null': expected an object, got 0 instead."_s},
        {"number", u"-7"_s, u"Failed to parse JSON return value '-7': expected an object, got 1 instead."_s},
        {"double", u"1.5"_s,
            u"Failed to parse JSON return value '1.5': expected an object, got 3 instead."_s},
        {"text", u"\"%2\""_s,
            u"Failed to parse JSON return value '\"%2\"': expected an object, got 4 instead."_s},
        {"boolean", u"true"_s,
            u"Failed to parse JSON return value 'true': expected an object, got 5 instead."_s},
        {"array", u"[]"_s, u"Failed to parse JSON return value '[]': expected an object, got 6 instead."_s},
        {"no reference", u"{\"type\":\"a\"}"_s,
            u"JSON return value '{\"type\":\"a\"}' is missing the refName member."_s},
        {"no type", u"{\"refName\":\"top.store[1]\"}"_s,
            u"JSON return value '{\"refName\":\"top.store[1]\"}' is missing the type member."_s},
        {"nothing", u"{}"_s, u"JSON return value '{}' is missing the refName member."_s},
    };
    for (const Row &row : rows) {
        SCOPED_TRACE(row.name);

        EXPECT_EQ(errorOf(row.answer), row.error);
    }
}

TEST(ObjectFromJavaScript, TellsAnExceptionOfThePageWithWhatTheBrowserGives)
{
    struct Row
    {
        const char *name;
        QString members;
        QString detail;
    };
    const Row rows[] = {
        {"name and message only", u""_s, u"TypeError: no el. "_s},
        {"file", u",\"file\":\"a.js\""_s, u"TypeError: no el at a.js. "_s},
        {"file and line", u",\"file\":\"a.js\",\"line\":7"_s, u"TypeError: no el at a.js:7. "_s},
        {"line without a file", u",\"line\":7"_s, u"TypeError: no el. "_s},
        {"stack", u",\"stack\":\"f@a.js\""_s, u"TypeError: no el. Stacktrace: f@a.js"_s},
        {"all", u",\"file\":\"a.js\",\"line\":7,\"stack\":\"%1\""_s,
            u"TypeError: no el at a.js:7. Stacktrace: %1"_s},
    };
    for (const Row &row : rows) {
        SCOPED_TRACE(row.name);

        EXPECT_EQ(
            errorOf(u"{\"error\":{\"name\":\"TypeError\",\"message\":\"no el\""_s + row.members + u"}}"_s),
            u"Error evaluating JavaScript to retrieve HTML Object: "_s + row.detail);
    }
}

TEST(ObjectFromJavaScript, IdentifyingScriptWorksInAScriptEngine)
{
    PageScript engine;
    engine.run(u"function __ostrel__idForObject(o) { return 'top.store[' + o.n + ']'; }\n"
               "function __ostrel__typeOf(o) { return o.type; }"_s);
    const auto identified = [&engine](const QString &expression) {
        FakePage page;
        (void)htmlObjectFromJavaScriptResult(&page, expression, {}, 0);
        page.answer(engine.run(page.scripts().first()).toString());
        return htmlObjectFromJavaScriptResult(&page, expression, {}, 0);
    };

    const std::unique_ptr<HTML_Object> form(identified(u"({n: 4, type: 'form'})"_s).value);
    ASSERT_NE(form, nullptr);
    EXPECT_STREQ(form->className(), "HTML_Form");
    EXPECT_EQ(form->jsReference(), u"top.store[4]"_s);
    for (const QString &falsy : {u"0"_s, u"''"_s, u"null"_s, u"undefined"_s, u"false"_s, u"NaN"_s}) {
        const FunctionCallResult<HTML_Object *> object = identified(falsy);
        EXPECT_EQ(object.error, QString()) << falsy.toStdString();
        EXPECT_EQ(object.value, nullptr);
    }
    EXPECT_TRUE(
        identified(u"missing()"_s)
            .error.startsWith(
                u"Error evaluating JavaScript to retrieve HTML Object: ReferenceError: missing is not defined"_s));
}

// Between wrappers and script objects

TEST(WrapObject, ScriptObjectHasTheClassOfTheWrapperAndOwnsIt)
{
    FakePage page;
    HTML_Object *wrapper = made(page, u"checkbox"_s).release();

    const SharedPtr<Object> object = wrapObject(wrapper);

    EXPECT_EQ(object->objectClass()->name(), u"HTML_CheckBox"_s);
    EXPECT_EQ(object->attribute(), ObjectAttribute::Pointer());
    EXPECT_TRUE(object->isOwning());
    EXPECT_EQ(retrieveObject(object), wrapper);
}

TEST(WrapObject, OwningObjectDeletesTheWrapperWithItsDestructor)
{
    struct Watched : HTML_Object
    {
        Watched(FakePage *page, bool *deletion) : HTML_Object({}, u"el"_s, page), deleted(deletion) { }
        ~Watched() override { *deleted = true; }
        bool *deleted;
    };
    FakePage page;
    bool deleted = false;
    SharedPtr<Object> object = wrapObject(new Watched(&page, &deleted));
    SharedPtr<Object> second = object;

    object.reset();
    EXPECT_FALSE(deleted);
    second.reset();
    EXPECT_TRUE(deleted);
}

TEST(WrapObject, NullPointerGivesANullObject)
{
    const SharedPtr<Object> object = wrapObject(nullptr);

    ASSERT_NE(object, nullptr);
    EXPECT_TRUE(object->isNull());
    EXPECT_EQ(object->objectClass(), objectModelHtmlObjectClass());
    EXPECT_EQ(retrieveObject(object), nullptr);
}

TEST(RetrieveObject, GivesNullForWhatHoldsNoElement)
{
    EXPECT_EQ(retrieveObject(nullptr), nullptr);
    EXPECT_EQ(retrieveObject(Inspector::self()->createPrimitive(7)), nullptr);
}

TEST(ObjectModel, ClassesAreFoundByName)
{
    EXPECT_EQ(objectModelHtmlObjectClass()->name(), u"HTML_Object"_s);
    EXPECT_EQ(objectModelHtmlDocumentClass()->name(), u"HTML_Document"_s);
}

// Lists that stay in the page

TEST(HtmlArray, ReadsItsLength)
{
    FakePage page;
    const HTML_Array array({}, u"el.options"_s, &page);
    page.answer(u"3"_s);
    page.answer(u"many"_s);
    page.answer(u"%1"_s);
    page.fail(u"gone"_s);

    EXPECT_EQ(array.length().value, 3);
    EXPECT_EQ(array.length().error, u"Could not convert length of array 'many' to number"_s);
    EXPECT_EQ(array.length().error, u"Could not convert length of array '%1' to number"_s);
    EXPECT_EQ(array.length().error, u"Error while obtaining property 'length': gone"_s);
    EXPECT_EQ(
        page.scripts(), QStringList(4, u"window.top.__ostrel.getPropertyValue( el.options, 'length');"_s));
}

TEST(HtmlArray, GivesItsElements)
{
    FakePage page;
    const HTML_Array array({}, u"el.options"_s, &page);
    page.answer(u"3"_s);
    page.answerObject(u"option"_s, u"top.store[5]"_s);

    const FunctionCallResult<HTML_Object *> element = array.at(2);
    const std::unique_ptr<HTML_Object> wrapper(element.value);

    EXPECT_EQ(element.error, QString());
    ASSERT_NE(wrapper, nullptr);
    EXPECT_STREQ(wrapper->className(), "HTML_Option");
    EXPECT_EQ(page.scripts(),
        QStringList({u"window.top.__ostrel.getPropertyValue( el.options, 'length');"_s,
            identifying(u"el.options[2];"_s)}));
    EXPECT_EQ(page.calls().last().timeoutMs, 0U);
}

TEST(HtmlArray, OutOfBoundsAsksForTheLengthOnly)
{
    for (const int index : {-1, 3, 4}) {
        FakePage page;
        const HTML_Array array({}, u"el.options"_s, &page);
        page.answer(u"3"_s);

        EXPECT_EQ(
            array.at(index).error, u"Out of bounds access to array of length 3 with index %1."_s.arg(index));
        EXPECT_EQ(page.scripts().size(), 1);
    }
}

TEST(HtmlArray, FailuresOfElementsNameTheIndex)
{
    FakePage page;
    const HTML_Array array({}, u"el.options"_s, &page);
    page.fail(u"gone"_s);
    page.answer(u"3"_s);
    page.fail(u"gone %1"_s);

    EXPECT_EQ(array.at(1).error,
        u"Cannot retrieve element at '1', length check failed: Error while obtaining property 'length': gone"_s);
    EXPECT_EQ(array.at(1).error, u"Could not get reference for array element at '1': gone %1"_s);
}
