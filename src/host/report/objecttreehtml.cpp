#include "host/report/objecttreehtml.h"

#include <QXmlStreamReader>

#include <vector>

namespace Ostrel::Host {

using namespace Qt::StringLiterals;

namespace {

// Browsers give up on pages that nest deeper than some hundred elements.
constexpr int deepest = 150;
// The upper levels are open at first.
constexpr int openLevels = 4;

struct Node
{
    QString className;
    QString name; ///< by which a script finds the object
    QString bounds;
    Html properties;
    std::vector<Node> children;
};

QString boundsFrom(const QXmlStreamAttributes &attributes)
{
    if (!attributes.hasAttribute(u"width"_s))
        return {};
    const auto value = [&](const QString &name) { return attributes.value(name).toString(); };
    return u"%1,%2 %3×%4"_s.arg(value(u"x"_s), value(u"y"_s), value(u"width"_s), value(u"height"_s));
}

Html readProperty(QXmlStreamReader &xml)
{
    const QString name = xml.attributes().value(u"name"_s).toString();
    const QString value = xml.readElementText(QXmlStreamReader::SkipChildElements);
    return value.isEmpty() ? Html() : html(u" <i>%1</i>=<q>%2</q>"_s, name, value);
}

Node readNode(QXmlStreamReader &xml, int depth)
{
    const QXmlStreamAttributes attributes = xml.attributes();
    Node node{attributes.value(u"class"_s).toString(), attributes.value(u"name"_s).toString(),
        boundsFrom(attributes), {}, {}};
    while (xml.readNextStartElement()) {
        if (xml.name() == "property"_L1)
            node.properties += readProperty(xml);
        else if (xml.name() == "element"_L1 && depth < deepest)
            node.children.push_back(readNode(xml, depth + 1));
        else
            xml.skipCurrentElement();
    }
    return node;
}

Html nodeHtml(const Node &node, int level)
{
    const Html title = html(u"<b title=\"%1\">%2</b>%3%4"_s, node.name, node.className, node.properties,
        node.bounds.isEmpty() ? Html() : html(u" <small>%1</small>"_s, node.bounds));
    if (node.children.empty())
        return html(u"<div class=\"leaf\">%1</div>\n"_s, title);
    Html children;
    for (const Node &child : node.children)
        children += nodeHtml(child, level + 1);
    return html(u"<details%1><summary>%2</summary>\n%3</details>\n"_s,
        level < openLevels ? Html{u" open=\"\""_s} : Html(), title, children);
}

} // namespace

Html objectTreeHtml(const QString &xml)
{
    QXmlStreamReader reader(xml);
    Html trees;
    if (reader.readNextStartElement() && reader.name() == "dump"_L1) {
        while (reader.readNextStartElement()) {
            if (reader.name() == "element"_L1)
                trees += nodeHtml(readNode(reader, 1), 0);
            else
                reader.skipCurrentElement();
        }
    }
    return reader.hasError() || trees.text.isEmpty() ? html(u"<pre>%1</pre>\n"_s, xml) : trees;
}

} // namespace Ostrel::Host
