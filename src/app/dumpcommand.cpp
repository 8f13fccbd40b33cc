#include "app/commands.h"
#include "app/exitcodes.h"
#include "app/interruption.h"
#include "host/dump/dumpwriter.h"
#include "host/dump/pagedump.h"
#include "host/script/testsession.h"

#include <QFileInfo>
#include <QSaveFile>
#include <QTextStream>

#include <cstdio>
#include <memory>

namespace Ostrel::App {

using namespace Qt::StringLiterals;
using namespace Host;

namespace {

/// Seconds. A large page takes its time, and nobody waits for a dump that failed for lack of it.
constexpr double defaultTimeout = 600;
constexpr double longestTimeout = 24 * 60 * 60;

struct DumpCommandOptions
{
    std::string address;
    std::string name;
    std::string file;
    std::string format;
    std::string properties;
    bool screenshots = false;
    std::string browserPath;
    double timeout = defaultTimeout;
};

void complain(const QString &text)
{
    QTextStream(stderr) << "pageprobe dump: " << text << Qt::endl;
}

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

FunctionCallResult<void> write(const QByteArray &text, const QString &fileName)
{
    if (fileName.isEmpty()) {
        if (std::fwrite(text.constData(), 1, std::size_t(text.size()), stdout) != std::size_t(text.size())
            || std::fflush(stdout) != 0)
            return Failure(u"Cannot write the dump to standard output."_s);
        return {};
    }
    // A file that was there before stays when the new one cannot be written.
    QSaveFile file(fileName);
    if (!file.open(QIODevice::WriteOnly) || file.write(text) != text.size() || !file.commit())
        return Failure(u"Cannot write the dump '%1': %2."_s.arg(fileName, file.errorString()));
    return {};
}

FunctionCallResult<PageDump> takeDump(TestSession &session, const DumpCommandOptions &options)
{
    const FunctionCallResult<void> opened = session.open(QString::fromStdString(options.address));
    if (opened.failed())
        return Failure(opened.error);
    SharedPtr<Object> element;
    if (!options.name.empty()) {
        const auto found = session.lookup()->waitUntilThere(QString::fromStdString(options.name));
        if (found.failed())
            return Failure(found.error);
        element = found.value;
    }
    BrowserPage *page = session.activePage();
    if (!page)
        return Failure(u"There is no open page."_s);
    page->setDefaultLimit(int(options.timeout * 1000));
    PageDumpOptions dump;
    dump.properties = wantedProperties(options);
    dump.screenshots = options.screenshots;
    dump.picture = formatOf(options) == DumpFormat::Html;
    dump.log = complain;
    return dumpPage(page, element, dump);
}

int dump(const DumpCommandOptions &options)
{
    registerObjectModel();
    if (const auto known = checkProperties(wantedProperties(options)); known.failed()) {
        complain(known.error);
        return Unusable;
    }
    FunctionCallResult<std::unique_ptr<TestSession>> session;
    const Interruption interruption([] {},
        [&] {
            if (session.value)
                session.value->stop();
        });
    SessionOptions sessionOptions;
    sessionOptions.browser.executable = QString::fromStdString(options.browserPath);
    session = TestSession::start(sessionOptions, complain);
    if (session.failed()) {
        complain(session.error);
        return Unusable;
    }
    const FunctionCallResult<PageDump> taken = takeDump(*session.value, options);
    if (taken.failed()) {
        complain(taken.error);
        return Failed;
    }
    const FunctionCallResult<void> written
        = write(writeDump(taken.value, formatOf(options)), QString::fromStdString(options.file));
    if (written.failed()) {
        complain(written.error);
        return Unusable;
    }
    return Passed;
}

} // namespace

Command addDumpCommand(CLI::App &commandLine)
{
    CLI::App *command = commandLine.add_subcommand("dump", "Write the object tree of a page to a file");
    auto options = std::make_shared<DumpCommandOptions>();
    command->add_option("url", options->address, "The address of the page")->required();
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
    command->add_option("--browser-path", options->browserPath, "The browser's executable");
    command->add_option("--timeout", options->timeout, "Limit of a single call into the page, in seconds")
        ->check(CLI::Range(0.001, longestTimeout))
        ->capture_default_str();
    return [options] { return dump(*options); };
}

} // namespace Ostrel::App
