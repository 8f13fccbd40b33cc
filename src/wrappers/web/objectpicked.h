// Telling the spy, the tool's front end that inspects objects, what the user picked.
#pragma once

#include <QString>

namespace Ostrel::WebWrapper {

/// Sends the name, also an empty one. A message that does not arrive is a lost report and no error.
void sendObjectPickedToSpy(const QString &objectName);

} // namespace Ostrel::WebWrapper
