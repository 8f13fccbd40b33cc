#include "app/commands.h"
#include "app/exitcodes.h"
#include "wrappers/web/payload.h"
#include "wrappers/web/wrapperconfig.h"

#include <cstdio>
#include <memory>

namespace Ostrel::App {

using namespace WebWrapper;

Command addPayloadCommand(CLI::App &commandLine)
{
    CLI::App *command = commandLine.add_subcommand(
        "payload", "Print the script that is injected into pages, and nothing else");
    auto namespaceOnly = std::make_shared<bool>(false);
    command->add_flag("--namespace", *namespaceOnly, "Print the namespace code, which goes first");

    return [namespaceOnly] {
        const QByteArray text
            = (*namespaceOnly ? getOstrelJsNamespaceInitCode() : getJSCode(FileSystemBasedConfig())).toUtf8();
        const bool written
            = std::fwrite(text.constData(), 1, std::size_t(text.size()), stdout) == std::size_t(text.size())
            && std::fflush(stdout) == 0;
        if (!written)
            std::perror("pageprobe payload");
        return written ? Passed : Unusable;
    };
}

} // namespace Ostrel::App
