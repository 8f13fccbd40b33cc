#include "host/record/navigationobserver.h"

#include "host/browser/browserpage.h"
#include "host/script/windowlist.h"

#include <QJsonObject>

#include <utility>

namespace Ostrel::Host {

using namespace Qt::StringLiterals;

namespace {

// The browser sets out at once, unless it asks whether a page may be left.
constexpr int wishMs = 1000;
constexpr int windowWishMs = 5000;

OwnMove::Kind kindOf(const QString &navigationType)
{
    if (navigationType.startsWith("reload"_L1))
        return OwnMove::Kind::Reload;
    return navigationType.startsWith("history"_L1) ? OwnMove::Kind::History : OwnMove::Kind::Address;
}

} // namespace

void NavigationObserver::watch(BrowserPage *page, bool isNew)
{
    Tab tab{isNew, isNew, {}, {}, {}};
    adopt(tab);
    m_tabs.insert(page->targetId(), tab);
    const auto listen = [&](const QString &event, auto note) {
        page->connection()->listen(page->sessionId(), event, this, note);
    };
    listen(
        u"Page.frameRequestedNavigation"_s, [=, this](const QJsonObject &event) { noteWish(page, event); });
    listen(u"Page.windowOpen"_s,
        [this](const QJsonObject &event) { noteWindowWish(event.value("url"_L1).toString()); });
    listen(u"Page.frameStartedNavigating"_s, [=, this](const QJsonObject &event) { noteStart(page, event); });
    listen(u"Page.frameNavigated"_s, [=, this](const QJsonObject &event) { noteArrival(page, event); });
    listen(u"Page.navigatedWithinDocument"_s, [=, this](const QJsonObject &event) {
        if (event.value("frameId"_L1) == page->targetId())
            tell(page);
    });
    connect(page, &BrowserPage::documentGone, this,
        [=, this](const QString &address) { noteFirst(page, address); });
    connect(page, &BrowserPage::closed, this, [this, tab = page->targetId()] { m_tabs.remove(tab); });
}

void NavigationObserver::expect(const BrowserPage *page, const QString &address)
{
    m_tabs[page->targetId()].wish = {address, QDeadlineTimer(wishMs)};
}

void NavigationObserver::noteWish(const BrowserPage *page, const QJsonObject &event)
{
    const QString address = event.value("url"_L1).toString();
    if (event.value("disposition"_L1).toString().startsWith("new"_L1)) {
        noteWindowWish(address);
        return;
    }
    // A frame may send the whole tab to another address; to which one it wants to go itself matters less.
    const bool isOfTab = event.value("frameId"_L1) == page->targetId();
    m_tabs[page->targetId()].wish = {address, QDeadlineTimer(isOfTab ? wishMs : 0)};
}

void NavigationObserver::noteWindowWish(const QString &address)
{
    m_windowWishes.append({address, QDeadlineTimer(windowWishMs)});
}

/// A tab that comes behind the wish for one is of the page that had the wish.
void NavigationObserver::adopt(Tab &tab)
{
    m_windowWishes.removeIf([](const Wish &wish) { return wish.limit.hasExpired(); });
    if (!tab.isOwn || m_windowWishes.isEmpty())
        return;
    tab.isOwn = false;
    tab.wish = m_windowWishes.takeFirst();
}

/// A tab may set out before anybody can hear of it.
void NavigationObserver::noteFirst(BrowserPage *page, const QString &address)
{
    Tab &tab = m_tabs[page->targetId()];
    if (!tab.isNew || address.isEmpty() || address == "about:blank"_L1)
        return;
    tab.isNew = false;
    adopt(tab);
    tab.wish = {};
    if (tab.isOwn)
        Q_EMIT moved(page, {OwnMove::Kind::Address, address, {}, false, true, false});
}

void NavigationObserver::noteStart(const BrowserPage *page, const QJsonObject &event)
{
    if (event.value("frameId"_L1) != page->targetId())
        return;
    Tab &tab = m_tabs[page->targetId()];
    tab.isNew = false;
    adopt(tab);
    const QString address = event.value("url"_L1).toString();
    const Wish wish = std::exchange(tab.wish, {});
    tab.document = event.value("loaderId"_L1).toString();
    tab.move.reset();
    if (wish.address == address || !wish.limit.hasExpired())
        return;
    tab.move = OwnMove{kindOf(event.value("navigationType"_L1).toString()), address,
        m_windows->contextOf(page), m_isBehindInput(page->targetId()), tab.isOwn, false};
}

void NavigationObserver::noteArrival(BrowserPage *page, const QJsonObject &event)
{
    const QJsonObject frame = event.value("frame"_L1).toObject();
    Tab &tab = m_tabs[page->targetId()];
    const bool isKept = event.value("type"_L1) == "BackForwardCacheRestore"_L1;
    if (frame.contains("parentId"_L1) || !tab.move || (!isKept && frame.value("loaderId"_L1) != tab.document))
        return;
    tab.move->hasFailed = frame.contains("unreachableUrl"_L1);
    tell(page);
}

void NavigationObserver::tell(BrowserPage *page)
{
    if (const std::optional<OwnMove> move = std::exchange(m_tabs[page->targetId()].move, {}))
        Q_EMIT moved(page, *move);
}

} // namespace Ostrel::Host
