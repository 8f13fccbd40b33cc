// Lookup by page function: the one path from a search in the page to a wrapped object, and the tools that
// take object names apart.
#pragma once

#include "ostrelhook/object.h"
#include "ostrelhook/objectname.h"
#include "wrappers/web/export.h"

#include <QList>
#include <QString>

namespace Ostrel::WebWrapper {

class HTMLComponent;

/// Evaluates a complete call of a page function that finds an object, and wraps what it gives. `name` is the
/// name as the user wrote it. An object that does not exist is a null pointer and no error; what fails is
/// raised as a script error. The limit is 5000 ms, or what OSTREL_WEB_OBJECT_LOOKUP_TIMEOUT says in
/// milliseconds.
SharedPtr<Object> findObjectWithJsFunction(
    const QString &function, const QString &name, HTMLComponent *component);

/// Searches inside a container. A name with properties needs a tag name; without one nothing is found.
SharedPtr<Object> findObjectInContainer(
    HTMLComponent *component, const SharedPtr<Object> &container, const ObjectName &name);

/// The names from the outermost container to the object itself, symbolic names resolved.
QList<ObjectName> containerChain(ObjectName name);

/// The reverse: one name whose containers are those before it in the list.
ObjectName nestedContainerName(const QList<ObjectName> &chain);

/// The name with `container` as its outermost container.
PAGEPROBELIB_EXPORT ObjectName setObjectNameContainer(ObjectName name, const QString &container);

} // namespace Ostrel::WebWrapper
