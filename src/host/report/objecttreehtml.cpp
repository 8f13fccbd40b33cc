#include "host/report/objecttreehtml.h"

#include <QXmlStreamReader>

#include <vector>

namespace Ostrel::Host {

using namespace Qt::StringLiterals;

namespace {

// Browsers give up on pages that nest deeper than some hundred elements.
constexpr int deepest = 150;
// The upper levels are open at first.
constexpr int openLevels = 3;

struct Node
{
    Html title;
    QString text;
    std::vector<Node> children;
};

Html titleOf(const QXmlStreamReader &xml)
{
    Html title = html(u"<b>%1</b>"_s, xml.name().toString());
    const QXmlStreamAttributes attributes = xml.attributes();
    for (const QXmlStreamAttribute &attribute : attributes)
        title += html(
            u" <i>%1</i>=<q>%2</q>"_s, attribute.qualifiedName().toString(), attribute.value().toString());
    return title;
}

Node readNode(QXmlStreamReader &xml, int depth)
{
    Node node{titleOf(xml), {}, {}};
    if (depth >= deepest) {
        node.text = u"…"_s;
        xml.skipCurrentElement();
        return node;
    }
    while (!xml.atEnd()) {
        const QXmlStreamReader::TokenType token = xml.readNext();
        if (token == QXmlStreamReader::StartElement)
            node.children.push_back(readNode(xml, depth + 1));
        else if (token == QXmlStreamReader::Characters)
            node.text += xml.text();
        else if (token == QXmlStreamReader::EndElement)
            break;
    }
    node.text = node.text.trimmed();
    return node;
}

Html nodeHtml(const Node &node, int level)
{
    const Html value = node.text.isEmpty() ? Html() : html(u" <span class=\"value\">%1</span>"_s, node.text);
    if (node.children.empty())
        return html(u"<div class=\"leaf\">%1%2</div>\n"_s, node.title, value);
    Html children;
    for (const Node &child : node.children)
        children += nodeHtml(child, level + 1);
    return html(u"<details%1><summary>%2%3</summary>\n%4</details>\n"_s,
        level < openLevels ? Html{u" open=\"\""_s} : Html(), node.title, value, children);
}

} // namespace

Html objectTreeHtml(const QString &xml)
{
    QXmlStreamReader reader(xml);
    if (!reader.readNextStartElement())
        return html(u"<pre>%1</pre>\n"_s, xml);
    const Node root = readNode(reader, 0);
    return reader.hasError() ? html(u"<pre>%1</pre>\n"_s, xml) : nodeHtml(root, 0);
}

} // namespace Ostrel::Host
