// The HTML form: the viewer, with its style, its script and the dump as JSON inside.
#include "host/dump/dumpwriter.h"
#include "host/resourcetext.h"

namespace Ostrel::Host {

using namespace Qt::StringLiterals;

namespace {

/// JSON as the text of a script element: nothing in it may end the element or begin a comment.
QString embeddable(const QByteArray &json)
{
    return QString::fromUtf8(json).replace(u'<', u"\\u003c"_s);
}

} // namespace

QByteArray dumpAsHtml(const PageDump &dump)
{
    // Filled in one go: what the dump holds may look like a place to fill.
    return resourceText(u"viewer.html"_s)
        .arg(wellFormed(dump.title).toHtmlEscaped(), resourceText(u"viewer.css"_s),
            embeddable(dumpAsJson(dump)), resourceText(u"viewer.js"_s))
        .toUtf8();
}

} // namespace Ostrel::Host
