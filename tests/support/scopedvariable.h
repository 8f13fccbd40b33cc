// ScopedVariable: an environment variable that a test sets or unsets, and that gets its old value back.
#pragma once

#include <QByteArray>
#include <QString>

#include <utility>

class ScopedVariable
{
public:
    /// Unsets the variable.
    explicit ScopedVariable(QByteArray name)
        : m_name(std::move(name)), m_wasSet(qEnvironmentVariableIsSet(m_name.constData())),
          m_oldValue(qgetenv(m_name.constData()))
    {
        qunsetenv(m_name.constData());
    }

    ScopedVariable(QByteArray name, const QString &value) : ScopedVariable(std::move(name)) { set(value); }

    ~ScopedVariable()
    {
        if (m_wasSet)
            qputenv(m_name.constData(), m_oldValue);
        else
            qunsetenv(m_name.constData());
    }

    ScopedVariable(const ScopedVariable &) = delete;
    ScopedVariable &operator=(const ScopedVariable &) = delete;

    void set(const QString &value) { qputenv(m_name.constData(), value.toLocal8Bit()); }

private:
    QByteArray m_name;
    bool m_wasSet;
    QByteArray m_oldValue;
};
