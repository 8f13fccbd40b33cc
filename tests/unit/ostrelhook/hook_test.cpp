// Tests of the hook: messages go where the host says, and devices fail in words when there are none.
#include "ostrelhook/hook.h"

#include "support/printers.h"

#include <gtest/gtest.h>

using namespace Ostrel;
using namespace Qt::StringLiterals;

namespace {

class HookTest : public testing::Test
{
protected:
    ~HookTest() override
    {
        hook->setReceiver(nullptr);
        hook->setNativeInterface(nullptr);
        hook->preferredSpyId = -1;
        hook->fallbackSpyId = -1;
    }

    Hook *hook = Hook::instance();
};

TEST_F(HookTest, MessagesReachTheReceiver)
{
    QStringList received;
    hook->setReceiver([&received](int target, const QString &message, const ArgumentList &arguments) {
        received.append(u"%1 %2 %3"_s.arg(QString::number(target), message, arguments.value(0).toString()));
        return true;
    });

    EXPECT_TRUE(Hook::send(7, u"objectPicked"_s, {u"{tagName='A'}"_s}));

    EXPECT_EQ(received, QStringList{u"7 objectPicked {tagName='A'}"_s});
}

TEST_F(HookTest, WithoutAReceiverNothingIsDelivered)
{
    EXPECT_FALSE(Hook::send(7, u"objectPicked"_s, {}));
}

TEST_F(HookTest, TheReceiverTellsWhetherAMessageArrived)
{
    hook->setReceiver([](int, const QString &, const ArgumentList &) { return false; });

    EXPECT_FALSE(Hook::send(7, u"objectPicked"_s, {}));
}

TEST_F(HookTest, AReceiverMayTakeItselfAway)
{
    const auto kept = std::make_shared<int>(0);
    hook->setReceiver([this, kept](int target, const QString &, const ArgumentList &) {
        hook->setReceiver(nullptr);
        *kept = target;
        return true;
    });

    EXPECT_TRUE(Hook::send(3, u"x"_s, {}));

    EXPECT_EQ(*kept, 3);
    EXPECT_EQ(kept.use_count(), 1);
}

TEST_F(HookTest, ThePreferredSpyComesBeforeTheFallback)
{
    EXPECT_EQ(hook->spyId(), -1);
    hook->fallbackSpyId = 4;
    EXPECT_EQ(hook->spyId(), 4);
    hook->preferredSpyId = 9;
    EXPECT_EQ(hook->spyId(), 9);
    hook->preferredSpyId = 0;
    EXPECT_EQ(hook->spyId(), 0);
}

TEST_F(HookTest, ThereIsOne)
{
    EXPECT_EQ(Hook::hook, Hook::instance());
}

TEST_F(HookTest, WithoutDevicesInputFailsInWords)
{
    NativeInterface *devices = hook->nativeInterface();

    ASSERT_NE(devices, nullptr);
    EXPECT_EQ(devices->movePointer({}).error, u"Native input is not available."_s);
    EXPECT_EQ(devices->pointerClick(MouseButton::Left, {}).error, u"Native input is not available."_s);
    EXPECT_EQ(devices->typeKeys(u"<Home>"_s).error, u"Native input is not available."_s);
}

class FakeDevices : public NativeInterface
{
public:
    FunctionCallResult<void> movePointer(const Point<1> &position) override
    {
        return note(u"move %1 %2"_s, position);
    }
    FunctionCallResult<void> pointerClick(MouseButton::Value button, const Point<1> &position) override
    {
        return note(u"click %1 %2 with %3"_s, position, button);
    }
    FunctionCallResult<void> typeKeys(const QString &keys) override
    {
        done.append(keys);
        return {};
    }

    QStringList done;

private:
    FunctionCallResult<void> note(const QString &shape, const Point<1> &position, int button = 0)
    {
        done.append(
            shape.arg(QString::number(position.x), QString::number(position.y), QString::number(button)));
        return {};
    }
};

TEST_F(HookTest, DevicesAreThoseOfTheHost)
{
    FakeDevices devices;
    hook->setNativeInterface(&devices);

    EXPECT_FALSE(hook->nativeInterface()->pointerClick(MouseButton::Value(1), {1, 20, 30, -1}).failed());
    EXPECT_FALSE(hook->nativeInterface()->typeKeys(u"<Shift+End>"_s).failed());

    EXPECT_EQ(devices.done, (QStringList{u"click 20 30 with 1"_s, u"<Shift+End>"_s}));
}

TEST(Geometry, PlacesAreMadeOfPlainNumbers)
{
    const Point<1> origin;
    const Rect<2> bounds{10, 20, 30, 40, -1};

    EXPECT_EQ(origin.kind, 1);
    EXPECT_EQ(origin.screen, -1);
    EXPECT_EQ(Rect<2>().screen, -1);
    EXPECT_TRUE(bounds.isValid());
    EXPECT_TRUE(bounds.contains(10, 20));
    EXPECT_TRUE(bounds.contains(39, 59));
    EXPECT_FALSE(bounds.contains(40, 20));
    EXPECT_FALSE(bounds.contains(10, 60));
    EXPECT_FALSE((Rect<2>{0, 0, -1, -1, -1}).isValid());
    EXPECT_FALSE((Rect<2>{0, 0, -1, -1, -1}).contains(0, 0));
}

} // namespace
