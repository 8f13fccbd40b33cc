#include "host/script/verifications.h"

#include <QStringList>
#include <QUrl>

namespace Ostrel::Host {

using namespace Qt::StringLiterals;

namespace {

/// How the addresses of the script side of the host itself begin.
const QString ownScripts = u":/pageprobe/"_s;

} // namespace

ScriptPlace innermostPlace(const QString &stack)
{
    const QStringList lines = stack.split(u'\n', Qt::SkipEmptyParts);
    for (const QString &line : lines) {
        // "function@address:line"
        const QString place = line.mid(line.indexOf(u'@') + 1);
        const qsizetype colon = place.lastIndexOf(u':');
        if (colon < 0 || line.contains(ownScripts))
            continue;
        const QUrl address(place.left(colon));
        return {
            address.isLocalFile() ? address.toLocalFile() : place.left(colon), place.mid(colon + 1).toInt()};
    }
    return {};
}

Verifications::Verifications(ResultSink &results)
{
    m_functions.add("reportVerification", {"passed", "message", "actual", "expected", "stack"},
        [&results](bool passed, const QString &message, const QString &actual, const QString &expected,
            const QString &stack) {
            results.verified({passed, message, actual, expected, innermostPlace(stack)});
            return FunctionCallResult<bool>(passed);
        });
    m_functions.add(
        "beginSection", {"title", "stack"}, [&results](const QString &title, const QString &stack) {
            results.sectionBegan(title, innermostPlace(stack));
            return FunctionCallResult<void>();
        });
    m_functions.add("endSection", {}, [&results] {
        results.sectionEnded();
        return FunctionCallResult<void>();
    });
}

} // namespace Ostrel::Host
