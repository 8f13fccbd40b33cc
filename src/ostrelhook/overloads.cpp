#include "ostrelhook/overloads.h"

#include "ostrelhook/class.h"

#include <QStringList>

namespace Ostrel {

using namespace Qt::StringLiterals;

namespace {

/// Numbers and booleans may stand for text, as in most script languages; nothing else is converted silently.
constexpr int distanceToText = 20;

/// A parameter that takes everything is chosen when no other fits.
constexpr int distanceToAny = 50;

std::optional<int> primitiveDistance(const QString &wanted, const Object::Primitive &given)
{
    if (std::holds_alternative<QString>(given))
        return wanted == "String"_L1 ? std::optional(0) : std::nullopt;
    if (wanted == "String"_L1)
        return distanceToText;
    if (std::holds_alternative<bool>(given))
        return wanted == "bool"_L1 ? std::optional(0) : std::nullopt;
    if (std::holds_alternative<int>(given)) {
        if (wanted == "int"_L1)
            return 0;
        return wanted == "double"_L1 ? std::optional(1) : std::nullopt;
    }
    if (wanted == "double"_L1)
        return 0;
    if (wanted == "int"_L1 && integralValue(std::get<double>(given)))
        return 1;
    return std::nullopt;
}

std::optional<int> objectDistance(const QString &wanted, const Class *given)
{
    int distance = 0;
    for (const Class *type = given; type; type = type->superClass()) {
        if (type->name() == wanted)
            return distance;
        ++distance;
    }
    return wanted == "Object"_L1 ? std::optional(distance) : std::nullopt;
}

/// What a null pointer among the arguments means: a null object of no class in particular.
std::optional<int> argumentDistance(const Argument &wanted, const SharedPtr<Object> &given)
{
    if (wanted.typeName() == "any"_L1)
        return distanceToAny;
    if (!given)
        return wanted.isPrimitive() ? std::nullopt : std::optional(0);
    if (given->isPrimitive())
        return primitiveDistance(wanted.typeName(), given->primitive());
    return objectDistance(wanted.typeName(), given->objectClass());
}

} // namespace

std::optional<int> callDistance(const Signature &signature, const ObjectList &arguments)
{
    if (signature.count() != arguments.size())
        return std::nullopt;
    int total = 0;
    for (qsizetype i = 0; i < arguments.size(); ++i) {
        const std::optional<int> distance = argumentDistance(signature.at(i), arguments.at(i));
        if (!distance)
            return std::nullopt;
        total += *distance;
    }
    return total;
}

QString callText(const QString &name, const ObjectList &arguments)
{
    QStringList types;
    for (const SharedPtr<Object> &argument : arguments)
        types.append(argument ? argument->objectClass()->name() : u"null"_s);
    return u"%1(%2)"_s.arg(name, types.join(", "_L1));
}

QString signatureText(const Method &method)
{
    QStringList parameters;
    for (const Argument &argument : method.signature().arguments()) {
        parameters.append(
            argument.name().isEmpty() ? argument.typeName() : argument.typeName() + u' ' + argument.name());
    }
    return u"%1(%2)"_s.arg(method.name(), parameters.join(", "_L1));
}

QString noOverloadText(const QStringList &candidates, const QString &name, const ObjectList &arguments)
{
    if (candidates.isEmpty())
        return u"There is no function '%1'."_s.arg(name);
    return u"No overload fits the call %1. Expected: %2."_s.arg(
        callText(name, arguments), candidates.join(" or "_L1));
}

} // namespace Ostrel
