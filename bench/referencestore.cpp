#include "benchmarks.h"
#include "contest.h"
#include "host/script/testsession.h"
#include "pagenumber.h"

#include <memory>

namespace Ostrel::Bench {

using namespace Qt::StringLiterals;
using namespace Host;

namespace {

constexpr int fewElements = 1000;

// Each turn has elements of its own, since the first reference of an element costs more than the later ones.
// So that a turn with few of them is long enough for the page's coarse clock, it fills one store after the
// other until it has worked on as many elements as the turn with many.
const QString measureFunctions = uR"(
function makeElements(count) {
    var elements = [], i;
    for (i = 0; i < count; i++) {
        elements.push(document.createElement("div"));
    }
    return elements;
}
function refer(elements, from, to) {
    var i;
    for (i = from; i < to; i++) {
        __ostrel__idForObject(elements[i]);
    }
}
function timeNew(count, storeSize) {
    var elements = makeElements(count), begin = performance.now(), from;
    for (from = 0; from < count; from += storeSize) {
        top.__ostrel__globalObjectRefStore = [];
        refer(elements, from, Math.min(from + storeSize, count));
    }
    return performance.now() - begin;
}
function timeKnown(count, storeSize) {
    var elements = makeElements(storeSize), begin, done;
    top.__ostrel__globalObjectRefStore = [];
    refer(elements, 0, storeSize);
    begin = performance.now();
    for (done = 0; done < count; done += storeSize) {
        refer(elements, 0, Math.min(storeSize, count - done));
    }
    return performance.now() - begin;
})"_s;

} // namespace

FunctionCallResult<QList<Row>> measureReferenceStore(const Effort &effort)
{
    ResultSink nobody;
    const FunctionCallResult<std::unique_ptr<TestSession>> session = TestSession::start({}, nobody);
    if (session.failed())
        return Failure(session.error);
    const BrowserPage *page = session.value->activePage();
    if (const auto defined = page->evaluateJavaScript(measureFunctions, 0); defined.failed)
        return Failure(defined.result);

    const auto turn = [&](const QString &function, int storeSize) {
        const QString call = u"%1(%2, %3)"_s.arg(
            function, QString::number(effort.elements), QString::number(qMin(storeSize, effort.elements)));
        return [page, call] { return pageNumber(*page, call); };
    };
    const FunctionCallResult<QList<double>> times = medianTimes(
        {
            turn(u"timeNew"_s, effort.elements),
            turn(u"timeNew"_s, fewElements),
            turn(u"timeKnown"_s, effort.elements),
            turn(u"timeKnown"_s, fewElements),
        },
        {effort.rounds});
    if (times.failed())
        return Failure(times.error);

    constexpr double limit = 2.0;
    const auto row = [&](const QString &name, int ours, int reference) {
        return Row{name, times.value.at(ours), times.value.at(reference), Row::Bar::Ratio, limit};
    };
    const QString sizes
        = u"%1 elements / by %2"_s.arg(QString::number(effort.elements), QString::number(fewElements));
    return QList<Row>{
        row(u"new references, "_s + sizes, 0, 1),
        row(u"known references, "_s + sizes, 2, 3),
    };
}

} // namespace Ostrel::Bench
