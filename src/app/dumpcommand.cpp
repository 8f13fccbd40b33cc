#include "app/browserarguments.h"
#include "app/commands.h"
#include "app/complaint.h"
#include "host/dump/dumpwriter.h"
#include "host/dump/pagedump.h"
#include "host/report/reportfile.h"
#include "host/run/interruption.h"
#include "host/script/lookup.h"

#include <QFile>
#include <QFileInfo>
#include <QTextStream>

#include <cstdio>
#include <memory>

namespace Ostrel::App {

using namespace Qt::StringLiterals;
using namespace Host;

namespace {

/// Seconds. A large page takes its time, and nobody waits for a dump that failed for lack of it.
constexpr double defaultTimeout = 600;
constexpr double longestWait = 3600;

struct DumpCommandOptions
{
    std::string address;
    std::string name;
    std::string file;
    std::string format;
    std::string properties;
    bool screenshots = false;
    double wait = Lookup::defaultWaitMs / 1000.0; ///< seconds
    BrowserArguments browser;
};

/// The format that was asked for, or that of the file's name.
DumpFormat formatOf(const DumpCommandOptions &options)
{
    const QString suffix = QFileInfo(QString::fromStdString(options.file)).suffix();
    const std::optional<DumpFormat> format
        = dumpFormat(options.format.empty() ? suffix : QString::fromStdString(options.format));
    return format.value_or(DumpFormat::Xml);
}

QStringList wantedProperties(const DumpCommandOptions &options)
{
    QStringList names;
    for (const QString &name : QString::fromStdString(options.properties).split(u',', Qt::SkipEmptyParts))
        names.append(name.trimmed());
    return names;
}

/// Into the file, or to standard output where there is no name.
FunctionCallResult<void> write(const QByteArray &text, const QString &fileName)
{
    if (!fileName.isEmpty()) {
        const FunctionCallResult<void> written = writeWhole(fileName, text);
        if (written.failed())
            return Failure(u"Cannot write the dump '%1': %2."_s.arg(fileName, written.error));
        return {};
    }
    QFile output;
    const bool written
        = output.open(stdout, QIODevice::WriteOnly) && output.write(text) == text.size() && output.flush();
    return written ? FunctionCallResult<void>()
                   : Failure(u"Cannot write the dump to standard output: %1."_s.arg(output.errorString()));
}

FunctionCallResult<PageDump> takeDump(TestSession &session, const DumpCommandOptions &options)
{
    SharedPtr<Object> element;
    if (!options.name.empty()) {
        const auto found = session.lookup()->waitUntilThere(
            QString::fromStdString(options.name), int(options.wait * 1000));
        if (found.failed())
            return Failure(found.error);
        element = found.value;
    }
    BrowserPage *page = session.activePage();
    if (!page)
        return Failure(u"There is no open page."_s);
    PageDumpOptions dump;
    dump.properties = wantedProperties(options);
    dump.screenshots = options.screenshots;
    dump.picture = formatOf(options) == DumpFormat::Html;
    dump.log = [](const QString &line) { complain("dump", line); };
    return dumpPage(page, element, dump);
}

int dump(const DumpCommandOptions &options)
{
    registerObjectModel();
    if (const auto known = checkProperties(wantedProperties(options)); known.failed())
        return complain("dump", known.error);
    const auto session = openPage(options.browser, options.address);
    if (session.failed())
        return complain("dump", session.error);
    const Interruption interruption([] {}, [&] { session.value->stop(); });
    const FunctionCallResult<PageDump> taken = takeDump(*session.value, options);
    if (taken.failed())
        return complain("dump", taken.error, Failed);
    const FunctionCallResult<void> written
        = write(writeDump(taken.value, formatOf(options)), QString::fromStdString(options.file));
    if (written.failed())
        return complain("dump", written.error);
    return Passed;
}

} // namespace

Command addDumpCommand(CLI::App &commandLine)
{
    CLI::App *command = commandLine.add_subcommand("dump", "Write the object tree of a page to a file");
    auto options = std::make_shared<DumpCommandOptions>();
    options->browser.timeout = defaultTimeout;
    addPageOptions(*command, options->address, options->browser);
    command->add_option(
        "name", options->name, "The element to begin with, by its name; the document when left out");
    command->add_option("-o,--output", options->file, "The file to write; standard output when left out");
    command
        ->add_option("--format", options->format,
            "How it is written; the suffix of the file decides when left out, and is it none, xml")
        ->check(CLI::IsMember({"xml", "json", "html"}, CLI::ignore_case));
    command->add_flag("--screenshots", options->screenshots,
        "A picture of each element; the HTML form shows a picture of the page in any case");
    command->add_option("--properties", options->properties,
        "The properties to show, with commas between; when left out those that are read for all elements in "
        "one go, "
        "while each of the others takes a call for each element");
    command->add_option("--wait", options->wait, "How long to wait for the element of that name, in seconds")
        ->check(CLI::Range(0.0, longestWait))
        ->capture_default_str();
    return [options] { return dump(*options); };
}

} // namespace Ostrel::App
