// The global script functions on elements: clickLink, selectOption and scrollTo.
#pragma once

#include "wrappers/web/export.h"

namespace Ostrel {
class GlobalMethod;
}

namespace Ostrel::WebWrapper {

/// Makes the functions known to scripts. The host calls it after createWebObjectClasses(); further calls do
/// nothing. The functions live as long as the process.
PAGEPROBELIB_EXPORT void setupSharedObjectModelFunctions();

// The functions, for hosts that record or call them; null before setupSharedObjectModelFunctions().
PAGEPROBELIB_EXPORT GlobalMethod *sharedClickLinkByObjectFn();
/// The same function as sharedClickLinkByObjectFn().
PAGEPROBELIB_EXPORT GlobalMethod *sharedClickLinkByNameFn();
PAGEPROBELIB_EXPORT GlobalMethod *sharedSelectOptionByObjectFn();
PAGEPROBELIB_EXPORT GlobalMethod *sharedSelectOptionByNameFn();
PAGEPROBELIB_EXPORT GlobalMethod *sharedScrollToByObjectFn();
PAGEPROBELIB_EXPORT GlobalMethod *sharedScrollToByObjectAndAlignmentFn();

} // namespace Ostrel::WebWrapper
