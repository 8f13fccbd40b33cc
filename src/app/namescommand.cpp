#include "app/browserarguments.h"
#include "app/commands.h"
#include "app/complaint.h"

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
    const auto session = openPage(options.browser, options.address);
    if (session.failed())
        return complain("names", session.error);
    const FunctionCallResult<QStringList> names = Host::namesOfAllElements(session.value->activePage());
    if (names.failed())
        return complain("names", names.error, Failed);
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
    addPageOptions(*command, options->address, options->browser);
    return [options] { return printNames(*options); };
}

} // namespace Ostrel::App
