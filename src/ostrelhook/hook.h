// Hook: the way out of the framework, to the other processes of the tool and to the devices of the desktop.
// Whoever hosts the framework says where messages go and how devices are driven.
#pragma once

#include "ostrelhook/export.h"
#include "ostrelhook/functioncallresult.h"
#include "ostrelhook/geometry.h"

#include <QString>
#include <QVariantList>

#include <functional>

namespace Ostrel {

/// The arguments of a message.
using ArgumentList = QVariantList;

/// The buttons of a pointing device.
struct MouseButton
{
    enum Value {
        Primary = 0, ///< the one that the user has for clicks
        Left = 1,
        Right = 2,
        Middle = 4,
    };
};

/// The devices of the desktop. Positions are those of the desktop, in pixels.
class OSTRELHOOK_EXPORT NativeInterface
{
public:
    virtual ~NativeInterface();

    virtual FunctionCallResult<void> movePointer(const Point<1> &position) = 0;
    /// Moves the pointer there, presses the button and lets it go.
    virtual FunctionCallResult<void> pointerClick(MouseButton::Value button, const Point<1> &position) = 0;
    /// Types text into whatever has the focus. Keys without a character are named in angle brackets, with
    /// modifiers in front: "<Home>", "<Shift+End>".
    virtual FunctionCallResult<void> typeKeys(const QString &keys) = 0;
};

/// The one hook of the process. Used from one thread.
class OSTRELHOOK_EXPORT Hook
{
public:
    /// Takes a message; false when it could not be delivered.
    using Receiver = std::function<bool(int target, const QString &message, const ArgumentList &arguments)>;

    static Hook *instance();
    /// The same as instance().
    static Hook *const hook;

    /// Sends a message to a process of the tool. False when it was not delivered, as without a receiver.
    static bool send(int target, const QString &message, const ArgumentList &arguments);
    void setReceiver(Receiver receiver) { m_receiver = std::move(receiver); }

    /// The identifiers of the front end that inspects objects; -1 where there is none.
    int preferredSpyId = -1;
    int fallbackSpyId = -1;
    /// The front end that messages about objects go to.
    int spyId() const { return preferredSpyId != -1 ? preferredSpyId : fallbackSpyId; }

    /// The devices; without any, one whose operations all fail. Never null.
    NativeInterface *nativeInterface() const { return m_nativeInterface; }
    /// Sets the devices, which stay the caller's; null takes them away.
    void setNativeInterface(NativeInterface *nativeInterface);

private:
    Hook();

    Receiver m_receiver;
    NativeInterface *m_nativeInterface;
};

} // namespace Ostrel
