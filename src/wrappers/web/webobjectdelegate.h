// How hosts tell the library that a page has gone.
#pragma once

#include "wrappers/web/export.h"

namespace Ostrel::WebWrapper {

class HTMLComponent;

/// Invalidates every wrapper of a page, or all wrappers for a null pointer.
PAGEPROBELIB_EXPORT void invalidatePageReferences(const HTMLComponent *component);

} // namespace Ostrel::WebWrapper
