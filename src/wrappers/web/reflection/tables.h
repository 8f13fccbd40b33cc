// The tables of all script-visible classes, one a wrapper class. A new class is a table in the file of its
// family, a line here and its place in the list of createwebobjectclasses.cpp.
#pragma once

#include "ostrelhook/classtable.h"

namespace Ostrel::WebWrapper {

// elements.cpp
extern const ClassTable HTML_Object_Class;
extern const ClassTable HTML_Array_Class;
extern const ClassTable HTML_Anchor_Class;
extern const ClassTable HTML_Document_Class;
extern const ClassTable HTML_Image_Class;
extern const ClassTable HTML_ShadowRoot_Class;

// formelements.cpp
extern const ClassTable HTML_FormElement_Class;
extern const ClassTable HTML_ButtonBase_Class;
extern const ClassTable HTML_Button_Class;
extern const ClassTable HTML_CheckBox_Class;
extern const ClassTable HTML_Form_Class;
extern const ClassTable HTML_ImageButton_Class;
extern const ClassTable HTML_Option_Class;
extern const ClassTable HTML_RadioButton_Class;
extern const ClassTable HTML_Select_Class;
extern const ClassTable HTML_Text_Class;
extern const ClassTable HTML_TextArea_Class;
extern const ClassTable HTML_TextBase_Class;

// customcontrols.cpp
extern const ClassTable HTML_CustomButtonBase_Class;
extern const ClassTable HTML_CustomButton_Class;
extern const ClassTable HTML_CustomCheckbox_Class;
extern const ClassTable HTML_CustomRadioButton_Class;
extern const ClassTable HTML_CustomComboBox_Class;
extern const ClassTable HTML_CustomSelectList_Class;
extern const ClassTable HTML_CustomText_Class;
extern const ClassTable HTML_ColorField_Class;
extern const ClassTable HTML_ExpandableSectionHeader_Class;
extern const ClassTable HTML_ProgressBar_Class;

// customitemviews.cpp
extern const ClassTable HTML_CustomItem_Class;
extern const ClassTable HTML_CustomItemView_Class;

// menustabscalendars.cpp
extern const ClassTable HTML_Menu_Class;
extern const ClassTable HTML_MenuItem_Class;
extern const ClassTable HTML_MenuButton_Class;
extern const ClassTable HTML_TabWidget_Class;
extern const ClassTable HTML_Tab_Class;
extern const ClassTable HTML_DateChooser_Class;
extern const ClassTable HTML_CalendarView_Class;
extern const ClassTable HTML_CalendarEvent_Class;

// kiwi.cpp
extern const ClassTable HTML_TreeBase_Class;
extern const ClassTable HTML_KiwiChoice_Class;
extern const ClassTable HTML_KiwiMatrix_Class;
extern const ClassTable HTML_KiwiMatrixCell_Class;
extern const ClassTable HTML_KiwiMatrixTable_Class;
extern const ClassTable HTML_KiwiMoreMenu_Class;
extern const ClassTable HTML_KiwiMoreMenuItem_Class;
extern const ClassTable HTML_KiwiTable_Class;
extern const ClassTable HTML_KiwiTableCell_Class;
extern const ClassTable HTML_KiwiTree_Class;
extern const ClassTable HTML_KiwiTreeTable_Class;
extern const ClassTable HTML_KiwiTreeTableCell_Class;

// table.cpp
extern const ClassTable HTML_Table_Class;

// toolkits.cpp
extern const ClassTable HTML_BackBaseButton_Class;
extern const ClassTable HTML_BackBaseComboBox_Class;
extern const ClassTable HTML_BackBaseListView_Class;
extern const ClassTable HTML_BackBaseSpinner_Class;
extern const ClassTable HTML_DojoSplitPane_Class;
extern const ClassTable HTML_DojoTree_Class;
extern const ClassTable HTML_GWCFormFieldBox_Class;
extern const ClassTable HTML_GWCTable_Class;
extern const ClassTable HTML_QxWidget_Class;
extern const ClassTable HTML_QxWidgetElement_Class;

// pagevalues.cpp
extern const ClassTable HTML_Style_Class;
extern const ClassTable HTML_XPathResult_Class;

} // namespace Ostrel::WebWrapper
