#include "app/browserarguments.h"
#include "app/commands.h"
#include "app/complaint.h"
#include "ostrelhook/class.h"
#include "ostrelhook/delegates.h"
#include "ostrelhook/objectname.h"

#include <QTextStream>

#include <memory>

namespace Ostrel::App {

using namespace Qt::StringLiterals;
using namespace Host;

namespace {

constexpr double longestWait = 3600; // in seconds

struct FindOptions
{
    std::string address;
    std::string name;
    double wait = 0;
    BrowserArguments browser;
};

/// "HTML_Button  8,21 60x30  {tagName='BUTTON' ...}": class, rectangle on the screen, full name.
QString describe(const SharedPtr<Object> &object)
{
    const auto *geometry = DelegateFactory::self()->delegate<GeometryDelegate>(object);
    const auto *hierarchy = DelegateFactory::self()->delegate<ObjectHierarchyDelegate>(object);
    const Rect<2> bounds = geometry->globalBounds(object);
    return u"%1  %2,%3 %4x%5  %6"_s.arg(object->objectClass()->name(), QString::number(bounds.x),
        QString::number(bounds.y), QString::number(bounds.width), QString::number(bounds.height),
        hierarchy->qualifiedName(object));
}

FunctionCallResult<ObjectList> findWithin(Lookup &lookup, const QString &name, double seconds)
{
    if (seconds > 0) {
        const FunctionCallResult<SharedPtr<Object>> awaited
            = lookup.waitUntilThere(name, int(seconds * 1000));
        if (awaited.failed())
            return Failure(awaited.error);
    }
    return lookup.findAll(name);
}

int find(const FindOptions &options)
{
    const QString name = QString::fromStdString(options.name);
    if (const FunctionCallResult<ObjectName> parsed = ObjectName::parse(name); parsed.failed())
        return complain("find", parsed.error);
    const auto session = openPage(options.browser, options.address);
    if (session.failed())
        return complain("find", session.error);
    const FunctionCallResult<ObjectList> found = findWithin(*session.value->lookup(), name, options.wait);
    if (found.failed()) {
        QTextStream(stderr) << found.error << Qt::endl;
        return Failed;
    }
    QTextStream out(stdout);
    for (const SharedPtr<Object> &object : found.value)
        out << describe(object) << Qt::endl;
    return Passed;
}

} // namespace

Command addFindCommand(CLI::App &commandLine)
{
    CLI::App *command = commandLine.add_subcommand("find", "Print every element of a page that has a name");
    auto options = std::make_shared<FindOptions>();
    addPageOptions(*command, options->address, options->browser);
    command->add_option("name", options->name, "The name, such as {tagName='BUTTON' visible='true'}")
        ->required();
    command->add_option("--wait", options->wait, "How long to wait for the first one, in seconds")
        ->check(CLI::Range(0.0, longestWait));
    return [options] { return find(*options); };
}

} // namespace Ostrel::App
