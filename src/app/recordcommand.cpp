#include "app/browserarguments.h"
#include "app/commands.h"
#include "app/complaint.h"
#include "host/record/recorder.h"
#include "host/run/interruption.h"

#include <QEventLoop>
#include <QTextStream>
#include <QTimer>

#include <memory>

namespace Ostrel::App {

using namespace Qt::StringLiterals;
using namespace Host;

namespace {

// A statement is shown once the user has paused: until then a double click may take it back.
constexpr int pauseMs = 700;
constexpr double longestRecording = 7 * 24 * 60 * 60; // in seconds

struct RecordOptions
{
    std::string address;
    std::string output;
    std::string names;
    double seconds = 0;
    bool explain = false;
    BrowserArguments browser;
};

/// Shows the lines of a recording as they come and keeps the files up to date.
class Progress
{
public:
    /// `names` is null for a recording without symbolic names.
    Progress(const RecordedScript &script, QString fileName, const RecordedNames *names)
        : m_script(script), m_fileName(std::move(fileName)), m_names(names)
    {
    }

    /// Writes the files first, so that what has been shown is safe. False when it cannot be written.
    bool show()
    {
        const FunctionCallResult<void> saved = save();
        const QStringList lines = m_script.lines();
        QTextStream out(stdout);
        for (qsizetype i = 0; i < lines.size(); ++i) {
            // An answer stands in front of a statement that has been shown already.
            if (m_shown.value(i) == lines.at(i))
                continue;
            m_shown.insert(qMin(i, m_shown.size()), lines.at(i));
            out << lines.at(i) << Qt::endl;
        }
        if (saved.failed())
            complain("record", saved.error);
        return !saved.failed();
    }

private:
    FunctionCallResult<void> save() const
    {
        if (m_names) {
            if (const FunctionCallResult<void> saved = m_names->save(); saved.failed())
                return saved;
        }
        return m_fileName.isEmpty() ? FunctionCallResult<void>() : m_script.save(m_fileName);
    }

    const RecordedScript &m_script;
    QString m_fileName;
    const RecordedNames *m_names;
    QStringList m_shown;
};

/// Waits until the browser is closed, the time is over or the user interrupts.
void waitForEnd(const TestSession &session, double seconds, QEventLoop &loop)
{
    Browser *browser = session.browser();
    QObject::connect(browser, &Browser::lost, &loop, &QEventLoop::quit);
    const auto quitWithoutPages = [&loop, browser] {
        if (browser->pages().isEmpty())
            loop.quit();
    };
    QObject::connect(browser, &Browser::pageClosed, &loop, quitWithoutPages, Qt::QueuedConnection);
    if (seconds > 0)
        QTimer::singleShot(std::chrono::milliseconds(qint64(seconds * 1000)), &loop, &QEventLoop::quit);
    if (browser->isRunning() && !browser->pages().isEmpty() && !Interruption::wasInterrupted())
        loop.exec();
}

int record(const RecordOptions &options)
{
    auto names = RecordedNames::extending(QString::fromStdString(options.names));
    if (names.failed())
        return complain("record", names.error);
    RecordedNames *const wantedNames = options.names.empty() ? nullptr : &names.value;
    QEventLoop loop;
    // Watches from the start of the browser on, so that none is left behind.
    const Interruption interruption([] {}, [&loop] { loop.quit(); });
    auto session = TestSession::start(sessionOptions(options.browser), sessionComplaints());
    if (session.failed())
        return complain("record", session.error);

    Recorder recorder(session.value.get(), wantedNames);
    Progress progress(recorder.script(), QString::fromStdString(options.output), wantedNames);
    QTimer pause;
    pause.setSingleShot(true);
    pause.setInterval(pauseMs);
    QObject::connect(&recorder, &Recorder::changed, &pause, qOverload<>(&QTimer::start));
    bool saved = true;
    QObject::connect(&pause, &QTimer::timeout, &loop, [&] { saved = progress.show(); });
    if (options.explain) {
        QObject::connect(&recorder, &Recorder::explained, &loop,
            [](const QString &line) { QTextStream(stderr) << line << Qt::endl; });
    }
    const FunctionCallResult<void> opened = recorder.start(addressFrom(options.address, *session.value));
    if (opened.failed())
        return complain("record", opened.error);
    // A file that cannot be written must not be found out at the end.
    if (!progress.show())
        return Unusable;

    waitForEnd(*session.value, options.seconds, loop);
    recorder.finish();
    pause.stop();
    saved = progress.show();
    return saved ? Passed : Failed;
}

} // namespace

Command addRecordCommand(CLI::App &commandLine)
{
    CLI::App *command
        = commandLine.add_subcommand("record", "Record what a user does in a browser as a script");
    auto options = std::make_shared<RecordOptions>();
    command->add_option("url", options->address, "The first page's address, or a file")->required();
    command->add_option("-o,--output", options->output, "The script to write");
    command->add_option("--names", options->names, "Use symbolic names, and add new ones to this names file");
    command
        ->add_option(
            "--for", options->seconds, "How long to record, in seconds; else until the browser closes")
        ->check(CLI::Range(0.001, longestRecording));
    command->add_flag(
        "--explain", options->explain, "Tell what became of each event of the user, on standard error");
    addBrowserOptions(*command, options->browser);
    options->browser.hasUser = true;
    return [options] { return record(*options); };
}

} // namespace Ostrel::App
