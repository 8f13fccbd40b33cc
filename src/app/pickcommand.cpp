#include "app/browserarguments.h"
#include "app/commands.h"
#include "app/exitcodes.h"
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
    QTextStream errors(stderr);
    QEventLoop loop;
    const Interruption interruption([] {}, [&loop] { loop.quit(); });
    const auto session = openPage(options.browser, options.address);
    if (session.failed()) {
        errors << "pageprobe pick: " << session.error << Qt::endl;
        return Unusable;
    }
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
    if (const FunctionCallResult<void> started = picker.start(); started.failed()) {
        errors << "pageprobe pick: " << started.error << Qt::endl;
        return Unusable;
    }
    QTextStream(stdout) << "Point at an element and press to pick it. Press Ctrl+C to end." << Qt::endl;
    if (!Interruption::wasInterrupted())
        loop.exec();
    if (name.isEmpty()) {
        errors << "pageprobe pick: nothing was picked." << Qt::endl;
        return Failed;
    }
    const FunctionCallResult<PickedObject> object = picker.describe(name);
    if (object.failed()) {
        errors << "pageprobe pick: " << object.error << Qt::endl;
        return Failed;
    }
    QTextStream(stdout) << object.value.text() << Qt::flush;
    return Passed;
}

} // namespace

Command addPickCommand(CLI::App &commandLine)
{
    CLI::App *command
        = commandLine.add_subcommand("pick", "Point at an element of a page and print what it is");
    auto options = std::make_shared<PickOptions>();
    command->add_option("url", options->address, "The page's address, or a file")->required();
    addBrowserOptions(*command, options->browser);
    options->browser.hasUser = true;
    return [options] { return pick(*options); };
}

} // namespace Ostrel::App
