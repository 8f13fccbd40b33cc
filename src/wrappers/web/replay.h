// Replay: what the framework asks before it acts on an element, and the events that it sends to one.
#pragma once

#include "ostrelhook/delegates.h"
#include "ostrelhook/functioncallresult.h"
#include "wrappers/web/export.h"

namespace Ostrel::WebWrapper {

class HTML_Object;

/// Whether a user could act on the element: it is visible and, as a form field, not disabled. Null and the
/// document itself are ready, and so is what the page cannot tell the visibility of.
PAGEPROBELIB_EXPORT FunctionCallResult<bool> isObjectReady(HTML_Object *object);

} // namespace Ostrel::WebWrapper
