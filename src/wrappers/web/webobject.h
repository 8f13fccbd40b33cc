// HTML_Object: the native face of one node of a page. It keeps nothing of the node but an expression that
// finds it again; every operation composes script around that expression.
#pragma once

#include "ostrelhook/functioncallresult.h"
#include "ostrelhook/geometry.h"
#include "ostrelhook/scriptvalue.h"
#include "wrappers/web/composing.h"
#include "wrappers/web/export.h"
#include "wrappers/web/htmlcomponent.h"

#include <QMap>
#include <QRect>
#include <QString>

#include <json/value.h>

#include <concepts>

namespace Ostrel::WebWrapper {

class HTML_Style;
class HTML_XPathResult;

/// The modifier keys and the right button of a click, as bits.
enum ModifierState {
    AltKey = 1,
    ControlKey = 2,
    ShiftKey = 4,
    RightButton = 16,
    ControlAlt = 3,
    ShiftAlt = 5,
    ControlShift = 6,
};

/// The wrapper of a page element. Owned by whoever asked for it; through scripts, by the script object.
/// Operations do not throw; a failure is the text of the result. All run on the thread that drives the
/// bridge.
class PAGEPROBELIB_EXPORT HTML_Object
{
public:
    static constexpr char ScriptName[] = "HTML_Object";

    enum PropertyId : int {
        Id,
        InnerText,
        InnerHtml,
        X,
        Y,
        Width,
        Height,
        TagName,
        Title,
        StyleDisplay,
        DomClassName,
        DomPath,
        NumChildren,
        Visible,
        SimplifiedInnerText,
        SelectedText,
    };

    /// `name` is the name in the parent when it is known, else empty; `reference` a valid script expression.
    HTML_Object(const QString &name, const QString &reference, HTMLComponent *component);
    /// A copy is not registered: invalidation of a page does not reach it.
    HTML_Object(const HTML_Object &other);
    HTML_Object &operator=(const HTML_Object &other);

    // Virtual operations in the order that derived classes rely on.
    virtual ~HTML_Object();
    /// The literal name of the class, such as "HTML_Object".
    virtual const char *className() const { return ScriptName; }
    virtual FunctionCallResult<bool> visible() const;
    /// A new wrapper, owned by the caller; null where there is no parent.
    virtual FunctionCallResult<HTML_Object *> parentElement();
    /// `modifier` is a sum of ModifierState values; x and y are CSS pixels from the top left corner; `button`
    /// is 1 left, 2 right, 4 middle. The page gets the click 100 ms later; the call returns after 200 ms.
    virtual FunctionCallResult<void> click(int modifier, int x, int y, int button);
    virtual FunctionCallResult<void> doubleClick(int modifier, int x, int y);
    /// The name in the parent, asked of the page once.
    virtual FunctionCallResult<QString> name() const;
    virtual FunctionCallResult<bool> hasFocus() const;

    HTMLComponent *component() const { return m_component; }
    /// The script expression that evaluates to the element in the top window.
    const QString &jsReference() const { return m_reference; }
    bool hasValidReference() const;
    /// Makes the reference invalid for good; the wrapper stays allocated.
    void invalidate();

    static FunctionCallResult<PropertyId> parsePropertyIdString(const QString &name);
    /// Whether a property can be read by page script alone, so that many reads may go in one call.
    static bool isJavaScriptPropertyReadSupported(const QString &name);
    /// The expression that reads a property; empty for an unknown number.
    QString propertyGetterCode(PropertyId id) const;

    FunctionCallResult<QString> id() const;
    FunctionCallResult<QString> innerText() const;
    FunctionCallResult<QString> innerHTML() const;
    FunctionCallResult<int> x() const;
    FunctionCallResult<int> y() const;
    FunctionCallResult<int> width() const;
    FunctionCallResult<int> height() const;
    FunctionCallResult<QString> tagName() const;
    FunctionCallResult<QString> title() const;
    FunctionCallResult<QString> styleDisplay() const;
    FunctionCallResult<QString> domClassName() const;
    FunctionCallResult<QString> hierarchicalQualifiedName() const;
    FunctionCallResult<int> numChildren() const;
    FunctionCallResult<QString> simplifiedInnerText() const;
    FunctionCallResult<QString> styleVisibility() const;

    /// A property by name, as raw text; the name goes into the script as it stands.
    FunctionCallResult<QString> property(const char *name) const;
    FunctionCallResult<void> setProperty(const char *name, const char *value);
    FunctionCallResult<void> setProperty(const char *name, int value);
    FunctionCallResult<void> setProperty(const char *name, bool value);

    /// Calls a method of the page object. Arguments are script expressions: a text needs its own quotes.
    FunctionCallResult<QString> invoke(const char *method);
    FunctionCallResult<QString> invoke(const char *method, const char *arg1);
    FunctionCallResult<QString> invoke(const char *method, const char *arg1, const char *arg2);

    /// Whether both stand for one page object; asks the page unless the references are the same text.
    FunctionCallResult<bool> sameAs(HTML_Object *other) const;

    // Navigation: a new wrapper, owned by the caller; null and no error where the page has no such node.
    FunctionCallResult<HTML_Object *> firstChild() const;
    FunctionCallResult<HTML_Object *> lastChild() const;
    FunctionCallResult<HTML_Object *> nextSibling() const;
    FunctionCallResult<HTML_Object *> previousSibling() const;
    FunctionCallResult<HTML_Object *> shadowRoot() const;

    /// The computed style, owned by the caller.
    FunctionCallResult<HTML_Style *> style() const;
    FunctionCallResult<HTML_XPathResult *> evaluateXPath(const char *statement) const;
    /// All known CSS properties by their camel-case names; colours are objects of four numbers.
    FunctionCallResult<QMap<QString, Json::Value>> cssProperties() const;

    FunctionCallResult<ScreenRectangle> screenRect() const;
    /// Relative to the viewport, in CSS pixels.
    FunctionCallResult<ScreenRectangle> boundingClientRect() const;
    /// Scrolls the element into view, to the top or to the bottom.
    FunctionCallResult<void> scrollTo(bool top) const;
    FunctionCallResult<void> openContextMenu();

protected:
    /// The reference as a piece of script.
    Expr ref() const { return Expr{m_reference}; }

    HTMLComponent::EvalResult evaluateJS(const QString &script) const;

    /// Evaluates a script; a failure is `error` with `values` and then the message in its places.
    template <typename... Texts>
    FunctionCallResult<QString> evaluate(
        const QString &script, QStringView error, const Texts &...values) const
    {
        const HTMLComponent::EvalResult answer = evaluateJS(script);
        if (answer.failed || answer.threw)
            return Failure(message(error, values..., answer.result));
        return answer.result;
    }

    /// The same for actions.
    template <typename... Texts>
    FunctionCallResult<void> run(const QString &script, QStringView error, const Texts &...values) const
    {
        const FunctionCallResult<QString> answer = evaluate(script, error, values...);
        if (answer.failed())
            return Failure(answer.error);
        return {};
    }

    /// Evaluates an action, waits 200 ms whatever came of it, so that the page's deferred part has run, and
    /// only then tells.
    template <typename... Texts>
    FunctionCallResult<void> runAndWait(
        const QString &script, QStringView error, const Texts &...values) const
    {
        FunctionCallResult<void> result = run(script, error, values...);
        waitForDeferredAction();
        return result;
    }

    /// Reads an expression through JSON.
    template <typename T>
    FunctionCallResult<T> read(const QString &expression, QStringView error) const;

    /// The same without a conversion; the failure comes back word for word.
    FunctionCallResult<Json::Value> readJson(const QString &expression) const;

    /// A boolean property, read as text; any case of "true" counts.
    FunctionCallResult<bool> flag(const char *property) const;

    /// A new wrapper for the value of an expression, owned by the caller; null where there is no object.
    template <typename... Texts>
    FunctionCallResult<HTML_Object *> objectFrom(
        const QString &expression, QStringView error, const Texts &...values) const
    {
        FunctionCallResult<HTML_Object *> object = evaluateObject(expression);
        if (object.failed())
            return Failure(message(error, values..., object.error));
        return object;
    }

    /// The name in the parent, which the first call asks the page for with `script`.
    FunctionCallResult<QString> nameFrom(const QString &script, QStringView error) const;

    /// Script of a click or double click on an expression; evaluates nothing.
    static QString clickOn(const char *reference, int modifier, int x, int y, int button);
    static QString dblClickOn(const char *reference, int modifier, int x, int y);
    static QString clickScript(
        QStringView function, const char *reference, int modifier, int x, int y, int button);
    /// The three arguments of a page function that say which keys are held: control, shift, alt.
    static Expr modifierKeys(int modifier);
    /// The button of a click: the right one when the modifier says so.
    static int pressedButton(int modifier, int button);

    static void waitForDeferredAction();

private:
    FunctionCallResult<HTML_Object *> evaluateObject(const QString &expression) const;
    template <typename T>
    FunctionCallResult<T> readProperty(PropertyId property, QStringView error) const;
    FunctionCallResult<void> assign(const char *name, const QString &literal, const QString &shownValue);
    FunctionCallResult<QString> invokeWith(const char *method, const QStringList &arguments);

    mutable QString m_nameCache;
    QString m_reference;
    HTMLComponent *m_component;
};

/// The element's rectangle on the screen, in pixels; with `makeVisible` it is scrolled into view first.
PAGEPROBELIB_EXPORT FunctionCallResult<QRect> getScreenRect(const HTML_Object *obj, bool makeVisible);

} // namespace Ostrel::WebWrapper

/// All element wrappers lie behind pointers to their common root.
template <std::derived_from<Ostrel::WebWrapper::HTML_Object> C>
struct Ostrel::WrapperRoot<C>
{
    using Type = Ostrel::WebWrapper::HTML_Object;
};
