// PageDump: the object tree of a page as it was at one moment, with the picture of the page.
#pragma once

#include "host/browser/browserpage.h"
#include "ostrelhook/dump.h"
#include "ostrelhook/functioncallresult.h"
#include "ostrelhook/object.h"

#include <QImage>
#include <QStringList>

#include <functional>
#include <memory>

namespace Ostrel::Host {

/// A record without any tie to the page. Bounds are pixels of the picture.
struct PageDump
{
    QString title;
    QString address;
    /// Of the whole page; null unless it was asked for.
    QImage picture;
    std::unique_ptr<UIAbstraction::UIElement> root;
};

struct PageDumpOptions
{
    /// The properties to show; without any, all of quickProperties().
    QStringList properties;
    /// A picture of each element.
    bool screenshots = false;
    /// A picture of the page.
    bool picture = false;
    /// Is told what failed at single elements; may be empty.
    std::function<void(const QString &line)> log;
};

/// The properties that a dump reads for all elements in one go. Every other one costs a round trip for each
/// element that has it.
QStringList quickProperties();

/// An error when one of the names is no property that a dump can show.
FunctionCallResult<void> checkProperties(const QStringList &names);

/// Dumps an element and all below it; a null pointer stands for the document. `page` is the one that the
/// element belongs to. Each element of the dump is identified by its path, the property "domPath".
FunctionCallResult<PageDump> dumpPage(
    BrowserPage *page, const SharedPtr<Object> &element, const PageDumpOptions &options);

/// The name by which a script finds an element again; empty when the dump does not know it.
QString nameOf(const UIAbstraction::UIElement &element);

} // namespace Ostrel::Host
