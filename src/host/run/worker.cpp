#include "host/run/worker.h"

#include "host/dump/dumpwriter.h"
#include "host/run/failurewitness.h"
#include "host/run/interruption.h"
#include "host/script/lookup.h"
#include "host/script/scriptengine.h"
#include "ostrelhook/inspector.h"
#include "ostrelhook/objectname.h"

#include <QEventLoop>
#include <QImage>

#include <cstdio>

namespace Ostrel::Host {

using namespace Qt::StringLiterals;

namespace {

constexpr int viewLimitMs = 4000;
constexpr int probeLimitMs = 1000;
// What tells objects apart for a reader, and is read for all in one go.
const QStringList shownProperties{u"tagName"_s, u"id"_s, u"name"_s, u"title"_s, u"simplifiedInnerText"_s};

using Session = std::unique_ptr<TestSession>;

void writeEvent(const QByteArray &line)
{
    std::fwrite(line.constData(), 1, std::size_t(line.size()), stdout);
    std::fflush(stdout);
}

/// While it lives, the page is not waited for as long as a script would.
class ShortWaits
{
public:
    ShortWaits(BrowserPage *page, int usualLimitMs) : m_page(page), m_usualLimitMs(usualLimitMs)
    {
        m_page->setDefaultLimit(qMin(viewLimitMs, usualLimitMs));
    }
    ~ShortWaits() { m_page->setDefaultLimit(m_usualLimitMs); }
    Q_DISABLE_COPY_MOVE(ShortWaits)

private:
    BrowserPage *m_page;
    int m_usualLimitMs;
};

FunctionCallResult<QByteArray> pictureOf(BrowserPage *page)
{
    const FunctionCallResult<QImage> picture = page->grabPageScreenshot();
    if (picture.failed())
        return Failure(picture.error);
    return pngOf(picture.value);
}

FunctionCallResult<QString> objectTreeOf(BrowserPage *page)
{
    PageDumpOptions options;
    options.properties = shownProperties;
    const FunctionCallResult<PageDump> dump = dumpPage(page, nullptr, options);
    if (dump.failed())
        return Failure(dump.error);
    return QString::fromUtf8(dumpAsXml(dump.value));
}

/// Ends what the page runs, when it does not answer; tells whether it answers then. A dialog that opens
/// meanwhile fails a question and is dismissed by that, and the end may fail the next one, so that some are
/// asked.
bool calm(BrowserPage *page)
{
    constexpr int questions = 3;
    const auto answers = [&] { return !page->evaluateJavaScript(u"1"_s, probeLimitMs).failed; };
    bool isCalm = answers();
    if (!isCalm)
        page->connection()->send(page->sessionId(), u"Runtime.terminateExecution"_s);
    for (int i = 0; i < questions && !isCalm && page->isPageAvailable(); ++i)
        isCalm = answers();
    return isCalm;
}

/// Sees the page of a session that need not have begun yet, and may have lost its page.
template <typename Result>
std::function<FunctionCallResult<Result>()> viewing(
    const Session &session, int usualLimitMs, FunctionCallResult<Result> (*see)(BrowserPage *page))
{
    return [&session, usualLimitMs, see]() -> FunctionCallResult<Result> {
        BrowserPage *page = session ? session->activePage() : nullptr;
        if (!page)
            return Failure(u"There is no open page."_s);
        const ShortWaits shortWaits(page, usualLimitMs);
        return see(page);
    };
}

ScriptEnd endFrom(const ScriptOutcome &outcome)
{
    if (!outcome.failed)
        return {};
    const ScriptError &error = outcome.error;
    return {Outcome::Error, error.message, {error.file, error.line}, error.callers};
}

ScriptEnd interruptedEnd(const QString &script)
{
    return {Outcome::Error, u"The script was interrupted."_s, {script, 0}, {}};
}

/// Waits until the user closes the browser or interrupts the run.
void waitForEnd(TestSession &session)
{
    QEventLoop loop;
    QObject::connect(session.browser(), &Browser::lost, &loop, &QEventLoop::quit);
    const auto quitWithoutPages = [&] {
        if (session.browser()->pages().isEmpty())
            loop.quit();
    };
    QObject::connect(session.browser(), &Browser::pageClosed, &loop, quitWithoutPages, Qt::QueuedConnection);
    const Interruption interruption([] {}, [&] { loop.quit(); });
    if (session.browser()->isRunning() && !session.browser()->pages().isEmpty())
        loop.exec();
}

ScriptEnd runScript(const WorkerTask &task, FailureWitness &results, Session &session)
{
    const FunctionCallResult<void> names
        = task.namesFile.isEmpty() ? loadNamesBeside(task.script) : ObjectMap::self()->load(task.namesFile);
    if (names.failed())
        return {Outcome::Unusable, names.error, {}, {}};
    // Watches from the start of the browser on: a run that is interrupted then ends as soon as it can clean
    // up.
    std::unique_ptr<ScriptEngine> engine;
    const Interruption interruption(
        [&] {
            if (engine)
                engine->interrupt();
        },
        [&] {
            if (!session)
                return;
            if (Interruption::isTimeOver())
                results.showLast();
            session->stop();
        });
    auto started = TestSession::start(task.session, results);
    session = std::move(started.value);
    if (Interruption::wasInterrupted())
        return interruptedEnd(task.script);
    if (started.failed())
        return {Outcome::Unusable, started.error, {}, {}};
    engine = std::make_unique<ScriptEngine>(results);
    return Interruption::wasInterrupted() ? interruptedEnd(task.script)
                                          : endFrom(engine->runFile(task.script));
}

} // namespace

void runWorker(const WorkerTask &task)
{
    Inspector::self()->setNoteReceiver(
        [](const QString &note) { std::fprintf(stderr, "%s\n", qUtf8Printable(note)); });
    // The results outlive the session, which reports to them.
    Session session;
    const int usualLimitMs = task.session.browser.evaluationLimitMs;
    FailureWitness results(writeEvent,
        {viewing(session, usualLimitMs, pictureOf), viewing(session, usualLimitMs, objectTreeOf), [&] {
             BrowserPage *page = session ? session->activePage() : nullptr;
             return page && calm(page);
         }});
    results.scriptBegan(task.script);
    results.scriptEnded(runScript(task, results, session));
    if (task.keepOpen && session && !Interruption::wasInterrupted())
        waitForEnd(*session);
    session.reset();
}

} // namespace Ostrel::Host
