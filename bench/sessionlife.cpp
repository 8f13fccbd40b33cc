#include "benchmarks.h"
#include "contest.h"
#include "host/script/testsession.h"
#include "playwrightpeer.h"

#include <memory>

namespace Ostrel::Bench {

using namespace Qt::StringLiterals;
using namespace Host;

namespace {

FunctionCallResult<void> startAndEndSession()
{
    ResultSink nobody;
    const FunctionCallResult<std::unique_ptr<TestSession>> session = TestSession::start({}, nobody);
    if (session.failed())
        return Failure(session.error);
    return {};
}

} // namespace

FunctionCallResult<QList<Row>> measureSession(const Effort &effort)
{
    PlaywrightPeer peer;
    if (const auto started = peer.start(); started.failed())
        return Failure(started.error);
    const FunctionCallResult<QList<double>> times = medianTimes({
                                                                    [] { return timed(startAndEndSession); },
                                                                    [&] { return peer.ask(u"session"_s); },
                                                                },
        {effort.sessions});
    if (times.failed())
        return Failure(times.error);
    return QList<Row>{Row{
        u"browser start, payload, end / playwright launch, close"_s, times.value.at(0), times.value.at(1)}};
}

} // namespace Ostrel::Bench
