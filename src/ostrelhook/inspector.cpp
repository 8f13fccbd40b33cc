#include "ostrelhook/inspector.h"

#include "ostrelhook/arrayclass.h"
#include "ostrelhook/delegates.h"
#include "ostrelhook/functionclass.h"
#include "ostrelhook/globalclass.h"
#include "ostrelhook/namespace.h"
#include "ostrelhook/tableinterface.h"
#include "ostrelhook/valueclasses.h"

namespace Ostrel {

using namespace Qt::StringLiterals;

namespace {

/// int, bool, double, String and void: their objects hold the value themselves.
class PrimitiveClass : public Class
{
public:
    PrimitiveClass(const QString &name, Namespace *home) : Class(name, home, false) { }

    SharedPtr<Object> make(Object::Primitive value) const
    {
        return std::make_shared<Object>(const_cast<PrimitiveClass *>(this), std::move(value));
    }
};

} // namespace

struct Inspector::Registry
{
    Namespace names;
    PrimitiveClass intClass{u"int"_s, &names};
    PrimitiveClass boolClass{u"bool"_s, &names};
    PrimitiveClass stringClass{u"String"_s, &names};
    PrimitiveClass doubleClass{u"double"_s, &names};
    PrimitiveClass voidClass{u"void"_s, &names};
    /// The root of script objects that are no page elements.
    Class objectClass{u"Object"_s, &names, false};
    ArrayClass arrayClass{&names};
    FunctionClass functionClass{&names};
    DateTimeClass dateTimeClass{&names};
    ScreenRectangleClass screenRectangleClass{&names};
    TableRangeClass tableRangeClass{&names};
    GlobalClass globalClass{&names};
};

Inspector::Inspector() : m_registry(std::make_unique<Registry>()) { }

Inspector::~Inspector() = default;

Inspector *Inspector::self()
{
    // Never destroyed: classes of other libraries leave the namespace as late as at process exit.
    static Inspector *const instance = new Inspector;
    return instance;
}

Namespace *Inspector::globalNamespace() const
{
    return &m_registry->names;
}

GlobalClass *Inspector::globalClass() const
{
    return &m_registry->globalClass;
}

Class *Inspector::findClass(const QString &name) const
{
    return m_registry->names.getClass(name);
}

Class *Inspector::primitiveClass(PrimitiveType type) const
{
    switch (type) {
    case PrimitiveType::Int:
        return &m_registry->intClass;
    case PrimitiveType::Bool:
        return &m_registry->boolClass;
    case PrimitiveType::String:
        return &m_registry->stringClass;
    case PrimitiveType::Double:
        return &m_registry->doubleClass;
    case PrimitiveType::Void:
        return &m_registry->voidClass;
    }
    return nullptr;
}

SharedPtr<Object> Inspector::createPrimitive(int value) const
{
    return m_registry->intClass.make(value);
}

SharedPtr<Object> Inspector::createPrimitive(bool value) const
{
    return m_registry->boolClass.make(value);
}

SharedPtr<Object> Inspector::createPrimitive(double value) const
{
    return m_registry->doubleClass.make(value);
}

SharedPtr<Object> Inspector::createPrimitive(const QString &value) const
{
    return m_registry->stringClass.make(value);
}

SharedPtr<Object> Inspector::createVoid() const
{
    return m_registry->voidClass.make(std::monostate());
}

void Inspector::raiseError(const QString &message)
{
    if (m_hasError)
        return;
    m_hasError = true;
    m_error = message.isEmpty() ? u"Unknown error"_s : message;
}

QString Inspector::takeError()
{
    m_hasError = false;
    return std::exchange(m_error, {});
}

void Inspector::note(const QString &message)
{
    if (m_noteReceiver)
        m_noteReceiver(message);
}

void Inspector::addUnmatchedProperty(const QString &name, const QString &property)
{
    QStringList &properties = m_unmatched[name];
    if (!properties.contains(property))
        properties.append(property);
}

void Inspector::removeUnmatchedProperties(const QString &name)
{
    m_unmatched.remove(name);
}

QStringList Inspector::unmatchedProperties(const QString &name) const
{
    return m_unmatched.value(name);
}

void Inspector::addToplevel(const SharedPtr<Object> &toplevel)
{
    m_toplevels.append(toplevel);
}

void Inspector::removeToplevel(const SharedPtr<Object> &toplevel)
{
    m_toplevels.removeAll(toplevel);
}

namespace {

SharedPtr<Object> findBelow(const SharedPtr<Object> &toplevel, const ObjectName &name)
{
    const auto *delegate = DelegateFactory::self()->delegate(toplevel);
    if (!delegate)
        return {};
    if (const SharedPtr<Object> found = delegate->objectByQualifiedName(toplevel, name))
        return found;
    const QStringList path = name.qualifiedName().split(u'.');
    return name.isMultiProperty() || path.size() < 2 ? nullptr : objectByPath(toplevel, path);
}

} // namespace

SharedPtr<Object> Inspector::findObject(const ObjectName &name)
{
    const ObjectName realName(ObjectMap::self()->realName(name.qualifiedName()));
    const bool hadError = m_hasError;
    // a copy, since a lookup may run an event loop in which a toplevel object goes
    const ObjectList toplevels = m_toplevels;
    for (const SharedPtr<Object> &toplevel : toplevels) {
        if (const SharedPtr<Object> found = findBelow(toplevel, realName)) {
            if (!hadError)
                takeError();
            return found;
        }
    }
    return {};
}

FunctionCallResult<SharedPtr<Object>> Inspector::findObject(const QString &name)
{
    const FunctionCallResult<ObjectName> parsed = ObjectName::parse(ObjectMap::self()->realName(name));
    if (parsed.failed())
        return Failure(parsed.error);
    return findObject(parsed.value);
}

} // namespace Ostrel
