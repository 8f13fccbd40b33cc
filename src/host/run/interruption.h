// Interruption: Ctrl+C, SIGTERM and limits end a run cleanly, so that no browser and no profile is left
// behind.
#pragma once

#include <QObject>

#include <functional>

class QSocketNotifier;

namespace Ostrel::Host {

/// While it lives, the signals call `atOnce` from the signal handler (it may only set a flag) and then
/// `inTime` from the event loop. A second signal ends the process at once. One instance at a time.
class Interruption : public QObject
{
public:
    Interruption(std::function<void()> atOnce, std::function<void()> inTime);
    ~Interruption() override;

    static bool wasInterrupted();
    /// Whether it was SIGALRM, by which a runner tells a script that its time is over.
    static bool isTimeOver();
};

} // namespace Ostrel::Host
