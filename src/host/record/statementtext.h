// The written form of recorded statements: one line of the test script each.
#pragma once

#include "ostrelhook/object.h"

#include <QString>

namespace Ostrel::Host {

/// The statement of a method of the vocabulary: clickButton("{id='add'}"); Texts are string literals, numbers
/// and truth values are written plainly, dates as "yyyy-MM-dd". An address below `servedAt`, which is another
/// one in each run, is written as serverAddress() and the rest.
QString statementText(const QString &method, const QString &subject, const ObjectList &arguments = {},
    const QString &servedAt = {});

/// A remark, on one line whatever the text holds.
QString remarkText(const QString &text);

} // namespace Ostrel::Host
