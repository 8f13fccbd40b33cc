#include "host/script/windowlist.h"

#include "ostrelhook/class.h"
#include "ostrelhook/inspector.h"
#include "wrappers/web/webobjectdelegate.h"
#include "wrappers/web/webtopleveldelegate.h"

#include <QRegularExpression>

#include <algorithm>

namespace Ostrel::Host {

using namespace Qt::StringLiterals;
using namespace WebWrapper;

namespace {

const QString toplevelClassName = u"Ostrel::ToplevelWeb"_s;

/// Each toplevel object stands for one window.
class WindowDelegate : public WebToplevelDelegate
{
public:
    WindowDelegate() : WebToplevelDelegate(toplevelClassName) { }

    HTMLComponent *htmlComponentFor(SharedPtr<Object> object) const override
    {
        return object ? static_cast<BrowserPage *>(object->data()) : nullptr;
    }

    // Windows take turns, and each has a document of its own.
    bool keepsDocumentReference() const override { return false; }
};

const WindowDelegate &windowDelegate()
{
    // Never destroyed: the framework that it is registered with is not either.
    static const auto *const delegate = new WindowDelegate;
    return *delegate;
}

Class &toplevelClass()
{
    static auto *const type = new Class(toplevelClassName, Inspector::self()->globalNamespace(), false);
    return *type;
}

} // namespace

ContextName ContextName::parse(const QString &text)
{
    static const QRegularExpression shape(u"^(.*?)(?:<(\\d+)>)?((?:\\.FRAME\\d+)*)$"_s);
    const QRegularExpressionMatch match = shape.match(text);
    const int number = match.captured(2).toInt();
    return {match.captured(1), qMax(1, number), match.captured(3)};
}

QString ContextName::toString() const
{
    return number > 1 ? u"%1<%2>%3"_s.arg(file, QString::number(number), frames) : insidePage();
}

QString contextFile(const QString &address)
{
    QString text = address.startsWith("data:"_L1) ? u"/top"_s : address;
    if (text.endsWith(u'/'))
        text += "index.html"_L1;
    const qsizetype query = text.indexOf(u'?');
    text = text.mid(text.lastIndexOf(u'/', query < 0 ? -1 : query) + 1);
    for (const QChar end : {u'?', u'#', u';'})
        text = text.section(end, 0, 0);
    return text;
}

void registerToplevels()
{
    toplevelClass();
    windowDelegate();
}

WindowList::WindowList()
{
    registerToplevels();
}

WindowList::~WindowList()
{
    for (const Window &window : std::as_const(m_searched))
        Inspector::self()->removeToplevel(window.toplevel);
}

void WindowList::add(BrowserPage *page)
{
    const QList<Window> before = m_searched;
    m_searched.append({page, toplevelClass().wrap(page, ObjectAttribute::Pointer())});
    m_opened.append(page);
    publish(before);
    connect(page, &BrowserPage::documentGone, this, [this, page] {
        ++m_documentChanges;
        forgetDocument();
        HTMLObjectHierarchyDelegate::registered()->clearAllJSReferences(page);
    });
    connect(page, &BrowserPage::closed, this, [this, page] { remove(page); });
}

void WindowList::remove(const BrowserPage *page)
{
    const QList<Window> before = m_searched;
    m_searched.removeIf([page](const Window &window) { return window.page == page; });
    m_opened.removeIf([page](const BrowserPage *opened) { return opened == page; });
    publish(before);
}

BrowserPage *WindowList::active() const
{
    return m_searched.isEmpty() ? nullptr : m_searched.first().page;
}

void WindowList::activate(BrowserPage *page)
{
    const auto isPage = [page](const Window &window) { return window.page == page; };
    const auto found = std::find_if(m_searched.cbegin(), m_searched.cend(), isPage);
    if (found == m_searched.cend() || found == m_searched.cbegin())
        return;
    const QList<Window> before = m_searched;
    m_searched.move(found - m_searched.cbegin(), 0);
    // The others keep the order in which they were opened.
    std::sort(m_searched.begin() + 1, m_searched.end(), [this](const Window &a, const Window &b) {
        return m_opened.indexOf(a.page) < m_opened.indexOf(b.page);
    });
    publish(before);
    Q_EMIT activated(page);
}

void WindowList::forgetDocument() const
{
    windowDelegate().clearDocumentReference();
}

QList<BrowserPage *> WindowList::pages() const
{
    QList<BrowserPage *> pages;
    for (const Window &window : m_searched)
        pages.append(window.page);
    return pages;
}

// The framework asks its toplevel objects in the order in which they were added.
void WindowList::publish(const QList<Window> &before)
{
    for (const Window &window : before)
        Inspector::self()->removeToplevel(window.toplevel);
    for (const Window &window : std::as_const(m_searched))
        Inspector::self()->addToplevel(window.toplevel);
}

int WindowList::numberOf(const BrowserPage *page) const
{
    const QString file = contextFile(page->address());
    int number = 0;
    for (const BrowserPage *opened : m_opened) {
        number += contextFile(opened->address()) == file ? 1 : 0;
        if (opened == page)
            break;
    }
    return number;
}

QString WindowList::contextOf(const BrowserPage *page) const
{
    return ContextName{contextFile(page->address()), numberOf(page), {}}.toString();
}

QString WindowList::contextInSession(const BrowserPage *page, const QString &contextInPage) const
{
    ContextName context = ContextName::parse(contextInPage);
    if (context.file == contextFile(page->address()))
        context.number = numberOf(page);
    return context.toString();
}

BrowserPage *WindowList::pageOf(const ContextName &context) const
{
    for (BrowserPage *page : m_opened) {
        if (contextFile(page->address()) == context.file && numberOf(page) == context.number)
            return page;
    }
    return nullptr;
}

} // namespace Ostrel::Host
