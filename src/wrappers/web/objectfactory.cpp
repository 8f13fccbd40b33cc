#include "wrappers/web/objectfactory.h"

#include "ostrelhook/inspector.h"
#include "ostrelhook/namespace.h"
#include "ostrelhook/scriptvalue.h"
#include "wrappers/web/controls/customcontrols.h"
#include "wrappers/web/controls/customitemviews.h"
#include "wrappers/web/controls/kiwi.h"
#include "wrappers/web/controls/menustabscalendars.h"
#include "wrappers/web/controls/table.h"
#include "wrappers/web/evaluateasjson.h"
#include "wrappers/web/formelements.h"
#include "wrappers/web/htmlarray.h"
#include "wrappers/web/htmlcomponent.h"
#include "wrappers/web/scripttext.h"
#include "wrappers/web/toolkits/backbase.h"
#include "wrappers/web/toolkits/dojo.h"
#include "wrappers/web/toolkits/gwc.h"
#include "wrappers/web/toolkits/qooxdoo.h"
#include "wrappers/web/webobject.h"

#include <json/value.h>

#include <algorithm>
#include <span>

namespace Ostrel::WebWrapper {

using namespace Qt::StringLiterals;

namespace {

/// What is known of the element to be wrapped.
struct ReferenceInfo
{
    HTMLComponent *component;
    QString type;
    QString reference;
    QString name;
    /// What stands behind the prefix of a row, in the case that the page gave.
    QString suffix;
};

using Maker = HTML_Object *(*)(const ReferenceInfo &);

HTML_Object *nothing(const ReferenceInfo &)
{
    return nullptr;
}

template <typename Wrapper>
HTML_Object *make(const ReferenceInfo &info)
{
    return new Wrapper(info.name, info.reference, info.component);
}

/// Controls that a page extension operates: the suffix of the type names the extension.
template <typename Wrapper>
HTML_Object *makeExtended(const ReferenceInfo &info)
{
    return new Wrapper(info.name, info.reference, info.suffix, info.component);
}

/// Cells are told their name once more, "null" when it is unknown.
template <typename Wrapper>
HTML_Object *makeCell(const ReferenceInfo &info)
{
    const QString cell = info.name.isEmpty() ? u"null"_s : info.name;
    return new Wrapper(info.name, info.reference, cell, info.component);
}

template <typename Wrapper>
HTML_Object *makeNamedCell(const ReferenceInfo &info)
{
    return new Wrapper(info.name, info.reference, info.name, info.component);
}

HTML_Object *makeSelect(const ReferenceInfo &info)
{
    return new HTML_Select(info.name, info.reference, info.type == "select-multiple"_L1, info.component);
}

HTML_Object *makeBackBaseComboBox(const ReferenceInfo &info)
{
    return new HTML_BackBaseComboBox(info.name, info.reference, false, info.component);
}

enum class Match { Equal, Prefix };

struct Row
{
    Match match;
    std::initializer_list<QLatin1StringView> types;
    Maker make;
};

/// The first row that fits decides. Types are compared in lower case.
const Row rows[] = {
    {Match::Equal, {"undefined"_L1, "[unknown]"_L1, "true"_L1, ""_L1}, nothing},
    {Match::Equal, {"button"_L1, "submit"_L1}, make<HTML_Button>},
    {Match::Equal, {"radio"_L1}, make<HTML_RadioButton>},
    {Match::Equal, {"checkbox"_L1}, make<HTML_CheckBox>},
    {Match::Equal, {"image"_L1}, make<HTML_ImageButton>},
    {Match::Equal,
        {"email"_L1, "password"_L1, "text"_L1, "file"_L1, "search"_L1, "number"_L1, "tel"_L1, "url"_L1},
        make<HTML_Text>},
    {Match::Equal, {"textarea"_L1}, make<HTML_TextArea>},
    {Match::Prefix, {"select"_L1}, makeSelect},
    {Match::Equal, {"form"_L1}, make<HTML_Form>},
    {Match::Equal, {"a"_L1, "area"_L1}, make<HTML_Anchor>},
    {Match::Equal, {"option"_L1}, make<HTML_Option>},
    {Match::Equal, {"document"_L1}, make<HTML_Document>},
    {Match::Equal, {"img"_L1}, make<HTML_Image>},
    {Match::Equal, {"shadowroot"_L1}, make<HTML_ShadowRoot>},
    {Match::Equal, {"kiwi_choice"_L1}, make<HTML_KiwiChoice>},
    {Match::Equal, {"kiwi_tree"_L1}, make<HTML_KiwiTree>},
    {Match::Equal, {"kiwi_table"_L1}, make<HTML_KiwiTable>},
    {Match::Equal, {"kiwi_treetable"_L1}, make<HTML_KiwiTreeTable>},
    {Match::Equal, {"kiwi_more_menu"_L1}, make<HTML_KiwiMoreMenu>},
    {Match::Equal, {"kiwi_more_menu_item"_L1}, make<HTML_KiwiMoreMenuItem>},
    {Match::Equal, {"kiwi_table_item"_L1}, makeCell<HTML_KiwiTableCell>},
    {Match::Equal, {"kiwi_treetable_item"_L1}, makeCell<HTML_KiwiTreeTableCell>},
    {Match::Equal, {"kiwi_matrixtable"_L1}, make<HTML_KiwiMatrixTable>},
    {Match::Equal, {"kiwi_matrix"_L1}, makeCell<HTML_KiwiMatrix>},
    {Match::Equal, {"kiwi_matrixcell"_L1}, makeNamedCell<HTML_KiwiMatrixCell>},
    {Match::Equal, {"dojo_tree"_L1}, make<HTML_DojoTree>},
    {Match::Equal, {"dojo_splitpane"_L1}, make<HTML_DojoSplitPane>},
    {Match::Equal,
        {"bb_button"_L1, "bb_menucell"_L1, "bb_toolbaritem"_L1, "bb_tabselector"_L1, "bb_sidebarselector"_L1,
            "bb_navpanelhead"_L1, "bb_navhead"_L1, "bb_treeleaf"_L1, "bb_tree"_L1, "bb_treehandle"_L1,
            "bb_accordeon"_L1, "bb_spinnerupbutton"_L1, "bb_spinnerdownbutton"_L1, "bb_card"_L1},
        make<HTML_BackBaseButton>},
    {Match::Equal, {"bb_combobox"_L1}, makeBackBaseComboBox},
    {Match::Equal, {"bb_spinner"_L1}, make<HTML_BackBaseSpinner>},
    {Match::Equal, {"bb_listview"_L1}, make<HTML_BackBaseListView>},
    {Match::Equal, {"gwc_formfieldbox"_L1}, make<HTML_GWCFormFieldBox>},
    {Match::Equal, {"gwc_table"_L1}, make<HTML_GWCTable>},
    {Match::Equal, {"qx_widget_container"_L1}, make<HTML_QxWidgetElement>},
    {Match::Equal, {"qx_widget"_L1}, make<HTML_QxWidget>},
    {Match::Prefix, {"custom_itemview_"_L1}, makeExtended<HTML_CustomItemView>},
    {Match::Prefix, {"custom_item_"_L1}, makeExtended<HTML_CustomItem>},
    {Match::Prefix, {"custom_combobox_"_L1}, makeExtended<HTML_CustomComboBox>},
    {Match::Prefix, {"custom_selectlist_"_L1}, makeExtended<HTML_CustomSelectList>},
    {Match::Prefix, {"custom_text_"_L1}, makeExtended<HTML_CustomText>},
    {Match::Prefix, {"custom_button_"_L1}, makeExtended<HTML_CustomButton>},
    {Match::Prefix, {"custom_checkbox_"_L1}, makeExtended<HTML_CustomCheckbox>},
    {Match::Prefix, {"custom_radiobutton_"_L1}, makeExtended<HTML_CustomRadioButton>},
    {Match::Prefix, {"tabwidget_"_L1}, makeExtended<HTML_TabWidget>},
    {Match::Prefix, {"tabitem_"_L1}, makeExtended<HTML_Tab>},
    {Match::Prefix, {"colorfield_"_L1}, makeExtended<HTML_ColorField>},
    {Match::Prefix, {"expandablesectionheader_"_L1}, makeExtended<HTML_ExpandableSectionHeader>},
    {Match::Prefix, {"progressbar_"_L1}, makeExtended<HTML_ProgressBar>},
    {Match::Prefix, {"menu_"_L1}, makeExtended<HTML_Menu>},
    {Match::Prefix, {"menuitem_"_L1}, makeExtended<HTML_MenuItem>},
    {Match::Prefix, {"menubutton_"_L1}, makeExtended<HTML_MenuButton>},
    {Match::Prefix, {"datechooser_"_L1}, makeExtended<HTML_DateChooser>},
    {Match::Prefix, {"calendarview_"_L1}, makeExtended<HTML_CalendarView>},
    {Match::Prefix, {"calendarevent_"_L1}, makeExtended<HTML_CalendarEvent>},
    {Match::Prefix, {"htmltable_"_L1}, makeExtended<HTML_Table>},
    {Match::Equal, {"htmlarray"_L1}, make<HTML_Array>},
};

/// Asks the page for the reference and the type of an expression's value.
constexpr auto identifyingScript
    = u"(function() {\n  try {\n    var dummy = %1;\n    if ( !dummy ) {\n"
      "        return JSON.stringify({'refName': null, 'type': '[unknown]'});\n    }\n"
      "    var globalRefName = __ostrel__idForObject( dummy );\n"
      "    return JSON.stringify({'refName': globalRefName, 'type': __ostrel__typeOf( dummy ) });\n"
      "  } catch( e ) {\n"
      "    return JSON.stringify({'error': {'name': e['name'], 'message': e['message'], 'file': "
      "e['fileName'], "
      "'line': e['lineNumber'], 'stack': e['stack']}});  }\n})();";

QString detailText(const PageException &exception)
{
    QString text = message(
        u"Error evaluating JavaScript to retrieve HTML Object: %1: %2", exception.name, exception.message);
    if (exception.file) {
        text += message(u" at %1", *exception.file);
        if (exception.line)
            text += message(u":%1", *exception.line);
    }
    text += u". "_s;
    if (exception.stack)
        text += message(u"Stacktrace: %1", *exception.stack);
    return text;
}

QString memberText(const Json::Value &value)
{
    return value.isConvertibleTo(Json::stringValue) ? QString::fromStdString(value.asString()) : QString();
}

} // namespace

HTML_Object *htmlObjectFromReferenceInfo(
    HTMLComponent *component, const QString &typeString, const QString &reference, const QString &name)
{
    const QString type = typeString.toLower();
    for (const Row &row : rows) {
        for (const QLatin1StringView candidate : row.types) {
            if (row.match == Match::Equal ? type == candidate : type.startsWith(candidate)) {
                return row.make({component, type, reference, name,
                    row.match == Match::Prefix ? typeString.mid(candidate.size()) : QString()});
            }
        }
    }
    return new HTML_Object(name, reference, component);
}

FunctionCallResult<HTML_Object *> htmlObjectFromJavaScriptResult(
    HTMLComponent *component, const QString &expression, const QString &name, unsigned int timeoutMs)
{
    const HTMLComponent::EvalResult answer
        = component->evaluateJavaScript(message(identifyingScript, expression), timeoutMs);
    // Only this flag counts here: an answer whose other flag is set is parsed like any text.
    if (answer.failed)
        return Failure(answer.result);

    const ParsedJson parsed = parseJson(answer.result);
    switch (parsed.outcome) {
    case ParsedJson::Outcome::Threw:
        return Failure(message(u"Failed to parse JSON return value '%1': %2", answer.result, parsed.error));
    case ParsedJson::Outcome::Malformed:
        return Failure(message(u"Failed to parse JSON return value '%1':%2", answer.result, parsed.error));
    case ParsedJson::Outcome::Parsed:
        break;
    }
    const Json::Value &root = parsed.root;
    if (!root.isObject()) {
        return Failure(message(u"Failed to parse JSON return value '%1': expected an object, got %2 instead.",
            answer.result, QString::number(root.type())));
    }
    if (root.isMember("error"))
        return Failure(detailText(PageException::fromJson(root["error"])));
    for (const char *member : {"refName", "type"}) {
        if (!root.isMember(member)) {
            return Failure(message(u"JSON return value '%1' is missing the %2 member.", answer.result,
                QString::fromLatin1(member)));
        }
    }
    return htmlObjectFromReferenceInfo(
        component, memberText(root["type"]), memberText(root["refName"]), name);
}

HTML_Object *retrieveObject(const SharedPtr<Object> &object)
{
    if (!object || !object->data() || !object->objectClass()->inherits(objectModelHtmlObjectClass()))
        return nullptr;
    return static_cast<HTML_Object *>(object->data());
}

SharedPtr<Object> wrapObject(HTML_Object *wrapper)
{
    return ScriptValue<HTML_Object *>::toObject(wrapper);
}

Class *objectModelHtmlObjectClass()
{
    return Inspector::self()->findClass(u"HTML_Object"_s);
}

Class *objectModelHtmlDocumentClass()
{
    return Inspector::self()->findClass(u"HTML_Document"_s);
}

} // namespace Ostrel::WebWrapper
