#include "host/run/interruption.h"

#include <QSocketNotifier>

#include <array>
#include <csignal>
#include <fcntl.h>
#include <unistd.h>

namespace Ostrel::Host {

namespace {

constexpr std::array watchedSignals{SIGINT, SIGTERM, SIGHUP, SIGALRM};

std::function<void()> reactAtOnce;
std::array<int, 2> wakeUp{-1, -1};
volatile std::sig_atomic_t interrupted = 0; // the signal

void onSignal(int number)
{
    if (interrupted) {
        std::signal(number, SIG_DFL);
        std::raise(number);
        return;
    }
    interrupted = number;
    reactAtOnce();
    const char byte = 0;
    // The event loop needs one byte; when the pipe is full it has one already.
    [[maybe_unused]] const ssize_t written = write(wakeUp[1], &byte, 1);
}

} // namespace

Interruption::Interruption(std::function<void()> atOnce, std::function<void()> inTime)
{
    reactAtOnce = std::move(atOnce);
    if (pipe2(wakeUp.data(), O_CLOEXEC | O_NONBLOCK) != 0)
        return;
    auto *notifier = new QSocketNotifier(wakeUp[0], QSocketNotifier::Read, this);
    connect(notifier, &QSocketNotifier::activated, this, [notifier, inTime = std::move(inTime)] {
        notifier->setEnabled(false);
        inTime();
    });
    for (int number : watchedSignals)
        std::signal(number, onSignal);
}

Interruption::~Interruption()
{
    for (int number : watchedSignals)
        std::signal(number, SIG_DFL);
    for (int end : wakeUp)
        close(end);
}

bool Interruption::wasInterrupted()
{
    return interrupted != 0;
}

bool Interruption::isTimeOver()
{
    return interrupted == SIGALRM;
}

} // namespace Ostrel::Host
