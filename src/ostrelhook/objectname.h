// ObjectName: how scripts name objects, and the names that stand for longer ones.
//
// A name with properties lists what an object must be like:
//     {tagName='BUTTON' innerText~='^Save' visible='true' container={tagName='X-PANEL' id='p1'}}
// "=" asks for equal text, "?=" for a wildcard match, "~=" for a regular expression. In quotes a backslash
// takes the next character as it stands. Any other text is a plain name; what it means is up to the
// application.
#pragma once

#include "ostrelhook/export.h"
#include "ostrelhook/functioncallresult.h"

#include <QHash>
#include <QList>
#include <QString>
#include <QStringList>

namespace Ostrel {

/// What a name demands of one property.
class OSTRELHOOK_EXPORT PropertyValue
{
public:
    enum MatchKind {
        Strict = 0, ///< the same text
        RegularExpression = 1, ///< found anywhere in the text
        Wildcard = 2, ///< "*" and "?" stand for other text; the rest of the whole text is the same
    };
    enum Form {
        Quoted = 1, ///< text, written in quotes
        Nested = 2, ///< itself a name with properties, written as it stands; always a strict match
    };

    PropertyValue() = default;
    explicit PropertyValue(QString text, MatchKind kind = Strict, Form form = Quoted);

    /// The text or pattern, without quotes and backslashes; of a nested name the name.
    const QString &stringValue() const { return m_text; }
    MatchKind matchKind() const { return m_kind; }
    Form form() const { return m_form; }

    /// Operator and value as they stand in a name, such as "~='^Save'".
    QString toString() const;

    bool operator==(const PropertyValue &) const = default;

private:
    QString m_text;
    MatchKind m_kind = Strict;
    Form m_form = Quoted;
};

/// The name of an object. A value; a name that is not changed keeps its text to the letter.
class OSTRELHOOK_EXPORT ObjectName
{
public:
    struct Property
    {
        QString name;
        PropertyValue value;

        bool operator==(const Property &) const = default;
    };

    ObjectName() = default;
    /// Reads any text; one with braces that is no proper list of properties counts as a plain name. Use
    /// parse() where the user is to hear what is wrong with it.
    explicit ObjectName(const QString &text);

    /// Reads a name; an error tells what is wrong and at which character, counted from 1.
    static FunctionCallResult<ObjectName> parse(const QString &text);

    bool isEmpty() const { return m_text.isEmpty(); }
    /// Whether this is a list of properties.
    bool isMultiProperty() const { return m_isMultiProperty; }
    /// The properties in the order of the text; empty for plain names.
    const QList<Property> &properties() const { return m_properties; }

    bool hasProperty(const QString &name) const;
    /// The demand on a property; an empty text when the name says nothing of it.
    PropertyValue property(const QString &name) const;
    /// Changes a property where it stands or appends it. Does nothing to a plain name, except that an empty
    /// one becomes a list of properties.
    void setProperty(const QString &name, const PropertyValue &value);
    void removeProperty(const QString &name);

    /// The name as text.
    const QString &qualifiedName() const { return m_text; }

    bool operator==(const ObjectName &other) const { return m_text == other.m_text; }

private:
    void write();

    QString m_text;
    QList<Property> m_properties;
    bool m_isMultiProperty = false;
};

/// Symbolic names: short names that stand for names with properties. Used from one thread.
///
/// A names file is UTF-8 text with a line for each, the symbolic name and the real name separated by a tab.
/// Blank lines and lines that begin with "#" are left out.
class OSTRELHOOK_EXPORT ObjectMap
{
public:
    static ObjectMap *self();

    /// The name that `name` stands for; `name` itself when it is no symbolic name.
    QString realName(const QString &name) const { return m_realNames.value(name, name); }
    /// The symbolic name of a real name; empty when there is none.
    QString symbolicName(const QString &realName) const { return m_symbolicNames.value(realName); }
    /// All symbolic names, in the order in which they were added.
    const QStringList &names() const { return m_order; }

    /// Adds a name. Fails, and changes nothing, when it is known already, when a names file could not hold
    /// it, when the real name is no list of properties, or when the name would become its own container.
    FunctionCallResult<void> insert(const QString &symbolicName, const QString &realName);
    void clear();

    /// Adds all names of a file; when a line is faulty, none, and the error tells file and line.
    FunctionCallResult<void> load(const QString &fileName);
    /// Writes all names to a file that load() reads.
    FunctionCallResult<void> save(const QString &fileName) const;

private:
    FunctionCallResult<void> insertLine(const QString &line);
    bool isOwnContainer(const QString &symbolicName, const ObjectName &realName) const;

    QHash<QString, QString> m_realNames;
    QHash<QString, QString> m_symbolicNames;
    QStringList m_order;
};

} // namespace Ostrel
