// From events to statements: what the framework calls an event, and which statement the user meant by it.
#include "ostrelhook/globalclass.h"
#include "ostrelhook/inspector.h"
#include "ostrelhook/valueclasses.h"
#include "probelog/tracepoint.h"
#include "wrappers/web/composing.h"
#include "wrappers/web/eventlogger.h"
#include "wrappers/web/eventtext.h"
#include "wrappers/web/eventtypes.h"
#include "wrappers/web/webutilities.h"

#include <algorithm>
#include <iterator>
#include <span>
#include <utility>

namespace Ostrel::WebWrapper {

using namespace Qt::StringLiterals;

namespace {

constexpr QLatin1StringView state = "state"_L1;
constexpr QLatin1StringView pointerArguments[] = {"x"_L1, "y"_L1, state, "button"_L1};
constexpr QLatin1StringView keyArguments[] = {state, "keyCode"_L1};

/// How an event of a page becomes an event of the framework.
struct Conversion
{
    QLatin1StringView pageEvent;
    QLatin1StringView event;
    std::span<const QLatin1StringView> arguments; ///< members of the event, all numbers
};

constexpr Conversion conversions[] = {
    {"mousedown"_L1, "mousedown"_L1, pointerArguments},
    {"click"_L1, "click"_L1, pointerArguments},
    {"dblclick"_L1, "dblclick"_L1, pointerArguments},
    {"keyup"_L1, "keyup"_L1, keyArguments},
    // A frame reports both; either of them is a key.
    {"keydown"_L1, "keyup"_L1, keyArguments},
    {"unload"_L1, "unload"_L1, {}},
    {"change"_L1, "change"_L1, {}},
    {"chooseColor"_L1, "chooseColor"_L1, {}},
    {"ignoreEvent"_L1, "ignoreEvent"_L1, {}},
};

SharedPtr<Object> number(int value)
{
    return Inspector::self()->createPrimitive(value);
}

SharedPtr<Object> text(const QString &value)
{
    return Inspector::self()->createPrimitive(value);
}

/// The text as a statement can hold it. A character of two code units becomes two blanks.
QString printable(QString value)
{
    for (QChar &character : value) {
        if (character.isPrint())
            continue;
        PROBELOG_TRACE("WebEventCompression",
            message(u"Non-Printable character (hex code: 0x%1) found in text, replacing with space",
                QString::number(character.unicode(), 16).rightJustified(4, u'0')));
        character = u' ';
    }
    return value;
}

} // namespace

const Event *EventLogger::convertEvent(
    ObjectList &arguments, const QString &, const QMap<QString, QString> &data)
{
    const QString name = data.value(u"event"_s);
    const Conversion *conversion = std::find_if(std::begin(conversions), std::end(conversions),
        [&](const Conversion &candidate) { return name == candidate.pageEvent; });
    if (conversion == std::end(conversions))
        return nullptr;
    for (const QLatin1StringView argument : conversion->arguments)
        arguments.append(number(argument == state ? modifierState(data) : data.value(argument).toInt()));
    for (const SharedPtr<Object> &argument : std::as_const(arguments))
        argument->setEventArgument(true);
    return Inspector::self()->globalClass()->event(conversion->event);
}

/// One event on its way to a statement. Its operations tell whether the event was dealt with.
class EventLogger::UserEvent
{
public:
    UserEvent(EventLogger &logger, const QString &objectName, const EventMap &data)
        : m_logger(logger), m_object(objectName), m_data(data), m_type(data.value(u"type"_s)),
          m_time(timeOfDay(data, now()))
    {
    }

    bool press();
    bool click();
    bool doubleClick();
    bool key();
    bool change();
    bool unload();
    bool chooseColor();
    bool ignore() { return true; }

private:
    bool has(QLatin1StringView key) const { return m_data.contains(key); }
    QString member(QLatin1StringView key) const { return m_data.value(key); }
    bool isType(QLatin1StringView type) const { return m_type == type; }
    bool isIn(const TypeGroup &group) const { return group.contains(m_type); }
    bool isEditable() const { return member("readonly"_L1) != "true"_L1; }
    template <const TypeGroup &group>
    static bool in(const UserEvent &event)
    {
        return event.isIn(group);
    }

    SharedPtr<Object> numberOf(QLatin1StringView key) const { return number(member(key).toInt()); }
    SharedPtr<Object> textOf(QLatin1StringView key) const { return text(member(key)); }
    /// The state, unless there is nothing to say.
    ObjectList stateIfAny() const
    {
        const int value = modifierState(m_data);
        return value == 0 ? ObjectList() : ObjectList{number(value)};
    }
    ObjectList point() const { return {numberOf("x"_L1), numberOf("y"_L1)}; }
    /// The name in a member, as the recording calls that object.
    QString otherObject(QLatin1StringView key) const
    {
        return m_logger.adaptQualifiedName(member(key), m_data);
    }

    bool record(const char *method, const ObjectList &arguments = {}) const
    {
        return recordFor(m_object, method, arguments);
    }
    bool recordFor(const QString &object, const char *method, const ObjectList &arguments) const
    {
        m_logger.recordMethodCall(object, method, arguments, &m_time);
        return true;
    }
    /// For statements that the press and its click might both make.
    bool recordOnce(const char *method, const ObjectList &arguments) const
    {
        if (m_logger.isRecordedAlready(QString::fromLatin1(method), m_object))
            return true;
        return record(method, arguments);
    }
    void keepText(const QString &typed) const
    {
        *m_logger.m_pendingTextInput = {typed, m_object, m_time, m_type};
    }

    // What a press can mean.
    bool clickAtPoint() { return record("mouseClick", stateIfAny() + point()); }
    bool enterField();
    bool clickMenuItem()
    {
        return recordFor(otherObject("menuname"_L1), "clickItem", {textOf("menuitemtext"_L1)});
    }
    bool chooseDate();
    bool pressButton();
    bool clickLink() { return recordOnce("mouseClick", stateIfAny()); }
    bool chooseOption();
    bool leaveUnknown();
    bool clickTreeHandle() { return record("clickTreeHandle", {textOf("itemText"_L1)}); }
    bool clickCell()
    {
        return record(
            "clickItem", ObjectList{numberOf("itemRow"_L1), numberOf("itemColumn"_L1)} + stateIfAny());
    }
    bool checkTreeItem() { return record("checkTreeItem", {textOf("itemText"_L1)}); }
    bool clickItem() { return record("clickItem", ObjectList{textOf("itemText"_L1)} + stateIfAny()); }
    bool selectValue() { return record("selectOption", {textOf("value"_L1)}); }
    bool clickTab()
    {
        return recordFor(otherObject("tabWidgetName"_L1), "clickTab", {textOf("tabTitle"_L1)});
    }
    bool toggleSection() { return record("toggleExpandable"); }
    bool clickCalendarEvent() { return record("mouseClick"); }

    void takeReturn() const;
    void takeValue() const;

    EventLogger &m_logger;
    const QString m_object;
    const EventMap m_data;
    const QString m_type;
    const QTime m_time;
};

bool EventLogger::eatEvent(const Event *event, const QString &objectName, const QMap<QString, QString> &data)
{
    struct Branch
    {
        QLatin1StringView event;
        bool (UserEvent::*eat)();
    };
    static constexpr Branch branches[] = {
        {"mousedown"_L1, &UserEvent::press},
        {"click"_L1, &UserEvent::click},
        {"dblclick"_L1, &UserEvent::doubleClick},
        {"keyup"_L1, &UserEvent::key},
        {"change"_L1, &UserEvent::change},
        {"unload"_L1, &UserEvent::unload},
        {"chooseColor"_L1, &UserEvent::chooseColor},
        {"ignoreEvent"_L1, &UserEvent::ignore},
    };

    const QString &name = event->name();
    PROBELOG_TRACE("WebEventCompression",
        message(u"Consider compressing event '%1' for object name: '%2' data: %3", name, objectName,
            traceText(data)));
    UserEvent userEvent(*this, objectName, data);
    if (name != "keyup"_L1)
        m_submitClicked = false;
    for (const Branch &branch : branches) {
        if (name == branch.event)
            return (userEvent.*branch.eat)();
    }
    flushRecordedTextInput();
    return false;
}

bool EventLogger::UserEvent::press()
{
    using namespace TypeGroups;
    struct Rule
    {
        bool (*fits)(const UserEvent &event);
        bool (UserEvent::*record)();
    };
    static constexpr Rule rules[] = {
        {[](const UserEvent &event) { return event.isIn(textLike) && !event.isEditable(); },
            &UserEvent::clickAtPoint},
        {in<textLike>, &UserEvent::enterField},
        {in<menuItem>, &UserEvent::clickMenuItem},
        {in<dateChooser>, &UserEvent::chooseDate},
        {in<buttonLike>, &UserEvent::pressButton},
        // Its change event tells which option it is.
        {in<selectLike>, &UserEvent::ignore},
        {in<linkLike>, &UserEvent::clickLink},
        {[](const UserEvent &event) { return event.isType("kiwi_choice"_L1) && event.has("value"_L1); },
            &UserEvent::chooseOption},
        {[](const UserEvent &event) { return event.isType("kiwi_choice"_L1); }, &UserEvent::leaveUnknown},
        {in<treeHandle>, &UserEvent::clickTreeHandle},
        {[](const UserEvent &event) {
             return event.isIn(item) && event.has("itemRow"_L1) && event.has("itemColumn"_L1);
         },
            &UserEvent::clickCell},
        {[](const UserEvent &event) { return event.isIn(item) && event.has("checkTreeItem"_L1); },
            &UserEvent::checkTreeItem},
        {in<item>, &UserEvent::clickItem},
        {in<tableItem>, &UserEvent::clickItem},
        {[](const UserEvent &event) { return event.isType("bb_combobox"_L1); }, &UserEvent::selectValue},
        {in<tab>, &UserEvent::clickTab},
        {in<sectionHeader>, &UserEvent::toggleSection},
        // What a press on a file field opens is recorded by the change that it leads to.
        {[](const UserEvent &event) { return !event.has("clickHandler"_L1) || event.isType("file"_L1); },
            &UserEvent::ignore},
        {[](const UserEvent &event) { return event.m_type.startsWith("calendarevent_"_L1); },
            &UserEvent::clickCalendarEvent},
        {[](const UserEvent &) { return true; }, &UserEvent::clickAtPoint},
    };

    m_logger.flushRecordedTextInput();
    const Rule *rule = std::find_if(
        std::begin(rules), std::end(rules), [this](const Rule &candidate) { return candidate.fits(*this); });
    return (this->*rule->record)();
}

bool EventLogger::UserEvent::enterField()
{
    if (m_logger.recordClickOnTextField())
        return record("nativeMouseClick", point() + ObjectList{number(1)});
    return record("setFocus");
}

bool EventLogger::UserEvent::chooseDate()
{
    const QDate date(member("selectedYear"_L1).toInt(), member("selectedMonth"_L1).toInt(),
        member("selectedDay"_L1).toInt());
    return record("chooseDate", {wrapDateTime(DateTime(date, QTime(0, 0)))});
}

bool EventLogger::UserEvent::pressButton()
{
    m_logger.m_submitClicked = isType("submit"_L1);
    const ObjectList withState = stateIfAny();
    return recordOnce(withState.isEmpty() ? "clickButton" : "mouseClick", withState);
}

bool EventLogger::UserEvent::chooseOption()
{
    m_logger.noteOptionChoice();
    return selectValue();
}

bool EventLogger::UserEvent::leaveUnknown()
{
    m_logger.flushRecordedTextInput();
    return false;
}

/// Records only what the press has not: submits from the keyboard, and widgets that react to the click.
bool EventLogger::UserEvent::click()
{
    using namespace TypeGroups;
    m_logger.flushRecordedTextInput();
    if (isType("kiwi_more_menu"_L1))
        return record("activateItem", {textOf("itemText"_L1)});
    const bool pressTold = isIn(textLike) || isIn(menuItem) || isIn(dateChooser) || isIn(buttonLike)
        || isIn(selectLike) || isIn(linkLike);
    if (has("clickHandler"_L1) && !pressTold) {
        PROBELOG_TRACE("WebEventCompression",
            message(u"Recording a mouseClick due to seeing a clickHandler for: %1", m_object));
        return recordOnce("mouseClick", stateIfAny());
    }
    if (isType("submit"_L1))
        return recordOnce("clickButton", {});
    return true;
}

bool EventLogger::UserEvent::doubleClick()
{
    m_logger.noteDoubleClick(m_object, m_data);
    return record("doubleClick", point());
}

bool EventLogger::UserEvent::key()
{
    m_logger.noteKeyUp(m_object);
    if (isIn(TypeGroups::textLike)) {
        if (member("keyCode"_L1) == "13"_L1)
            takeReturn();
        else
            takeValue();
    }
    m_logger.m_submitClicked = false;
    return true;
}

/// Kept as is: in a text area too, the key counts as a Return of its own until the next key.
void EventLogger::UserEvent::takeReturn() const
{
    m_logger.flushRecordedTextInput();
    // The Return belongs to the click on the submit button.
    if (!m_logger.m_submitClicked)
        keepText(u"<Return>"_s);
}

/// The text is the whole value of the field after the latest key, so that corrections need no care.
void EventLogger::UserEvent::takeValue() const
{
    if (m_logger.m_pendingTextInput->objectName != m_object)
        m_logger.flushRecordedTextInput();
    // A late event of an older state of the field must not replace newer text. Kept as is: midnight makes a
    // key look late as well.
    const QTime pendingTime = m_logger.m_pendingTextInput->timestamp;
    if (pendingTime.isValid() && m_time < pendingTime)
        return;
    keepText(printable(member("value"_L1)));
}

bool EventLogger::UserEvent::change()
{
    m_logger.flushRecordedTextInput();
    if (isIn(TypeGroups::selectLike))
        return selectValue();
    if (isIn(TypeGroups::file))
        return record("setText", {textOf("value"_L1)});
    return true;
}

bool EventLogger::UserEvent::unload()
{
    m_logger.flushRecordedTextInput();
    return record("closeWindow");
}

bool EventLogger::UserEvent::chooseColor()
{
    const QString color = member("colorFieldValue"_L1);
    const QString target = has("colorFieldName"_L1) ? otherObject("colorFieldName"_L1) : m_object;
    const EventData last = m_logger.lastRecordedEventData();
    if (last.kind() == EventData::MethodCall && last.methodName() == "chooseColor"_L1
        && last.objectId() == target && last.argument(0) && last.argument(0)->toQString() == color) {
        return true;
    }
    return recordFor(target, "chooseColor", {text(color)});
}

void EventLogger::flushRecordedTextInput()
{
    // Taken out first, so that a call from inside cannot record it twice.
    const PendingTextInput typed = std::exchange(*m_pendingTextInput, {});
    if (typed.objectName.isEmpty())
        return;
    recordMethodCall(typed.objectName, typed.type == "file"_L1 ? "setText" : "typeText", {text(typed.text)},
        &typed.timestamp);
}

} // namespace Ostrel::WebWrapper
