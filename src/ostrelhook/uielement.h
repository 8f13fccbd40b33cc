// UIElement: one object of a dump, as a record without any tie to the application.
#pragma once

#include "ostrelhook/export.h"
#include "ostrelhook/geometry.h"

#include <QImage>
#include <QList>
#include <QString>

#include <memory>
#include <vector>

namespace Ostrel::UIAbstraction {

/// A node of a dumped tree. It owns the elements below it.
class OSTRELHOOK_EXPORT UIElement
{
public:
    struct Property
    {
        QString name;
        QString value;

        bool operator==(const Property &) const = default;
    };

    /// `type` is the kind of control for readers, `className` the script class.
    UIElement(QString type, QString className);

    const QString &type() const { return m_type; }
    const QString &className() const { return m_className; }

    /// The properties by which the object can be told from others, in the order in which they were first set.
    const QList<Property> &identifyingProperties() const { return m_identifying; }
    void setIdentifyingProperty(const QString &name, const QString &value);
    /// All other properties.
    const QList<Property> &concreteProperties() const { return m_concrete; }
    void setConcreteProperty(const QString &name, const QString &value);

    /// A width and height of -1 for an object that is invisible or has no bounds.
    const Rect<2> &bounds() const { return m_bounds; }
    void setBounds(const Rect<2> &bounds) { m_bounds = bounds; }

    /// The screenshot; a null image when there is none.
    const QImage &image() const { return m_image; }
    void setImage(const QImage &image) { m_image = image; }

    const std::vector<std::unique_ptr<UIElement>> &children() const { return m_children; }
    /// Takes over the element.
    void addChild(std::unique_ptr<UIElement> child);

private:
    QString m_type;
    QString m_className;
    QList<Property> m_identifying;
    QList<Property> m_concrete;
    Rect<2> m_bounds{0, 0, -1, -1, -1};
    QImage m_image;
    std::vector<std::unique_ptr<UIElement>> m_children;
};

} // namespace Ostrel::UIAbstraction
