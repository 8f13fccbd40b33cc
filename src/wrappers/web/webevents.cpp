#include "wrappers/web/webevents.h"

#include "ostrelhook/globalclass.h"
#include "ostrelhook/inspector.h"

#include <initializer_list>
#include <span>

namespace Ostrel {

namespace {

struct EventRow
{
    const char *name;
    std::span<const char *const> arguments;
};

constexpr const char *pointerArguments[] = {"x", "y", "state", "button"};
constexpr const char *keyArguments[] = {"state", "keycode"};

// keydown has no row: it is read as keyup. The recorder never makes the events between mousedown and click,
// but replay sends them.
constexpr EventRow webEvents[] = {
    {"mousedown", pointerArguments},
    {"mouseup", pointerArguments},
    {"mousemove", pointerArguments},
    {"mouseover", pointerArguments},
    {"mouseout", pointerArguments},
    {"click", pointerArguments},
    {"dblclick", pointerArguments},
    {"keyup", keyArguments},
    {"change", {}},
    {"unload", {}},
    {"chooseColor", {}},
    {"ignoreEvent", {}},
};

} // namespace

void initWebEvents()
{
    GlobalClass *global = Inspector::self()->globalClass();
    const Class *integer = Inspector::self()->primitiveClass(PrimitiveType::Int);
    for (const EventRow &row : webEvents) {
        QList<Argument> arguments;
        for (const char *name : row.arguments)
            arguments.append(Argument(QString::fromLatin1(name), integer, ObjectAttribute::Value(), nullptr));
        global->addEvent(std::make_unique<Event>(
            global, QString::fromLatin1(row.name), Signature(arguments), true, global->numEvents()));
    }
}

} // namespace Ostrel
