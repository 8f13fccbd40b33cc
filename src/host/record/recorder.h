// Recorder: follows all pages of a session and brings together what the user did, what the pages say of it,
// and what the browser tells of dialogs and windows.
#pragma once

#include "host/record/inputobserver.h"
#include "host/record/navigationobserver.h"
#include "host/record/recordedscript.h"
#include "host/record/recordinglogger.h"
#include "host/script/testsession.h"

#include <QDeadlineTimer>
#include <QObject>
#include <QPointer>
#include <QSet>
#include <QTimer>

#include <deque>
#include <functional>
#include <optional>

namespace Ostrel::Host {

/// Records from its construction to its end. One at a time, on the browser's thread; the session outlives it.
class Recorder : public QObject
{
    Q_OBJECT

public:
    /// With `names`, which stay the caller's, the script has symbolic names.
    explicit Recorder(TestSession *session, RecordedNames *names = nullptr);
    ~Recorder() override;

    /// Opens the address, as the first statement of the script does. Does not wait until the page has loaded.
    FunctionCallResult<void> start(const QString &address);

    /// Ends the recording: text that is still pending becomes a statement.
    void finish();

    const RecordedScript &script() const { return m_script; }

    /// Whether all that happened until now has been handled.
    bool isSettled() const;

Q_SIGNALS:
    /// Lines were added or taken back.
    void changed();

    /// What became of an event of the user, in words.
    void explained(const QString &line);

private:
    /// Something to be handled in its turn: an event of the user, or news of the browser.
    struct Happening
    {
        QString tab;
        InputEvent input;
        std::function<void()> act; ///< of news; empty for events of the user
        QDeadlineTimer limit; ///< how long it waits for the text of the page
        std::optional<quint64>
            lastText; ///< of an event in a document that is gone: what is said later is not of it
    };
    /// What a page says of an event.
    struct PageText
    {
        QString tab;
        QString event;
        QString text;
        quint64 order; ///< of its arrival
        QDeadlineTimer limit;
        int followed; ///< how many keys it stands for that others follow; 0 for a text of one event
    };

    void watch(BrowserPage *page, bool isNew);
    void take(const QString &text);
    void note(BrowserPage *page, const InputEvent &input);
    void fetchTyped();
    bool isOver(const QString &tab, const QDeadlineTimer &limit) const;
    void startLimitsAgain(const QString &tab);
    void noteNews(const QString &tab, std::function<void()> act);
    void noteDialogClosed(const Dialog &dialog, const QJsonObject &event);
    Verdict judgeAnswer(DialogKind kind, bool accepted, const QString &typed);
    void noteDocumentGone(const QString &tab);
    void noteClosed(BrowserPage *page);
    void noteMove(const BrowserPage *page, const OwnMove &move);
    Verdict judgeMove(const OwnMove &move);

    void handleAll();
    bool handleFirst();
    void handleInput(const Happening &happening);
    Verdict judge(const Happening &happening);
    void judgeHovers(const InputEvent &next);
    void forgetText(const QString &tab, const QString &event);
    Verdict remark(const QString &text);
    void forgetTextsWithoutInput();
    void waitForMore();
    QString inSession(const QString &text) const;
    std::deque<PageText>::iterator textFor(const Happening &happening);
    BrowserPage *pageOf(const QString &tab) const;

    TestSession *m_session;
    QList<QPointer<InputObserver>> m_observers; ///< they go with their pages
    NavigationObserver m_navigations;
    RecordedScript m_script;
    RecordingLogger m_logger;
    std::deque<Happening> m_happenings;
    std::deque<PageText> m_texts;
    QHash<QString, QString> m_contexts; ///< of each tab, as it was last heard of
    QHash<QString, QDeadlineTimer> m_lastInputs; ///< how long what a tab does counts as caused by the user
    QHash<QString, InputEvent> m_keyDown; ///< the key of each tab that has done nothing visible yet
    /// The document in which keys were typed last and that may keep some back.
    struct TypedIn
    {
        QString tab;
        int observer = 0;
    };
    std::optional<TypedIn> m_typedIn;
    int m_fetching = 0; ///< how many documents are asked for what they keep back
    QSet<QString> m_inDialog; ///< the tabs that show a dialog or have just been answered
    QSet<QString> m_changed; ///< the tabs in which keys have changed a text that a key behind them tells
    QList<InputEvent> m_hovers; ///< of which the next event tells more
    QTimer m_timer;
    QStringList m_shown;
    quint64 m_order = 0; ///< counts what pages say
    bool m_handling = false;
    bool m_finished = false;
};

} // namespace Ostrel::Host
