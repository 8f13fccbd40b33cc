// What XML can hold.
#pragma once

#include <QString>

namespace Ostrel::Host {

/// The text without the characters that XML 1.0 forbids: most control characters, halves of surrogate pairs
/// and the two that are no characters.
QString withoutForbiddenCharacters(const QString &text);

} // namespace Ostrel::Host
