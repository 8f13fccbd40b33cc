// What scripts see of XPath results and styles.
#include "wrappers/web/pagevalues.h"

#include "wrappers/web/reflection/tables.h"
#include "wrappers/web/webobject.h"

namespace Ostrel::WebWrapper {

namespace {

constexpr MethodRow styleMethods[] = {
    method<&HTML_Style::value>("value", "prop"),
};

constexpr PropertyRow xpathResultProperties[] = {
    property<&HTML_XPathResult::numberValue>("numberValue"),
    property<&HTML_XPathResult::snapshotLength>("snapshotLength"),
    property<&HTML_XPathResult::stringValue>("stringValue"),
    property<&HTML_XPathResult::booleanValue>("booleanValue"),
};

constexpr MethodRow xpathResultMethods[] = {
    method<&HTML_XPathResult::booleanValue>("booleanValue"),
    method<&HTML_XPathResult::numberValue>("numberValue"),
    method<&HTML_XPathResult::singleNodeValue>("singleNodeValue"),
    method<&HTML_XPathResult::stringValue>("stringValue"),
    method<&HTML_XPathResult::snapshotLength>("snapshotLength"),
    method<&HTML_XPathResult::snapshotItem>("snapshotItem", "index"),
};

} // namespace

constinit const ClassTable HTML_Style_Class{"HTML_Style", "Object", {}, styleMethods};
constinit const ClassTable HTML_XPathResult_Class{
    "HTML_XPathResult", "Object", xpathResultProperties, xpathResultMethods};

} // namespace Ostrel::WebWrapper
