#include "wrappers/web/reflection/webclasses.h"

#include "ostrelhook/inspector.h"
#include "wrappers/web/pagevalues.h"
#include "wrappers/web/reflection/csscolor.h"
#include "wrappers/web/reflection/cssproperties.h"
#include "wrappers/web/reflection/htmlevent.h"
#include "wrappers/web/reflection/objectdelegates.h"
#include "wrappers/web/reflection/tables.h"
#include "wrappers/web/webobject.h"

namespace Ostrel::WebWrapper {

using namespace Qt::StringLiterals;

namespace {

constexpr auto deadElement = u"Object reference deleted in browser already, please obtain a new reference using "
                             "waitForObject or findObject";
constexpr auto deadXPathResult = u"XPathResult reference deleted in browser already, please obtain a new "
                                 "reference using the obj.evaluateXPath() function.";

template <typename Wrapper>
constexpr WrapperFamily familyOf(const char16_t *deadMessage)
{
    return {[](void *wrapper) { return static_cast<Wrapper *>(wrapper)->hasValidReference(); }, deadMessage,
        [](void *wrapper) { delete static_cast<Wrapper *>(wrapper); }};
}

constexpr WrapperFamily elementFamily = familyOf<HTML_Object>(deadElement);
constexpr WrapperFamily styleFamily = familyOf<HTML_Style>(deadElement);
constexpr WrapperFamily xpathResultFamily = familyOf<HTML_XPathResult>(deadXPathResult);

using Creator = Class *(*)(Namespace *);

template <const ClassTable &table>
Class *element(Namespace *home)
{
    return new HTML_ObjectBase_Class(table, home);
}

template <const ClassTable &table, const WrapperFamily &family>
Class *pageValue(Namespace *home)
{
    return new TableClass(table, family, home);
}

template <typename SpecialClass>
Class *make(Namespace *home)
{
    return new SpecialClass(home);
}

/// In the order of registration. Base classes may come later than their subclasses: a superclass is looked up by
/// name when it is first needed.
constexpr Creator creators[] = {
    make<CssColorClass>,
    element<HTML_Anchor_Class>,
    element<HTML_Array_Class>,
    // TODO element<HTML_BackBaseButton_Class>,
    // TODO element<HTML_BackBaseComboBox_Class>,
    // TODO element<HTML_BackBaseListView_Class>,
    // TODO element<HTML_BackBaseSpinner_Class>,
    element<HTML_Button_Class>,
    element<HTML_ButtonBase_Class>,
    // TODO element<HTML_CalendarEvent_Class>,
    // TODO element<HTML_CalendarView_Class>,
    element<HTML_CheckBox_Class>,
    // TODO element<HTML_ColorField_Class>,
    // TODO element<HTML_CustomButton_Class>,
    // TODO element<HTML_CustomButtonBase_Class>,
    // TODO element<HTML_CustomCheckbox_Class>,
    // TODO element<HTML_CustomComboBox_Class>,
    // TODO element<HTML_CustomItem_Class>,
    // TODO element<HTML_CustomItemView_Class>,
    // TODO element<HTML_CustomRadioButton_Class>,
    // TODO element<HTML_CustomSelectList_Class>,
    // TODO element<HTML_CustomText_Class>,
    // TODO element<HTML_DateChooser_Class>,
    element<HTML_Document_Class>,
    // TODO element<HTML_DojoSplitPane_Class>,
    // TODO element<HTML_DojoTree_Class>,
    make<HTML_Event_Class>,
    // TODO element<HTML_ExpandableSectionHeader_Class>,
    element<HTML_Form_Class>,
    element<HTML_FormElement_Class>,
    // TODO element<HTML_GWCFormFieldBox_Class>,
    // TODO element<HTML_GWCTable_Class>,
    element<HTML_Image_Class>,
    element<HTML_ImageButton_Class>,
    // TODO element<HTML_KiwiChoice_Class>,
    // TODO element<HTML_KiwiMatrix_Class>,
    // TODO element<HTML_KiwiMatrixCell_Class>,
    // TODO element<HTML_KiwiMatrixTable_Class>,
    // TODO element<HTML_KiwiMoreMenu_Class>,
    // TODO element<HTML_KiwiMoreMenuItem_Class>,
    // TODO element<HTML_KiwiTable_Class>,
    // TODO element<HTML_KiwiTableCell_Class>,
    // TODO element<HTML_KiwiTree_Class>,
    // TODO element<HTML_KiwiTreeTable_Class>,
    // TODO element<HTML_KiwiTreeTableCell_Class>,
    // TODO element<HTML_Menu_Class>,
    // TODO element<HTML_MenuButton_Class>,
    // TODO element<HTML_MenuItem_Class>,
    element<HTML_Object_Class>,
    element<HTML_Option_Class>,
    // TODO element<HTML_ProgressBar_Class>,
    // TODO element<HTML_QxWidget_Class>,
    // TODO element<HTML_QxWidgetElement_Class>,
    element<HTML_RadioButton_Class>,
    element<HTML_Select_Class>,
    element<HTML_ShadowRoot_Class>,
    pageValue<HTML_Style_Class, styleFamily>,
    // TODO element<HTML_Tab_Class>,
    // TODO element<HTML_TabWidget_Class>,
    // TODO element<HTML_Table_Class>,
    element<HTML_Text_Class>,
    element<HTML_TextArea_Class>,
    element<HTML_TextBase_Class>,
    // TODO element<HTML_TreeBase_Class>,
    pageValue<HTML_XPathResult_Class, xpathResultFamily>,
    make<CSSProperties_Class>,
};

} // namespace

HTML_ObjectBase_Class::HTML_ObjectBase_Class(const ClassTable &table, Namespace *home)
    : TableClass(table, elementFamily, home)
{
}

void createWebObjectClasses()
{
    Namespace *home = Inspector::self()->globalNamespace();
    for (const Creator create : creators)
        create(home);
    registerObjectDelegates();
}

} // namespace Ostrel::WebWrapper
