#include "host/script/replay.h"

#include "host/browser/browserpage.h"
#include "host/input/pageinput.h"
#include "host/script/lookup.h"
#include "host/script/vocabulary.h"
#include "host/script/windowlist.h"
#include "ostrelhook/inspector.h"
#include "ostrelhook/objectname.h"
#include "wrappers/web/controls/customcontrols.h"
#include "wrappers/web/controls/menustabscalendars.h"
#include "wrappers/web/controls/table.h"
#include "wrappers/web/formelements.h"
#include "wrappers/web/objectfactory.h"
#include "wrappers/web/replay.h"
#include "wrappers/web/sharedfunctions.h"
#include "wrappers/web/toolkits/backbase.h"

#include <QDate>
#include <QFileInfo>
#include <QHash>
#include <QPointer>

#include <memory>
#include <optional>
#include <utility>

namespace Ostrel::Host {

using namespace Qt::StringLiterals;
using namespace WebWrapper;

namespace {

using Done = FunctionCallResult<void>;

/// What stands for the window itself in the names of recorded statements.
constexpr auto windowName = "[Window]"_L1;

/// The arguments of a statement behind its subject, by the names of their parameters.
class Arguments
{
public:
    Arguments(const QStringList &parameters, const ObjectList &values)
    {
        for (qsizetype i = 0; i < parameters.size(); ++i)
            m_values.insert(parameters.at(i), values.value(i));
    }

    bool has(const QString &name) const { return m_values.contains(name); }
    /// 0 for what is not given.
    int number(const QString &name) const
    {
        const SharedPtr<Object> value = m_values.value(name);
        return value ? value->toInt() : 0;
    }
    QString text() const { return m_values.value(u"text"_s)->toQString(); }
    SharedPtr<Object> value(const QString &name) const { return m_values.value(name); }

private:
    QHash<QString, SharedPtr<Object>> m_values;
};

/// What a statement acts on.
struct Target
{
    SharedPtr<Object> object;
    HTML_Object *element;
    BrowserPage *page;
};

template <ScriptClass C>
bool isA(const Target &target)
{
    return target.object->objectClass()->inherits(
        Inspector::self()->findClass(QString::fromLatin1(C::ScriptName)));
}

SharedPtr<Object> number(int value)
{
    return Inspector::self()->createPrimitive(value);
}

template <typename T>
Done outcome(const FunctionCallResult<T> &result)
{
    if (result.failed())
        return Failure(result.error);
    return {};
}

/// Calls a method by which a class takes a statement. A method that tells whether there was such an item
/// fails when it says no.
Done callMember(const Target &target, const QString &name, const ObjectList &arguments)
{
    Class *type = target.object->objectClass();
    const FunctionCallResult<Method *> method = type->resolve(name, arguments);
    if (method.failed())
        return Failure(method.error);
    const SharedPtr<Object> result = type->call(target.object, arguments, method.value);
    Inspector *inspector = Inspector::self();
    if (inspector->hasError())
        return Failure(inspector->takeError());
    const bool refused = result && std::holds_alternative<bool>(result->primitive()) && !result->toBool();
    if (refused)
        return Failure(u"There is no item '%1'."_s.arg(arguments.first()->toQString()));
    return {};
}

// Clicks

Done mouseClick(const Target &target, const Arguments &arguments)
{
    const int state = arguments.number(u"state"_s);
    const int x = arguments.number(u"x"_s);
    const int y = arguments.number(u"y"_s);
    constexpr int leftButton = 1;
    // A link's own click knows no modifiers.
    if (state != 0 && isA<HTML_Anchor>(target))
        return target.element->HTML_Object::click(state, x, y, leftButton);
    return target.element->click(state, x, y, leftButton);
}

Done doubleClick(const Target &target, const Arguments &arguments)
{
    return target.element->doubleClick(0, arguments.number(u"x"_s), arguments.number(u"y"_s));
}

Done nativeMouseClick(const Target &target, const Arguments &arguments)
{
    const auto button = MouseButton::Value(arguments.number(u"button"_s));
    if (button != MouseButton::Primary && button != MouseButton::Left && button != MouseButton::Right
        && button != MouseButton::Middle)
        return Failure(u"There is no mouse button %1."_s.arg(int(button)));
    const FunctionCallResult<QRect> rect = getScreenRect(target.element, true);
    if (rect.failed())
        return Failure(rect.error);
    if (!rect.value.isValid())
        return Failure(u"It cannot be seen, so that the pointer cannot reach it."_s);
    const PageInput input(target.page);
    const FunctionCallResult<QPointF> corner = input.fromScreen(rect.value.x(), rect.value.y());
    if (corner.failed())
        return Failure(corner.error);
    const QPointF offset(arguments.number(u"x"_s), arguments.number(u"y"_s));
    return input.click(corner.value + offset, button);
}

// Keys and texts

Done focus(const Target &target, const Arguments &)
{
    if (isA<HTML_FormElement>(target))
        return static_cast<HTML_FormElement *>(target.element)->focus();
    return outcome(target.element->invoke("focus"));
}

Done typeKeys(const Target &target, const QString &keys)
{
    const FunctionCallResult<QList<KeyStroke>> strokes = keyStrokes(keys);
    if (strokes.failed())
        return Failure(strokes.error);
    const Done focused = focus(target, {{}, {}});
    if (focused.failed())
        return focused;
    return PageInput(target.page).type(strokes.value);
}

Done nativeType(const Target &target, const Arguments &arguments)
{
    return typeKeys(target, arguments.text());
}

/// Whether keys change the field as they would change a line of text. Others, such as those for dates, have
/// parts of their own that the keys go to.
bool takesPlainKeys(const QString &type)
{
    static const QStringList types{u"text"_s, u"textarea"_s, u"email"_s, u"number"_s, u"url"_s, u"tel"_s,
        u"password"_s, u"search"_s, QString()};
    return types.contains(type);
}

Done checkWritable(const HTML_TextBase &field)
{
    const FunctionCallResult<QString> readOnly = field.property("readOnly");
    if (readOnly.failed())
        return Failure(readOnly.error);
    if (readOnly.value == "true"_L1)
        return Failure(u"The field is read-only."_s);
    return {};
}

/// Replaces the text of a field key by key, so that the page sees all that it would see of a user.
Done retype(const Target &target, HTML_TextBase &field, const QString &text)
{
    const Done writable = checkWritable(field);
    if (writable.failed())
        return writable;
    const Done focused = field.focus();
    if (focused.failed())
        return focused;
    const Done selected = field.selectAll();
    if (selected.failed())
        return selected;
    const PageInput input(target.page);
    if (text.isEmpty())
        return input.type(keyStrokes(u"<Delete>"_s).value);
    return input.type(textStrokes(text));
}

/// The element as a field with a value, such as a date, that has no class of its own; null for others.
std::unique_ptr<HTML_TextBase> plainField(const Target &target)
{
    if (QLatin1StringView(target.element->className()) != QLatin1StringView(HTML_Object::ScriptName))
        return {};
    const FunctionCallResult<QString> tagName = target.element->tagName();
    if (tagName.failed() || tagName.value != "INPUT"_L1)
        return {};
    return std::make_unique<HTML_Text>(QString(), target.element->jsReference(), target.page);
}

/// Sets the value of a field that is no line of text and tells the page as a user's choice would. Browsers
/// refuse what is no date, number or colour without a word, so that the value is read back.
Done setValue(HTML_TextBase &field, const QString &text)
{
    const FunctionCallResult<QString> before = field.value();
    if (before.failed())
        return Failure(before.error);
    const Done focused = field.focus();
    if (focused.failed())
        return focused;
    const Done set = field.setProperty("value", text.toUtf8().constData());
    if (set.failed())
        return set;
    const FunctionCallResult<QString> value = field.value();
    if (value.failed())
        return Failure(value.error);
    if (value.value.compare(text, Qt::CaseInsensitive) != 0) {
        const Done restored = field.setProperty("value", before.value.toUtf8().constData());
        if (restored.failed())
            return restored;
        return Failure(u"The field does not take '%1'."_s.arg(text));
    }
    const HTMLComponent::EvalResult told = field.component()->evaluateJavaScript(
        u"%1.dispatchEvent(new Event('input', { bubbles: true, composed: true })); "
        "__ostrel__sendChangeEvent( %1 );"_s.arg(field.jsReference()),
        0);
    if (told.failed)
        return Failure(told.result);
    return {};
}

Done setText(const Target &target, const Arguments &arguments)
{
    QString text = arguments.text();
    if (const std::unique_ptr<HTML_TextBase> field = plainField(target))
        return setValue(*field, text);
    if (auto *field = dynamic_cast<HTML_TextBase *>(target.element)) {
        // All that a page tells of a chosen file is its name, in a folder that does not exist.
        constexpr auto noFolder = "C:\\fakepath\\"_L1;
        if (text.startsWith(noFolder))
            text = QFileInfo(text.mid(noFolder.size())).absoluteFilePath();
        return field->setValue(text);
    }
    return callMember(target, u"setValue"_s, {Inspector::self()->createPrimitive(text)});
}

/// Types into what is no field: the text replaces that of an editable region and goes to the keys' handlers
/// of anything else.
Done typeIntoElement(const Target &target, const QString &text)
{
    const FunctionCallResult<QString> isEditable = target.element->property("isContentEditable");
    if (isEditable.failed())
        return Failure(isEditable.error);
    const Done focused = focus(target, {{}, {}});
    if (focused.failed())
        return focused;
    QList<KeyStroke> strokes;
    if (isEditable.value == "true"_L1)
        strokes = keyStrokes(text.isEmpty() ? u"<Ctrl+A><Delete>"_s : u"<Ctrl+A>"_s).value;
    return PageInput(target.page).type(strokes + textStrokes(text));
}

Done typeText(const Target &target, const Arguments &arguments)
{
    constexpr auto returnKey = "<Return>"_L1;
    const QString text = arguments.text();
    // What a Return key does, such as submitting a form, a browser does for true keys only.
    if (text == returnKey)
        return typeKeys(target, text);
    if (auto *spinner = dynamic_cast<HTML_BackBaseSpinner *>(target.element))
        return spinner->setValue(text.toInt());
    if (auto *field = dynamic_cast<HTML_TextBase *>(target.element)) {
        const FunctionCallResult<QString> type = field->type();
        if (type.failed())
            return Failure(type.error);
        return takesPlainKeys(type.value) ? retype(target, *field, text) : setText(target, arguments);
    }
    if (dynamic_cast<HTML_CustomText *>(target.element) || plainField(target))
        return setText(target, arguments);
    return typeIntoElement(target, text);
}

// Choices

Done selectOption(const Target &target, const Arguments &arguments)
{
    return outcome(sharedSelectOptionByObjectFn()->call({target.object, arguments.value(u"text"_s)}));
}

Done chooseDate(const Target &target, const Arguments &arguments)
{
    const QString text = arguments.value(u"date"_s)->toQString();
    const QDate date = QDate::fromString(text, Qt::ISODate);
    if (!date.isValid())
        return Failure(u"'%1' is no date of the form yyyy-MM-dd."_s.arg(text));
    if (const std::unique_ptr<HTML_TextBase> field = plainField(target)) {
        const Done writable = checkWritable(*field);
        return writable.failed() ? writable : setValue(*field, date.toString(Qt::ISODate));
    }
    return callMember(target, u"setDate"_s, {wrapDateTime(date.startOfDay())});
}

Done chooseColor(const Target &target, const Arguments &arguments)
{
    if (plainField(target))
        return setText(target, arguments);
    return callMember(target, u"setRgbColor"_s, {arguments.value(u"text"_s)});
}

// Items

Done clickMenuItem(HTML_Menu &menu, const QString &text, int state)
{
    const FunctionCallResult<HTML_MenuItem *> found = menu.findItemByText(text);
    if (found.failed())
        return Failure(found.error);
    const std::unique_ptr<HTML_MenuItem> item(found.value);
    if (!item)
        return Failure(u"There is no item '%1'."_s.arg(text));
    return item->click(state, 0, 0, 1);
}

Done clickCell(const HTML_Table &table, int row, int column, int state)
{
    const FunctionCallResult<HTML_Object *> found = table.cellAt(row, column);
    if (found.failed())
        return Failure(found.error);
    const std::unique_ptr<HTML_Object> cell(found.value);
    return cell->click(state, 0, 0, 1);
}

Done clickItem(const Target &target, const Arguments &arguments)
{
    const int state = arguments.number(u"state"_s);
    if (arguments.has(u"row"_s)) {
        if (const auto *table = dynamic_cast<HTML_Table *>(target.element)) {
            return clickCell(*table, arguments.number(u"row"_s), arguments.number(u"column"_s), state);
        }
        return callMember(
            target, u"clickItem"_s, {arguments.value(u"row"_s), arguments.value(u"column"_s), number(state)});
    }
    if (auto *menu = dynamic_cast<HTML_Menu *>(target.element))
        return clickMenuItem(*menu, arguments.text(), state);
    return callMember(target, u"clickItem"_s, {arguments.value(u"text"_s), number(state)});
}

/// A statement that a class takes by a method with the one argument.
template <const char16_t *method>
Done byMember(const Target &target, const Arguments &arguments)
{
    return callMember(target, QString::fromUtf16(method), {arguments.value(u"text"_s)});
}

constexpr char16_t checkTreeItemMethod[] = u"checkTreeItem";
constexpr char16_t clickHandleMethod[] = u"clickHandle";
constexpr char16_t clickTabMethod[] = u"clickTab";
constexpr char16_t activateItemMethod[] = u"activateItem";

struct StatementAction
{
    QLatin1StringView name;
    Done (*perform)(const Target &target, const Arguments &arguments);
};

/// How each statement on an object is carried out.
constexpr StatementAction actions[] = {
    {"mouseClick"_L1, mouseClick},
    {"clickButton"_L1, mouseClick},
    {"toggleExpandable"_L1, mouseClick},
    {"doubleClick"_L1, doubleClick},
    {"nativeMouseClick"_L1, nativeMouseClick},
    {"setFocus"_L1, focus},
    {"typeText"_L1, typeText},
    {"setText"_L1, setText},
    {"selectOption"_L1, selectOption},
    {"chooseDate"_L1, chooseDate},
    {"chooseColor"_L1, chooseColor},
    {"clickItem"_L1, clickItem},
    {"checkTreeItem"_L1, byMember<checkTreeItemMethod>},
    {"clickTreeHandle"_L1, byMember<clickHandleMethod>},
    {"clickTab"_L1, byMember<clickTabMethod>},
    {"activateItem"_L1, byMember<activateItemMethod>},
    {"nativeType"_L1, nativeType},
};

const StatementAction *findAction(const QString &name)
{
    for (const StatementAction &action : actions) {
        if (action.name == name)
            return &action;
    }
    return nullptr;
}

/// Beyond the statements of recordings.
const QString nativeTypeName = u"nativeType"_s;
const QString closeWindowName = u"closeWindow"_s;

/// The true pointer takes the focus along.
bool movesFocusItself(const QString &statement)
{
    return statement == "nativeMouseClick"_L1;
}

bool isTyping(const QString &statement)
{
    return statement == "typeText"_L1 || statement == "nativeType"_L1;
}

/// Whether a name asks for an object that counts as invisible. Who recorded it has acted on it all the same,
/// such as on an area of an image, so that there is nothing to wait for.
bool namesInvisible(const QString &name)
{
    const FunctionCallResult<ObjectName> parsed = ObjectName::parse(ObjectMap::self()->realName(name));
    return !parsed.failed() && parsed.value.property(u"visible"_s).stringValue() == "false"_L1;
}

bool isArea(HTML_Object *element)
{
    return dynamic_cast<HTML_Anchor *>(element) && element->tagName().value == "AREA"_L1;
}

bool isUsableUploadField(HTML_Object *element)
{
    const auto *field = dynamic_cast<HTML_TextBase *>(element);
    return field && field->type().value == "file"_L1 && !field->disabled().value;
}

/// Whether there is nothing to wait for: an object is ready, or counts as invisible and yet is used. An area
/// of an image has no box of its own, and pages show a button of their own in the place of an upload field.
bool isUsableNow(HTML_Object *element)
{
    if (!element || !element->hasValidReference())
        return false;
    const FunctionCallResult<bool> ready = isObjectReady(element);
    return !ready.failed() && (ready.value || isArea(element) || isUsableUploadField(element));
}

QString typeOf(const QString &parameter)
{
    static const QStringList texts{u"text"_s, u"date"_s, u"name"_s};
    return texts.contains(parameter) ? u"String"_s : u"int"_s;
}

Argument parameterNamed(const QString &name, const QString &typeName)
{
    const bool isNumber = typeName == "int"_L1;
    return Argument(
        name, typeName, isNumber ? ObjectAttribute::Value() : ObjectAttribute::Pointer(), nullptr);
}

QString shownSubject(const SharedPtr<Object> &subject)
{
    if (!subject)
        return u"null"_s;
    if (subject->isPrimitive())
        return subject->toQString();
    return u"%1 %2"_s.arg(subject->objectClass()->name(), subject->toQString());
}

} // namespace

/// The page acts on a click by a timer of its own, which a busy machine runs late. A timer that is set now
/// comes behind it; that of a page which plays with the clock may not come at all.
void runTimers(BrowserPage *page)
{
    constexpr int patienceMs = 1000;
    if (page->openDialog())
        return;
    const QString behindTheOthers
        = u"new Promise(function (done) { if (/\\[native code\\]/.test(setTimeout)) { setTimeout(done, 0); }"
          " else { done(); } })"_s;
    static_cast<void>(page->call(u"Runtime.evaluate"_s,
        {{u"expression"_s, behindTheOthers}, {u"awaitPromise"_s, true}, {u"returnByValue"_s, true}},
        patienceMs));
}

void settle(BrowserPage *page)
{
    // A page that never ends to load, such as one that waits for its server for ever, is used by then, too.
    constexpr int patienceMs = 10000;
    runTimers(page);
    if (!page->openDialog())
        page->waitUntilLoaded(patienceMs);
}

Replay::Replay(WindowList *windows, Lookup *lookup) : m_windows(windows), m_lookup(lookup)
{
    connect(windows, &WindowList::activated, this, [this](BrowserPage *page) { m_current = page; });
    for (const Statement &statement : vocabulary()) {
        const QString name = QString::fromLatin1(statement.name);
        if (!findAction(name) && name != closeWindowName)
            continue;
        for (const QStringList &parameters : parameterLists(statement)) {
            addStatement(name, parameters.mid(1), true);
            addStatement(name, parameters.mid(1), false);
        }
    }
    addStatement(nativeTypeName, {u"text"_s}, true);
    addStatement(nativeTypeName, {u"text"_s}, false);
}

void Replay::addStatement(const QString &name, const QStringList &parameters, bool byName)
{
    QList<Argument> signature{
        byName ? parameterNamed(u"name"_s, u"String"_s) : parameterNamed(u"object"_s, u"HTML_Object"_s)};
    for (const QString &parameter : parameters)
        signature.append(parameterNamed(parameter, typeOf(parameter)));
    m_functions.add(std::make_unique<GlobalMethod>(name, Signature(signature),
        Argument(u"void"_s, ObjectAttribute::Value()),
        [this, name, parameters](const ObjectList &arguments) -> FunctionCallResult<SharedPtr<Object>> {
            const Done done = perform(name, parameters, arguments);
            if (done.failed()) {
                return Failure(u"%1: %2: %3"_s.arg(name, shownSubject(arguments.value(0)), done.error));
            }
            return Inspector::self()->createVoid();
        }));
}

Replay::Done Replay::perform(
    const QString &statement, const QStringList &parameters, const ObjectList &arguments)
{
    const SharedPtr<Object> subject = arguments.value(0);
    if (statement == closeWindowName)
        return closeWindow(subject);
    const FunctionCallResult<SharedPtr<Object>> object = readyObject(subject);
    if (object.failed())
        return Failure(object.error);
    HTML_Object *element = retrieveObject(object.value);
    const QPointer<BrowserPage> page(dynamic_cast<BrowserPage *>(element->component()));
    if (!page)
        return Failure(u"The object belongs to no page of this session."_s);
    m_windows->activate(page);
    m_current = page;
    if (movesFocusItself(statement))
        m_typedField.clear();
    leaveTypedField(page, element->jsReference());
    const QString reference = element->jsReference();
    std::optional<Dialog> unanswered;
    QObject watch;
    connect(page, &BrowserPage::dialogOpened, &watch, [&](const Dialog &dialog) {
        if (page->openDialog())
            unanswered = dialog;
    });
    const Done done = findAction(statement)->perform(
        {object.value, element, page}, Arguments(parameters, arguments.mid(1)));
    if (!page)
        return done;
    if (isTyping(statement) && !done.failed()) {
        m_typedField = reference;
        m_typedPage = page;
    }
    settle(page);
    // Handlers that take their time may be at work still, and open a dialog in the end. The page answers when
    // they are done; the question dismisses what is open.
    static_cast<void>(page->evaluateJavaScript(u"1"_s, 0));
    if (unanswered && !done.failed())
        return Failure(u"It opened %1, which nobody answers."_s.arg(describeDialog(*unanswered)));
    return done;
}

// A user who turns to another element takes the focus there, or away, and by that the field tells its change.
// The page's own ways to act on links and choices leave the focus where it is.
void Replay::leaveTypedField(BrowserPage *page, const QString &reference)
{
    const QString field = std::exchange(m_typedField, QString());
    if (field.isEmpty() || field == reference || page != m_typedPage)
        return;
    static_cast<void>(page->evaluateJavaScript(
        u"(function(field, target) { function hasFocus() { return field.getRootNode().activeElement === "
        u"field; }"
        " try { if (hasFocus()) { target.focus(); if (hasFocus()) { field.blur(); } } } catch (e) {} }(%1, %2));"_s
            .arg(field, reference),
        0));
}

FunctionCallResult<SharedPtr<Object>> Replay::readyObject(const SharedPtr<Object> &subject)
{
    if (!subject || subject->isNull())
        return Failure(u"There is no object."_s);
    if (subject->isPrimitive()) {
        const QString name = subject->toQString();
        return namesInvisible(name) ? m_lookup->waitUntilThere(name) : m_lookup->waitUntilReady(name);
    }
    if (isUsableNow(retrieveObject(subject)))
        return subject;
    const Done ready = m_lookup->waitUntilReady(subject);
    if (ready.failed())
        return Failure(ready.error);
    return subject;
}

Replay::Done Replay::closeWindow(const SharedPtr<Object> &subject)
{
    if (!subject || subject->isNull())
        return Failure(u"There is no object."_s);
    BrowserPage *page = nullptr;
    if (!subject->isPrimitive()) {
        page = dynamic_cast<BrowserPage *>(retrieveObject(subject)->component());
    } else if (subject->toQString() == windowName) {
        // A window that has closed by itself, as a user saw it do, must not take another one with it.
        page = m_windows->active();
        if (m_current && m_current != page && !m_windows->pages().contains(m_current))
            return {};
    } else {
        page = m_windows->pageOf(ContextName::parse(subject->toQString()));
    }
    if (!page)
        return Failure(u"There is no such window."_s);
    return page->close();
}

} // namespace Ostrel::Host
