#include "wrappers/web/webobject.h"

#include "wrappers/web/csspropertynames.h"
#include "wrappers/web/evaluateasjson.h"
#include "wrappers/web/gentlesleep.h"
#include "wrappers/web/liveobjects.h"
#include "wrappers/web/objectfactory.h"
#include "wrappers/web/pagevalues.h"
#include "wrappers/web/scripttext.h"
#include "wrappers/web/wrapperconfig.h"

#include <array>
#include <cstdio>

namespace Ostrel::WebWrapper {

using namespace Qt::StringLiterals;

namespace {

constexpr auto invalidReference = "undefined"_L1;

/// Milliseconds that an action deferred by 100 ms needs to have happened.
constexpr int deferredActionWait = 200;

/// The limit of a single property read in a browser of kind 2, in milliseconds.
constexpr int slowBrowserType = 2;
constexpr unsigned int slowBrowserReadLimit = 5000;

enum class Getter { PropertyValue, ElementRect, Call };

struct ReadableProperty
{
    const char16_t *name;
    Getter getter;
    /// What is read: a property path, a side of the rectangle or a whole expression.
    const char16_t *source;
};

/// In the order of PropertyId.
constexpr std::array readableProperties{
    ReadableProperty{u"id", Getter::PropertyValue, u"id"},
    ReadableProperty{u"innerText", Getter::PropertyValue, u"innerText"},
    ReadableProperty{u"innerHTML", Getter::PropertyValue, u"innerHTML"},
    ReadableProperty{u"x", Getter::ElementRect, u"x"},
    ReadableProperty{u"y", Getter::ElementRect, u"y"},
    ReadableProperty{u"width", Getter::ElementRect, u"width"},
    ReadableProperty{u"height", Getter::ElementRect, u"height"},
    ReadableProperty{u"tagName", Getter::PropertyValue, u"tagName"},
    ReadableProperty{u"title", Getter::PropertyValue, u"title"},
    ReadableProperty{u"styleDisplay", Getter::PropertyValue, u"style.display"},
    ReadableProperty{u"domClassName", Getter::PropertyValue, u"className"},
    ReadableProperty{u"domPath", Getter::Call, u"__ostrel__qualifiedName( %1 ).replace(/\\s*$/, '')"},
    ReadableProperty{u"numChildren", Getter::Call, u"__ostrelDOMAPI.numChildren( %1 )"},
    ReadableProperty{u"visible", Getter::Call, u"__ostrel__isVisible( %1 )"},
    ReadableProperty{
        u"simplifiedInnerText", Getter::Call, u"window.top.__ostrel.getSimplifiedInnerText( %1 )"},
    ReadableProperty{u"selectedText", Getter::Call, u"window.top.__ostrel.getSelectedText( %1 )"},
};

bool isIdentifierStart(char32_t c)
{
    return QChar::isLetter(c) || c == U'_' || c == U'$';
}

bool isIdentifierPart(char32_t c)
{
    constexpr char32_t zeroWidthJoiner = 0x200D;
    return isIdentifierStart(c) || QChar::isDigit(c) || QChar::isMark(c) || c == zeroWidthJoiner;
}

/// Whether a property may be written behind a dot.
bool isIdentifier(const QString &name)
{
    const QList<uint> characters = name.toUcs4();
    return !characters.isEmpty() && isIdentifierStart(characters.first())
        && std::all_of(characters.begin(), characters.end(), isIdentifierPart);
}

FunctionCallResult<QRect> rectangleFromPage(const QString &function, const HTML_Object *obj)
{
    if (!obj)
        return Failure(u"Invalid Result Object"_s);
    if (!obj->component())
        return Failure(u"HTML object has no component, cannot obtain rectangle"_s);

    const HTMLComponent::EvalResult answer = obj->component()->evaluateJavaScript(
        script(u"__ostrel__getRectAsString(%1(%2) );", Expr{function}, Expr{obj->jsReference()}), 0);
    if (answer.failed || answer.threw) {
        return Failure(
            message(u"Error while obtaining rectangle with function '%1': %2", function, answer.result));
    }
    const QStringList parts = answer.result.split(u',', Qt::SkipEmptyParts);
    if (parts.size() < 4)
        return Failure(message(u"Rectangle string '%1' obtained has invalid format.", answer.result));
    return QRect(parts[0].toInt(), parts[1].toInt(), parts[2].toInt(), parts[3].toInt());
}

} // namespace

HTML_Object::HTML_Object(const QString &name, const QString &reference, HTMLComponent *component)
    : m_nameCache(name), m_reference(reference), m_component(component)
{
    LiveObjects::self().objects.insert(this);
}

// Kept as is: copies stay out of the registry, so that invalidation does not reach them.
HTML_Object::HTML_Object(const HTML_Object &other) = default;
HTML_Object &HTML_Object::operator=(const HTML_Object &other) = default;

HTML_Object::~HTML_Object()
{
    LiveObjects::self().objects.remove(this);
}

bool HTML_Object::hasValidReference() const
{
    return m_reference != invalidReference;
}

void HTML_Object::invalidate()
{
    m_reference = invalidReference;
}

HTMLComponent::EvalResult HTML_Object::evaluateJS(const QString &script) const
{
    return m_component->evaluateJavaScript(script, 0);
}

template <typename T>
FunctionCallResult<T> HTML_Object::read(const QString &expression, QStringView error) const
{
    const FunctionCallResult<Json::Value> json = evaluateAsJson(m_component, expression, 0);
    if (json.failed())
        return Failure(message(error, json.error));
    FunctionCallResult<T> value = fromJson<T>(json.value);
    if (value.failed())
        return Failure(message(error, value.error));
    return value;
}

FunctionCallResult<Json::Value> HTML_Object::readJson(const QString &expression) const
{
    return evaluateAsJson(m_component, expression, 0);
}

FunctionCallResult<bool> HTML_Object::flag(const char *name) const
{
    const FunctionCallResult<QString> text = property(name);
    if (text.failed())
        return Failure(text.error);
    return text.value.toLower() == "true"_L1;
}

template FunctionCallResult<QString> HTML_Object::read(const QString &, QStringView) const;
template FunctionCallResult<std::vector<int>> HTML_Object::read(const QString &, QStringView) const;
template FunctionCallResult<std::vector<std::string>> HTML_Object::read(const QString &, QStringView) const;

FunctionCallResult<HTML_Object *> HTML_Object::evaluateObject(const QString &expression) const
{
    return htmlObjectFromJavaScriptResult(m_component, expression, {}, 0);
}

// Properties

FunctionCallResult<HTML_Object::PropertyId> HTML_Object::parsePropertyIdString(const QString &name)
{
    for (std::size_t i = 0; i < readableProperties.size(); ++i) {
        if (name == QStringView(readableProperties[i].name))
            return PropertyId(i);
    }
    return Failure(message(u"Unknown property name '%1', cannot convert to enum.", name));
}

bool HTML_Object::isJavaScriptPropertyReadSupported(const QString &name)
{
    return !parsePropertyIdString(name).failed();
}

QString HTML_Object::propertyGetterCode(PropertyId id) const
{
    const int index = id;
    if (index < 0 || index >= int(readableProperties.size())) {
        std::fprintf(stderr, "Unknown property name passed to propertyGetterCode: %d\n", index);
        return {};
    }
    const ReadableProperty &property = readableProperties[std::size_t(index)];
    const QString source = QString::fromUtf16(property.source);
    switch (property.getter) {
    case Getter::PropertyValue:
        return script(
            u"window.top.__ostrel.getPropertyValue( %1, '%2' ).replace(/\\s*$/, '')", ref(), Expr{source});
    case Getter::ElementRect:
        return script(u"window.top.__ostrel.getElementRectAsObject( %1 ).%2", ref(), Expr{source});
    case Getter::Call:
        return script(source, ref());
    }
    return {};
}

template <typename T>
FunctionCallResult<T> HTML_Object::readProperty(PropertyId property, QStringView error) const
{
    return read<T>(propertyGetterCode(property), error);
}

FunctionCallResult<QString> HTML_Object::id() const
{
    return readProperty<QString>(Id, u"Error retrieving id: %1");
}

FunctionCallResult<QString> HTML_Object::innerText() const
{
    return readProperty<QString>(InnerText, u"Error retrieving innerText: %1");
}

FunctionCallResult<QString> HTML_Object::innerHTML() const
{
    return readProperty<QString>(InnerHtml, u"Error retrieving innerHTML: %1");
}

FunctionCallResult<int> HTML_Object::x() const
{
    return readProperty<int>(X, u"Error retrieving x: %1");
}

FunctionCallResult<int> HTML_Object::y() const
{
    return readProperty<int>(Y, u"Error retrieving y: %1");
}

FunctionCallResult<int> HTML_Object::width() const
{
    return readProperty<int>(Width, u"Error retrieving width: %1");
}

FunctionCallResult<int> HTML_Object::height() const
{
    return readProperty<int>(Height, u"Error retrieving height: %1");
}

FunctionCallResult<QString> HTML_Object::tagName() const
{
    return readProperty<QString>(TagName, u"Error retrieving tagName: %1");
}

FunctionCallResult<QString> HTML_Object::title() const
{
    return readProperty<QString>(Title, u"Error retrieving title: %1");
}

FunctionCallResult<QString> HTML_Object::styleDisplay() const
{
    return readProperty<QString>(StyleDisplay, u"Error retrieving styleDisplay: %1");
}

FunctionCallResult<QString> HTML_Object::domClassName() const
{
    return readProperty<QString>(DomClassName, u"Error retrieving domClassName: %1");
}

FunctionCallResult<QString> HTML_Object::hierarchicalQualifiedName() const
{
    return readProperty<QString>(DomPath, u"Error while generating hierarchical name: %1");
}

FunctionCallResult<int> HTML_Object::numChildren() const
{
    return readProperty<int>(NumChildren, u"Error retrieving numChildren: %1");
}

FunctionCallResult<QString> HTML_Object::simplifiedInnerText() const
{
    return readProperty<QString>(SimplifiedInnerText, u"Error retrieving simplifiedInnerText: %1");
}

FunctionCallResult<QString> HTML_Object::styleVisibility() const
{
    return property("style.visibility");
}

FunctionCallResult<QString> HTML_Object::property(const char *name) const
{
    const unsigned int limit = m_component->browserType() == slowBrowserType ? slowBrowserReadLimit : 0;
    const HTMLComponent::EvalResult answer = m_component->evaluateJavaScript(
        script(u"window.top.__ostrel.getPropertyValue( %1, '%2');", ref(), Expr{QString::fromUtf8(name)}),
        limit);
    if (answer.failed || answer.threw) {
        return Failure(
            message(u"Error while obtaining property '%1': %2", QString::fromUtf8(name), answer.result));
    }
    return answer.result;
}

FunctionCallResult<void> HTML_Object::assign(
    const char *name, const QString &literal, const QString &shownValue)
{
    const QString property = QString::fromUtf8(name);
    const QString target = isIdentifier(property) ? script(u"%1.%2", ref(), Expr{property})
                                                  : script(u"%1['%2']", ref(), Expr{property});
    return run(script(u"%1=%2;", Expr{target}, Expr{literal}), u"Error setting property '%1' to value %2: %3",
        property, shownValue);
}

FunctionCallResult<void> HTML_Object::setProperty(const char *name, const char *value)
{
    const QString text = QString::fromUtf8(value);
    return assign(name, script(u"'%1'", Quoted{text}), u"'%1'"_s.arg(text));
}

FunctionCallResult<void> HTML_Object::setProperty(const char *name, int value)
{
    const QString number = QString::number(value);
    return assign(name, number, number);
}

FunctionCallResult<void> HTML_Object::setProperty(const char *name, bool value)
{
    const QString word = value ? u"true"_s : u"false"_s;
    return assign(name, word, word);
}

FunctionCallResult<QString> HTML_Object::invoke(const char *method)
{
    return evaluate(script(u"%1.%2();", ref(), Expr{QString::fromUtf8(method)}),
        u"Error invoking function '%1': %2", QString::fromUtf8(method));
}

FunctionCallResult<QString> HTML_Object::invoke(const char *method, const char *arg1)
{
    return invokeWith(method, {QString::fromUtf8(arg1)});
}

FunctionCallResult<QString> HTML_Object::invoke(const char *method, const char *arg1, const char *arg2)
{
    return invokeWith(method, {QString::fromUtf8(arg1), QString::fromUtf8(arg2)});
}

FunctionCallResult<QString> HTML_Object::invokeWith(const char *method, const QStringList &arguments)
{
    const QString call = message(u"%1(%2)", QString::fromUtf8(method), arguments.join(", "_L1));
    return evaluate(script(u"%1.%2;", ref(), Expr{call}), u"Error invoking function '%1': %2", call);
}

FunctionCallResult<bool> HTML_Object::visible() const
{
    constexpr QStringView error = u"Error determining visibility: %1";
    if (!m_component->config()->backwardsCompatibleVisiblePropertyForHTML_Object())
        return readProperty<bool>(Visible, error);
    const FunctionCallResult<QString> text = property("visible");
    if (text.failed())
        return Failure(message(error, text.error));
    return text.value == "true"_L1;
}

FunctionCallResult<bool> HTML_Object::hasFocus() const
{
    const FunctionCallResult<Json::Value> json
        = evaluateAsJson(m_component, script(u"window.top.__ostrel.hasFocus( %1 )", ref()), 0);
    if (json.failed())
        return Failure(message(u"Error obtaining focus state: %1", json.error));
    if (!json.value.isBool()) {
        return Failure(message(u"Error: Json object '%1' has unexpected type (expected bool): %2",
            QString::fromStdString(json.value.toStyledString()), QString::number(json.value.type())));
    }
    return json.value.asBool();
}

FunctionCallResult<QString> HTML_Object::name() const
{
    return nameFrom(script(u"__ostrel__uniqueNameInLeaf(%1);", ref()), u"Error obtaining name: %1");
}

FunctionCallResult<QString> HTML_Object::nameFrom(const QString &script, QStringView error) const
{
    if (!m_nameCache.isEmpty())
        return m_nameCache;
    FunctionCallResult<QString> name = evaluate(script, error);
    if (!name.failed())
        m_nameCache = name.value;
    return name;
}

FunctionCallResult<bool> HTML_Object::sameAs(HTML_Object *other) const
{
    if (other == this || (other && other->m_reference == m_reference))
        return true;
    if (!other)
        return false;
    const HTMLComponent::EvalResult answer
        = evaluateJS(script(u"%1 === %2", ref(), Expr{other->m_reference}));
    // Only this flag counts here: an answer whose other flag is set is compared like any text.
    if (answer.failed) {
        return Failure(message(u"Error comparing javascript reference '%1' to '%2': %3", m_reference,
            other->m_reference, answer.result));
    }
    return answer.result == "true"_L1;
}

// Navigation

FunctionCallResult<HTML_Object *> HTML_Object::firstChild() const
{
    return objectFrom(script(u"__ostrelDOMAPI.firstChild(%1);", ref()), u"Error obtaining first child: %1");
}

FunctionCallResult<HTML_Object *> HTML_Object::lastChild() const
{
    return objectFrom(script(u"__ostrelDOMAPI.lastChild(%1);", ref()), u"Error obtaining last child: %1");
}

FunctionCallResult<HTML_Object *> HTML_Object::nextSibling() const
{
    return objectFrom(script(u"__ostrelDOMAPI.nextSibling(%1);", ref()), u"Error obtaining next sibling: %1");
}

FunctionCallResult<HTML_Object *> HTML_Object::previousSibling() const
{
    return objectFrom(
        script(u"__ostrelDOMAPI.previousSibling(%1);", ref()), u"Error obtaining previous sibling: %1");
}

FunctionCallResult<HTML_Object *> HTML_Object::parentElement()
{
    return objectFrom(script(u"%1.parentNode;", ref()), u"Error obtaining parent element: %1");
}

FunctionCallResult<HTML_Object *> HTML_Object::shadowRoot() const
{
    return objectFrom(script(u"%1.shadowRoot;", ref()), u"Error obtaining shadow root element: %1");
}

// Helper objects in the page

FunctionCallResult<HTML_Style *> HTML_Object::style() const
{
    const QString variable = nextPageVariable();
    const FunctionCallResult<void> made
        = run(script(u"%1 = new __ostrel__styleInfo(%2); 'done';", Expr{variable}, ref()),
            u"Error obtaining style object: %1");
    if (made.failed())
        return Failure(made.error);
    return new HTML_Style(variable, m_component);
}

FunctionCallResult<HTML_XPathResult *> HTML_Object::evaluateXPath(const char *statement) const
{
    const QString variable = nextPageVariable();
    const QString text = QString::fromUtf8(statement);
    const FunctionCallResult<void> made
        = run(script(u"%1 = xpathDomEval( \"%2\", %3 );true;", Expr{variable}, DoubleQuoted{text}, ref()),
            u"Error evaluating xpath '%1': %2", text);
    if (made.failed())
        return Failure(made.error);
    return new HTML_XPathResult(variable, m_component);
}

FunctionCallResult<QMap<QString, Json::Value>> HTML_Object::cssProperties() const
{
    const QString names = message(u"['%1']", cssPropertyNames().join("', '"_L1));
    const FunctionCallResult<Json::Value> json
        = evaluateAsJson(m_component, script(u"__ostrel__allCSSProperties( %1, %2 )", ref(), Expr{names}), 0);
    if (json.failed())
        return Failure(message(u"Error obtaining CSS properties: %1", json.error));
    if (!json.value.isObject()) {
        return Failure(message(u"Unexpected type of json object for CSS properties, expected object got: %1",
            QString::fromStdString(json.value.toStyledString())));
    }
    QMap<QString, Json::Value> values;
    for (const std::string &name : json.value.getMemberNames())
        values.insert(QString::fromStdString(name), json.value[name]);
    return values;
}

// Geometry

FunctionCallResult<ScreenRectangle> HTML_Object::screenRect() const
{
    return m_component->getScreenRect(this, false);
}

FunctionCallResult<ScreenRectangle> HTML_Object::boundingClientRect() const
{
    const FunctionCallResult<QRect> rect = rectangleFromPage(u"__ostrel__getClientBoundingRect"_s, this);
    if (rect.failed())
        return Failure(rect.error);
    return ScreenRectangle{rect.value.x(), rect.value.y(), rect.value.width(), rect.value.height()};
}

FunctionCallResult<void> HTML_Object::scrollTo(bool top) const
{
    return run(script(u"__ostrel__scrollToElement(%1,%2);", ref(), top ? 1 : 0),
        u"Error while scrolling to element: %1");
}

FunctionCallResult<QRect> getScreenRect(const HTML_Object *obj, bool makeVisible)
{
    if (!obj)
        return Failure(u"No valid HTML object provided to getScreenRect function"_s);
    if (makeVisible) {
        const FunctionCallResult<void> scrolled = obj->scrollTo(true);
        if (scrolled.failed()) {
            return Failure(
                message(u"Error while making object visible to fetch screen rectangle: %1", scrolled.error));
        }
    }
    return rectangleFromPage(u"__ostrel__getScreenRectAsObject"_s, obj);
}

// Clicks

QString HTML_Object::clickScript(
    QStringView function, const char *reference, int modifier, int x, int y, int button)
{
    return deferred(script(u"%1(%2, %3, %4, %5, %6);", Expr{function.toString()},
        Expr{QString::fromUtf8(reference)}, modifierKeys(modifier), x, y, pressedButton(modifier, button)));
}

Expr HTML_Object::modifierKeys(int modifier)
{
    const bool control = modifier & ControlKey;
    const bool shift = modifier & ShiftKey;
    const bool alt = modifier & AltKey;
    return Expr{script(u"%1, %2, %3", control, shift, alt)};
}

int HTML_Object::pressedButton(int modifier, int button)
{
    constexpr int rightButton = 2;
    return modifier & RightButton ? rightButton : button;
}

QString HTML_Object::clickOn(const char *reference, int modifier, int x, int y, int button)
{
    return clickScript(u"__ostrel__click", reference, modifier, x, y, button);
}

QString HTML_Object::dblClickOn(const char *reference, int modifier, int x, int y)
{
    return clickScript(u"__ostrel__dblclick", reference, modifier, x, y, 1);
}

FunctionCallResult<void> HTML_Object::click(int modifier, int x, int y, int button)
{
    return runAndWait(clickOn(m_reference.toUtf8().constData(), modifier, x, y, button),
        u"Error occurred while clicking on object: %1");
}

FunctionCallResult<void> HTML_Object::doubleClick(int modifier, int x, int y)
{
    return runAndWait(dblClickOn(m_reference.toUtf8().constData(), modifier, x, y),
        u"Error occurred while double-clicking on object at relative position %1/%2 with modifier %3: %4",
        QString::number(x), QString::number(y), QString::number(modifier));
}

FunctionCallResult<void> HTML_Object::openContextMenu()
{
    return runAndWait(
        deferred(script(u"__ostrel__openContextMenu(%1);", ref())), u"Error opening context menu: %1");
}

void HTML_Object::waitForDeferredAction()
{
    gentleSleep(deferredActionWait);
}

} // namespace Ostrel::WebWrapper
