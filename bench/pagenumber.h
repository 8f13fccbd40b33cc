// pageNumber(): what the benchmarks that measure inside a page get from it.
#pragma once

#include "host/browser/browserpage.h"
#include "ostrelhook/functioncallresult.h"

#include <QString>

namespace Ostrel::Bench {

/// The number that a script gives in a page, or what it gave instead.
FunctionCallResult<double> pageNumber(const Host::BrowserPage &page, const QString &script);

} // namespace Ostrel::Bench
