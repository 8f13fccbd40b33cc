// Namespace: the classes that scripts and native code find by name.
#pragma once

#include "ostrelhook/export.h"

#include <QHash>
#include <QList>
#include <QString>

namespace Ostrel {

class Class;

/// Classes by name. A class enters itself when it is constructed and leaves when it is destroyed.
class OSTRELHOOK_EXPORT Namespace
{
public:
    /// The class of that name, or null.
    Class *getClass(const QString &name) const { return m_byName.value(name); }

    /// All classes, in the order of their creation.
    const QList<Class *> &classes() const { return m_inOrder; }

private:
    friend class Class;
    void add(Class *entry);
    void remove(Class *entry);

    QHash<QString, Class *> m_byName;
    QList<Class *> m_inOrder;
};

} // namespace Ostrel
