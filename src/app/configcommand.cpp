#include "app/commands.h"
#include "app/exitcodes.h"
#include "wrappers/web/wrapperconfig.h"

#include <QTextStream>

namespace Ostrel::App {

using namespace Qt::StringLiterals;
using namespace WebWrapper;

namespace {

QString sourceText(ConfigSource source)
{
    switch (source) {
    case ConfigSource::BuiltIn:
        return u"default"_s;
    case ConfigSource::GlobalFile:
        return u"global file"_s;
    case ConfigSource::UserFile:
        return u"user file"_s;
    case ConfigSource::Environment:
        return u"environment"_s;
    }
    return {};
}

int printConfig()
{
    const FileSystemBasedConfig config;
    QTextStream out(stdout);
    out << "# global file: " << config.globalFileName() << "\n# user file: " << config.userFileName() << "\n";
    for (const ConfigOption &option : configOptions()) {
        const ResolvedOption resolved = config.resolve(option);
        out << option.key << " = " << resolved.value.toString() << " (" << sourceText(resolved.source)
            << ")\n";
    }
    return Passed;
}

} // namespace

Command addConfigCommand(CLI::App &commandLine)
{
    commandLine.add_subcommand("config", "Print every option with its value and where it comes from");
    return printConfig;
}

} // namespace Ostrel::App
