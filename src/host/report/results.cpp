#include "host/report/results.h"

#include <algorithm>

namespace Ostrel::Host {

namespace {

void collectVerifications(const std::vector<Step> &steps, std::vector<const Step *> &found)
{
    for (const Step &step : steps) {
        if (step.kind == Step::Kind::Verification)
            found.push_back(&step);
        collectVerifications(step.steps, found);
    }
}

} // namespace

double ScriptResult::milliseconds() const
{
    double sum = 0;
    for (const Attempt &attempt : attempts)
        sum += attempt.milliseconds;
    return sum;
}

int RunResult::count(Outcome outcome) const
{
    return int(std::count_if(scripts.begin(), scripts.end(),
        [outcome](const ScriptResult &script) { return script.outcome() == outcome; }));
}

int RunResult::flaky() const
{
    return int(std::count_if(
        scripts.begin(), scripts.end(), [](const ScriptResult &script) { return script.isFlaky(); }));
}

std::vector<const Step *> verificationsOf(const std::vector<Step> &steps)
{
    std::vector<const Step *> found;
    collectVerifications(steps, found);
    return found;
}

} // namespace Ostrel::Host
