#include "app/browserarguments.h"
#include "app/commands.h"
#include "app/complaint.h"
#include "host/record/picker.h"
#include "host/run/interruption.h"

#include <QEventLoop>
#include <QTextStream>

#include <memory>

namespace Ostrel::App {

using namespace Qt::StringLiterals;
using namespace Host;

namespace {

struct PickOptions
{
    std::string address;
    BrowserArguments browser;
};

int pick(const PickOptions &options)
{
    QEventLoop loop;
    const Interruption interruption([] {}, [&loop] { loop.quit(); });
    const auto session = openPage(options.browser, options.address);
    if (session.failed())
        return complain("pick", session.error);
    Picker picker(session.value.get());
    QString name;
    QObject::connect(&picker, &Picker::picked, &loop, [&](const QString &picked) {
        name = picked;
        loop.quit();
    });
    Browser *browser = session.value->browser();
    QObject::connect(browser, &Browser::lost, &loop, &QEventLoop::quit);
    QObject::connect(
        browser, &Browser::pageClosed, &loop,
        [&] {
            if (browser->pages().isEmpty())
                loop.quit();
        },
        Qt::QueuedConnection);
    if (const FunctionCallResult<void> started = picker.start(); started.failed())
        return complain("pick", started.error);
    QTextStream(stdout) << "Point at an element and press to pick it. Press Ctrl+C to end." << Qt::endl;
    if (!Interruption::wasInterrupted())
        loop.exec();
    if (name.isEmpty())
        return complain("pick", u"nothing was picked."_s, Failed);
    const FunctionCallResult<PickedObject> object = picker.describe(name);
    if (object.failed())
        return complain("pick", object.error, Failed);
    QTextStream(stdout) << object.value.text() << Qt::flush;
    return Passed;
}

} // namespace

Command addPickCommand(CLI::App &commandLine)
{
    CLI::App *command
        = commandLine.add_subcommand("pick", "Point at an element of a page and print what it is");
    auto options = std::make_shared<PickOptions>();
    addPageOptions(*command, options->address, options->browser);
    return [options] { return pick(*options); };
}

} // namespace Ostrel::App
