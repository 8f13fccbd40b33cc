// GlobalClass: functions that scripts call without an object, and the events that can be recorded.
#pragma once

#include "ostrelhook/class.h"

#include <functional>

namespace Ostrel {

/// An event that can be recorded and replayed: its name and what it carries.
class OSTRELHOOK_EXPORT Event
{
public:
    Event(Class *owner, QString name, Signature signature, bool isInput, int id);

    Class *owner() const { return m_owner; }
    const QString &name() const { return m_name; }
    const Signature &signature() const { return m_signature; }
    /// Whether a user causes the event by a device.
    bool isInput() const { return m_isInput; }
    int id() const { return m_id; }

private:
    Class *m_owner;
    QString m_name;
    Signature m_signature;
    bool m_isInput;
    int m_id;
};

/// A function that scripts call by its bare name.
class OSTRELHOOK_EXPORT GlobalMethod : public Method
{
public:
    using Function = std::function<FunctionCallResult<SharedPtr<Object>>(const ObjectList &arguments)>;

    GlobalMethod(QString name, Signature signature, Argument result, Function function);

    /// Runs the function; a failure is the text of the script error.
    FunctionCallResult<SharedPtr<Object>> call(const ObjectList &arguments) const
    {
        // a copy, since the function may run an event loop in which its owner takes it away
        const Function function = m_function;
        return function(arguments);
    }

private:
    Function m_function;
};

/// The class without objects: owns global methods and events.
class OSTRELHOOK_EXPORT GlobalClass : public Class
{
public:
    explicit GlobalClass(Namespace *home);
    ~GlobalClass() override;

    /// Takes over a function; functions of one name are overloads.
    GlobalMethod *addMethod(std::unique_ptr<GlobalMethod> method);
    /// Takes the functions of one owner away again, such as those of a host that goes.
    void removeMethod(const GlobalMethod *method);
    QList<GlobalMethod *> globalMethods() const;
    /// All functions of that name. A function hides those added before it that take the same classes of
    /// arguments.
    QList<GlobalMethod *> findGlobalMethods(const QString &name) const;
    /// Calls the overload that fits; errors go to Inspector::raiseError(), the result is then a null pointer.
    SharedPtr<Object> callGlobal(const QString &name, const ObjectList &arguments) const;

    /// Takes over an event.
    void addEvent(std::unique_ptr<Event> event);
    int numEvents() const override { return int(m_events.size()); }
    Event *event(const QString &name) const override;

private:
    std::vector<std::unique_ptr<GlobalMethod>> m_globalMethods;
    std::vector<std::unique_ptr<Event>> m_events;
};

} // namespace Ostrel
