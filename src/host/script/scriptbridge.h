// ScriptBridge: what the script glue calls to reach the reflection frame.
#pragma once

#include "host/report/resultsink.h"
#include "ostrelhook/functioncallresult.h"
#include "ostrelhook/object.h"

#include <QJSValue>
#include <QObject>

#include <functional>

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
    /// `results` hears of each statement. Neither is owned.
    ScriptBridge(QJSEngine *engine, ResultSink &results);

    /// Builds the script's globals by the glue; an error text when the glue itself is broken.
    QString install();

    Q_INVOKABLE QJSValue read(const QJSValue &handle, const QString &name);
    /// What changes something is reported as a statement, at the place that `stack` tells; what merely asks
    /// is not.
    Q_INVOKABLE void write(
        const QJSValue &handle, const QString &name, const QJSValue &value, const QString &stack);
    /// Without a stack nothing is reported: the caller knows that the method only asks.
    Q_INVOKABLE QJSValue invoke(
        const QJSValue &handle, const QString &name, const QJSValue &arguments, const QString &stack);
    Q_INVOKABLE QJSValue invokeStatic(
        const QString &className, const QString &name, const QJSValue &arguments);
    Q_INVOKABLE QJSValue callGlobal(const QString &name, const QJSValue &arguments);
    /// The same for a call that stands in a script: it is reported.
    Q_INVOKABLE QJSValue callStatement(const QString &name, const QJSValue &arguments, const QString &stack);
    Q_INVOKABLE QString text(const QJSValue &handle);
    Q_INVOKABLE bool same(const QJSValue &a, const QJSValue &b);
    Q_INVOKABLE QString unknownMember(const QJSValue &handle, const QString &name) const;

private:
    using Result = FunctionCallResult<SharedPtr<Object>>;

    /// Gives a value to the script, or raises the error.
    QJSValue give(const Result &result);
    /// Does it as a statement of the report.
    QJSValue report(const QString &text, const QString &stack, const std::function<Result()> &statement);
    QJSValue toScript(const SharedPtr<Object> &value);
    SharedPtr<Object> fromScript(const QJSValue &value);
    /// Wraps a function of the script.
    SharedPtr<Object> functionFrom(const QJSValue &function);
    ObjectList argumentsFrom(const QJSValue &arguments);
    QJSEngine *m_engine;
    ResultSink &m_results;
    QJSValue m_wrap;
    QJSValue m_call;
};

} // namespace Ostrel::Host

Q_DECLARE_METATYPE(Ostrel::SharedPtr<Ostrel::Object>)
