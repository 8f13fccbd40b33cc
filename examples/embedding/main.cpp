// The smallest host of pageprobeLib: a page that is a table of answers, and what a script interpreter does
// with the objects of that page. A real host evaluates the scripts in a browser; the rest of it is as it
// stands here.
//
// Prints what is done, behind ">" how the script begins that the library sends to the page, and what came of
// it.
#include "ostrelhook/class.h"
#include "ostrelhook/delegates.h"
#include "ostrelhook/inspector.h"
#include "wrappers/web/htmlcomponent.h"
#include "wrappers/web/objectfactory.h"
#include "wrappers/web/payload.h"
#include "wrappers/web/reflection/webclasses.h"
#include "wrappers/web/wrapperconfig.h"

#include <QCoreApplication>
#include <QTextStream>

using namespace Ostrel;
using namespace Ostrel::WebWrapper;
using namespace Qt::StringLiterals;

namespace {

void print(const QString &line)
{
    QTextStream(stdout) << line << Qt::endl;
}

/// What the page answers to a script in which `asked` stands.
struct Answer
{
    QStringView asked;
    QStringView answer;
};

constexpr Answer answers[] = {
    {u"getPropertyValue( window.document, 'title' )", u"{\"result\": \"Checkout\"}"},
    {u"getElementById('gift')",
        u"{\"refName\": \"top.__ostrel__globalObjectRefStore[0]\", \"type\": \"checkbox\"}"},
    {u"getElementById('order')",
        u"{\"refName\": \"top.__ostrel__globalObjectRefStore[1]\", \"type\": \"button\"}"},
    {u"getPropertyValue( top.__ostrel__globalObjectRefStore[1], 'value')", u"Place the order"},
    {u".checked=true;", u"true"},
    {u"__ostrel__sendChangeEvent(", u"undefined"},
    {u"__ostrel__clickButton(", u"17"},
};

/// The bridge to one page. The library asks it for everything that it does not know by itself.
class TablePage : public HTMLComponent
{
public:
    EvalResult evaluateJavaScript(const QString &script, unsigned int) const override
    {
        const QString line = script.simplified();
        print(u"    > "_s + (line.size() > 140 ? line.first(140) + u" ..."_s : line));
        for (const Answer &row : answers) {
            if (script.contains(row.asked))
                return {row.answer.toString()};
        }
        return {u"the page has no answer to this."_s, true, true};
    }

    int browserType() const override { return 0; }
    bool isPageAvailable() const override { return true; }
    WrapperConfig *config() const override { return &m_config; }

    FunctionCallResult<void> setFileInputValue(HTML_TextBase *, const QString &) override
    {
        return noFiles();
    }
    FunctionCallResult<void> setCustomFileInputValue(HTML_CustomText *, const QString &) override
    {
        return noFiles();
    }

private:
    static Failure noFiles() { return Failure(u"this page takes no files."_s); }

    mutable MemoryBasedConfig m_config;
};

// What an interpreter does when a script says object.name, object.name = value and object.name(arguments).
// Failures wait in the Inspector; their text is what the script gets.

const Property *propertyOf(const SharedPtr<Object> &object, const QString &name)
{
    const Property *property = object->objectClass()->findProperty(name);
    if (!property)
        Inspector::self()->raiseError(u"there is no property '%1'."_s.arg(name));
    return property;
}

SharedPtr<Object> read(const SharedPtr<Object> &object, const QString &name)
{
    const Property *property = propertyOf(object, name);
    return property ? object->objectClass()->read(object, property) : nullptr;
}

void write(const SharedPtr<Object> &object, const QString &name, const SharedPtr<Object> &value)
{
    if (const Property *property = propertyOf(object, name))
        object->objectClass()->write(object, property, value);
}

SharedPtr<Object> call(const SharedPtr<Object> &object, const QString &name, const ObjectList &arguments = {})
{
    Class *type = object->objectClass();
    const FunctionCallResult<Method *> method = type->resolve(name, arguments);
    if (method.failed()) {
        Inspector::self()->raiseError(method.error);
        return nullptr;
    }
    return type->call(object, arguments, method.value);
}

SharedPtr<Object> text(const QString &value)
{
    return Inspector::self()->createPrimitive(value);
}

void printOutcome(const SharedPtr<Object> &value = nullptr)
{
    Inspector *inspector = Inspector::self();
    if (inspector->hasError())
        print(u"    fails: "_s + inspector->takeError());
    else if (value && value->isPrimitive())
        print(u"    gives: "_s + value->toQString());
    else if (value && !value->isNull())
        print(u"    gives: "_s + value->objectClass()->name() + u" at "_s + objectAsText(value));
    else
        print(u"    done"_s);
}

} // namespace

int main(int argc, char *argv[])
{
    // Waits inside the library, such as the one after a click, run an event loop.
    QCoreApplication application(argc, argv);

    // Where the library finds its extension scripts and its settings, unless the user says otherwise.
    if (!qEnvironmentVariableIsSet("OSTREL_PREFIX"))
        qputenv("OSTREL_PREFIX", PAGEPROBE_PREFIX);
    createWebObjectClasses();

    TablePage page;
    print(u"What a browser would get first, in the top window of each page"_s);
    const QString payload = getJSCode(*page.config());
    print(u"    namespace code: "_s + (getOstrelJsNamespaceInitCode().isEmpty() ? u"no"_s : u"yes"_s));
    print(u"    page script with the extension for select fields: "_s
        + (payload.contains(u"var __ostrel__standardselectExtension"_s) ? u"yes"_s : u"no"_s));

    // A reference is any script expression that gives the object in the top window.
    const SharedPtr<Object> document
        = wrapObject(htmlObjectFromReferenceInfo(&page, u"document"_s, u"window.document"_s, {}));

    print(u"document.title"_s);
    printOutcome(read(document, u"title"_s));

    print(u"document.title = 'Done'"_s);
    write(document, u"title"_s, text(u"Done"_s));
    printOutcome();

    print(u"gift = document.getElementById('gift')"_s);
    const SharedPtr<Object> gift = call(document, u"getElementById"_s, {text(u"gift"_s)});
    printOutcome(gift);

    print(u"gift.checked = true"_s);
    write(gift, u"checked"_s, Inspector::self()->createPrimitive(true));
    printOutcome();

    print(u"document.getElementById('voucher')"_s);
    printOutcome(call(document, u"getElementById"_s, {text(u"voucher"_s)}));

    print(u"order = document.getElementById('order')"_s);
    const SharedPtr<Object> order = call(document, u"getElementById"_s, {text(u"order"_s)});
    printOutcome(order);

    print(u"order.value"_s);
    printOutcome(read(order, u"value"_s));

    print(u"order.click()"_s);
    printOutcome(call(order, u"click"_s));

    print(u"order.clik()"_s);
    printOutcome(call(order, u"clik"_s));
    return 0;
}
