// createWebObjectClasses: makes every class of the object model known to the framework.
#pragma once

#include "ostrelhook/classtable.h"
#include "wrappers/web/export.h"

namespace Ostrel::WebWrapper {

/// The script error of every use of an element whose reference is invalid.
inline constexpr const char16_t *deadElementMessage
    = u"Object reference deleted in browser already, please obtain a new reference using waitForObject or "
      u"findObject";

/// Base of all element classes: a table of members, and the one place that frees the wrappers of scripts.
class PAGEPROBELIB_EXPORT HTML_ObjectBase_Class : public TableClass
{
public:
    HTML_ObjectBase_Class(const ClassTable &table, Namespace *home);
};

/// Registers all classes and the delegates that belong to them. The host calls it once; the classes live as
/// long as the process.
PAGEPROBELIB_EXPORT void createWebObjectClasses();

} // namespace Ostrel::WebWrapper
