// The events of web pages, as the framework records and replays them.
#pragma once

#include "wrappers/web/export.h"

namespace Ostrel {

/// Registers the events with the framework's global class. The host calls it once, before any event text is
/// handled; a second call would register them all once more.
PAGEPROBELIB_EXPORT void initWebEvents();

} // namespace Ostrel
