// Overload resolution: which of several methods of one name fits the arguments of a call.
#pragma once

#include "ostrelhook/export.h"
#include "ostrelhook/functioncallresult.h"
#include "ostrelhook/object.h"

#include <optional>

namespace Ostrel {

/// How far the arguments are from what the signature asks for: 0 is an exact fit; nothing when they do not
/// fit.
OSTRELHOOK_EXPORT std::optional<int> callDistance(const Signature &signature, const ObjectList &arguments);

/// "name(String, int)", as it stands in messages.
OSTRELHOOK_EXPORT QString callText(const QString &name, const ObjectList &arguments);
OSTRELHOOK_EXPORT QString signatureText(const Method &method);

/// The error text of a call that none of `candidates` fits.
OSTRELHOOK_EXPORT QString noOverloadText(
    const QStringList &candidates, const QString &name, const ObjectList &arguments);

/// The method with the smallest distance, the first of equals; an error names the call and the candidates.
template <typename MethodType>
FunctionCallResult<MethodType *> bestOverload(
    const QList<MethodType *> &methods, const QString &name, const ObjectList &arguments)
{
    MethodType *best = nullptr;
    int bestDistance = 0;
    for (MethodType *method : methods) {
        const std::optional<int> distance = callDistance(method->signature(), arguments);
        if (distance && (!best || *distance < bestDistance)) {
            best = method;
            bestDistance = *distance;
        }
    }
    if (best)
        return best;

    QStringList candidates;
    for (const MethodType *method : methods)
        candidates.append(signatureText(*method));
    return Failure(noOverloadText(candidates, name, arguments));
}

} // namespace Ostrel
