#include "app/browserarguments.h"
#include "app/commands.h"
#include "app/exitcodes.h"

#include <QTextStream>

#include <memory>

namespace Ostrel::App {

namespace {

struct NamesOptions
{
    std::string address;
    BrowserArguments browser;
};

int printNames(const NamesOptions &options)
{
    QTextStream errors(stderr);
    const auto session = openPage(options.browser, options.address);
    if (session.failed()) {
        errors << "pageprobe names: " << session.error << Qt::endl;
        return Unusable;
    }
    const FunctionCallResult<QStringList> names = Host::namesOfAllElements(session.value->activePage());
    if (names.failed()) {
        errors << "pageprobe names: " << names.error << Qt::endl;
        return Failed;
    }
    QTextStream out(stdout);
    for (const QString &name : names.value)
        out << name << '\n';
    return Passed;
}

} // namespace

Command addNamesCommand(CLI::App &commandLine)
{
    CLI::App *command
        = commandLine.add_subcommand("names", "Print the name of every element of a page, in tree order");
    auto options = std::make_shared<NamesOptions>();
    command->add_option("url", options->address, "The page's address, or a file")->required();
    addBrowserOptions(*command, options->browser);
    return [options] { return printNames(*options); };
}

} // namespace Ostrel::App
