// Tests of the event catalogue.
#include "wrappers/web/webevents.h"

#include "ostrelhook/globalclass.h"
#include "ostrelhook/inspector.h"

#include "support/printers.h"

#include <gtest/gtest.h>

using namespace Ostrel;
using namespace Qt::StringLiterals;

namespace {

QStringList argumentsOf(const Event &event)
{
    QStringList arguments;
    for (const Argument &argument : event.signature().arguments())
        arguments.append(u"%1 %2"_s.arg(argument.typeName(), argument.name()));
    return arguments;
}

TEST(WebEvents, AreRegisteredOnceInTheirOrder)
{
    GlobalClass *global = Inspector::self()->globalClass();
    const int before = global->numEvents();
    const QString integer = Inspector::self()->primitiveClass(PrimitiveType::Int)->name();
    const QStringList pointer{u"%1 x"_s.arg(integer), u"%1 y"_s.arg(integer), u"%1 state"_s.arg(integer),
        u"%1 button"_s.arg(integer)};
    const QStringList key{u"%1 state"_s.arg(integer), u"%1 keycode"_s.arg(integer)};
    const QList<std::pair<QString, QStringList>> expected{{u"mousedown"_s, pointer}, {u"mouseup"_s, pointer},
        {u"mousemove"_s, pointer}, {u"mouseover"_s, pointer}, {u"mouseout"_s, pointer}, {u"click"_s, pointer},
        {u"dblclick"_s, pointer}, {u"keyup"_s, key}, {u"change"_s, {}}, {u"unload"_s, {}},
        {u"chooseColor"_s, {}}, {u"ignoreEvent"_s, {}}};

    initWebEvents();

    EXPECT_EQ(global->numEvents(), before + 12);
    int id = before;
    for (const auto &[name, arguments] : expected) {
        const Event *event = global->event(name);
        ASSERT_NE(event, nullptr) << name.toStdString();
        EXPECT_EQ(event->name(), name);
        EXPECT_EQ(argumentsOf(*event), arguments) << name.toStdString();
        EXPECT_EQ(event->id(), id++) << name.toStdString();
        EXPECT_EQ(event->owner(), global);
        EXPECT_TRUE(event->isInput());
        for (const Argument &argument : event->signature().arguments()) {
            EXPECT_EQ(argument.attribute(), ObjectAttribute::Value());
            EXPECT_EQ(argument.enumeration(), nullptr);
        }
    }
    EXPECT_EQ(global->event(u"keydown"_s), nullptr);
}

} // namespace
