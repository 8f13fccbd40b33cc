#include "ostrelhook/class.h"

#include "ostrelhook/delegates.h"
#include "ostrelhook/inspector.h"
#include "ostrelhook/namespace.h"
#include "ostrelhook/overloads.h"

namespace Ostrel {

using namespace Qt::StringLiterals;

Serializable::~Serializable() = default;

Class::Class(const QString &name, Namespace *home, bool scriptVisible)
    : m_name(name), m_home(home), m_scriptVisible(scriptVisible)
{
    m_home->add(this);
}

Class::~Class()
{
    m_home->remove(this);
}

Class *Class::superClass() const
{
    if (!m_superClassResolved) {
        initSuperClass();
        // A base class that does not exist yet is asked for again.
        m_superClassResolved = m_superClass != nullptr;
    }
    return m_superClass;
}

bool Class::inherits(const Class *other) const
{
    for (const Class *type = this; type; type = type->superClass()) {
        if (type == other)
            return true;
    }
    return false;
}

int Class::superClassOffset(Kind kind) const
{
    const Class *base = superClass();
    if (!base)
        return 0;
    switch (kind) {
    case Properties:
        return base->numProperties();
    case Methods:
        return base->numMethods();
    case Enums:
        return base->numEnums();
    }
    return 0;
}

namespace {

/// The member of a class hierarchy at `index`: from the class itself when it is its own, made at the first
/// request, else from the base class.
template <typename Slots, typename Make, typename FromBase>
auto memberAt(int index, int offset, int own, Slots &slots, Make make, FromBase fromBase)
{
    using Member = typename Slots::value_type::pointer;
    if (index < 0 || index >= offset + own)
        return Member(nullptr);
    if (index < offset)
        return fromBase(index);
    slots.resize(std::size_t(own));
    auto &slot = slots[std::size_t(index - offset)];
    if (!slot)
        slot = make(index);
    return slot.get();
}

} // namespace

Method *Class::method(int index) const
{
    return memberAt(
        index, superClassOffset(Methods), m_ownMethods, m_methods, [this](int i) { return createMethod(i); },
        [this](int i) { return superClass()->method(i); });
}

Property *Class::property(int index) const
{
    return memberAt(
        index, superClassOffset(Properties), m_ownProperties, m_properties,
        [this](int i) { return createProperty(i); }, [this](int i) { return superClass()->property(i); });
}

Enum *Class::enumeration(int index) const
{
    return memberAt(
        index, superClassOffset(Enums), m_ownEnums, m_enums, [this](int i) { return createEnum(i); },
        [this](int i) { return superClass()->enumeration(i); });
}

Property *Class::findProperty(const QString &name) const
{
    if (const auto known = m_propertiesByName.constFind(name); known != m_propertiesByName.constEnd())
        return *known;
    Property *found = nullptr;
    for (int index = numProperties() - 1; index >= 0 && !found; --index) {
        if (Property *candidate = property(index); candidate && candidate->name() == name)
            found = candidate;
    }
    m_propertiesByName.insert(name, found);
    return found;
}

namespace {

bool sameParameters(const Method *a, const Method *b)
{
    const QList<Argument> &left = a->signature().arguments();
    const QList<Argument> &right = b->signature().arguments();
    return std::equal(left.begin(), left.end(), right.begin(), right.end(),
        [](const Argument &x, const Argument &y) { return x.typeName() == y.typeName(); });
}

} // namespace

QList<Method *> Class::findMethods(const QString &name) const
{
    if (const auto known = m_methodsByName.constFind(name); known != m_methodsByName.constEnd())
        return *known;
    QList<Method *> found;
    for (const Class *type = this; type; type = type->superClass()) {
        for (int index = type->superClassOffset(Methods); index < type->numMethods(); ++index) {
            Method *candidate = type->method(index);
            const auto hides = [candidate](const Method *other) { return sameParameters(candidate, other); };
            if (candidate && candidate->name() == name && std::none_of(found.begin(), found.end(), hides))
                found.append(candidate);
        }
    }
    m_methodsByName.insert(name, found);
    return found;
}

FunctionCallResult<Method *> Class::resolve(const QString &name, const ObjectList &arguments) const
{
    const QList<Method *> methods = findMethods(name);
    if (methods.isEmpty())
        return Failure(u"%1 has no method '%2'."_s.arg(m_name, name));
    return bestOverload(methods, u"%1.%2"_s.arg(m_name, name), arguments);
}

SharedPtr<Object> Class::wrap(void *data, ObjectAttribute attribute) const
{
    return std::make_shared<Object>(const_cast<Class *>(this), data, attribute);
}

SharedPtr<Object> Class::call(
    const SharedPtr<Object> &object, const ObjectList &arguments, const Method *method)
{
    if (!method->deprecationAdvice().isEmpty())
        Inspector::self()->note(method->deprecationAdvice());
    return method->owner()->invoke(method->id(), object, arguments, method);
}

SharedPtr<Object> Class::read(const SharedPtr<Object> &object, const Property *property)
{
    return property->owner()->getProperty(object, property);
}

bool Class::write(const SharedPtr<Object> &object, const Property *property, const SharedPtr<Object> &value)
{
    return property->owner()->setProperty(object, property, value);
}

Event *Class::event(const QString &) const
{
    return nullptr;
}

void Class::addInterface(const QString &name, Serializable *implementation)
{
    m_interfaces.insert(name, implementation);
}

Serializable *Class::interfaceNamed(const QString &name) const
{
    for (const Class *type = this; type; type = type->superClass()) {
        if (Serializable *found = type->m_interfaces.value(name))
            return found;
    }
    return nullptr;
}

SharedPtr<Object> Class::invoke(int, const SharedPtr<Object> &, const ObjectList &, const Method *)
{
    return {};
}

bool Class::setProperty(const SharedPtr<Object> &, const Property *, const SharedPtr<Object> &)
{
    return false;
}

SharedPtr<Object> Class::getProperty(const SharedPtr<Object> &, const Property *)
{
    return {};
}

void Class::deleteObjectData(Object *) { }

bool Class::canConvertTo(const Class *target) const
{
    const auto *delegate = DelegateFactory::self()->delegate<CastDelegate>(this);
    return delegate && delegate->canCast(target);
}

SharedPtr<Object> Class::convertTo(const SharedPtr<Object> &object, const Class *target) const
{
    const auto *delegate = DelegateFactory::self()->delegate<CastDelegate>(this);
    return delegate ? delegate->cast(object, target) : nullptr;
}

void Class::initSuperClass() const { }

std::unique_ptr<Method> Class::createMethod(int) const
{
    return {};
}

std::unique_ptr<Property> Class::createProperty(int) const
{
    return {};
}

std::unique_ptr<Enum> Class::createEnum(int) const
{
    return {};
}

void Class::setOwnMembers(int methods, int properties, int enums)
{
    m_ownMethods = methods;
    m_ownProperties = properties;
    m_ownEnums = enums;
}

bool Class::verifyMethodInvocation(const SharedPtr<Object> &object, const Method *method) const
{
    if (!object || object->isNull()) {
        Inspector::self()->raiseError(u"Cannot call '%1' on a null object."_s.arg(method->name()));
        return false;
    }
    if (!object->objectClass()->inherits(this)) {
        Inspector::self()->raiseError(u"Cannot call '%1.%2' on an object of class '%3'."_s.arg(
            m_name, method->name(), object->objectClass()->name()));
        return false;
    }
    return true;
}

bool Class::verifyMethodArgumentCount(
    const QString &className, const Method *method, const ObjectList &arguments)
{
    if (arguments.size() == method->signature().count())
        return true;
    Inspector::self()->raiseError(u"%1.%2 takes %3 arguments, but %4 were given."_s.arg(className,
        method->name(), QString::number(method->signature().count()), QString::number(arguments.size())));
    return false;
}

void Namespace::add(Class *entry)
{
    m_byName.insert(entry->name(), entry);
    m_inOrder.append(entry);
}

void Namespace::remove(Class *entry)
{
    m_inOrder.removeOne(entry);
    if (m_byName.value(entry->name()) == entry)
        m_byName.remove(entry->name());
}

} // namespace Ostrel
