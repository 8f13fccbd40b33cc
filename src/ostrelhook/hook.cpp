#include "ostrelhook/hook.h"

namespace Ostrel {

using namespace Qt::StringLiterals;

namespace {

class NoDevices : public NativeInterface
{
public:
    FunctionCallResult<void> movePointer(const Point<1> &) override { return unavailable(); }
    FunctionCallResult<void> pointerClick(MouseButton::Value, const Point<1> &) override
    {
        return unavailable();
    }
    FunctionCallResult<void> typeKeys(const QString &) override { return unavailable(); }

private:
    static FunctionCallResult<void> unavailable() { return Failure(u"Native input is not available."_s); }
};

NoDevices noDevices;

} // namespace

NativeInterface::~NativeInterface() = default;

Hook::Hook() : m_nativeInterface(&noDevices) { }

Hook *Hook::instance()
{
    // Never destroyed: what is told at the end of the process may still want to send.
    static Hook *const instance = new Hook;
    return instance;
}

Hook *const Hook::hook = Hook::instance();

bool Hook::send(int target, const QString &message, const ArgumentList &arguments)
{
    // a copy, since the receiver may be replaced by what it does
    const Receiver receiver = instance()->m_receiver;
    return receiver && receiver(target, message, arguments);
}

void Hook::setNativeInterface(NativeInterface *nativeInterface)
{
    m_nativeInterface = nativeInterface ? nativeInterface : &noDevices;
}

} // namespace Ostrel
