// InputObserver: what the user really does in the pages of a browser, from a place that pages cannot reach.
#pragma once

#include <QObject>
#include <QString>

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
    bool isText = false; ///< the target is a text field
    bool changed = false; ///< the text is another one than before the key
    bool isTold = false; ///< the change of a field whose page reports it, such as a select
    bool isCheck = false; ///< the change of a box that is told by its click
    bool isTaken = false; ///< the browser itself does something with the key
    int button = 0;
    bool isPress = false; ///< the click of a press of which the page has kept the browser from telling
    int scrolledX = 0; ///< of such a press: how far the parts of the page around it are scrolled
    int scrolledY = 0;
    bool isByPage = false; ///< the page itself has dispatched it
    int observer = 0; ///< the browser's number of the observer in this document, unique in its tab

    bool operator==(const InputEvent &) const = default;
};

/// Watches one page and all its frames from the next document on; lives as long as the page.
class InputObserver : public QObject
{
    Q_OBJECT

public:
    explicit InputObserver(BrowserPage *page);

    /// Has the observer of a document tell at once what it keeps back. `done` runs when all has been told, or
    /// when the document is gone.
    static void flush(BrowserPage *page, int observer, std::function<void()> done);

Q_SIGNALS:
    void observed(Ostrel::Host::BrowserPage *page, const Ostrel::Host::InputEvent &event);
};

} // namespace Ostrel::Host
