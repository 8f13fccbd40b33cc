// Two small families of wrappers with class tables, for tests of the frame.
#pragma once

#include "ostrelhook/classtable.h"

#include <QStringList>

namespace Ostrel::Test {

/// A wrapper that records what is done to it.
class Widget
{
public:
    static constexpr char ScriptName[] = "Sample_Widget";

    /// `record`, when given, outlives the wrapper.
    explicit Widget(QStringList *record = nullptr) : log(record) { ++count; }
    virtual ~Widget() { --count; }
    virtual const char *className() const { return ScriptName; }

    FunctionCallResult<QString> title() const { return QStringLiteral("a title"); }
    FunctionCallResult<int> width() const { return m_width; }
    FunctionCallResult<void> setWidth(int width)
    {
        if (width < 0)
            return Failure(QStringLiteral("Error setting width: %1 is negative"));
        m_width = width;
        return {};
    }
    FunctionCallResult<void> moveTo(int x, int y, bool animated)
    {
        return note(QStringLiteral("moveTo(%1, %2, %3)")
                        .arg(QString::number(x), QString::number(y),
                            animated ? QStringLiteral("true") : QStringLiteral("false")));
    }
    FunctionCallResult<QString> fail() const { return Failure(QStringLiteral("It failed: %1 'x'\n")); }

    // One operation for each type of argument, all called "take" by scripts.
    FunctionCallResult<QString> takeInt(int) { return QStringLiteral("int"); }
    FunctionCallResult<QString> takeDouble(double) { return QStringLiteral("double"); }
    FunctionCallResult<QString> takeBool(bool) { return QStringLiteral("bool"); }
    FunctionCallResult<QString> takeText(const char *text)
    {
        return QStringLiteral("text ") + QString::fromUtf8(text);
    }
    FunctionCallResult<QString> takeWidget(Widget *widget)
    {
        return widget ? QStringLiteral("widget ") + QString::fromLatin1(widget->className())
                      : QStringLiteral("no widget");
    }
    FunctionCallResult<QStringList> reversed(const QStringList &items) const
    {
        return QStringList(items.rbegin(), items.rend());
    }
    FunctionCallResult<int> countWidgets(const QList<Widget *> &widgets) const
    {
        return int(widgets.size() - widgets.count(nullptr));
    }
    FunctionCallResult<QString> onlyBool(bool) { return QStringLiteral("bool"); }

    /// A new wrapper of the class that the name tells.
    FunctionCallResult<Widget *> create(const char *kind);

    static inline int count = 0;

    bool alive = true;
    QStringList *log;

protected:
    FunctionCallResult<void> note(const QString &text)
    {
        if (log)
            log->append(text);
        return {};
    }

private:
    int m_width = 10;
};

class Button : public Widget
{
public:
    static constexpr char ScriptName[] = "Sample_Button";

    using Widget::Widget;
    const char *className() const override { return ScriptName; }

    FunctionCallResult<QString> buttonTitle() const { return QStringLiteral("a button's title"); }
    FunctionCallResult<void> press() { return note(QStringLiteral("press()")); }
};

/// A wrapper of a class that nobody registers.
class Gauge : public Widget
{
public:
    static constexpr char ScriptName[] = "Sample_Gauge";

    const char *className() const override { return ScriptName; }
};

inline FunctionCallResult<Widget *> Widget::create(const char *kind)
{
    const QLatin1StringView name(kind);
    if (name == QLatin1StringView("none"))
        return static_cast<Widget *>(nullptr);
    if (name == QLatin1StringView("gauge"))
        return new Gauge;
    return name == QLatin1StringView("button") ? new Button : new Widget;
}

} // namespace Ostrel::Test

template <std::derived_from<Ostrel::Test::Widget> C>
struct Ostrel::WrapperRoot<C>
{
    using Type = Ostrel::Test::Widget;
};

namespace Ostrel::Test {

inline constexpr WrapperFamily widgetFamily{
    [](void *wrapper) { return static_cast<Widget *>(wrapper)->alive; },
    u"The widget is gone.",
    [](void *wrapper) { delete static_cast<Widget *>(wrapper); },
};

inline constexpr PropertyRow widgetProperties[] = {
    property<&Widget::title>("title"),
    property<&Widget::width, &Widget::setWidth>("width"),
    property<&Widget::fail>("broken"),
};
inline constexpr MethodRow widgetMethods[] = {
    method<&Widget::moveTo, 0, 0, false>("moveTo"),
    method<&Widget::moveTo, 0, false>("moveTo", "x"),
    method<&Widget::moveTo, false>("moveTo", "x", "y"),
    method<&Widget::moveTo>("moveTo", "x", "y", "animated"),
    method<&Widget::fail>("fail"),
    method<&Widget::takeInt>("take", "value"),
    method<&Widget::takeDouble>("take", "value"),
    method<&Widget::takeBool>("take", "value"),
    method<&Widget::takeText>("take", "value"),
    method<&Widget::takeWidget>("take", "value"),
    method<&Widget::reversed>("reversed", "items"),
    method<&Widget::countWidgets>("countWidgets", "widgets"),
    method<&Widget::onlyBool>("onlyBool", "value"),
    method<&Widget::create>("create", "kind"),
};
inline constexpr ClassTable widgetTable{"Sample_Widget", nullptr, widgetProperties, widgetMethods};

inline constexpr PropertyRow buttonProperties[] = {
    property<&Button::buttonTitle>("title"),
};
inline constexpr MethodRow buttonMethods[] = {
    method<&Button::press>("press"),
};
inline constexpr ClassTable buttonTable{"Sample_Button", "Sample_Widget", buttonProperties, buttonMethods};

struct SampleClasses
{
    TableClass *button;
    TableClass *widget;
};

/// The classes, registered at the first call, the derived one first.
inline const SampleClasses &sampleClasses()
{
    static const SampleClasses classes = [] {
        Namespace *home = Inspector::self()->globalNamespace();
        auto *button = new TableClass(buttonTable, widgetFamily, home);
        auto *widget = new TableClass(widgetTable, widgetFamily, home);
        return SampleClasses{button, widget};
    }();
    return classes;
}

/// A script object that owns the wrapper.
inline SharedPtr<Object> wrapped(Widget *widget)
{
    sampleClasses();
    return ScriptValue<Widget *>::toObject(widget);
}

/// The script values of C++ values.
template <typename... Values>
ObjectList argumentList(const Values &...values)
{
    return {Inspector::self()->createPrimitive(values)...};
}

/// Calls a method as a script does; an error is left pending.
inline SharedPtr<Object> callByName(
    const SharedPtr<Object> &object, const QString &name, const ObjectList &arguments)
{
    Class *type = object->objectClass();
    const FunctionCallResult<Method *> found = type->resolve(name, arguments);
    if (found.failed()) {
        Inspector::self()->raiseError(found.error);
        return {};
    }
    return type->call(object, arguments, found.value);
}

inline SharedPtr<Object> readByName(const SharedPtr<Object> &object, const QString &name)
{
    Class *type = object->objectClass();
    return type->read(object, type->findProperty(name));
}

inline bool writeByName(const SharedPtr<Object> &object, const QString &name, const SharedPtr<Object> &value)
{
    Class *type = object->objectClass();
    return type->write(object, type->findProperty(name), value);
}

} // namespace Ostrel::Test
