#include "ostrelhook/globalclass.h"

#include "ostrelhook/inspector.h"
#include "ostrelhook/overloads.h"

#include <algorithm>

namespace Ostrel {

using namespace Qt::StringLiterals;

namespace {

bool takeTheSame(const Method &a, const Method &b)
{
    const QList<Argument> &left = a.signature().arguments();
    const QList<Argument> &right = b.signature().arguments();
    return std::equal(left.begin(), left.end(), right.begin(), right.end(),
        [](const Argument &x, const Argument &y) { return x.typeName() == y.typeName(); });
}

} // namespace

Event::Event(Class *owner, QString name, Signature signature, bool isInput, int id)
    : m_owner(owner), m_name(std::move(name)), m_signature(std::move(signature)), m_isInput(isInput), m_id(id)
{
}

GlobalMethod::GlobalMethod(QString name, Signature signature, Argument result, Function function)
    : Method(nullptr, std::move(result), std::move(name), std::move(signature), 0, -1),
      m_function(std::move(function))
{
}

GlobalClass::GlobalClass(Namespace *home) : Class(u"Global"_s, home, false) { }

GlobalClass::~GlobalClass() = default;

GlobalMethod *GlobalClass::addMethod(std::unique_ptr<GlobalMethod> method)
{
    m_globalMethods.push_back(std::move(method));
    return m_globalMethods.back().get();
}

void GlobalClass::removeMethod(const GlobalMethod *method)
{
    std::erase_if(m_globalMethods, [method](const auto &entry) { return entry.get() == method; });
}

QList<GlobalMethod *> GlobalClass::globalMethods() const
{
    QList<GlobalMethod *> methods;
    for (const auto &method : m_globalMethods)
        methods.append(method.get());
    return methods;
}

QList<GlobalMethod *> GlobalClass::findGlobalMethods(const QString &name) const
{
    QList<GlobalMethod *> found;
    for (const auto &method : m_globalMethods) {
        if (method->name() != name)
            continue;
        found.removeIf([&method](const GlobalMethod *earlier) { return takeTheSame(*earlier, *method); });
        found.append(method.get());
    }
    return found;
}

SharedPtr<Object> GlobalClass::callGlobal(const QString &name, const ObjectList &arguments) const
{
    Inspector *inspector = Inspector::self();
    const QList<GlobalMethod *> overloads = findGlobalMethods(name);
    const FunctionCallResult<GlobalMethod *> method = bestOverload(overloads, name, arguments);
    if (method.failed()) {
        inspector->raiseError(method.error);
        return {};
    }
    if (!method.value->deprecationAdvice().isEmpty())
        inspector->note(method.value->deprecationAdvice());
    const FunctionCallResult<SharedPtr<Object>> result = method.value->call(arguments);
    if (result.failed()) {
        inspector->raiseError(result.error);
        return {};
    }
    return result.value ? result.value : inspector->createVoid();
}

void GlobalClass::addEvent(std::unique_ptr<Event> event)
{
    m_events.push_back(std::move(event));
}

Event *GlobalClass::event(const QString &name) const
{
    for (const auto &event : m_events) {
        if (event->name() == name)
            return event.get();
    }
    return nullptr;
}

} // namespace Ostrel
