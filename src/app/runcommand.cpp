#include "app/browserarguments.h"
#include "app/commands.h"
#include "app/exitcodes.h"
#include "app/interruption.h"
#include "host/script/scriptengine.h"
#include "host/script/testsession.h"
#include "ostrelhook/inspector.h"

#include <QCoreApplication>
#include <QEventLoop>
#include <QFileInfo>
#include <QTextStream>

#include <memory>

namespace Ostrel::App {

using namespace Qt::StringLiterals;
using namespace Host;

namespace {

struct RunOptions
{
    std::string script;
    BrowserArguments browser;
    bool keepOpen = false;
};

void say(FILE *stream, const QString &line)
{
    QTextStream(stream) << line << Qt::endl;
}

class LogPrinter : public ResultSink
{
public:
    void logged(const QString &text) override { say(stdout, text); }
};

void reportFailure(const ScriptError &error)
{
    say(stderr, error.text());
    for (qsizetype i = 1; i < error.callers.size(); ++i)
        say(stderr, u"    called from %1"_s.arg(error.callers.at(i)));
}

/// Waits until the user closes the browser or interrupts the run.
void waitForEnd(TestSession &session)
{
    say(stdout, u"The browser stays open. Close it or press Ctrl+C to end."_s);
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

int run(const RunOptions &options)
{
    const QString script = QString::fromStdString(options.script);
    if (const QFileInfo file(script); !file.exists() || file.isDir()) {
        say(stderr, u"pageprobe run: there is no script '%1'."_s.arg(script));
        return Unusable;
    }
    if (const FunctionCallResult<void> names = loadNamesBeside(script); names.failed()) {
        say(stderr, u"pageprobe run: %1"_s.arg(names.error));
        return Unusable;
    }
    LogPrinter printer;
    FunctionCallResult<std::unique_ptr<TestSession>> session;
    ScriptOutcome outcome;
    {
        // Watches from the start of the browser on: a run that is interrupted then ends as soon as it can
        // clean up.
        std::unique_ptr<ScriptEngine> engine;
        const Interruption interruption(
            [&] {
                if (engine)
                    engine->interrupt();
            },
            [&] {
                if (session.value)
                    session.value->stop();
            });
        session = TestSession::start(sessionOptions(options.browser), printer);
        if (session.failed()) {
            say(stderr, u"pageprobe run: %1"_s.arg(session.error));
            return Unusable;
        }
        Inspector::self()->setNoteReceiver([](const QString &note) { say(stderr, note); });
        engine = std::make_unique<ScriptEngine>();
        if (Interruption::wasInterrupted())
            return Failed;
        outcome = engine->runFile(script);
    }
    if (outcome.failed)
        reportFailure(outcome.error);
    if (options.keepOpen && !Interruption::wasInterrupted())
        waitForEnd(*session.value);
    return outcome.failed ? Failed : Passed;
}

} // namespace

Command addRunCommand(CLI::App &commandLine)
{
    CLI::App *command = commandLine.add_subcommand("run", "Run a test script in a browser");
    auto options = std::make_shared<RunOptions>();
    command->add_option("script", options->script, "The script, a JavaScript file")->required();
    addBrowserOptions(*command, options->browser);
    command->add_flag("--keep-open", options->keepOpen, "Leave the browser open after the script");
    return [options] { return run(*options); };
}

} // namespace Ostrel::App
