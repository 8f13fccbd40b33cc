// The options that all commands with a browser have in common.
#pragma once

#include "host/script/testsession.h"

#include <QString>
#include <QStringList>

#include <memory>
#include <optional>
#include <string>

namespace CLI {
class App;
}

namespace Ostrel::App {

struct BrowserArguments
{
    bool headed = false;
    std::string browserPath;
    std::string served;
    double timeout = Host::BrowserPage::defaultLimitMs / 1000.0; ///< seconds
    std::optional<double> dialogLimit; ///< seconds; by default a matter of who answers
    bool hasUser = false; ///< a person works in the browser, if its window is shown
};

/// Adds --headed, --browser-path, --serve, --timeout and --dialog-limit to a command. The arguments must live
/// until it runs.
void addBrowserOptions(CLI::App &command, BrowserArguments &arguments);

/// The same, behind the address of the page that the command is about.
void addPageOptions(CLI::App &command, std::string &address, BrowserArguments &arguments);

/// The options of addBrowserOptions() as arguments, for another process of this program.
QStringList argumentsFor(const BrowserArguments &arguments);

Host::SessionOptions sessionOptions(const BrowserArguments &arguments);

/// Says on standard error what a session logs by itself, such as that nobody has answered a dialog. For the
/// commands that run no script.
Host::ResultSink &sessionComplaints();

/// Starts a browser and opens a page in it, one of the served folder if there is one; the error is what to
/// tell the user.
FunctionCallResult<std::unique_ptr<Host::TestSession>> openPage(
    const BrowserArguments &arguments, const std::string &address);

/// What a user gives as the address of a page: one of the folder that the session serves, if it serves one, a
/// file of that name, or else an address as it stands.
QString addressFrom(const std::string &text, const Host::TestSession &session);

} // namespace Ostrel::App
