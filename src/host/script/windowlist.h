// WindowList: the windows under test, each a toplevel object of the framework, and which one lookups start
// in.
#pragma once

#include "host/browser/browserpage.h"
#include "ostrelhook/object.h"

#include <QList>
#include <QObject>
#include <QString>

namespace Ostrel::Host {

/// A context name taken apart: "index.html<2>.FRAME1" is frame 1 of the second window that shows index.html.
struct ContextName
{
    QString file;
    int number = 1;
    QString frames; ///< ".FRAME1.FRAME2", or empty for the window itself

    static ContextName parse(const QString &text);

    /// As a page names its own windows: it cannot know of others that show the same file.
    QString insidePage() const { return file + frames; }
    QString toString() const;
};

/// The file name by which contexts call a window that shows `address`.
QString contextFile(const QString &address);

/// Registers the toplevel objects' class and delegate with the framework; once in a process.
void registerToplevels();

/// Windows are asked in search order: the active one first, then the others as they were opened. The list
/// lives on the browser's thread; pages stay the browser's.
class WindowList : public QObject
{
    Q_OBJECT

public:
    WindowList();
    ~WindowList() override;

    /// Adds a window that has opened; it leaves the list by itself when it closes.
    void add(BrowserPage *page);

    /// Where lookups start, or null when no window is open.
    BrowserPage *active() const;
    void activate(BrowserPage *page);
    /// Lets the next path start at the document of the window or frame in which lookups start then; until
    /// this is called, that is the document at which the last path started.
    void forgetDocument() const;
    /// The open windows in search order.
    QList<BrowserPage *> pages() const;

    /// How many documents have come and gone in all windows; tells whether one has changed in between.
    int documentChanges() const { return m_documentChanges; }

    /// The context name of a window, unique among those that are open.
    QString contextOf(const BrowserPage *page) const;
    /// A context as its own page names it, in the words of the whole session.
    QString contextInSession(const BrowserPage *page, const QString &contextInPage) const;
    /// The window that a context name belongs to, whether or not it has the frame; null when there is none.
    BrowserPage *pageOf(const ContextName &context) const;

Q_SIGNALS:
    void activated(Ostrel::Host::BrowserPage *page);

private:
    struct Window
    {
        BrowserPage *page;
        SharedPtr<Object> toplevel;
    };

    void remove(const BrowserPage *page);
    void publish(const QList<Window> &before);
    int numberOf(const BrowserPage *page) const;

    QList<Window> m_searched;
    int m_documentChanges = 0;
    QList<BrowserPage *> m_opened; ///< in the order of opening, which is the order of numbers
};

} // namespace Ostrel::Host
