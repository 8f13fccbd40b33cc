// bench_protocol: what one property read costs the host itself, without a browser. When bench_bridge misses a
// bar, this tells how much of a read is composing and parsing of text.
#include "host/browser/evaluation.h"
#include "host/browser/protocolmessage.h"
#include "wrappers/web/scripttext.h"

#include <benchmark/benchmark.h>

#include <QJsonDocument>

namespace {

using namespace Qt::StringLiterals;
using namespace Ostrel;
using namespace Ostrel::Host;

constexpr int limitMs = 20000;
const QString session = u"0F4A3D7C5B9E81264F0A3D7C5B9E8126"_s;

QString readScript()
{
    return WebWrapper::script(u"window.top.__ostrel.getPropertyValue( %1, '%2');",
        WebWrapper::Expr{u"top.__ostrel__globalObjectRefStore[7]"_s}, WebWrapper::Expr{u"tagName"_s});
}

QByteArray answerText()
{
    return R"({"id":12,"result":{"result":{"type":"object","value":{"value":"BUTTON"}}},"sessionId":")"
        + session.toUtf8() + R"("})";
}

// The reference of composeRead: the same command without the wrapper around the script.
void composeBareCommand(benchmark::State &state)
{
    const QString script = readScript();
    for (auto _ : state) {
        benchmark::DoNotOptimize(composeCommand(
            12, session, u"Runtime.evaluate"_s, {{u"expression"_s, script}, {u"returnByValue"_s, true}}));
    }
}
BENCHMARK(composeBareCommand);

void composeRead(benchmark::State &state)
{
    for (auto _ : state) {
        benchmark::DoNotOptimize(
            composeCommand(12, session, u"Runtime.evaluate"_s, evaluationParameters(readScript(), limitMs)));
    }
}
BENCHMARK(composeRead);

// The reference of parseAnswer: the JSON parser alone.
void parseBareJson(benchmark::State &state)
{
    const QByteArray text = answerText();
    for (auto _ : state)
        benchmark::DoNotOptimize(QJsonDocument::fromJson(text));
}
BENCHMARK(parseBareJson);

void parseAnswer(benchmark::State &state)
{
    const QByteArray text = answerText();
    for (auto _ : state)
        benchmark::DoNotOptimize(readEvaluation(parseProtocolMessage(text)->content));
}
BENCHMARK(parseAnswer);

} // namespace

BENCHMARK_MAIN();
