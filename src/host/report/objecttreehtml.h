// An object tree as part of a page: nested elements that a reader opens and closes.
#pragma once

#include "host/report/htmltext.h"

namespace Ostrel::Host {

/// Shows a dump in its XML form. A text that is none is shown as it stands; what lies deeper than browsers
/// nest is left out.
Html objectTreeHtml(const QString &xml);

} // namespace Ostrel::Host
