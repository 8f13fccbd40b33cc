// The registry of live wrappers: whom to tell when a page goes.
#pragma once

#include <QSet>
#include <QString>

namespace Ostrel::WebWrapper {

class HTMLComponent;
class HTML_Object;
class HTML_Style;
class HTML_XPathResult;

/// All wrappers made from a reference, by kind. Copies are not in it. One thread only.
struct LiveObjects
{
    QSet<HTML_Object *> objects;
    QSet<HTML_Style *> styles;
    QSet<HTML_XPathResult *> xpathResults;

    static LiveObjects &self();

    /// Invalidates the wrappers of one page and forgets them.
    void invalidate(const HTMLComponent *component);
    /// Invalidates and forgets all.
    void invalidateAll();
};

/// The next free page variable for an object that native code makes in a page: "window.__ostrel__object__C0"
/// ...
QString nextPageVariable();

} // namespace Ostrel::WebWrapper
