#include "wrappers/web/reflection/csscolor.h"

#include "ostrelhook/inspector.h"
#include "probelog/tracepoint.h"
#include "wrappers/web/scripttext.h"

#include <QLocale>

#include <array>

namespace Ostrel::WebWrapper {

using namespace Qt::StringLiterals;

namespace {

enum Member { IsValid, Red, Green, Blue, Alpha };
enum Factory { FromRgb, FromRgba };

constexpr std::array memberNames{"isValid"_L1, "red"_L1, "green"_L1, "blue"_L1, "alpha"_L1};
constexpr std::array memberTypes{"bool"_L1, "int"_L1, "int"_L1, "int"_L1, "double"_L1};
constexpr std::array factoryNames{"fromRgb"_L1, "fromRgba"_L1};

constexpr quint8 CssColor::*channels[] = {&CssColor::red, &CssColor::green, &CssColor::blue};
constexpr int channelCount = 3;

FunctionCallResult<quint8> channelValue(const SharedPtr<Object> &argument)
{
    bool ok = false;
    const int value = argument ? argument->toInt(&ok) : 0;
    if (!ok || value < 0 || value > 255) {
        return Failure(message(u"Invalid argument, value needs to be between 0 and 255 (inclusive), was: %1",
            argument ? argument->toQString() : u"null"_s));
    }
    return quint8(value);
}

FunctionCallResult<double> alphaValue(const SharedPtr<Object> &argument)
{
    bool ok = false;
    const double value = argument ? argument->toDouble(&ok) : 0.0;
    if (!ok || !(value >= 0.0 && value <= 1.0)) {
        return Failure(
            message(u"Invalid argument, alpha value needs to be between 0 and 1 (inclusive), was: %1",
                argument ? argument->toQString() : u"null"_s));
    }
    return value;
}

/// Checks a component and stores it in the colour.
FunctionCallResult<void> assign(CssColor &color, Member member, const SharedPtr<Object> &argument)
{
    QString error;
    if (member == Alpha) {
        const FunctionCallResult<double> value = alphaValue(argument);
        error = value.error;
        if (!value.failed())
            color.alpha = value.value;
    } else {
        const FunctionCallResult<quint8> value = channelValue(argument);
        error = value.error;
        if (!value.failed())
            color.*channels[member - Red] = value.value;
    }
    if (error.isEmpty())
        return {};
    const QString component(memberNames[member]);
    PROBELOG_TRACE("WebObject", message(u"Error constructing CssColor for %1: %2", component, error));
    return Failure(message(u"Error for %1 component: %2", component, error));
}

FunctionCallResult<CssColor> colorFrom(const ObjectList &arguments)
{
    CssColor color{0, 0, 0, 1.0, 1};
    for (qsizetype i = 0; i < arguments.size(); ++i) {
        const FunctionCallResult<void> assigned = assign(color, Member(Red + i), arguments.at(i));
        if (assigned.failed())
            return Failure(assigned.error);
    }
    return color;
}

/// Reads decimal fields of a text one after the other.
class FieldReader
{
public:
    FieldReader(const QString &text, qsizetype start) : m_text(text), m_position(start) { }

    /// The number up to the next `end`.
    FunctionCallResult<uint> next(QChar end)
    {
        const qsizetype stop = m_text.indexOf(end, m_position);
        if (stop < 0) {
            return Failure(message(u"End character '%1' not found in '%2' starting at %3.", QString(end),
                m_text, QString::number(m_position)));
        }
        const QString field = m_text.mid(m_position, stop - m_position);
        m_position = stop + 1;
        bool ok = false;
        const uint value = field.toUInt(&ok);
        if (!ok)
            return Failure(message(u"Could not convert '%1' to unsigned int", field));
        return value;
    }

private:
    const QString &m_text;
    qsizetype m_position;
};

QString hexByte(uint value)
{
    return QString::number(value, 16).rightJustified(2, u'0');
}

} // namespace

CssColorClass::CssColorClass(Namespace *home) : Class(u"CssColor"_s, home)
{
    setOwnMembers(int(factoryNames.size()), int(memberNames.size()));
}

void CssColorClass::initSuperClass() const
{
    setSuperClass(Inspector::self()->findClass(u"Object"_s));
}

std::unique_ptr<Method> CssColorClass::createMethod(int index) const
{
    const int local = index - superClassOffset(Methods);
    QList<Argument> parameters;
    for (int i = 0; i < channelCount; ++i)
        parameters.append(Argument(
            memberNames[std::size_t(Red) + std::size_t(i)], u"int"_s, ObjectAttribute::Value(), nullptr));
    if (local == FromRgba)
        parameters.append(Argument(memberNames[Alpha], u"double"_s, ObjectAttribute::Value(), nullptr));
    return std::make_unique<Method>(const_cast<CssColorClass *>(this),
        Argument(u"CssColor"_s, ObjectAttribute::Pointer()), factoryNames[std::size_t(local)],
        Signature(parameters), Method::Static, index);
}

std::unique_ptr<Property> CssColorClass::createProperty(int index) const
{
    const auto local = std::size_t(index - superClassOffset(Properties));
    return std::make_unique<Property>(const_cast<CssColorClass *>(this),
        Argument(QString(memberTypes[local]), ObjectAttribute::Value()), memberNames[local],
        local == IsValid ? Property::ReadOnly : Property::ReadWrite, index);
}

SharedPtr<Object> CssColorClass::invoke(
    int, const SharedPtr<Object> &, const ObjectList &arguments, const Method *method)
{
    if (!verifyMethodArgumentCount(name(), method, arguments))
        return {};
    const FunctionCallResult<CssColor> color = colorFrom(arguments);
    if (color.failed()) {
        Inspector::self()->raiseError(color.error);
        return {};
    }
    return wrapCssColor(color.value);
}

SharedPtr<Object> CssColorClass::getProperty(const SharedPtr<Object> &object, const Property *property)
{
    Inspector *inspector = Inspector::self();
    const CssColor *color = unwrapCssColor(object);
    const int local = property->id() - superClassOffset(Properties);
    if (!color || local < IsValid || local > Alpha) {
        inspector->raiseError(message(u"Invalid property of CssColor accessed: %1", property->name()));
        return {};
    }
    if (local == IsValid)
        return inspector->createPrimitive(color->valid != 0);
    if (!color->valid) {
        inspector->raiseError(message(u"Invalid color, cannot access %1 property", property->name()));
        return {};
    }
    if (local == Alpha)
        return inspector->createPrimitive(color->alpha);
    return inspector->createPrimitive(int(color->*channels[local - Red]));
}

bool CssColorClass::setProperty(
    const SharedPtr<Object> &object, const Property *property, const SharedPtr<Object> &value)
{
    Inspector *inspector = Inspector::self();
    CssColor *color = unwrapCssColor(object);
    const int local = property->id() - superClassOffset(Properties);
    if (local == IsValid) {
        inspector->raiseError(u"Cannot set read-only property 'isValid' on CssColor"_s);
        return false;
    }
    if (!color || !color->valid) {
        inspector->raiseError(u"Cannot set properties on invalid color."_s);
        return false;
    }
    const FunctionCallResult<void> assigned = assign(*color, Member(local), value);
    if (assigned.failed())
        inspector->raiseError(assigned.error);
    return !assigned.failed();
}

void CssColorClass::deleteObjectData(Object *object)
{
    delete static_cast<CssColor *>(object->data());
}

bool CssColorClass::canConvertTo(const Class *target) const
{
    return target == Inspector::self()->primitiveClass(PrimitiveType::String);
}

SharedPtr<Object> CssColorClass::convertTo(const SharedPtr<Object> &object, const Class *target) const
{
    if (!canConvertTo(target))
        return {};
    Inspector *inspector = Inspector::self();
    const CssColor *color = unwrapCssColor(object);
    if (!color || !color->valid) {
        inspector->raiseError(u"Invalid color cannot be converted to a string."_s);
        return {};
    }
    return inspector->createPrimitive(message(u"rgba(%1,%2,%3,%4)", QString::number(color->red),
        QString::number(color->green), QString::number(color->blue),
        QString::number(color->alpha, 'g', QLocale::FloatingPointShortest)));
}

Class *objectModelCssColorClass()
{
    return Inspector::self()->findClass(u"CssColor"_s);
}

SharedPtr<Object> wrapCssColor(const CssColor &color)
{
    SharedPtr<Object> object
        = objectModelCssColorClass()->wrap(new CssColor(color), ObjectAttribute::Pointer());
    object->setOwning(true);
    return object;
}

CssColor *unwrapCssColor(const SharedPtr<Object> &object)
{
    if (!object || object->objectClass() != objectModelCssColorClass())
        return nullptr;
    return static_cast<CssColor *>(object->data());
}

QString convertRgbToHashHex(const QString &text)
{
    const qsizetype open = text.indexOf(u'(');
    if (open < 0)
        return text;

    FieldReader fields(text, open + 1);
    QStringList bytes;
    for (int i = 0; i < channelCount; ++i) {
        const FunctionCallResult<uint> field = fields.next(i < channelCount - 1 ? u',' : u')');
        if (field.failed()) {
            PROBELOG_TRACE("WebObject",
                message(u"Unable to convert %1 value: %2", QString(memberNames[std::size_t(Red + i)]),
                    field.error));
            return text;
        }
        bytes.append(hexByte(field.value));
    }
    return message(u"#%1%2%3", bytes[0], bytes[1], bytes[2]);
}

} // namespace Ostrel::WebWrapper
