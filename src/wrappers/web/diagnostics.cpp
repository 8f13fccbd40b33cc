#include "wrappers/web/diagnostics.h"

#include <cstdio>

namespace Ostrel::WebWrapper {

void reportToStandardError(const QString &text)
{
    std::fprintf(stderr, "%s\n", text.toLocal8Bit().constData());
}

} // namespace Ostrel::WebWrapper
