// NavigationObserver: where tabs go that no page has sent there, since the user typed an address or went by
// another of the browser's own controls.
#pragma once

#include <QDeadlineTimer>
#include <QHash>
#include <QList>
#include <QObject>
#include <QString>

#include <functional>
#include <optional>

namespace Ostrel::Host {

class BrowserPage;
class WindowList;

/// The way of a tab to where no page has sent it.
struct OwnMove
{
    enum class Kind {
        Address, ///< to an address that was typed, or chosen from bookmarks
        History, ///< to an entry of its history, by the user or by a script: the browser tells no difference
        Reload, ///< to where it is already
    };
    Kind kind = Kind::Address;
    QString address; ///< as it was asked for, whatever the server made of it
    QString context; ///< of the document that was there before
    bool isBehindInput = false; ///< the user did something in the page right before
    bool isInOwnWindow = false; ///< of a tab that no page has opened
    bool hasFailed = false; ///< the browser shows an error instead
};

/// Watches the tabs that it is told of, each for as long as it lives, on the browser's thread.
class NavigationObserver : public QObject
{
    Q_OBJECT

public:
    /// `isBehindInput` tells whether the user has just done something in the page of a tab. The windows stay
    /// the caller's.
    NavigationObserver(const WindowList *windows, std::function<bool(const QString &tab)> isBehindInput)
        : m_windows(windows), m_isBehindInput(std::move(isBehindInput))
    {
    }

    /// A tab that is new counts as the user's own, unless a page has just asked for one.
    void watch(BrowserPage *page, bool isNew);

    /// The tab is about to be sent to this address, and not by its user.
    void expect(const BrowserPage *page, const QString &address);

Q_SIGNALS:
    /// The tab has arrived.
    void moved(Ostrel::Host::BrowserPage *page, const Ostrel::Host::OwnMove &move);

private:
    /// Where a page wants to go.
    struct Wish
    {
        QString address;
        QDeadlineTimer limit; ///< until then any address is the one: the browser corrects some
    };
    struct Tab
    {
        bool isOwn = false;
        bool isNew = false; ///< nothing has been heard of its first document
        Wish wish; ///< of the page in it, or of the one that has opened it
        QString document; ///< the one that it is on the way to
        std::optional<OwnMove> move; ///< by which it is on its way
    };

    void noteWish(const BrowserPage *page, const QJsonObject &event);
    void noteWindowWish(const QString &address);
    void adopt(Tab &tab);
    void noteFirst(BrowserPage *page, const QString &address);
    void noteStart(const BrowserPage *page, const QJsonObject &event);
    void noteArrival(BrowserPage *page, const QJsonObject &event);
    void tell(BrowserPage *page);

    const WindowList *m_windows;
    std::function<bool(const QString &tab)> m_isBehindInput;
    QHash<QString, Tab> m_tabs;
    QList<Wish> m_windowWishes; ///< of which no tab has come yet
};

} // namespace Ostrel::Host
