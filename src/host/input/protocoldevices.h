// ProtocolDevices: the devices of the desktop, played by the browser under test.
#pragma once

#include "ostrelhook/hook.h"

#include <functional>

namespace Ostrel::Host {

class BrowserPage;

/// Input goes to the tab that `target` gives, wherever its window is on the screen. Is the framework's native
/// interface while it lives.
class ProtocolDevices : public NativeInterface
{
public:
    explicit ProtocolDevices(std::function<BrowserPage *()> target);
    ~ProtocolDevices() override;
    Q_DISABLE_COPY_MOVE(ProtocolDevices)

    FunctionCallResult<void> movePointer(const Point<1> &position) override;
    FunctionCallResult<void> pointerClick(MouseButton::Value button, const Point<1> &position) override;
    FunctionCallResult<void> typeKeys(const QString &keys) override;

private:
    std::function<BrowserPage *()> m_target;
};

} // namespace Ostrel::Host
