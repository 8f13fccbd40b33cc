// FakeHierarchy: a delegate over a small tree of sample widgets, given as text.
#pragma once

#include "samplewidgets.h"

#include "ostrelhook/delegates.h"

#include <QMap>

namespace Ostrel::Test {

/// Holds objects by name; each is a child of another one. It records what it is asked.
class FakeHierarchy : public ObjectHierarchyDelegate
{
public:
    explicit FakeHierarchy(const QString &className = QStringLiteral("Sample_Widget"))
        : ObjectHierarchyDelegate(className)
    {
    }

    /// Adds an object of class Sample_Widget, or Sample_Button with `button`.
    SharedPtr<Object> add(const SharedPtr<Object> &parent, const QString &name, Widget *widget = nullptr)
    {
        SharedPtr<Object> object = wrapped(widget ? widget : new Widget);
        names.insert(object.get(), name);
        below[parent.get()].append(object);
        return object;
    }

    QString name(SharedPtr<Object> object) const override { return names.value(object.get()); }
    QString qualifiedName(SharedPtr<Object> object) const override { return name(object); }
    ObjectList children(SharedPtr<Object> object) const override
    {
        ++asked;
        return below.value(object.get());
    }
    WrapperType wrapperType() const override { return Web; }

    QMap<const Object *, QString> names;
    QMap<const Object *, ObjectList> below;
    mutable int asked = 0;
};

} // namespace Ostrel::Test
