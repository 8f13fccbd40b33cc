// RecordingLogger: the host's event logger. It writes statements, and it knows what the event logger cannot
// know: what the user did with the devices, and what the browser tells of its windows.
#pragma once

#include "host/record/inputobserver.h"
#include "host/record/recordednames.h"
#include "host/record/recordedscript.h"
#include "wrappers/web/eventlogger.h"

#include <QHash>
#include <QString>

#include <optional>

namespace Ostrel::Host {

/// What became of an event of the user.
struct Verdict
{
    enum class Kind {
        Statement, ///< it is one statement or more
        Merged, ///< it is part of what another event says
        LeftOut, ///< it says nothing that a script needs
        Remarked, ///< no statement can express it, so a remark in the script names it
    };
    Kind kind = Kind::LeftOut;
    QString reason; ///< the statements, or the rule

    /// "statement: clickButton(...)", "merged: ...", and so on.
    QString text() const;
};

/// The text of a member as a page would write it.
QString escapedMember(const QString &text);

class RecordingLogger : public WebWrapper::EventLogger
{
public:
    /// The script stays the caller's. `servedAt` is where the session serves a folder; empty for none. With
    /// `names`, which stay the caller's too, statements have symbolic names.
    explicit RecordingLogger(
        RecordedScript *script, const QString &servedAt = {}, RecordedNames *names = nullptr)
        : m_script(script), m_servedAt(servedAt), m_names(names)
    {
    }

    /// Handles a text behind which the given event of the user stands.
    Verdict handle(const QString &text, const InputEvent &input);

    /// A key goes down. What a click does from here on it does by the keyboard, until the next press.
    void noteKeyDown(const QString &tab, const InputEvent &input);
    void notePress();
    /// Whether a Return went down in a text field of the tab and nothing has told it yet.
    bool isReturnPending(const QString &tab) const;

    /// The Return that went down in a text field comes up elsewhere, since the field is gone or has lost the
    /// focus.
    Verdict noteReturnElsewhere(const QString &tab);

    /// The page of a tab goes. What its last keys did and could not tell any more is told now.
    void notePageGone(const QString &tab);

    /// A tab has closed.
    Verdict recordClosing(const QString &context);

    /// What follows happens in the window of this context.
    void enterWindow(const QString &context);

    /// A window has gone to an address by the browser's own controls.
    Verdict recordMove(const QString &address);

    /// A dialog has ended. The answer stands in front of the statement that opened it, behind the remark on
    /// it, if there is one.
    Verdict recordAnswer(const QString &method, const ObjectList &arguments, const QString &remark = {});

    /// A field holds something else. Text fields tell so where no key has done it, other fields at any rate.
    Verdict noteChange(const QString &tab, const InputEvent &input);

    /// A press that no event but the pointer's own has told.
    Verdict notePointerPress(const QString &tab, const InputEvent &input);

    /// A key has edited a part of the page that is no field.
    Verdict noteEditing(
        const QString &tab, const QString &objectName, const QString &context, const InputEvent &input);

    /// Whether the last event of a device has become a statement already.
    bool hasStatementSinceInput() const { return m_statementSinceInput; }

    void recordMethodCall(const QString &objectName, const char *methodName, const ObjectList &given,
        const QTime *timestamp) override;
    void addUnmatchedProperty(const QString &objectName, const QString &property) override;
    void removeUnmatchedProperties(const QString &objectName) override;
    void noteDoubleClick(const QString &objectName, const QMap<QString, QString> &data) override;
    void noteKeyUp(const QString &objectName) override { Q_UNUSED(objectName) }
    EventData lastRecordedEventData() override { return m_last; }
    void noteOptionChoice() override { }
    bool isRecordedAlready(const QString &methodName, const QString &objectName) override;

protected:
    bool compressedNonRecordingEventData(
        const QString &objectName, const QMap<QString, QString> &data) override;

private:
    /// The text field of a tab that had the last key.
    struct Field
    {
        QString object;
        QString type;
        QString context;
        QString value; ///< as the recording knows it
    };
    struct Rule;
    static const Rule rules[];

    bool isByTheBrowser(const QMap<QString, QString> &data) const;
    bool isLeftToTheBrowser(const QMap<QString, QString> &data) const;
    bool isTellingBeforeTheRelease(const QMap<QString, QString> &data) const;
    bool isReturnOfASubmit(const QMap<QString, QString> &data) const;
    bool isKeyWithoutText(const QMap<QString, QString> &data) const;
    bool isClickOfTheKeyboard(const QMap<QString, QString> &data) const;
    bool isClickOfThePointer(const QMap<QString, QString> &data) const;
    bool isOfTheMiddleButton(const QMap<QString, QString> &data) const;
    static ObjectList pointerAt(int x, int y, int button);
    void logAsPress(const QMap<QString, QString> &data);
    ObjectList withLines(const QString &objectName, const ObjectList &arguments) const;
    QString inScript(const QString &method, const QString &objectName) const;
    ObjectList withTrueFolder(ObjectList arguments);

    void rememberField(const QString &objectName, const QMap<QString, QString> &data);
    void logKey(const Field &field, const QString &tab, int keyCode, const QString &value);
    void logAsOurs(const QString &text);

    RecordedScript *m_script;
    QString m_servedAt;
    RecordedNames *m_names;
    EventData m_last;
    QString m_text; ///< that is being handled
    InputEvent m_input;
    QString m_event; ///< the name of the event that is being handled
    bool m_ours = false; ///< the text comes from the host
    bool m_byKeyboard = false;
    bool m_submitByKey = false; ///< a Return has pressed a button, which is recorded
    bool m_statementSinceInput = false; ///< opening an address counts, too: its page may ask at once
    QString m_pressed; ///< the object of the last press that is recorded
    QStringList m_statements; ///< of the text that is being handled
    std::optional<Verdict> m_ruled;
    ObjectList m_pointer; ///< where the pointer pressed, for a page that takes the pointer's own event
    QHash<QString, Field> m_fields; ///< by tab
    QHash<QString, QHash<QString, Field>> m_marked; ///< the fields of each tab whose names are known, by mark
    QHash<QString, QString> m_linesOf; ///< the text of each field that has several lines
    QHash<QString, InputEvent> m_keys; ///< the key of each tab that is down
};

} // namespace Ostrel::Host
