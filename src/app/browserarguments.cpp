#include "app/browserarguments.h"

#include <CLI/CLI.hpp>

#include <QFileInfo>
#include <QTextStream>
#include <QUrl>

namespace Ostrel::App {

using namespace Qt::StringLiterals;

namespace {

constexpr double longestTimeout = 24 * 60 * 60; // in seconds

} // namespace

void addBrowserOptions(CLI::App &command, BrowserArguments &arguments)
{
    command.add_flag("--headed", arguments.headed, "Show the browser's window");
    command.add_option("--browser-path", arguments.browserPath, "The browser's executable");
    command.add_option("--serve", arguments.served, "Serve a folder on the loopback address meanwhile");
    command.add_option("--timeout", arguments.timeout, "Limit of a single call into the page, in seconds")
        ->check(CLI::Range(0.001, longestTimeout))
        ->capture_default_str();
    command
        .add_option("--dialog-limit", arguments.dialogLimit,
            "Dismiss a dialog that nobody answers after so many seconds (20; none while a user works)")
        ->check(CLI::Range(0.001, longestTimeout));
}

void addPageOptions(CLI::App &command, std::string &address, BrowserArguments &arguments)
{
    command.add_option("url", address, "The page's address, or a file")->required();
    addBrowserOptions(command, arguments);
}

QStringList argumentsFor(const BrowserArguments &arguments)
{
    const auto exactly = [](double seconds) {
        constexpr int allDigits = 17;
        return QString::number(seconds, 'g', allDigits);
    };
    QStringList list{u"--timeout"_s, exactly(arguments.timeout)};
    if (arguments.dialogLimit)
        list << u"--dialog-limit"_s << exactly(*arguments.dialogLimit);
    if (arguments.headed)
        list << u"--headed"_s;
    if (!arguments.browserPath.empty())
        list << u"--browser-path"_s << QString::fromStdString(arguments.browserPath);
    if (!arguments.served.empty())
        list << u"--serve"_s << QString::fromStdString(arguments.served);
    return list;
}

Host::SessionOptions sessionOptions(const BrowserArguments &arguments)
{
    Host::SessionOptions session;
    session.browser.headless = !arguments.headed;
    session.browser.executable = QString::fromStdString(arguments.browserPath);
    session.browser.evaluationLimitMs = int(arguments.timeout * 1000);
    session.servedDirectory = QString::fromStdString(arguments.served);
    // Whoever sees the dialog may think about it for as long as they like.
    if (arguments.dialogLimit)
        session.dialogLimitMs = qMax(1, int(*arguments.dialogLimit * 1000));
    else if (arguments.hasUser && arguments.headed)
        session.dialogLimitMs = 0;
    return session;
}

Host::ResultSink &sessionComplaints()
{
    class Complaints : public Host::ResultSink
    {
    public:
        void logged(const QString &text) override { QTextStream(stderr) << text << Qt::endl; }
    };
    static Complaints complaints;
    return complaints;
}

FunctionCallResult<std::unique_ptr<Host::TestSession>> openPage(
    const BrowserArguments &arguments, const std::string &address)
{
    auto session = Host::TestSession::start(sessionOptions(arguments), sessionComplaints());
    if (session.failed())
        return session;
    const FunctionCallResult<void> opened = session.value->open(addressFrom(address, *session.value));
    if (opened.failed())
        return Failure(opened.error);
    return session;
}

QString addressFrom(const std::string &text, const Host::TestSession &session)
{
    const QString address = QString::fromStdString(text);
    if (const FunctionCallResult<QString> served = session.serverAddress(); !served.failed())
        return QUrl(served.value).resolved(QUrl(address)).toString();
    const QFileInfo file(address);
    return file.isFile() ? QUrl::fromLocalFile(file.absoluteFilePath()).toString() : address;
}

} // namespace Ostrel::App
