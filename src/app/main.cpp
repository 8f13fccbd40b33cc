// pageprobe: drives web pages in a real browser from the command line.
#include "app/commands.h"
#include "app/exitcodes.h"
#include "app/installationprefix.h"

#include <QCoreApplication>
#include <QLoggingCategory>

#include <cstdio>
#include <vector>

namespace {

struct NamedCommand
{
    const char *name;
    Ostrel::App::Command (*add)(CLI::App &commandLine);
};

constexpr NamedCommand commands[] = {
    {"run", Ostrel::App::addRunCommand},
    {"record", Ostrel::App::addRecordCommand},
    {"pick", Ostrel::App::addPickCommand},
    {"find", Ostrel::App::addFindCommand},
    {"names", Ostrel::App::addNamesCommand},
    {"dump", Ostrel::App::addDumpCommand},
    {"payload", Ostrel::App::addPayloadCommand},
    {"config", Ostrel::App::addConfigCommand},
};

} // namespace

int main(int argc, char *argv[])
{
    QCoreApplication application(argc, argv);
    QCoreApplication::setApplicationName(QStringLiteral("pageprobe"));
    // The script engine's remarks on style, such as a function that names a variable of a later line.
    QLoggingCategory::setFilterRules(QStringLiteral("qt.qml.compiler=false"));
    Ostrel::App::provideInstallationPrefix(QCoreApplication::applicationDirPath());

    CLI::App commandLine{
        "Drives web pages in a real browser: runs and records test scripts, finds and names elements."};
    commandLine.set_version_flag("--version", "pageprobe " PAGEPROBE_VERSION);
    commandLine.require_subcommand(1);
    std::vector<Ostrel::App::Command> runners;
    for (const NamedCommand &command : commands)
        runners.push_back(command.add(commandLine));

    try {
        commandLine.parse(argc, argv);
    } catch (const CLI::ParseError &error) {
        const int code = commandLine.exit(error);
        return code == 0 ? Ostrel::App::Passed : Ostrel::App::Unusable;
    }
    for (std::size_t i = 0; i < runners.size(); ++i) {
        if (commandLine.got_subcommand(commands[i].name))
            return runners[i]();
    }
    return Ostrel::App::Unusable;
}
