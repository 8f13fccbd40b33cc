#include "ostrelhook/uielement.h"

namespace Ostrel::UIAbstraction {

namespace {

void setIn(QList<UIElement::Property> &properties, const QString &name, const QString &value)
{
    for (UIElement::Property &property : properties) {
        if (property.name == name) {
            property.value = value;
            return;
        }
    }
    properties.append({name, value});
}

} // namespace

UIElement::UIElement(QString type, QString className)
    : m_type(std::move(type)), m_className(std::move(className))
{
}

void UIElement::setIdentifyingProperty(const QString &name, const QString &value)
{
    setIn(m_identifying, name, value);
}

void UIElement::setConcreteProperty(const QString &name, const QString &value)
{
    setIn(m_concrete, name, value);
}

void UIElement::addChild(std::unique_ptr<UIElement> child)
{
    m_children.push_back(std::move(child));
}

} // namespace Ostrel::UIAbstraction
