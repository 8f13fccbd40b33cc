# Warnings are a private matter of each target: they never reach a project that links us.
add_library(pageprobe_warnings INTERFACE)
target_compile_options(pageprobe_warnings INTERFACE
    -Wall -Wextra -Wpedantic -Wshadow -Wconversion -Wswitch-enum -Wnon-virtual-dtor -Woverloaded-virtual
    $<$<BOOL:${PAGEPROBE_WERROR}>:-Werror>)
