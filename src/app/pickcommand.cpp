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
    std::string object;
    std::string picture;
    BrowserArguments browser;
};

constexpr int highlightLimitMs = 10000;

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
    if (options.object.empty()) {
        QTextStream(stdout) << "Point at an element and press to pick it. Press Ctrl+C to end." << Qt::endl;
    } else {
        const FunctionCallResult<void> picked
            = picker.pick(QString::fromStdString(options.object), highlightLimitMs);
        if (picked.failed())
            return complain("pick", picked.error, Failed);
    }
    if (name.isEmpty() && !Interruption::wasInterrupted())
        loop.exec();
    if (name.isEmpty())
        return complain("pick", u"nothing was picked."_s, Failed);
    if (!options.picture.empty()) {
        const QString fileName = QString::fromStdString(options.picture);
        const FunctionCallResult<QImage> picture = picker.picture();
        if (picture.failed())
            return complain("pick", picture.error, Failed);
        if (!picture.value.save(fileName))
            return complain("pick", u"Cannot write the picture '%1'."_s.arg(fileName), Failed);
    }
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
    command->add_option("--object", options->object,
        "Let the browser's own pointer pick the object of this name, instead of a user");
    command->add_option("--picture", options->picture,
        "Write a picture of the window with the highlight to this file; the ending chooses the format");
    options->browser.hasUser = true;
    return [options] { return pick(*options); };
}

} // namespace Ostrel::App
