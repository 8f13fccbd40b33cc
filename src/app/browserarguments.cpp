#include "app/browserarguments.h"

#include <CLI/CLI.hpp>

#include <QFileInfo>
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
}

void addPageOptions(CLI::App &command, std::string &address, BrowserArguments &arguments)
{
    command.add_option("url", address, "The page's address, or a file")->required();
    addBrowserOptions(command, arguments);
}

QStringList argumentsFor(const BrowserArguments &arguments)
{
    constexpr int allDigits = 17;
    QStringList list{u"--timeout"_s, QString::number(arguments.timeout, 'g', allDigits)};
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
    return session;
}

FunctionCallResult<std::unique_ptr<Host::TestSession>> openPage(
    const BrowserArguments &arguments, const std::string &address)
{
    auto session = Host::TestSession::start(sessionOptions(arguments));
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
