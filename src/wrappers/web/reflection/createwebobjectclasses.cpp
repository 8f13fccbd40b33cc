#include "wrappers/web/reflection/webclasses.h"

#include "ostrelhook/inspector.h"
#include "wrappers/web/pagevalues.h"
#include "wrappers/web/reflection/csscolor.h"
#include "wrappers/web/reflection/cssproperties.h"
#include "wrappers/web/reflection/htmlevent.h"
#include "wrappers/web/reflection/objectdelegates.h"
#include "wrappers/web/reflection/tableinterface.h"
#include "wrappers/web/reflection/tables.h"
#include "wrappers/web/webobject.h"

namespace Ostrel::WebWrapper {

using namespace Qt::StringLiterals;

namespace {

constexpr auto deadXPathResult = u"XPathResult reference deleted in browser already, please obtain a new "
                                 "reference using the obj.evaluateXPath() function.";

template <typename Wrapper>
constexpr WrapperFamily familyOf(const char16_t *deadMessage)
{
    return {[](void *wrapper) { return static_cast<Wrapper *>(wrapper)->hasValidReference(); }, deadMessage,
        [](void *wrapper) { delete static_cast<Wrapper *>(wrapper); }};
}

constexpr WrapperFamily elementFamily = familyOf<HTML_Object>(deadElementMessage);
constexpr WrapperFamily styleFamily = familyOf<HTML_Style>(deadElementMessage);
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

/// In the order of registration. Base classes may come later than their subclasses: a superclass is looked up
/// by name when it is first needed.
constexpr Creator creators[] = {
    make<CssColorClass>,
    element<HTML_Anchor_Class>,
    element<HTML_Array_Class>,
    element<HTML_BackBaseButton_Class>,
    element<HTML_BackBaseComboBox_Class>,
    element<HTML_BackBaseListView_Class>,
    element<HTML_BackBaseSpinner_Class>,
    element<HTML_Button_Class>,
    element<HTML_ButtonBase_Class>,
    element<HTML_CalendarEvent_Class>,
    element<HTML_CalendarView_Class>,
    element<HTML_CheckBox_Class>,
    element<HTML_ColorField_Class>,
    element<HTML_CustomButton_Class>,
    element<HTML_CustomButtonBase_Class>,
    element<HTML_CustomCheckbox_Class>,
    element<HTML_CustomComboBox_Class>,
    element<HTML_CustomItem_Class>,
    element<HTML_CustomItemView_Class>,
    element<HTML_CustomRadioButton_Class>,
    element<HTML_CustomSelectList_Class>,
    element<HTML_CustomText_Class>,
    element<HTML_DateChooser_Class>,
    element<HTML_Document_Class>,
    element<HTML_DojoSplitPane_Class>,
    element<HTML_DojoTree_Class>,
    make<HTML_Event_Class>,
    element<HTML_ExpandableSectionHeader_Class>,
    element<HTML_Form_Class>,
    element<HTML_FormElement_Class>,
    element<HTML_GWCFormFieldBox_Class>,
    element<HTML_GWCTable_Class>,
    element<HTML_Image_Class>,
    element<HTML_ImageButton_Class>,
    element<HTML_KiwiChoice_Class>,
    element<HTML_KiwiMatrix_Class>,
    element<HTML_KiwiMatrixCell_Class>,
    element<HTML_KiwiMatrixTable_Class>,
    element<HTML_KiwiMoreMenu_Class>,
    element<HTML_KiwiMoreMenuItem_Class>,
    element<HTML_KiwiTable_Class>,
    element<HTML_KiwiTableCell_Class>,
    element<HTML_KiwiTree_Class>,
    element<HTML_KiwiTreeTable_Class>,
    element<HTML_KiwiTreeTableCell_Class>,
    element<HTML_Menu_Class>,
    element<HTML_MenuButton_Class>,
    element<HTML_MenuItem_Class>,
    element<HTML_Object_Class>,
    element<HTML_Option_Class>,
    element<HTML_ProgressBar_Class>,
    element<HTML_QxWidget_Class>,
    element<HTML_QxWidgetElement_Class>,
    element<HTML_RadioButton_Class>,
    element<HTML_Select_Class>,
    element<HTML_ShadowRoot_Class>,
    pageValue<HTML_Style_Class, styleFamily>,
    element<HTML_Tab_Class>,
    element<HTML_TabWidget_Class>,
    element<HTML_Table_Class>,
    element<HTML_Text_Class>,
    element<HTML_TextArea_Class>,
    element<HTML_TextBase_Class>,
    element<HTML_TreeBase_Class>,
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
    auto *tableInterface = new HTML_TableVPInterface_TableInterfaceClass<HTML_Table>(home);
    Inspector::self()->findClass(u"HTML_Table"_s)->addInterface(tableInterface->name(), tableInterface);
}

} // namespace Ostrel::WebWrapper
