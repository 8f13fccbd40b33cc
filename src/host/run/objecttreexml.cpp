#include "host/run/objecttreexml.h"

#include "host/report/xmltext.h"

#include <QXmlStreamWriter>

namespace Ostrel::Host {

using namespace Qt::StringLiterals;
using UIAbstraction::UIElement;

namespace {

void writeProperties(QXmlStreamWriter &xml, const QList<UIElement::Property> &properties)
{
    for (const UIElement::Property &property : properties) {
        if (!property.value.isEmpty())
            xml.writeAttribute(property.name, withoutForbiddenCharacters(property.value));
    }
}

void writeElement(QXmlStreamWriter &xml, const UIElement &element)
{
    xml.writeStartElement(element.className());
    writeProperties(xml, element.identifyingProperties());
    writeProperties(xml, element.concreteProperties());
    const Rect<2> &bounds = element.bounds();
    if (bounds.width >= 0 && bounds.height >= 0)
        xml.writeAttribute(
            u"bounds"_s, u"%1,%2 %3x%4"_s.arg(bounds.x).arg(bounds.y).arg(bounds.width).arg(bounds.height));
    for (const std::unique_ptr<UIElement> &child : element.children())
        writeElement(xml, *child);
    xml.writeEndElement();
}

} // namespace

QString objectTreeXml(const UIElement &root)
{
    QString text;
    QXmlStreamWriter xml(&text);
    writeElement(xml, root);
    return text;
}

} // namespace Ostrel::Host
