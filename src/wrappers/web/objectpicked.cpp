#include "wrappers/web/objectpicked.h"

#include "ostrelhook/hook.h"
#include "probelog/tracepoint.h"
#include "wrappers/web/composing.h"

namespace Ostrel::WebWrapper {

using namespace Qt::StringLiterals;

void sendObjectPickedToSpy(const QString &objectName)
{
    const ArgumentList arguments{objectName};
    const int spy = Hook::hook->spyId();
    PROBELOG_TRACE(
        "WebWrapper", message(u"Sending object name \"%1\" to spy: %2", objectName, QString::number(spy)));
    static_cast<void>(Hook::send(spy, u"objectPicked"_s, arguments));
}

} // namespace Ostrel::WebWrapper
