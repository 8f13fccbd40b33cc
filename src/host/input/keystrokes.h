// Keystrokes: from the text of a key sequence to the keys that are pressed.
#pragma once

#include "ostrelhook/functioncallresult.h"

#include <QList>
#include <QString>

namespace Ostrel::Host {

/// The modifier keys as bits, as the browser's protocol numbers them.
enum KeyModifier { AltModifier = 1, ControlModifier = 2, MetaModifier = 4, ShiftModifier = 8 };

/// One key that is pressed and let go.
struct KeyStroke
{
    QString key; ///< what the page gets as the event's key, such as "a" or "Home"
    QString code; ///< the place on the keyboard, such as "KeyA"; empty for what has no key of its own
    int keyCode = 0;
    QString text; ///< what it types; empty for keys that type nothing
    int modifiers = 0; ///< a sum of KeyModifier

    bool operator==(const KeyStroke &) const = default;
};

/// Characters stand for themselves, a line feed for Return. Keys without a character are named in angle
/// brackets, with modifiers in front: "<Home>", "<Shift+End>", "<Ctrl+A>". An unknown name in such brackets
/// is an error.
FunctionCallResult<QList<KeyStroke>> keyStrokes(const QString &sequence);

/// The keys of a text in which brackets have no meaning of their own.
QList<KeyStroke> textStrokes(const QString &text);

} // namespace Ostrel::Host
