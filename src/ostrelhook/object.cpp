#include "ostrelhook/object.h"

#include "ostrelhook/class.h"
#include "ostrelhook/inspector.h"

#include <QLocale>

#include <cmath>
#include <limits>

namespace Ostrel {

using namespace Qt::StringLiterals;

namespace {

template <typename... Cases>
struct Overloaded : Cases...
{
    using Cases::operator()...;
};
template <typename... Cases>
Overloaded(Cases...) -> Overloaded<Cases...>;

QString numberText(double value)
{
    return QString::number(value, 'g', QLocale::FloatingPointShortest);
}

template <typename T>
T orDefault(const std::optional<T> &converted, bool *ok)
{
    if (ok)
        *ok = converted.has_value();
    return converted.value_or(T{});
}

std::optional<double> numberOf(const QString &text)
{
    bool ok = false;
    const double number = text.trimmed().toDouble(&ok);
    return ok ? std::optional(number) : std::nullopt;
}

} // namespace

std::optional<int> integralValue(double number)
{
    constexpr double smallest = std::numeric_limits<int>::min();
    constexpr double largest = std::numeric_limits<int>::max();
    if (std::trunc(number) != number || number < smallest || number > largest)
        return std::nullopt;
    return int(number);
}

Object::Object(Class *type, void *data, ObjectAttribute attribute)
    : m_class(type), m_data(data), m_attribute(attribute)
{
}

Object::Object(Class *type, Primitive value)
    : m_class(type), m_primitive(std::move(value)),
      m_attribute(std::holds_alternative<QString>(m_primitive) ? ObjectAttribute::Pointer()
                                                               : ObjectAttribute::Value())
{
}

Object::~Object()
{
    if (m_owning)
        m_class->deleteObjectData(this);
}

bool Object::isNull() const
{
    return !m_data && !isPrimitive();
}

std::optional<QString> Object::castToText() const
{
    const Class *text = Inspector::self()->primitiveClass(PrimitiveType::String);
    const SharedPtr<Object> self = std::const_pointer_cast<Object>(weak_from_this().lock());
    if (!m_data || !self || !m_class->canConvertTo(text))
        return std::nullopt;
    const SharedPtr<Object> result = m_class->convertTo(self, text);
    const auto *value = result ? std::get_if<QString>(&result->primitive()) : nullptr;
    return value ? std::optional(*value) : std::nullopt;
}

QString Object::toQString(bool *ok) const
{
    using Result = std::optional<QString>;
    return orDefault(std::visit(Overloaded{
                                    [this](std::monostate) { return castToText(); },
                                    [](int value) { return Result(QString::number(value)); },
                                    [](bool value) { return Result(value ? u"true"_s : u"false"_s); },
                                    [](double value) { return Result(numberText(value)); },
                                    [](const QString &value) { return Result(value); },
                                },
                         m_primitive),
        ok);
}

int Object::toInt(bool *ok) const
{
    using Result = std::optional<int>;
    return orDefault(std::visit(Overloaded{
                                    [](std::monostate) { return Result(); },
                                    [](int value) { return Result(value); },
                                    [](bool value) { return Result(value ? 1 : 0); },
                                    [](double value) { return integralValue(value); },
                                    [](const QString &value) {
                                        const std::optional<double> number = numberOf(value);
                                        return number ? integralValue(*number) : Result();
                                    },
                                },
                         m_primitive),
        ok);
}

bool Object::toBool(bool *ok) const
{
    using Result = std::optional<bool>;
    return orDefault(std::visit(Overloaded{
                                    [](std::monostate) { return Result(); },
                                    [](int value) { return Result(value != 0); },
                                    [](bool value) { return Result(value); },
                                    [](double value) { return Result(value != 0.0); },
                                    [](const QString &value) {
                                        if (value == "true"_L1 || value == "false"_L1)
                                            return Result(value == "true"_L1);
                                        return Result();
                                    },
                                },
                         m_primitive),
        ok);
}

double Object::toDouble(bool *ok) const
{
    using Result = std::optional<double>;
    return orDefault(std::visit(Overloaded{
                                    [](std::monostate) { return Result(); },
                                    [](int value) { return Result(double(value)); },
                                    [](bool value) { return Result(value ? 1.0 : 0.0); },
                                    [](double value) { return Result(value); },
                                    [](const QString &value) { return numberOf(value); },
                                },
                         m_primitive),
        ok);
}

} // namespace Ostrel
