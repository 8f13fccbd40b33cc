// An object tree as part of a page: nested elements that a reader opens and closes.
#pragma once

#include "host/report/htmltext.h"

namespace Ostrel::Host {

/// Shows any XML text. A text that is no XML is shown as it stands, and so is what lies too deep to be
/// nested.
Html objectTreeHtml(const QString &xml);

} // namespace Ostrel::Host
