#include "wrappers/web/sharedfunctions.h"

#include "ostrelhook/globalclass.h"
#include "ostrelhook/inspector.h"
#include "wrappers/web/controls/customcontrols.h"
#include "wrappers/web/controls/kiwi.h"
#include "wrappers/web/objectfactory.h"
#include "wrappers/web/reflection/webclasses.h"
#include "wrappers/web/scripttext.h"
#include "wrappers/web/toolkits/backbase.h"

#include <array>

namespace Ostrel::WebWrapper {

using namespace Qt::StringLiterals;

namespace {

using Done = FunctionCallResult<void>;

FunctionCallResult<HTML_Object *> elementIn(const SharedPtr<Object> &object, QStringView nullError)
{
    HTML_Object *element = retrieveObject(object);
    if (!element)
        return Failure(nullError.toString());
    if (!element->hasValidReference())
        return Failure(QString::fromUtf16(deadElementMessage));
    return element;
}

/// The object of that name. What the lookup itself has to tell was raised as the script's error by then.
FunctionCallResult<SharedPtr<Object>> objectNamed(const SharedPtr<Object> &name)
{
    const QString text = name ? name->toQString() : QString();
    FunctionCallResult<SharedPtr<Object>> found = Inspector::self()->findObject(text);
    if (found.failed() || !found.value)
        return Failure(message(u"Invalid object name '%1'", text));
    return found;
}

// clickLink

Done clickLink(const SharedPtr<Object> &object)
{
    const FunctionCallResult<HTML_Object *> element = elementIn(object, u"Cannot click null object.");
    if (element.failed())
        return Failure(element.error);
    const QLatin1StringView className(element.value->className());
    if (className != "HTML_Anchor"_L1) {
        return Failure(message(
            u"Element of type '%1' can't be clicked. Must be of type HTML_Anchor", QString(className)));
    }
    return element.value->click(0, 0, 0, 1);
}

// scrollTo

Done scrollTo(const SharedPtr<Object> &object, bool top)
{
    const FunctionCallResult<HTML_Object *> element = elementIn(object, u"Cannot scroll to null object.");
    if (element.failed())
        return Failure(element.error);
    return element.value->scrollTo(top);
}

// selectOption: how each kind of chooser takes a text

/// Whether a plain select has an option of that text.
FunctionCallResult<bool> optionExists(const HTML_Select &select, const QString &text)
{
    const HTMLComponent::EvalResult answer = select.component()->evaluateJavaScript(
        script(u"var found = false;for( var i = 0; i < %1.options.length; i++ ) {    "
               u"if( %1.options[i].text == '%2' ) {        found = true;    }}found;",
            Expr{select.jsReference()}, QuotedLine{text}),
        0);
    if (answer.failed || answer.threw)
        return Failure(message(u"Error checking existence of option '%1': %2", text, answer.result));
    return answer.result == "true"_L1;
}

Done selectIn(HTML_Select &select, const QString &text)
{
    // A multiple select takes several texts in one, which is no option's text.
    if (!select.isMulti().value) {
        const FunctionCallResult<bool> exists = optionExists(select, text);
        if (exists.failed())
            return Failure(exists.error);
        if (!exists.value)
            return Failure(message(u"Could not find item with text '%1'.", text));
    }
    return select.setSelectedOption(text);
}

Done selectIn(HTML_KiwiChoice &choice, const QString &text)
{
    return choice.setSelectedOption(text);
}

Done selectIn(HTML_BackBaseComboBox &box, const QString &text)
{
    return box.setSelectedOption(text);
}

Done selectIfThere(const FunctionCallResult<bool> &exists, const QString &text, auto select)
{
    if (exists.failed())
        return Failure(exists.error);
    if (!exists.value)
        return Failure(message(u"Could not find items '%1'.", text));
    return select();
}

Done selectIn(HTML_CustomComboBox &box, const QString &text)
{
    return selectIfThere(box.hasOption(text), text, [&] { return box.setSelectedOption(text); });
}

Done selectIn(HTML_CustomSelectList &list, const QString &text)
{
    return selectIfThere(list.hasOptions(text), text, [&] { return list.setSelectedOptions(text); });
}

struct Chooser
{
    const char *className;
    Done (*select)(HTML_Object &element, const QString &text);
};

template <typename Wrapper>
constexpr Chooser chooser()
{
    return {Wrapper::ScriptName, [](HTML_Object &element, const QString &text) -> Done {
                auto *wrapper = dynamic_cast<Wrapper *>(&element);
                if (!wrapper) {
                    return Failure(
                        message(u"Unknown type of combobox: '%1'", QString::fromLatin1(element.className())));
                }
                return selectIn(*wrapper, text);
            }};
}

constexpr std::array choosers{
    chooser<HTML_Select>(),
    chooser<HTML_KiwiChoice>(),
    chooser<HTML_CustomComboBox>(),
    chooser<HTML_CustomSelectList>(),
    chooser<HTML_BackBaseComboBox>(),
};

Done selectOption(const SharedPtr<Object> &object, const QString &text)
{
    const FunctionCallResult<HTML_Object *> element
        = elementIn(object, u"Cannot select option in null object.");
    if (element.failed())
        return Failure(element.error);
    const QLatin1StringView className(element.value->className());
    for (const Chooser &chooser : choosers) {
        if (className == QLatin1StringView(chooser.className))
            return chooser.select(*element.value, text);
    }
    // Kept as is: the list leaves out HTML_CustomSelectList; scripts match on this text.
    return Failure(message(u"Element of type '%1' can't be selected. Must be of type HTML_Select, "
                           u"HTML_KiwiChoice, HTML_CustomComboBox or HTML_BackBaseComboBox",
        QString(className)));
}

// The functions as scripts see them

struct Parameter
{
    const char *name;
    const char *typeName;
    ObjectAttribute attribute;
};

constexpr Parameter objectParameter{"object", "HTML_Object", ObjectAttribute::Pointer()};
constexpr Parameter nameParameter{"object", "String", ObjectAttribute::Pointer()};
constexpr Parameter textParameter{"text", "String", ObjectAttribute::Pointer()};
constexpr Parameter topParameter{"top", "bool", ObjectAttribute::Value()};

constexpr auto preferMouseClick
    = u"The clickLink function has been deprecated, please consider using mouseClick instead.";

struct SharedFunction
{
    const char *name;
    /// Whether the object is given by its name.
    bool byName;
    std::array<const Parameter *, 2> parameters;
    Done (*call)(const SharedPtr<Object> &object, const SharedPtr<Object> &argument);
    const char16_t *deprecation;
};

Done clickLinkCall(const SharedPtr<Object> &object, const SharedPtr<Object> &)
{
    return clickLink(object);
}

Done selectOptionCall(const SharedPtr<Object> &object, const SharedPtr<Object> &text)
{
    return selectOption(object, text ? text->toQString() : QString());
}

Done scrollToTopCall(const SharedPtr<Object> &object, const SharedPtr<Object> &)
{
    return scrollTo(object, true);
}

Done scrollToCall(const SharedPtr<Object> &object, const SharedPtr<Object> &top)
{
    return scrollTo(object, top && top->toBool());
}

/// The places of the functions in the table.
enum Place {
    ClickLinkByObject,
    ClickLinkByName,
    SelectOptionByObject,
    SelectOptionByName,
    ScrollToByObject,
    ScrollToByObjectAndAlignment,
};

constexpr SharedFunction sharedFunctions[] = {
    {"clickLink", false, {&objectParameter}, clickLinkCall, preferMouseClick},
    {"clickLink", true, {&nameParameter}, clickLinkCall, preferMouseClick},
    {"selectOption", false, {&objectParameter, &textParameter}, selectOptionCall, nullptr},
    {"selectOption", true, {&nameParameter, &textParameter}, selectOptionCall, nullptr},
    {"scrollTo", false, {&objectParameter}, scrollToTopCall, nullptr},
    {"scrollTo", false, {&objectParameter, &topParameter}, scrollToCall, nullptr},
};

std::array<GlobalMethod *, std::size(sharedFunctions)> methods{};

FunctionCallResult<SharedPtr<Object>> call(const SharedFunction &function, const ObjectList &arguments)
{
    SharedPtr<Object> object = arguments.value(0);
    if (function.byName) {
        const FunctionCallResult<SharedPtr<Object>> named = objectNamed(object);
        if (named.failed())
            return Failure(named.error);
        object = named.value;
    }
    const Done done = function.call(object, arguments.value(1));
    if (done.failed())
        return Failure(done.error);
    return Inspector::self()->createVoid();
}

GlobalMethod *registered(const SharedFunction &function)
{
    Inspector *inspector = Inspector::self();
    QList<Argument> parameters;
    for (const Parameter *parameter : function.parameters) {
        if (parameter) {
            parameters.append(Argument(QString::fromLatin1(parameter->name),
                inspector->findClass(QString::fromLatin1(parameter->typeName)), parameter->attribute,
                nullptr));
        }
    }
    GlobalMethod *method = inspector->globalClass()->addMethod(
        std::make_unique<GlobalMethod>(QString::fromLatin1(function.name), Signature(parameters),
            Argument(u"void"_s, ObjectAttribute::Value()),
            [&function](const ObjectList &arguments) { return call(function, arguments); }));
    if (function.deprecation)
        method->deprecate(QString::fromUtf16(function.deprecation));
    return method;
}

} // namespace

void setupSharedObjectModelFunctions()
{
    if (methods[0])
        return;
    for (std::size_t i = 0; i < methods.size(); ++i)
        methods[i] = registered(sharedFunctions[i]);
}

GlobalMethod *sharedClickLinkByObjectFn()
{
    return methods[ClickLinkByObject];
}

// Kept as is: the function by name has no access of its own; hosts rely on the one by object.
GlobalMethod *sharedClickLinkByNameFn()
{
    return methods[ClickLinkByObject];
}

GlobalMethod *sharedSelectOptionByObjectFn()
{
    return methods[SelectOptionByObject];
}

GlobalMethod *sharedSelectOptionByNameFn()
{
    return methods[SelectOptionByName];
}

GlobalMethod *sharedScrollToByObjectFn()
{
    return methods[ScrollToByObject];
}

GlobalMethod *sharedScrollToByObjectAndAlignmentFn()
{
    return methods[ScrollToByObjectAndAlignment];
}

} // namespace Ostrel::WebWrapper
