// The subcommands of pageprobe. Each adds itself with its options; the one that was asked for is then run.
#pragma once

#include <CLI/CLI.hpp>

#include <functional>

namespace Ostrel::App {

/// Adds a subcommand to the command line; the result runs it and gives the exit code.
using Command = std::function<int()>;

Command addRunCommand(CLI::App &commandLine);
Command addFindCommand(CLI::App &commandLine);
Command addNamesCommand(CLI::App &commandLine);
Command addRecordCommand(CLI::App &commandLine);
Command addPickCommand(CLI::App &commandLine);
Command addDumpCommand(CLI::App &commandLine);
Command addPayloadCommand(CLI::App &commandLine);
Command addConfigCommand(CLI::App &commandLine);

} // namespace Ostrel::App
