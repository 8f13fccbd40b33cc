#include "ostrelhook/delegates.h"

#include "ostrelhook/class.h"
#include "ostrelhook/inspector.h"

namespace Ostrel {

using namespace Qt::StringLiterals;

Delegate::Delegate(Kind kind, const QString &className) : m_kind(kind), m_className(className)
{
    DelegateFactory::self()->add(this);
}

Delegate::Delegate(const Delegate &other) = default;

Delegate::~Delegate()
{
    DelegateFactory::self()->remove(this);
}

// --- hierarchy

ObjectHierarchyDelegate::ObjectHierarchyDelegate(const QString &className) : Delegate(DelegateKind, className)
{
}

ObjectHierarchyDelegate::~ObjectHierarchyDelegate() = default;

int ObjectHierarchyDelegate::numChildren(SharedPtr<Object> object) const
{
    return int(children(object).size());
}

SharedPtr<Object> ObjectHierarchyDelegate::child(SharedPtr<Object> object, int index) const
{
    return children(object).value(index);
}

SharedPtr<Object> ObjectHierarchyDelegate::childByName(SharedPtr<Object> object, const QString &name) const
{
    const ObjectList all = children(object);
    for (const SharedPtr<Object> &child : all) {
        if (child && nameOfObject(child) == name)
            return child;
    }
    return {};
}

SharedPtr<Object> ObjectHierarchyDelegate::objectByQualifiedName(
    SharedPtr<Object> object, const ObjectName &name) const
{
    if (name.isEmpty() || name.isMultiProperty())
        return {};
    const QStringList path = name.qualifiedName().split(u'.');
    const SharedPtr<Object> first = childByName(object, path.first());
    return first ? objectByPath(first, path.mid(1)) : nullptr;
}

SharedPtr<Object> ObjectHierarchyDelegate::parent(SharedPtr<Object> object) const
{
    const ObjectList &toplevels = Inspector::self()->toplevels();
    if (toplevels.contains(object))
        return {};
    for (const SharedPtr<Object> &toplevel : toplevels) {
        const auto *delegate = DelegateFactory::self()->delegate(toplevel);
        if (delegate && delegate->wrapperType() == wrapperType())
            return toplevel;
    }
    return {};
}

ObjectHierarchyDelegate::WrapperType ObjectHierarchyDelegate::wrapperType() const
{
    return Other;
}

// --- geometry

GeometryDelegate::GeometryDelegate(const QString &className) : Delegate(DelegateKind, className) { }

GeometryDelegate::~GeometryDelegate() = default;

Rect<2> GeometryDelegate::visibleGlobalBounds(SharedPtr<Object> object) const
{
    return globalBounds(object);
}

bool GeometryDelegate::isOnScreen(SharedPtr<Object> object) const
{
    const Rect<2> bounds = visibleGlobalBounds(object);
    return bounds.width > 0 && bounds.height > 0;
}

bool GeometryDelegate::contains(SharedPtr<Object> object, int x, int y) const
{
    return visibleGlobalBounds(object).contains(x, y);
}

Point<1> GeometryDelegate::hotSpot(SharedPtr<Object> object) const
{
    const Rect<2> bounds = visibleGlobalBounds(object);
    Point<1> middle;
    middle.x = bounds.x + bounds.width / 2;
    middle.y = bounds.y + bounds.height / 2;
    middle.screen = bounds.screen;
    return middle;
}

SharedPtr<Object> GeometryDelegate::childAt(SharedPtr<Object>, int, int) const
{
    return {};
}

SharedPtr<Object> GeometryDelegate::focusProxy(SharedPtr<Object> object) const
{
    return object;
}

// --- comparison

ComparisonDelegate::ComparisonDelegate(const QString &className) : Delegate(DelegateKind, className) { }

ComparisonDelegate::~ComparisonDelegate() = default;

bool ComparisonDelegate::sameObjects(SharedPtr<Object> a, SharedPtr<Object> b) const
{
    return compare(a, b);
}

// --- cast

CastDelegate::CastDelegate(const QString &className) : Delegate(DelegateKind, className) { }

CastDelegate::~CastDelegate() = default;

bool CastDelegate::canCastFrom(const Class *) const
{
    return false;
}

SharedPtr<Object> CastDelegate::castFrom(SharedPtr<Object>) const
{
    return {};
}

// --- dump

DumpObjectTreeDelegate::DumpObjectTreeDelegate(const QString &className) : Delegate(DelegateKind, className)
{
}

DumpObjectTreeDelegate::~DumpObjectTreeDelegate() = default;

bool DumpObjectTreeDelegate::isTransparent(SharedPtr<Object>) const
{
    return false;
}

QString DumpObjectTreeDelegate::simplifiedType(SharedPtr<Object> object) const
{
    return object ? simplifiedTypeName(*object->objectClass()) : QString();
}

QString simplifiedTypeName(const Class &type)
{
    return type.name().section(u'_', -1);
}

// --- events

SendEventDelegate::SendEventDelegate(const QString &className) : Delegate(DelegateKind, className) { }

SendEventDelegate::~SendEventDelegate() = default;

// --- factory

DelegateFactory *DelegateFactory::self()
{
    // Never destroyed: delegates that live as long as the process take themselves out at its end.
    static auto *const instance = new DelegateFactory;
    return instance;
}

Delegate *DelegateFactory::delegate(const Class *type, int kind) const
{
    for (; type; type = type->superClass()) {
        const QList<Delegate *> candidates = m_byClassName.value(type->name());
        for (auto candidate = candidates.rbegin(); candidate != candidates.rend(); ++candidate) {
            if ((*candidate)->kind() == kind)
                return *candidate;
        }
    }
    return nullptr;
}

void DelegateFactory::add(Delegate *delegate)
{
    m_byClassName[delegate->className()].append(delegate);
}

void DelegateFactory::remove(Delegate *delegate)
{
    m_byClassName[delegate->className()].removeOne(delegate);
}

// --- questions about any object

QString objectAsText(const SharedPtr<Object> &object)
{
    if (!object || object->isNull())
        return u"null"_s;
    bool ok = false;
    const QString text = object->toQString(&ok);
    return ok ? text : u"[%1]"_s.arg(object->objectClass()->name());
}

namespace {

bool isNumber(const SharedPtr<Object> &object)
{
    return std::holds_alternative<int>(object->primitive())
        || std::holds_alternative<double>(object->primitive());
}

bool primitivesAreEqual(const SharedPtr<Object> &a, const SharedPtr<Object> &b)
{
    if (isNumber(a) && isNumber(b))
        return a->toDouble() == b->toDouble();
    return a->primitive() == b->primitive();
}

} // namespace

bool objectsAreEqual(const SharedPtr<Object> &a, const SharedPtr<Object> &b)
{
    const bool aIsNull = !a || a->isNull();
    const bool bIsNull = !b || b->isNull();
    if (aIsNull || bIsNull)
        return aIsNull && bIsNull;
    if (a->isPrimitive() || b->isPrimitive())
        return a->isPrimitive() && b->isPrimitive() && primitivesAreEqual(a, b);
    if (a->data() == b->data())
        return true;
    const auto *delegate = DelegateFactory::self()->delegate<ComparisonDelegate>(a);
    return delegate && delegate->compare(a, b);
}

QString nameOfObject(const SharedPtr<Object> &object)
{
    const auto *delegate = DelegateFactory::self()->delegate(object);
    return delegate ? delegate->name(object) : QString();
}

SharedPtr<Object> objectByPath(const SharedPtr<Object> &start, const QStringList &names)
{
    SharedPtr<Object> object = start;
    for (const QString &name : names) {
        const auto *delegate = DelegateFactory::self()->delegate(object);
        if (!delegate)
            return {};
        object = delegate->childByName(object, name);
    }
    return object;
}

} // namespace Ostrel
