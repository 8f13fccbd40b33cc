#include "host/record/recordinglogger.h"

#include "host/record/statementtext.h"
#include "host/script/vocabulary.h"
#include "ostrelhook/inspector.h"
#include "ostrelhook/objectname.h"
#include "wrappers/web/webutilities.h"

#include <QScopedValueRollback>

#include <utility>

namespace Ostrel::Host {

using namespace Qt::StringLiterals;

namespace {

constexpr int returnKey = 13;
constexpr int anyOtherKey = 0;

// Of a press by the pointer.
constexpr int primaryButton = 1;
constexpr int middleButton = 4;

bool is(const QMap<QString, QString> &data, QLatin1StringView event)
{
    return data.value(u"event"_s) == event;
}

/// Only text fields tell whether they can be edited.
bool isOfTextField(const QMap<QString, QString> &data)
{
    return data.contains(u"readonly"_s) && data.value(u"type"_s) != "file"_L1;
}

bool isReturn(const QMap<QString, QString> &data)
{
    return data.value(u"keyCode"_s) == QString::number(returnKey);
}

/// Whether a name may be that of an element that a remark would call `target`, "DIV#greeting" or "DIV".
bool isNameOf(const QString &objectName, const QString &target)
{
    const ObjectName name(objectName);
    const QString tag = target.section(u'#', 0, 0).section(u' ', 0, 0);
    const QString id = target.section(u'#', 1);
    if (!name.isMultiProperty())
        return objectName.section(u'.', -1).startsWith(tag);
    return name.property(u"tagName"_s).stringValue() == tag
        && (id.isEmpty() || name.property(u"id"_s).stringValue() == id);
}

/// A page may ask as soon as it is there.
bool opensAddress(const QString &method)
{
    const Statement *statement = findStatement(method);
    return statement && statement->subject == Subject::Address;
}

SharedPtr<Object> wrapped(int number)
{
    return Inspector::self()->createPrimitive(number);
}

} // namespace

QString Verdict::text() const
{
    switch (kind) {
    case Kind::Statement:
        return u"statement: %1"_s.arg(reason);
    case Kind::Merged:
        return u"merged: %1"_s.arg(reason);
    case Kind::LeftOut:
        return u"left out: %1"_s.arg(reason);
    case Kind::Remarked:
        return u"remark: %1"_s.arg(reason);
    }
    Q_UNREACHABLE();
}

QString escapedMember(const QString &text)
{
    QString escaped;
    for (const QChar character : text) {
        const char16_t code = character.unicode();
        if (code < 0x80 && character.isLetterOrNumber())
            escaped += character;
        else if (code < 0x100)
            escaped += u"%%1"_s.arg(code, 2, 16, QChar(u'0'));
        else
            escaped += u"%u%1"_s.arg(code, 4, 16, QChar(u'0'));
    }
    return escaped;
}

/// What the recorder knows better than a page's text. The first rule that fits takes the text.
struct RecordingLogger::Rule
{
    bool (RecordingLogger::*fits)(const QMap<QString, QString> &data) const;
    Verdict::Kind kind;
    const char16_t *sentence;
};

const RecordingLogger::Rule RecordingLogger::rules[] = {
    {&RecordingLogger::isByTheBrowser, Verdict::Kind::Merged, u"the browser itself tells how a dialog ended"},
    {&RecordingLogger::isLeftToTheBrowser, Verdict::Kind::LeftOut,
        u"a page that goes is no window that closes, of which the browser tells"},
    {&RecordingLogger::isTellingBeforeTheRelease, Verdict::Kind::Merged,
        u"the release of the key tells the text"},
    {&RecordingLogger::isReturnOfASubmit, Verdict::Kind::Merged,
        u"the Return has pressed the button that is recorded"},
    {&RecordingLogger::isKeyWithoutText, Verdict::Kind::LeftOut, u"the key has changed no text"},
};

bool RecordingLogger::isByTheBrowser(const QMap<QString, QString> &data) const
{
    static const QStringList events{
        u"alert"_s, u"confirm"_s, u"prompt"_s, u"disableFallbackWrapper"_s, u"enableFallbackWrapper"_s};
    return events.contains(data.value(u"event"_s));
}

bool RecordingLogger::isLeftToTheBrowser(const QMap<QString, QString> &data) const
{
    return is(data, "unload"_L1) && !m_ours;
}

bool RecordingLogger::isTellingBeforeTheRelease(const QMap<QString, QString> &data) const
{
    return is(data, "keydown"_L1);
}

bool RecordingLogger::isReturnOfASubmit(const QMap<QString, QString> &data) const
{
    return is(data, "keyup"_L1) && isReturn(data) && m_submitByKey;
}

bool RecordingLogger::isKeyWithoutText(const QMap<QString, QString> &data) const
{
    return is(data, "keyup"_L1) && !m_ours && !isReturn(data) && !m_input.changed && isOfTextField(data);
}

/// Enter and the space bar on a button or link, and arrows among radio buttons, do what a press would do. A
/// submit button the event logger knows by itself.
bool RecordingLogger::isClickOfTheKeyboard(const QMap<QString, QString> &data) const
{
    return is(data, "click"_L1) && m_byKeyboard && data.value(u"type"_s) != "submit"_L1;
}

/// The click of a press that the page has kept from becoming one.
bool RecordingLogger::isClickOfThePointer(const QMap<QString, QString> &data) const
{
    return is(data, "click"_L1) && m_input.isPress;
}

/// Links open in a new window by it, for one. The statements for presses know no such button.
bool RecordingLogger::isOfTheMiddleButton(const QMap<QString, QString> &data) const
{
    return is(data, "mousedown"_L1) && m_input.kind == "mousedown"_L1 && m_input.button == 1
        && m_pointer.isEmpty();
}

Verdict RecordingLogger::handle(const QString &text, const InputEvent &input)
{
    m_text = text;
    m_input = input;
    m_statements.clear();
    m_ruled.reset();
    m_pointer.clear();
    logEvent(text);
    if (!m_statements.isEmpty())
        return {Verdict::Kind::Statement, m_statements.join(u' ')};
    if (m_ruled)
        return *m_ruled;
    if (input.kind == "keyup"_L1 && input.isText)
        return {Verdict::Kind::Merged, u"typed text is one statement, at its end"_s};
    if (input.kind == "click"_L1)
        return {Verdict::Kind::Merged, u"the press has told it"_s};
    if (input.kind == "keyup"_L1)
        return {Verdict::Kind::LeftOut, u"keys outside of text fields are told by what they do"_s};
    return {Verdict::Kind::LeftOut, u"the element does not react to it, or tells its change"_s};
}

bool RecordingLogger::compressedNonRecordingEventData(
    const QString &objectName, const QMap<QString, QString> &data)
{
    m_event = data.value(u"event"_s);
    if (isOfTextField(data))
        rememberField(objectName, data);
    if (m_event == "keyup"_L1 && !m_ours)
        m_keys.remove(data.value(u"tabId"_s));
    for (const Rule &rule : rules) {
        if (!(this->*rule.fits)(data))
            continue;
        m_ruled = Verdict{rule.kind, QString::fromUtf16(rule.sentence)};
        if (rule.fits == &RecordingLogger::isReturnOfASubmit)
            m_submitByKey = false;
        return true;
    }
    if (isClickOfTheKeyboard(data) || isClickOfThePointer(data) || isOfTheMiddleButton(data)) {
        logAsPress(data);
        return true;
    }
    return EventLogger::compressedNonRecordingEventData(objectName, data);
}

/// Has the event that is being handled go on as a press; one that only the pointer can repeat as one on
/// something that reacts to it. The event logger handles it right behind the text that it handles now.
void RecordingLogger::logAsPress(const QMap<QString, QString> &data)
{
    const auto place = [&](const QString &side, int scrolled) { return data.value(side).toInt() + scrolled; };
    if (!isClickOfTheKeyboard(data)) {
        m_pointer = pointerAt(place(u"x"_s, m_input.scrolledX), place(u"y"_s, m_input.scrolledY),
            isOfTheMiddleButton(data) ? middleButton : primaryButton);
    }
    EventLogger::logEvent(QString(m_text).replace(u"&event=%1"_s.arg(m_event),
        m_pointer.isEmpty() ? "&event=mousedown"_L1 : "&event=mousedown&clickHandler"_L1));
}

/// The text of a field with its lines, which the event logger puts into one.
ObjectList RecordingLogger::withLines(const QString &objectName, const ObjectList &arguments) const
{
    const QString value = m_linesOf.value(objectName);
    const bool isOfField = !value.isEmpty() && !arguments.isEmpty()
        && arguments.first()->toQString() == QString(value).replace(u'\n', u' ');
    return isOfField ? ObjectList{Inspector::self()->createPrimitive(value)} : arguments;
}

/// How a statement names its object.
QString RecordingLogger::inScript(const QString &method, const QString &objectName) const
{
    const Statement *statement = findStatement(method);
    const bool isObject = statement && statement->subject == Subject::ObjectName;
    return m_names && isObject ? m_names->nameFor(objectName) : objectName;
}

/// A browser shows a page the name of a chosen file in a folder that does not exist.
ObjectList RecordingLogger::withTrueFolder(ObjectList arguments)
{
    const auto noFolder = "C:\\fakepath\\"_L1;
    for (SharedPtr<Object> &argument : arguments) {
        const QString text = argument->isPrimitive() ? argument->toQString() : QString();
        if (!text.startsWith(noFolder))
            continue;
        const bool isKnown = m_input.files > 0 && !m_input.value.isEmpty();
        argument = Inspector::self()->createPrimitive(isKnown ? m_input.value : text.mid(noFolder.size()));
        if (!isKnown)
            m_script->remark(u"the browser hides the folder of the file"_s);
        if (m_input.files > 1)
            m_script->remark(u"not recorded: %1 files more in the same field"_s.arg(m_input.files - 1));
    }
    return arguments;
}

void RecordingLogger::rememberField(const QString &objectName, const QMap<QString, QString> &data)
{
    const QString tab = data.value(u"tabId"_s);
    const Field field{objectName, data.value(u"type"_s), data.value(u"context"_s), data.value(u"value"_s)};
    m_fields.insert(tab, field);
    if (!m_ours && !m_input.field.isEmpty())
        m_marked[tab].insert(m_input.field, field);
    if (data.value(u"value"_s).contains(u'\n'))
        m_linesOf.insert(objectName, data.value(u"value"_s));
    else
        m_linesOf.remove(objectName);
}

void RecordingLogger::noteKeyDown(const QString &tab, const InputEvent &input)
{
    m_keys.insert(tab, input);
    m_byKeyboard = true;
    m_submitByKey = false;
    m_statementSinceInput = false;
    m_pressed.clear();
}

void RecordingLogger::notePress()
{
    m_byKeyboard = false;
    m_submitByKey = false;
    m_statementSinceInput = false;
}

bool RecordingLogger::isReturnPending(const QString &tab) const
{
    const InputEvent key = m_keys.value(tab);
    return key.isText && key.key == "Enter"_L1 && !m_submitByKey;
}

Verdict RecordingLogger::noteReturnElsewhere(const QString &tab)
{
    const Field field = m_fields.value(tab);
    const InputEvent key = m_keys.take(tab);
    if (field.object.isEmpty())
        return {Verdict::Kind::LeftOut, u"nothing is known of the field that had the key"_s};
    logKey(field, tab, returnKey, key.value);
    return {Verdict::Kind::Merged, u"the Return went into the field that is gone"_s};
}

// The keys of a page that goes are released in the next one. The last one that went down tells what the field
// held before it; a Return that no button has told is one of its own.
void RecordingLogger::notePageGone(const QString &tab)
{
    const Field field = m_fields.take(tab);
    const InputEvent key = m_keys.take(tab);
    m_marked.remove(tab);
    if (field.object.isEmpty() || !key.isText)
        return;
    if (key.value != field.value)
        logKey(field, tab, anyOtherKey, key.value);
    if (key.key == "Enter"_L1 && !m_submitByKey)
        logKey(field, tab, returnKey, key.value);
}

void RecordingLogger::logKey(const Field &field, const QString &tab, int keyCode, const QString &value)
{
    logAsOurs(
        u"logevent%1&event=keyup&keyCode=%2&value=%3&readonly=false&object=%4&type=%5&tabId=%6&context=%7"_s
            .arg(QString::number(WebWrapper::now()), QString::number(keyCode), escapedMember(value),
                escapedMember(field.object), field.type, tab, escapedMember(field.context)));
}

void RecordingLogger::logAsOurs(const QString &text)
{
    const QScopedValueRollback ours(m_ours, true);
    logEvent(text);
}

Verdict RecordingLogger::noteChange(const QString &tab, const InputEvent &input)
{
    if (input.isCheck)
        return {Verdict::Kind::Merged, u"the press on the box has told it"_s};
    if (input.isText && input.kind == "change"_L1)
        return {Verdict::Kind::Merged, u"the text is told as it comes"_s};
    const Field field = m_marked.value(tab).value(input.field);
    if (field.object.isEmpty()) {
        m_script->remark(u"not recorded: %1 was set to '%2'"_s.arg(input.target, input.value));
        return {Verdict::Kind::Remarked,
            input.isText ? u"the page has not told the name of the field"_s
                         : u"no statement sets a field of this type"_s};
    }
    logKey(field, tab, anyOtherKey, input.value);
    return {Verdict::Kind::Merged, u"a text that no key has told is typed"_s};
}

Verdict RecordingLogger::recordClosing(const QString &context)
{
    m_statements.clear();
    logAsOurs(u"logevent%1&event=unload&object=%2&context=%3"_s.arg(
        QString::number(WebWrapper::now()), escapedMember(u"[Window]"_s), escapedMember(context)));
    return {Verdict::Kind::Statement, m_statements.join(u' ')};
}

void RecordingLogger::enterWindow(const QString &context)
{
    logAsOurs(u"logevent%1&event=ignoreEvent&context=%2"_s.arg(
        QString::number(WebWrapper::now()), escapedMember(context)));
}

Verdict RecordingLogger::recordMove(const QString &address)
{
    m_statements.clear();
    recordMethodCall(address, "loadUrl", {}, nullptr);
    return {Verdict::Kind::Statement, m_statements.join(u' ')};
}

Verdict RecordingLogger::recordAnswer(
    const QString &method, const ObjectList &arguments, const QString &remark)
{
    const ScriptLine answer{statementText(method, {}, arguments), {}, LineOrigin::Other};
    std::vector<ScriptLine> lines{answer};
    if (!remark.isEmpty())
        lines.insert(lines.begin(), {remarkText(remark), {}, LineOrigin::Remark});
    for (const ScriptLine &line : lines) {
        if (m_statementSinceInput)
            m_script->insertBeforeLast(line);
        else
            m_script->append(line);
    }
    return {Verdict::Kind::Statement, answer.text};
}

ObjectList RecordingLogger::pointerAt(int x, int y, int button)
{
    return {wrapped(x), wrapped(y), wrapped(button)};
}

Verdict RecordingLogger::notePointerPress(const QString &tab, const InputEvent &input)
{
    m_statements.clear();
    m_pointer = pointerAt(input.x, input.y, primaryButton);
    logAsOurs(u"logevent%1&event=mousedown&clickHandler&object=%2&tabId=%3&context=%4"_s.arg(
        QString::number(WebWrapper::now()), escapedMember(input.object), tab, escapedMember(input.context)));
    m_pointer.clear();
    return {Verdict::Kind::Statement, m_statements.join(u' ')};
}

Verdict RecordingLogger::noteEditing(
    const QString &tab, const QString &objectName, const QString &context, const InputEvent &input)
{
    if (!input.changed)
        return {Verdict::Kind::LeftOut, u"the key has changed no text"_s};
    // The page may name what holds the editable part and reacts to clicks.
    if (!isNameOf(objectName, input.target)) {
        m_script->remark(u"not recorded: keys that edit %1"_s.arg(input.target));
        return {Verdict::Kind::Remarked, u"the page names another element"_s};
    }
    const Field part{objectName, u"textarea"_s, context, input.value};
    m_marked[tab].insert(input.field, part);
    logKey(part, tab, anyOtherKey, input.value);
    return {Verdict::Kind::Merged, u"typed text is one statement, at its end"_s};
}

void RecordingLogger::recordMethodCall(
    const QString &objectName, const char *methodName, const ObjectList &given, const QTime *timestamp)
{
    const QString named = QString::fromUtf8(methodName);
    // Only the true pointer sends the event that the page has taken.
    const bool isOfPointer = !m_pointer.isEmpty() && (named == "mouseClick"_L1 || named == "clickButton"_L1);
    const QString method = isOfPointer ? u"nativeMouseClick"_s : named;
    const ObjectList arguments = isOfPointer ? m_pointer
        : method == "typeText"_L1            ? withLines(objectName, given)
                                             : given;
    const QString line
        = statementText(method, inScript(method, objectName), withTrueFolder(arguments), m_servedAt);
    // Typed text and contexts come on the way to the statement of an event.
    const bool isOfEvent = timestamp && method != "typeText"_L1;
    const bool isPress = m_event == "mousedown"_L1 && isOfEvent;
    m_script->append({line, objectName, isPress ? LineOrigin::Press : LineOrigin::Other});
    m_last = EventData::methodCall(method, objectName, arguments);
    m_statements.append(line);
    m_statementSinceInput = m_statementSinceInput || isOfEvent || opensAddress(method);
    if (isPress)
        m_pressed = objectName;
    if (m_event == "click"_L1 && method == "clickButton"_L1 && m_byKeyboard)
        m_submitByKey = true;
}

// A double click is two presses before it is known to be one.
void RecordingLogger::noteDoubleClick(const QString &objectName, const QMap<QString, QString> &)
{
    m_script->takeBackPresses(objectName, 2);
}

bool RecordingLogger::isRecordedAlready(const QString &, const QString &objectName)
{
    return m_event == "click"_L1 && m_pressed == objectName;
}

void RecordingLogger::addUnmatchedProperty(const QString &objectName, const QString &property)
{
    Inspector::self()->addUnmatchedProperty(objectName, property);
}

void RecordingLogger::removeUnmatchedProperties(const QString &objectName)
{
    Inspector::self()->removeUnmatchedProperties(objectName);
}

} // namespace Ostrel::Host
