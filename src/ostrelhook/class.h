// Class: what a script can see and do with one kind of object. The framework calls a class back by index.
#pragma once

#include "ostrelhook/export.h"
#include "ostrelhook/functioncallresult.h"
#include "ostrelhook/object.h"
#include "ostrelhook/reflection.h"

#include <QHash>
#include <QMap>

#include <vector>

namespace Ostrel {

class Event;
class Namespace;

/// Base of everything that can be written to a recording or a report by name.
class OSTRELHOOK_EXPORT Serializable
{
public:
    virtual ~Serializable();
};

/// A reflection class: the members of one kind of object and the calls on them.
///
/// Members are numbered from the root class on, so that the local number of a member is its index less
/// superClassOffset(). A class makes its Method and Property objects only when they are first asked for.
/// Classes register themselves with their namespace; whoever creates one keeps it for the life of the
/// process.
class OSTRELHOOK_EXPORT Class : public Serializable
{
public:
    /// The kinds of members, as superClassOffset() counts them.
    enum Kind { Properties = 0, Methods = 1, Enums = 4 };

    Class(const QString &name, Namespace *home, bool scriptVisible = true);
    ~Class() override;
    Class(const Class &) = delete;
    Class &operator=(const Class &) = delete;

    const QString &name() const { return m_name; }
    Namespace *home() const { return m_home; }
    bool isScriptVisible() const { return m_scriptVisible; }

    /// The base class, or null; resolved at the first question, since it may be created later than this one.
    Class *superClass() const;
    bool inherits(const Class *other) const;
    /// How many members of a kind lie in the base classes.
    int superClassOffset(Kind kind) const;

    /// Numbers of members, those of the base classes included.
    int numMethods() const { return superClassOffset(Methods) + m_ownMethods; }
    int numProperties() const { return superClassOffset(Properties) + m_ownProperties; }
    int numEnums() const { return superClassOffset(Enums) + m_ownEnums; }

    /// The member at an index, or null when there is none.
    Method *method(int index) const;
    Property *property(int index) const;
    Enum *enumeration(int index) const;

    /// The property of that name, the most derived one first; null when there is none.
    Property *findProperty(const QString &name) const;
    /// All methods of that name. A method hides those of base classes that take the same number and classes
    /// of arguments; most derived first.
    QList<Method *> findMethods(const QString &name) const;

    /// The overload of `name` that fits `arguments` best by number and class, or an error that says why none
    /// fits.
    FunctionCallResult<Method *> resolve(const QString &name, const ObjectList &arguments) const;

    /// Wraps a pointer to what this class stands for; null gives the null object of this class.
    SharedPtr<Object> wrap(void *data, ObjectAttribute attribute) const;

    /// Calls a method. Errors go to Inspector::raiseError(); the result is then a null pointer.
    SharedPtr<Object> call(
        const SharedPtr<Object> &object, const ObjectList &arguments, const Method *method);
    /// Reads and writes by name, with an error for names that do not exist.
    SharedPtr<Object> read(const SharedPtr<Object> &object, const Property *property);
    bool write(const SharedPtr<Object> &object, const Property *property, const SharedPtr<Object> &value);

    /// Events that can be recorded and replayed; only the global class has any.
    virtual int numEvents() const { return 0; }
    virtual Event *event(const QString &name) const;

    /// Adds a named interface that code of the framework asks this class for. Not owned.
    void addInterface(const QString &name, Serializable *implementation);
    /// The interface of that name here or in a base class, or null.
    Serializable *interfaceNamed(const QString &name) const;

    // What a class implements. Indices count from the root class on.
    virtual SharedPtr<Object> invoke(
        int index, const SharedPtr<Object> &object, const ObjectList &arguments, const Method *method);
    virtual bool setProperty(
        const SharedPtr<Object> &object, const Property *property, const SharedPtr<Object> &value);
    virtual SharedPtr<Object> getProperty(const SharedPtr<Object> &object, const Property *property);
    /// Frees what an owning object wraps.
    virtual void deleteObjectData(Object *object);

    virtual bool canConvertTo(const Class *target) const;
    virtual SharedPtr<Object> convertTo(const SharedPtr<Object> &object, const Class *target) const;

protected:
    /// Looks the base class up and calls setSuperClass(); the root classes do nothing.
    virtual void initSuperClass() const;
    /// Makes the member with this index, or gives null when it is out of range. Called once an index.
    virtual std::unique_ptr<Method> createMethod(int index) const;
    virtual std::unique_ptr<Property> createProperty(int index) const;
    virtual std::unique_ptr<Enum> createEnum(int index) const;

    void setSuperClass(Class *superClass) const { m_superClass = superClass; }
    /// How many members this class adds to its base classes.
    void setOwnMembers(int methods, int properties, int enums = 0);

    /// Whether `method` may be called on `object` at all; raises a script error and gives false if not.
    bool verifyMethodInvocation(const SharedPtr<Object> &object, const Method *method) const;
    /// Whether the number of arguments is what `method` takes; raises a script error and gives false if not.
    static bool verifyMethodArgumentCount(
        const QString &className, const Method *method, const ObjectList &arguments);

private:
    template <typename Member>
    using Slots = std::vector<std::unique_ptr<Member>>;

    QString m_name;
    Namespace *m_home;
    bool m_scriptVisible;
    int m_ownMethods = 0;
    int m_ownProperties = 0;
    int m_ownEnums = 0;
    mutable bool m_superClassResolved = false;
    mutable Class *m_superClass = nullptr;
    mutable Slots<Method> m_methods;
    mutable Slots<Property> m_properties;
    mutable Slots<Enum> m_enums;
    mutable QHash<QString, Property *> m_propertiesByName;
    mutable QHash<QString, QList<Method *>> m_methodsByName;
    QMap<QString, Serializable *> m_interfaces;
};

} // namespace Ostrel
