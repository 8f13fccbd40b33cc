// TrustedUser: hands on the devices of a browser. What it does reaches pages as events that a person caused.
#pragma once

#include "host/browser/browserpage.h"

#include <QString>

namespace Ostrel::Test {

/// Elements are named by expressions of the page, in which `q(selector)`, `inFrame(frame, selector)` and
/// `inShadow(host, selector)` find one; frames are named by their ids, "outer/inner". `withText(selector,
/// text)` finds the first that is shown with this text.
class TrustedUser
{
public:
    explicit TrustedUser(Host::BrowserPage *page) : m_page(page) { }

    /// From here on the user works in another window.
    void goTo(Host::BrowserPage *page) { m_page = page; }
    Host::BrowserPage *page() const { return m_page; }

    void click(const QString &element, int modifiers = 0);
    void clickAt(const QString &element, double x, double y);
    void rightClick(const QString &element);
    void middleClick(const QString &element);
    void doubleClick(const QString &element);
    void hover(const QString &element);
    void wheel(const QString &element, int pixels);
    void drag(const QString &from, const QString &to);
    void type(const QString &text);
    /// A key by its name: "Tab", "Enter", "Backspace", "ArrowDown", "a".
    void key(const QString &name, int modifiers = 0);

    /// The browser's own controls: its field for addresses, its arrows and its button for loading again.
    void open(const QString &address);
    void goInHistory(int entries);
    void loadAgain();

    /// Text that comes without a key, such as from the browser's own menu.
    void paste(const QString &text);

    /// How many things the user has done.
    int actions() const { return m_actions; }

    static constexpr int alt = 1;
    static constexpr int control = 2;
    static constexpr int shift = 8;

private:
    struct Place
    {
        double x;
        double y;
    };
    Place placeOf(const QString &element, double x = 0.5, double y = 0.5);
    void mouse(const QString &type, Place place, const QString &button, int clicks, int modifiers = 0);
    void press(Place place, const QString &button, int clicks, int modifiers = 0);
    void stroke(const QString &name, int modifiers);
    void send(const QString &method, const QJsonObject &parameters);
    void waitUntilDone();

    Host::BrowserPage *m_page;
    int m_waiting = 0;
    int m_actions = 0;
};

/// Waits until an expression of the page is true.
bool waitUntil(Host::BrowserPage *page, const QString &expression);

} // namespace Ostrel::Test
