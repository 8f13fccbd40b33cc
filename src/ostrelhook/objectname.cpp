#include "ostrelhook/objectname.h"

#include <algorithm>

namespace Ostrel {

using namespace Qt::StringLiterals;

namespace {

/// Deeper names are not written by anybody, but could exhaust the stack.
constexpr int maxDepth = 100;

QString quoted(const QString &text)
{
    QString escaped = text;
    // backslashes first, or those in front of quotes would be doubled
    escaped.replace(u'\\', u"\\\\"_s).replace(u'\'', u"\\'"_s);
    return u'\'' + escaped + u'\'';
}

/// As much of a name as a message bears.
QString shortened(const QString &name)
{
    constexpr qsizetype limit = 200;
    return name.size() > limit ? name.left(limit) + u"..."_s : name;
}

/// Reads a name with properties. The first fault ends the reading.
class Parser
{
public:
    explicit Parser(const QString &text) : m_text(text) { }

    bool run()
    {
        if (!readName(m_properties, 0))
            return false;
        return m_position == m_text.size() || fail(u"text behind the closing brace"_s);
    }

    QList<ObjectName::Property> properties() const { return m_properties; }

    QString error() const
    {
        return u"Invalid object name '%1': %2 at character %3."_s.arg(
            shortened(m_text), m_fault, QString::number(m_position + 1));
    }

private:
    bool fail(const QString &fault)
    {
        m_fault = fault;
        return false;
    }

    bool atEnd() const { return m_position >= m_text.size(); }

    bool take(char16_t character)
    {
        if (atEnd() || m_text.at(m_position) != character)
            return false;
        ++m_position;
        return true;
    }

    void skipBlanks()
    {
        while (take(u' ') || take(u'\t')) { }
    }

    bool readName(QList<ObjectName::Property> &properties, int depth)
    {
        if (depth > maxDepth)
            return fail(u"names nested too deeply"_s);
        if (!take(u'{'))
            return fail(u"'{' expected"_s);
        skipBlanks();
        while (!take(u'}')) {
            if (atEnd())
                return fail(u"'}' expected"_s);
            ObjectName::Property property;
            if (!readProperty(property, depth))
                return false;
            setProperty(properties, property);
            skipBlanks();
        }
        return true;
    }

    /// The last of several demands on one property counts.
    static void setProperty(QList<ObjectName::Property> &properties, const ObjectName::Property &property)
    {
        for (ObjectName::Property &known : properties) {
            if (known.name == property.name) {
                known.value = property.value;
                return;
            }
        }
        properties.append(property);
    }

    bool readProperty(ObjectName::Property &property, int depth)
    {
        PropertyValue::MatchKind kind = PropertyValue::Strict;
        return readPropertyName(property.name) && readOperator(kind)
            && readValue(property.value, kind, depth);
    }

    bool readPropertyName(QString &name)
    {
        constexpr QStringView ends = u"=?~ \t\r\n'{}\\";
        const qsizetype start = m_position;
        while (!atEnd() && !ends.contains(m_text.at(m_position)))
            ++m_position;
        name = m_text.mid(start, m_position - start);
        return !name.isEmpty() || fail(u"property name expected"_s);
    }

    bool readOperator(PropertyValue::MatchKind &kind)
    {
        if (take(u'?'))
            kind = PropertyValue::Wildcard;
        else if (take(u'~'))
            kind = PropertyValue::RegularExpression;
        return take(u'=')
            || fail(kind == PropertyValue::Strict ? u"'=', '?=' or '~=' expected"_s : u"'=' expected"_s);
    }

    bool readValue(PropertyValue &value, PropertyValue::MatchKind kind, int depth)
    {
        if (take(u'\''))
            return readQuoted(value, kind);
        if (!atEnd() && m_text.at(m_position) == u'{')
            return readNested(value, depth);
        return fail(u"value in quotes or braces expected"_s);
    }

    bool readQuoted(PropertyValue &value, PropertyValue::MatchKind kind)
    {
        QString text;
        while (!take(u'\'')) {
            take(u'\\');
            if (atEnd())
                return fail(u"closing quote expected"_s);
            text += m_text.at(m_position++);
        }
        value = PropertyValue(text, kind);
        return true;
    }

    /// An operator in front of a nested name has no meaning.
    bool readNested(PropertyValue &value, int depth)
    {
        const qsizetype start = m_position;
        QList<ObjectName::Property> properties;
        if (!readName(properties, depth + 1))
            return false;
        value = PropertyValue(
            m_text.mid(start, m_position - start), PropertyValue::Strict, PropertyValue::Nested);
        return true;
    }

    QString m_text;
    qsizetype m_position = 0;
    QString m_fault;
    QList<ObjectName::Property> m_properties;
};

} // namespace

PropertyValue::PropertyValue(QString text, MatchKind kind, Form form)
    : m_text(std::move(text)), m_kind(kind), m_form(form)
{
}

QString PropertyValue::toString() const
{
    if (m_form == Nested)
        return u'=' + m_text;
    switch (m_kind) {
    case Strict:
        return u'=' + quoted(m_text);
    case RegularExpression:
        return u"~="_s + quoted(m_text);
    case Wildcard:
        return u"?="_s + quoted(m_text);
    }
    return {};
}

ObjectName::ObjectName(const QString &text) : m_text(text)
{
    Parser parser(text);
    m_isMultiProperty = parser.run();
    if (m_isMultiProperty)
        m_properties = parser.properties();
}

FunctionCallResult<ObjectName> ObjectName::parse(const QString &text)
{
    if (text.isEmpty())
        return Failure(u"The object name is empty."_s);
    ObjectName name(text);
    if (!name.m_isMultiProperty && text.startsWith(u'{')) {
        Parser parser(text);
        parser.run();
        return Failure(parser.error());
    }
    return name;
}

bool ObjectName::hasProperty(const QString &name) const
{
    return std::any_of(m_properties.begin(), m_properties.end(),
        [&name](const Property &property) { return property.name == name; });
}

PropertyValue ObjectName::property(const QString &name) const
{
    for (const Property &property : m_properties) {
        if (property.name == name)
            return property.value;
    }
    return {};
}

void ObjectName::setProperty(const QString &name, const PropertyValue &value)
{
    if (!m_isMultiProperty && !m_text.isEmpty())
        return;
    m_isMultiProperty = true;
    const auto known = std::find_if(m_properties.begin(), m_properties.end(),
        [&name](const Property &property) { return property.name == name; });
    if (known != m_properties.end())
        known->value = value;
    else
        m_properties.append({name, value});
    write();
}

void ObjectName::removeProperty(const QString &name)
{
    if (m_properties.removeIf([&name](const Property &property) { return property.name == name; }) > 0)
        write();
}

void ObjectName::write()
{
    QStringList parts;
    for (const Property &property : std::as_const(m_properties))
        parts.append(property.name + property.value.toString());
    m_text = u'{' + parts.join(u' ') + u'}';
}

} // namespace Ostrel
