#include "wrappers/web/reflection/objectdelegates.h"

#include "ostrelhook/inspector.h"
#include "wrappers/web/customviewitempropertydelegate.h"
#include "wrappers/web/geometrydelegates.h"
#include "wrappers/web/objectfactory.h"
#include "wrappers/web/webobject.h"
#include "wrappers/web/webobjectdelegate.h"

#include <cstdio>

namespace Ostrel::WebWrapper {

using namespace Qt::StringLiterals;

HTML_Object_CastToStringDelegate::HTML_Object_CastToStringDelegate(const QString &className)
    : CastDelegate(className)
{
}

bool HTML_Object_CastToStringDelegate::canCast(const Class *target) const
{
    return target == Inspector::self()->primitiveClass(PrimitiveType::String);
}

SharedPtr<Object> HTML_Object_CastToStringDelegate::cast(SharedPtr<Object> object, const Class *target) const
{
    const HTML_Object *wrapper = retrieveObject(object);
    if (!wrapper || !canCast(target))
        return {};
    return Inspector::self()->createPrimitive(wrapper->jsReference());
}

HTML_Object_ComparisonDelegate::HTML_Object_ComparisonDelegate(const QString &className)
    : ComparisonDelegate(className)
{
}

bool HTML_Object_ComparisonDelegate::compare(SharedPtr<Object> a, SharedPtr<Object> b) const
{
    const HTML_Object *left = retrieveObject(a);
    HTML_Object *right = retrieveObject(b);
    if (!left || !right)
        return !left && !right;
    const FunctionCallResult<bool> same = left->sameAs(right);
    if (same.failed())
        std::fprintf(stderr, "%s\n", qPrintable(same.error));
    return !same.failed() && same.value;
}

void registerObjectDelegates()
{
    const QString rootClass = u"HTML_Object"_s;
    new HTMLObjectHierarchyDelegate;
    new CustomViewItemPropertyDelegate;
    new WebObjectGeometryDelegate;
    // Scripts compare by the delegate that is made last: two null elements are equal to them.
    new WebObjectComparisonDelegate;
    new HTML_Object_ComparisonDelegate(rootClass);
    new HTML_Object_CastToStringDelegate(rootClass);
}

} // namespace Ostrel::WebWrapper
