// What scripts see of elements in general, of documents and of lists.
#include "wrappers/web/formelements.h"
#include "wrappers/web/htmlarray.h"
#include "wrappers/web/pagevalues.h"
#include "wrappers/web/reflection/cssproperties.h"
#include "wrappers/web/reflection/tables.h"

namespace Ostrel::WebWrapper {

namespace {

FunctionCallResult<QString> className(HTML_Object &object)
{
    return QString::fromLatin1(object.className());
}

using SetText = FunctionCallResult<void> (HTML_Object::*)(const char *, const char *);
using SetNumber = FunctionCallResult<void> (HTML_Object::*)(const char *, int);
using SetFlag = FunctionCallResult<void> (HTML_Object::*)(const char *, bool);
using Invoke0 = FunctionCallResult<QString> (HTML_Object::*)(const char *);
using Invoke1 = FunctionCallResult<QString> (HTML_Object::*)(const char *, const char *);
using Invoke2 = FunctionCallResult<QString> (HTML_Object::*)(const char *, const char *, const char *);

constexpr PropertyRow objectProperties[] = {
    property<&HTML_Object::title>("title"),
    property<&HTML_Object::domClassName>("domClassName"),
    property<&HTML_Object::id>("id"),
    property<&HTML_Object::styleDisplay>("styleDisplay"),
    property<&HTML_Object::innerHTML>("innerHTML"),
    property<&HTML_Object::numChildren>("numChildren"),
    property<&HTML_Object::height>("height"),
    property<&HTML_Object::visible>("visible"),
    property<&HTML_Object::innerText>("innerText"),
    property<&HTML_Object::hierarchicalQualifiedName>("domPath"),
    property<&HTML_Object::tagName>("tagName"),
    property<&HTML_Object::x>("x"),
    property<&HTML_Object::y>("y"),
    property<&HTML_Object::boundingClientRect>("boundingClientRect"),
    property<&HTML_Object::screenRect>("screenRect"),
    property<&HTML_Object::width>("width"),
    property<&HTML_Object::simplifiedInnerText>("simplifiedInnerText"),
    property<&HTML_Object::hasFocus>("hasFocus"),
    property<&cssPropertiesOf>("css"),
    property<&HTML_Object::shadowRoot>("shadowRoot"),
};

constexpr MethodRow objectMethods[] = {
    method<&className>("className"),
    method<&HTML_Object::domClassName>("domClassName"),
    method<&HTML_Object::tagName>("tagName"),
    method<&HTML_Object::innerText>("innerText"),
    method<&HTML_Object::innerHTML>("innerHTML"),
    method<&HTML_Object::id>("id"),
    method<&HTML_Object::title>("title"),
    method<&HTML_Object::styleDisplay>("styleDisplay"),
    method<&HTML_Object::styleVisibility>("styleVisibility"),
    method<&HTML_Object::visible>("visible"),
    method<&HTML_Object::screenRect>("screenRect"),
    method<&HTML_Object::boundingClientRect>("boundingClientRect"),
    method<&HTML_Object::simplifiedInnerText>("simplifiedInnerText"),
    method<&HTML_Object::x>("x"),
    method<&HTML_Object::y>("y"),
    method<&HTML_Object::width>("width"),
    method<&HTML_Object::height>("height"),
    method<&HTML_Object::firstChild>("firstChild"),
    method<&HTML_Object::lastChild>("lastChild"),
    method<&HTML_Object::numChildren>("numChildren"),
    method<&HTML_Object::nextSibling>("nextSibling"),
    method<&HTML_Object::previousSibling>("previousSibling"),
    method<&HTML_Object::parentElement>("parentElement"),
    method<&HTML_Object::style>("style"),
    method<&HTML_Object::evaluateXPath>("evaluateXPath", "statement"),
    method<SetText(&HTML_Object::setProperty)>("setProperty", "propName", "value"),
    method<SetNumber(&HTML_Object::setProperty)>("setProperty", "propName", "value"),
    method<SetFlag(&HTML_Object::setProperty)>("setProperty", "propName", "value"),
    method<&HTML_Object::property>("property", "propName"),
    method<Invoke0(&HTML_Object::invoke)>("invoke", "methodName"),
    method<Invoke1(&HTML_Object::invoke)>("invoke", "methodName", "arg1"),
    method<Invoke2(&HTML_Object::invoke)>("invoke", "methodName", "arg1", "arg2"),
    method<&HTML_Object::scrollTo, true>("scrollTo"),
    method<&HTML_Object::click, 0, 0, 0, 1>("click"),
    method<&HTML_Object::click, 0, 0, 1>("click", "mod"),
    method<&HTML_Object::click, 0, 1>("click", "mod", "x"),
    method<&HTML_Object::click, 1>("click", "mod", "x", "y"),
    method<&HTML_Object::click>("click", "mod", "x", "y", "button"),
    method<&HTML_Object::doubleClick, 0, 0, 0>("doubleClick"),
    method<&HTML_Object::doubleClick, 0, 0>("doubleClick", "mod"),
    method<&HTML_Object::doubleClick, 0>("doubleClick", "mod", "x"),
    method<&HTML_Object::doubleClick>("doubleClick", "mod", "x", "y"),
    method<&HTML_Object::openContextMenu>("openContextMenu"),
    method<&HTML_Object::name>("name"),
    method<&HTML_Object::hierarchicalQualifiedName>("hierarchicalQualifiedName"),
    method<&HTML_Object::scrollTo>("scrollTo", "top"),
};

constexpr PropertyRow arrayProperties[] = {
    property<&HTML_Array::length>("length"),
};

constexpr MethodRow arrayMethods[] = {
    method<&HTML_Array::at>("at", "i"),
    method<&HTML_Array::length>("length"),
};

constexpr MethodRow documentMethods[] = {
    method<&HTML_Document::getElementsByTagName>("getElementsByTagName", "tagName"),
    method<&HTML_Document::getElementById>("getElementById", "id"),
};

} // namespace

constinit const ClassTable HTML_Object_Class{"HTML_Object", nullptr, objectProperties, objectMethods};
constinit const ClassTable HTML_Array_Class{"HTML_Array", "HTML_Object", arrayProperties, arrayMethods};
constinit const ClassTable HTML_Anchor_Class{"HTML_Anchor", "HTML_Object", {}, {}};
constinit const ClassTable HTML_Document_Class{"HTML_Document", "HTML_Object", {}, documentMethods};
constinit const ClassTable HTML_Image_Class{"HTML_Image", "HTML_Object", {}, {}};
constinit const ClassTable HTML_ShadowRoot_Class{"HTML_ShadowRoot", "HTML_Object", {}, {}};

} // namespace Ostrel::WebWrapper
