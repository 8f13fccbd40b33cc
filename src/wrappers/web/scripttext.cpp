#include "wrappers/web/scripttext.h"

namespace Ostrel::WebWrapper {

using namespace Qt::StringLiterals;

QString escapeForScriptString(const QString &text)
{
    return escapeQuotes(text).replace(u'\n', "\\n"_L1).remove(u'\r');
}

QString escapeQuotes(const QString &text)
{
    return QString(text).replace(u'\\', "\\\\"_L1).replace(u'\'', "\\'"_L1);
}

QString escapeForDoubleQuotes(const QString &text)
{
    return QString(text)
        .replace(u'\\', "\\\\"_L1)
        .replace(u'"', "\\\""_L1)
        .replace(u'\n', "\\n"_L1)
        .replace(u'\r', "\\r"_L1);
}

QString deferred(const QString &action)
{
    return u"setTimeout(function(e){%1}, 100);"_s.arg(action);
}

} // namespace Ostrel::WebWrapper
