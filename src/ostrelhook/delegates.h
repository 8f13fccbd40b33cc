// Delegates: what the framework asks about objects beyond their own members, such as their children, their
// bounds or their text. A delegate serves a class and all classes below it that have none of their own.
#pragma once

#include "ostrelhook/export.h"
#include "ostrelhook/geometry.h"
#include "ostrelhook/object.h"
#include "ostrelhook/objectname.h"

#include <QHash>
#include <QString>
#include <QStringList>

#include <map>
#include <string>

namespace Ostrel {

class Class;
class DumpFilter;
class Event;
class Property;

namespace UIAbstraction {
class UIElement;
}

/// Base of all delegates. Making one registers it with the DelegateFactory, and destroying it takes it out; a
/// copy is not registered. Delegates are used on one thread. Objects are passed by value, since an operation
/// may run an event loop in which the caller's own pointer goes.
class OSTRELHOOK_EXPORT Delegate
{
public:
    enum Kind { Hierarchy = 0, Geometry = 1, Comparison = 2, Cast = 3, Dump = 4, SendEvent = 5 };

    virtual ~Delegate();

    Kind kind() const { return m_kind; }
    /// The class that the delegate serves.
    const QString &className() const { return m_className; }

protected:
    Delegate(Kind kind, const QString &className);
    Delegate(const Delegate &other);
    Delegate &operator=(const Delegate &other) = default;

private:
    Kind m_kind;
    QString m_className;
};

/// How objects lie in each other, and how they are found by name.
class OSTRELHOOK_EXPORT ObjectHierarchyDelegate : public Delegate
{
public:
    static constexpr Kind DelegateKind = Hierarchy;

    /// The toolkit whose objects a delegate knows.
    enum WrapperType {
        Other = 0,
        Web = 8, ///< pages in a browser
    };

    explicit ObjectHierarchyDelegate(const QString &className);
    ~ObjectHierarchyDelegate() override;

    virtual int numChildren(SharedPtr<Object> object) const;
    /// Null for an index that is out of range.
    virtual SharedPtr<Object> child(SharedPtr<Object> object, int index) const;
    /// The first child of exactly this name, or null.
    virtual SharedPtr<Object> childByName(SharedPtr<Object> object, const QString &name) const;
    /// The object below `object` of this name, or null. By default follows the child names of a plain name,
    /// which dots separate; a name with properties finds nothing then.
    virtual SharedPtr<Object> objectByQualifiedName(SharedPtr<Object> object, const ObjectName &name) const;
    /// The name among the children of the parent; empty when it is not known.
    virtual QString name(SharedPtr<Object> object) const = 0;
    /// A name by which Inspector::findObject() finds the object again; empty when there is none.
    virtual QString qualifiedName(SharedPtr<Object> object) const = 0;
    virtual ObjectList children(SharedPtr<Object> object) const = 0;
    /// By default the toplevel object of this delegate's toolkit; null for a toplevel object itself.
    virtual SharedPtr<Object> parent(SharedPtr<Object> object) const;
    virtual WrapperType wrapperType() const;
};

/// Where objects are on the screen.
class OSTRELHOOK_EXPORT GeometryDelegate : public Delegate
{
public:
    static constexpr Kind DelegateKind = Geometry;

    explicit GeometryDelegate(const QString &className);
    ~GeometryDelegate() override;

    /// The bounds on the desktop; invalid when they cannot be told.
    virtual Rect<2> globalBounds(SharedPtr<Object> object) const = 0;
    /// The part of the bounds that a user can see; by default all of it.
    virtual Rect<2> visibleGlobalBounds(SharedPtr<Object> object) const;
    /// By default whether the visible bounds are not empty.
    virtual bool isOnScreen(SharedPtr<Object> object) const;
    virtual bool contains(SharedPtr<Object> object, int x, int y) const;
    /// Where a pointer hits the object; by default the middle of its visible bounds.
    virtual Point<1> hotSpot(SharedPtr<Object> object) const;
    /// The innermost object at a position of the desktop, or null.
    virtual SharedPtr<Object> childAt(SharedPtr<Object> object, int x, int y) const;
    /// The object that takes the keys that are meant for `object`; by default itself.
    virtual SharedPtr<Object> focusProxy(SharedPtr<Object> object) const;
};

/// Whether two objects stand for the same thing.
class OSTRELHOOK_EXPORT ComparisonDelegate : public Delegate
{
public:
    static constexpr Kind DelegateKind = Comparison;

    explicit ComparisonDelegate(const QString &className);
    ~ComparisonDelegate() override;

    virtual bool compare(SharedPtr<Object> a, SharedPtr<Object> b) const = 0;
    /// By default what compare() says.
    virtual bool sameObjects(SharedPtr<Object> a, SharedPtr<Object> b) const;
};

/// Turns objects of a class into other values and back.
class OSTRELHOOK_EXPORT CastDelegate : public Delegate
{
public:
    static constexpr Kind DelegateKind = Cast;

    explicit CastDelegate(const QString &className);
    ~CastDelegate() override;

    virtual bool canCast(const Class *target) const = 0;
    /// Whether values of another class can become objects of this one; by default none.
    virtual bool canCastFrom(const Class *source) const;
    /// The value of class `target`, or null.
    virtual SharedPtr<Object> cast(SharedPtr<Object> object, const Class *target) const = 0;
    /// The object of this delegate's class that stands for `value`; by default null.
    virtual SharedPtr<Object> castFrom(SharedPtr<Object> value) const;
};

/// Serves a dump of an object tree faster than one question at a time could. A result of false means that the
/// delegate does not handle the item; the dump then takes its general way.
class OSTRELHOOK_EXPORT DumpObjectTreeDelegate : public Delegate
{
public:
    static constexpr Kind DelegateKind = Dump;
    using Filters = std::map<std::string, DumpFilter *>;

    explicit DumpObjectTreeDelegate(const QString &className);
    ~DumpObjectTreeDelegate() override;

    /// Prepares for a dump below `root`. Dumps nest; each successful call is followed by one of leaveDump().
    virtual bool enterDump(SharedPtr<Object> root, const Filters &filters, QString *error) const = 0;
    virtual bool leaveDump(QString *error) const = 0;
    /// Makes the element of an object, with those below it if `recursive`; the caller owns it. `*element` may
    /// stay null, which leaves the object out.
    virtual bool dumpObject(SharedPtr<Object> object, bool recursive, UIAbstraction::UIElement **element,
        const Filters &filters, QString *error) const = 0;
    virtual bool takeScreenshot(SharedPtr<Object> object, UIAbstraction::UIElement *element) const = 0;
    /// Writes the value of a property into the element.
    virtual bool setProperty(const Property *property, SharedPtr<Object> object,
        UIAbstraction::UIElement *element, bool identifying) const = 0;
    virtual bool children(SharedPtr<Object> object, ObjectList *children) const = 0;
    virtual bool visibleGlobalBounds(SharedPtr<Object> object, Rect<2> *bounds) const = 0;
    /// Whether the dump shows the children of the object in its place; by default it does not.
    virtual bool isTransparent(SharedPtr<Object> object) const;
    /// What kind of control the object is, for readers of the dump; by default
    /// simplifiedTypeName().
    virtual QString simplifiedType(SharedPtr<Object> object) const;
};

/// The kind of control that a class name tells of: "Button" for "HTML_Button".
OSTRELHOOK_EXPORT QString simplifiedTypeName(const Class &type);

/// Replays events on objects.
class OSTRELHOOK_EXPORT SendEventDelegate : public Delegate
{
public:
    static constexpr Kind DelegateKind = SendEvent;

    explicit SendEventDelegate(const QString &className);
    ~SendEventDelegate() override;

    /// False when the event was not sent; what there is to tell went to Inspector::raiseError().
    virtual bool sendEvent(
        const Event *event, SharedPtr<Object> object, const ObjectList &arguments) const = 0;
};

/// Finds the delegates of classes.
class OSTRELHOOK_EXPORT DelegateFactory
{
public:
    static DelegateFactory *self();

    /// The delegate of a kind for a class or its nearest base class that has one; null when there is none. Of
    /// several for the same class the one that was made last.
    Delegate *delegate(const Class *type, int kind) const;

    /// The same by the type of the delegate: delegate<CastDelegate>(type).
    template <typename DelegateType = ObjectHierarchyDelegate>
    DelegateType *delegate(const Class *type) const
    {
        return static_cast<DelegateType *>(delegate(type, DelegateType::DelegateKind));
    }

    /// The same for the class of an object; null for a null pointer.
    template <typename DelegateType = ObjectHierarchyDelegate>
    DelegateType *delegate(const SharedPtr<Object> &object) const
    {
        return object ? delegate<DelegateType>(object->objectClass()) : nullptr;
    }

private:
    friend class Delegate;
    DelegateFactory() = default;
    void add(Delegate *delegate);
    void remove(Delegate *delegate);

    QHash<QString, QList<Delegate *>> m_byClassName;
};

/// A value as text: primitives as they are written, objects as the cast delegate of their class says. An
/// object without one gives its class name in brackets, a null object "null".
OSTRELHOOK_EXPORT QString objectAsText(const SharedPtr<Object> &object);

/// Whether two script values are equal: null objects are, primitives are by value, objects as the comparison
/// delegate of their class says, and without one when they wrap the same thing.
OSTRELHOOK_EXPORT bool objectsAreEqual(const SharedPtr<Object> &a, const SharedPtr<Object> &b);

/// The name of an object in its parent; empty when no delegate knows it.
OSTRELHOOK_EXPORT QString nameOfObject(const SharedPtr<Object> &object);

/// The object that a path of child names leads to, each asked of the delegate of the object before; or null.
OSTRELHOOK_EXPORT SharedPtr<Object> objectByPath(const SharedPtr<Object> &start, const QStringList &names);

} // namespace Ostrel
