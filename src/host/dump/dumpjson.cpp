// The JSON form: {"address", "title", "picture", "root"}; an element is {"type", "class", "name", "bounds":
// [x, y, width, height], "properties", "image", "children"}. What an element does not have is left out.
// Images are PNG in base64.
#include "host/dump/dumpwriter.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>

namespace Ostrel::Host {

using namespace Qt::StringLiterals;

using UIAbstraction::UIElement;

namespace {

void addImage(QJsonObject &object, const QString &name, const QImage &image)
{
    if (!image.isNull())
        object.insert(name, imageAsText(image));
}

QJsonObject elementAsJson(const UIElement &element)
{
    QJsonObject object{{u"type"_s, element.type()}, {u"class"_s, element.className()}};
    if (const QString name = nameOf(element); !name.isEmpty())
        object.insert("name"_L1, wellFormed(name));
    if (const Rect<2> &bounds = element.bounds(); bounds.isValid())
        object.insert("bounds"_L1, QJsonArray{bounds.x, bounds.y, bounds.width, bounds.height});
    QJsonObject properties;
    for (const UIElement::Property &property : element.concreteProperties())
        properties.insert(property.name, wellFormed(property.value));
    object.insert("properties"_L1, properties);
    addImage(object, u"image"_s, element.image());
    QJsonArray children;
    for (const auto &child : element.children())
        children.append(elementAsJson(*child));
    if (!children.isEmpty())
        object.insert("children"_L1, children);
    return object;
}

} // namespace

QByteArray dumpAsJson(const PageDump &dump)
{
    QJsonObject object{{u"address"_s, wellFormed(dump.address)}, {u"title"_s, wellFormed(dump.title)}};
    addImage(object, u"picture"_s, dump.picture);
    if (dump.root)
        object.insert("root"_L1, elementAsJson(*dump.root));
    return QJsonDocument(object).toJson(QJsonDocument::Compact) + '\n';
}

} // namespace Ostrel::Host
