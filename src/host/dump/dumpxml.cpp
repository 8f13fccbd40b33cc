// The XML form:
//
//     <dump address="..." title="...">
//         <picture>PNG in base64</picture>
//         <element type="Button" class="HTML_Button" name="DOCUMENT.HTML1...." x="8" y="8" width="60"
//         height="22">
//             <property name="id">order</property>
//             <image>PNG in base64</image>
//             <element .../>
//         </element>
//     </dump>
//
// Elements without bounds have no position and no size.
#include "host/dump/dumpwriter.h"

#include <QXmlStreamWriter>

namespace Ostrel::Host {

using namespace Qt::StringLiterals;

using UIAbstraction::UIElement;

namespace {

bool fitsXml(QChar unit)
{
    const char16_t code = unit.unicode();
    return code >= 0x20 ? code < 0xFFFE : code == u'\t' || code == u'\n' || code == u'\r';
}

/// The text with U+FFFD in the place of what XML cannot hold.
QString xmlText(const QString &text)
{
    QString fitting = wellFormed(text);
    for (QChar &unit : fitting) {
        if (!fitsXml(unit))
            unit = QChar::ReplacementCharacter;
    }
    return fitting;
}

void writeImage(QXmlStreamWriter &xml, const QString &name, const QImage &image)
{
    if (!image.isNull())
        xml.writeTextElement(name, imageAsText(image));
}

void writeElement(QXmlStreamWriter &xml, const UIElement &element)
{
    xml.writeStartElement(u"element"_s);
    xml.writeAttribute(u"type"_s, element.type());
    xml.writeAttribute(u"class"_s, element.className());
    if (const QString name = nameOf(element); !name.isEmpty())
        xml.writeAttribute(u"name"_s, xmlText(name));
    if (const Rect<2> &bounds = element.bounds(); bounds.isValid()) {
        xml.writeAttribute(u"x"_s, QString::number(bounds.x));
        xml.writeAttribute(u"y"_s, QString::number(bounds.y));
        xml.writeAttribute(u"width"_s, QString::number(bounds.width));
        xml.writeAttribute(u"height"_s, QString::number(bounds.height));
    }
    for (const UIElement::Property &property : element.concreteProperties()) {
        xml.writeStartElement(u"property"_s);
        xml.writeAttribute(u"name"_s, property.name);
        xml.writeCharacters(xmlText(property.value));
        xml.writeEndElement();
    }
    writeImage(xml, u"image"_s, element.image());
    for (const auto &child : element.children())
        writeElement(xml, *child);
    xml.writeEndElement();
}

} // namespace

QByteArray dumpAsXml(const PageDump &dump)
{
    QByteArray text;
    QXmlStreamWriter xml(&text);
    xml.setAutoFormatting(true);
    xml.writeStartDocument();
    xml.writeStartElement(u"dump"_s);
    xml.writeAttribute(u"address"_s, xmlText(dump.address));
    xml.writeAttribute(u"title"_s, xmlText(dump.title));
    writeImage(xml, u"picture"_s, dump.picture);
    if (dump.root)
        writeElement(xml, *dump.root);
    xml.writeEndElement();
    xml.writeEndDocument();
    return text;
}

} // namespace Ostrel::Host
