#include "app/browserarguments.h"
#include "app/commands.h"
#include "app/complaint.h"
#include "host/report/htmlreport.h"
#include "host/report/junitreport.h"
#include "host/report/reportfile.h"
#include "host/run/interruption.h"
#include "host/run/progress.h"
#include "host/run/runner.h"
#include "host/run/scriptlist.h"
#include "host/run/worker.h"

#include <QCoreApplication>
#include <QTextStream>

#include <memory>

#include <sys/ioctl.h>
#include <unistd.h>

namespace Ostrel::App {

using namespace Qt::StringLiterals;
using namespace Host;

namespace {

constexpr double longestTimeout = 24 * 60 * 60; // in seconds
constexpr int mostJobs = 64;
constexpr int mostRetries = 100;

struct RunOptions
{
    std::vector<std::string> scripts;
    BrowserArguments browser;
    bool keepOpen = false;
    int jobs = 1;
    int retries = 0;
    std::string filter;
    std::string names;
    double scriptTimeout = 0;
    double runTimeout = 0;
    std::string junit;
    std::string html;
    bool worker = false;
};

int inMilliseconds(double seconds)
{
    return int(seconds * 1000);
}

/// The columns of the terminal that standard output is; 0 when it is none.
int terminalColumns()
{
    constexpr int usual = 80;
    winsize size{};
    if (isatty(STDOUT_FILENO) == 0)
        return 0;
    return ioctl(STDOUT_FILENO, TIOCGWINSZ, &size) == 0 && size.ws_col > 0 ? size.ws_col : usual;
}

int work(const RunOptions &options)
{
    runWorker({QString::fromStdString(options.scripts.front()), sessionOptions(options.browser),
        options.keepOpen, QString::fromStdString(options.names)});
    return Passed;
}

/// How this program runs one of the scripts, in a process of its own.
WorkerCommand workerCommand(const RunOptions &options)
{
    QStringList arguments = QStringList{u"run"_s, u"--worker"_s} + argumentsFor(options.browser);
    if (options.keepOpen)
        arguments << u"--keep-open"_s;
    if (!options.names.empty())
        arguments << u"--names"_s << QString::fromStdString(options.names);
    // A script may have a name that begins like an option.
    return {QCoreApplication::applicationFilePath(), arguments << u"--"_s};
}

FunctionCallResult<QStringList> chosenScripts(const RunOptions &options)
{
    QStringList named;
    for (const std::string &name : options.scripts)
        named.append(QString::fromStdString(name));
    const FunctionCallResult<QStringList> scripts = listScripts(named);
    return scripts.failed() ? scripts : filterScripts(scripts.value, QString::fromStdString(options.filter));
}

/// A report that the user asked for.
struct Report
{
    QString fileName;
    std::function<void(const RunResult &run, QIODevice *device)> write;
};

std::vector<Report> wantedReports(const RunOptions &options)
{
    const auto writeHtml = [](const RunResult &run, QIODevice *device) {
        SourceFiles sources;
        writeHtmlReport(
            run, [&](const ScriptPlace &place) { return sources.line(place); }, device);
    };
    std::vector<Report> reports{
        {QString::fromStdString(options.junit), writeJUnitReport},
        {QString::fromStdString(options.html), writeHtml},
    };
    std::erase_if(reports, [](const Report &report) { return report.fileName.isEmpty(); });
    return reports;
}

int exitCodeOf(const RunResult &run)
{
    if (run.passed())
        return Passed;
    const bool nothingBegan
        = run.count(Outcome::Unusable) + run.count(Outcome::NotRun) == int(run.scripts.size());
    return nothingBegan && run.count(Outcome::Unusable) > 0 ? Unusable : Failed;
}

RunResult runPlan(const RunPlan &plan, const WorkerCommand &worker, Progress &progress)
{
    Runner runner(plan, worker, progress);
    const Interruption interruption([] {}, [&] { runner.stop(u"The script was interrupted."_s); });
    return runner.run();
}

int run(const RunOptions &options)
{
    if (options.worker)
        return work(options);
    const FunctionCallResult<QStringList> scripts = chosenScripts(options);
    if (scripts.failed())
        return complain("run", scripts.error);
    if (options.keepOpen && scripts.value.size() > 1)
        return complain("run", u"--keep-open takes a single script."_s);
    const std::vector<Report> reports = wantedReports(options);
    for (const Report &report : reports) {
        if (const auto writable = probeReportFile(report.fileName); writable.failed())
            return complain("run", writable.error);
    }

    const RunPlan plan{scripts.value, options.jobs, options.retries, inMilliseconds(options.scriptTimeout),
        inMilliseconds(options.runTimeout), options.keepOpen};
    Progress progress(scripts.value,
        {[](const QString &text) { QTextStream(stdout) << text << Qt::flush; },
            [](const QString &text) { QTextStream(stderr) << text << Qt::flush; }, terminalColumns(),
            scripts.value.size() > 1 || options.retries > 0});
    const RunResult result = runPlan(plan, workerCommand(options), progress);
    progress.printTotals(result);

    int exitCode = exitCodeOf(result);
    for (const Report &report : reports) {
        const auto written
            = writeReportFile(report.fileName, [&](QIODevice *device) { report.write(result, device); });
        if (written.failed())
            exitCode = complain("run", written.error);
    }
    return exitCode;
}

} // namespace

Command addRunCommand(CLI::App &commandLine)
{
    CLI::App *command = commandLine.add_subcommand("run", "Run test scripts, each in a browser of its own");
    auto options = std::make_shared<RunOptions>();
    const CLI::Range limits(0.001, longestTimeout);
    command->add_option("scripts", options->scripts, "The scripts, JavaScript files, or folders of them")
        ->required();
    addBrowserOptions(*command, options->browser);
    command->add_flag("--keep-open", options->keepOpen, "Leave the browser open after the script");
    command->add_option("--filter", options->filter,
        "Run only scripts whose path matches: with wildcards, or behind 're:' a regular expression");
    command->add_option("--names", options->names,
        "The file of symbolic names for all scripts; else each takes the one beside it");
    command->add_option("--jobs", options->jobs, "How many scripts run side by side")
        ->check(CLI::Range(1, mostJobs))
        ->capture_default_str();
    command->add_option("--retries", options->retries, "How often a script that fails is tried again")
        ->check(CLI::Range(0, mostRetries))
        ->capture_default_str();
    command->add_option("--script-timeout", options->scriptTimeout, "Limit of each script, in seconds")
        ->check(limits);
    command->add_option("--run-timeout", options->runTimeout, "Limit of the whole run, in seconds")
        ->check(limits);
    command->add_option("--junit", options->junit, "Write the results as JUnit XML to this file");
    command->add_option("--html", options->html, "Write the results as a page for people to this file");
    // How the command starts itself for a single script.
    command->add_flag("--worker", options->worker)->group("");
    return [options] { return run(*options); };
}

} // namespace Ostrel::App
