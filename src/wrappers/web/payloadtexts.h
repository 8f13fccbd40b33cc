// The page script as plain UTF-8 texts, each ended by a zero byte. The build makes them from the files in
// payload/.
#pragma once

namespace Ostrel::WebWrapper {

/// The 25 sections in load order, then a null.
extern const char *const payloadSections[];

/// Creates the namespace object in the page.
extern const char namespaceInitText[];

/// Stand behind the sections and the extension scripts, in this order.
extern const char *const xpathSupportText;
extern const char *const xpathEngineText;

} // namespace Ostrel::WebWrapper
