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

// pagevalues.cpp
extern const ClassTable HTML_Style_Class;
extern const ClassTable HTML_XPathResult_Class;

} // namespace Ostrel::WebWrapper
