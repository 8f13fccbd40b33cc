// The page payload: the script texts that a host evaluates in the top window of each page.
#pragma once

#include "wrappers/web/export.h"

#include <QString>

namespace Ostrel::WebWrapper {

class WrapperConfig;

/// Script that creates the payload's namespace object. To be evaluated before the payload; evaluated again in
/// the same page it changes nothing. The same text at each call; cannot fail.
PAGEPROBELIB_EXPORT QString getOstrelJsNamespaceInitCode();

/// The whole payload for a page: the sections, the extension scripts of the installation ("*.js" in
/// lib/extensions/web below OSTREL_PREFIX), the script of framework extensions, the XPath engine and its
/// options. Extension scripts are read at each call, so that a change takes effect with the next page. Cannot
/// fail: an extension file that cannot be read is reported on standard error and stands in the payload as an
/// empty text. Asks nothing of the configuration but caseInsensitiveXPathNodeNameMatching().
PAGEPROBELIB_EXPORT QString getJSCode(const WrapperConfig &config);

} // namespace Ostrel::WebWrapper
