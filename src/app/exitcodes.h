// The exit codes of the command, for people and for CI servers.
#pragma once

namespace Ostrel::App {

enum ExitCode {
    Passed = 0, ///< everything went well
    Failed = 1, ///< a script failed
    Unusable = 2, ///< wrong usage, or an environment in which nothing could be tried
};

} // namespace Ostrel::App
