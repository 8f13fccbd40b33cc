// InputObserver: what the user really does in the pages of a browser, from a place that pages cannot reach.
#pragma once

#include <QObject>
#include <QString>
#include <QStringList>

#include <deque>
#include <functional>

namespace Ostrel::Host {

class BrowserPage;

/// One trusted event of a device.
struct InputEvent
{
    QString kind; ///< the browser's name of the event, or "hover"
    double time = 0; ///< of the device, in milliseconds since the epoch
    QString target; ///< the element, as a remark names it
    QString key; ///< of key events
    QString value; ///< of a text field before the key, or of a field that has changed
    QString field; ///< the mark of a text field, the same in all its events; of a hover that of its element
    bool isText = false; ///< the target is a text field
    bool changed = false; ///< the text is another one than before the key
    bool isTold = false; ///< the change of a field whose page reports it, such as a select
    bool isCheck = false; ///< the change of a box that is told by its click
    bool isTaken = false; ///< the browser itself does something with the key
    bool isEditable = false; ///< the key went into an editable part of the page, which holds `value` then
    int button = 0;
    bool isPress = false; ///< the click of a press of which the page has kept the browser from telling
    int scrolledX = 0; ///< of such a press, and of one of the middle button: how far the parts of the page
                       ///< around it are scrolled
    int scrolledY = 0;
    bool isByPage = false; ///< the page itself has dispatched it
    QString object; ///< the name of what a press hit that the page has taken; empty where it is gone
    QString context; ///< of that
    int x = 0; ///< where the press hit it
    int y = 0;
    int files = 0; ///< how many were chosen in a file field; `value` is the path of the first one
    int observer = 0; ///< the browser's number of the observer in this document, unique in its tab
    bool isOfHistory = false; ///< the browser itself goes back or forward by it
    QStringList over; ///< of a press: the marks of what was hovered over in the control that it is on

    bool operator==(const InputEvent &) const = default;
};

/// Watches one page and all its frames; lives as long as the page.
class InputObserver : public QObject
{
    Q_OBJECT

public:
    explicit InputObserver(BrowserPage *page);

    /// Has the observer of a document tell at once what it keeps back. `done` runs when all has been told, or
    /// when the document is gone.
    static void flush(BrowserPage *page, int observer, std::function<void()> done);

    /// Whether all that was told until now has been passed on.
    bool isSettled() const { return !m_isAsking; }

Q_SIGNALS:
    /// In the order of the events.
    void observed(Ostrel::Host::BrowserPage *page, const Ostrel::Host::InputEvent &event);

private:
    using Completed = std::function<void(const InputEvent &input)>;
    using Answer = std::function<void(const QJsonObject &answer)>;

    void passOn();
    void complete(const InputEvent &told, const Completed &completed) const;
    void askForPath(const InputEvent &told, const Completed &completed) const;
    void askForName(const InputEvent &told, const Completed &completed) const;
    void ask(const QString &method, const QJsonObject &parameters, const Answer &answered) const;

    BrowserPage *m_page;
    std::deque<InputEvent> m_told;
    bool m_isAsking = false; ///< what the first one lacks; the others wait
};

} // namespace Ostrel::Host
