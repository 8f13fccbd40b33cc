// ScriptBridge: what the script glue calls to reach the reflection frame.
#pragma once

#include "ostrelhook/object.h"

#include <QJSValue>
#include <QObject>

class QJSEngine;

namespace Ostrel {
class Class;
}

namespace Ostrel::Host {

/// Converts values and raises script errors; one for each engine, which it does not own.
class ScriptBridge : public QObject
{
    Q_OBJECT

public:
    explicit ScriptBridge(QJSEngine *engine);

    /// Builds the script's globals by the glue; an error text when the glue itself is broken.
    QString install();

    Q_INVOKABLE QJSValue read(const QJSValue &handle, const QString &name);
    Q_INVOKABLE void write(const QJSValue &handle, const QString &name, const QJSValue &value);
    Q_INVOKABLE QJSValue invoke(const QJSValue &handle, const QString &name, const QJSValue &arguments);
    Q_INVOKABLE QJSValue invokeStatic(
        const QString &className, const QString &name, const QJSValue &arguments);
    Q_INVOKABLE QJSValue callGlobal(const QString &name, const QJSValue &arguments);
    Q_INVOKABLE QString text(const QJSValue &handle);
    Q_INVOKABLE bool same(const QJSValue &a, const QJSValue &b);
    Q_INVOKABLE QString unknownMember(const QJSValue &handle, const QString &name) const;

private:
    QJSValue toScript(const SharedPtr<Object> &value);
    SharedPtr<Object> fromScript(const QJSValue &value);
    /// Wraps a function of the script.
    SharedPtr<Object> functionFrom(const QJSValue &function);
    ObjectList argumentsFrom(const QJSValue &arguments);
    /// The object behind a handle; raises a script error and gives null when there is none.
    SharedPtr<Object> objectFrom(const QJSValue &handle, const QString &member);
    /// Turns the pending error of the frame into a script error; false when there was none.
    bool throwPending();
    void throwError(const QString &message);

    QJSEngine *m_engine;
    QJSValue m_wrap;
    QJSValue m_call;
};

} // namespace Ostrel::Host

Q_DECLARE_METATYPE(Ostrel::SharedPtr<Ostrel::Object>)
