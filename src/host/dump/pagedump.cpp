#include "host/dump/pagedump.h"

#include "ostrelhook/class.h"
#include "ostrelhook/inspector.h"
#include "ostrelhook/namespace.h"
#include "wrappers/web/htmlobjectdumpobjecttreedelegate.h"
#include "wrappers/web/objectfactory.h"
#include "wrappers/web/webobject.h"

namespace Ostrel::Host {

using namespace Qt::StringLiterals;
using namespace WebWrapper;

namespace {

const QString pathProperty = u"domPath"_s;

class Log : public LogInterface
{
public:
    explicit Log(std::function<void(const QString &)> receiver) : m_receiver(std::move(receiver)) { }

protected:
    void write(int, const QString &text) override
    {
        if (m_receiver)
            m_receiver(text.trimmed());
    }

private:
    std::function<void(const QString &)> m_receiver;
};

/// The plain values among the properties of all element classes.
QStringList plainProperties()
{
    QStringList names;
    for (const Class *type : Inspector::self()->globalNamespace()->classes()) {
        if (!type->inherits(objectModelHtmlObjectClass()))
            continue;
        for (int i = type->superClassOffset(Class::Properties); i < type->numProperties(); ++i) {
            const Property *property = type->property(i);
            if (property->type().isPrimitive() && !names.contains(property->name()))
                names.append(property->name());
        }
    }
    return names;
}

FunctionCallResult<QString> evaluate(const BrowserPage &page, const QString &script)
{
    const BrowserPage::EvalResult answer = page.evaluateJavaScript(script, 0);
    if (answer.failed || answer.threw)
        return Failure(answer.result);
    return answer.result;
}

FunctionCallResult<SharedPtr<Object>> documentOf(BrowserPage *page)
{
    const FunctionCallResult<HTML_Object *> document
        = htmlObjectFromJavaScriptResult(page, u"window.document"_s, {}, 0);
    if (document.failed())
        return Failure(document.error);
    if (!document.value)
        return Failure(u"The page has no document."_s);
    return wrapObject(document.value);
}

} // namespace

QStringList quickProperties()
{
    QStringList names = plainProperties();
    names.removeIf([](const QString &name) { return !HTML_Object::isJavaScriptPropertyReadSupported(name); });
    return names;
}

FunctionCallResult<void> checkProperties(const QStringList &names)
{
    const QStringList known = plainProperties();
    for (const QString &name : names) {
        if (!known.contains(name))
            return Failure(u"There is no property '%1' that a dump can show."_s.arg(name));
    }
    return {};
}

FunctionCallResult<PageDump> dumpPage(
    BrowserPage *page, const SharedPtr<Object> &element, const PageDumpOptions &options)
{
    PageDump dump;
    dump.address = page->address();
    FunctionCallResult<QString> title = evaluate(*page, u"document.title"_s);
    if (title.failed())
        return Failure(u"Cannot read the title of the page: %1"_s.arg(title.error));
    dump.title = title.value;

    SharedPtr<Object> root = element;
    if (!root) {
        const FunctionCallResult<SharedPtr<Object>> document = documentOf(page);
        if (document.failed())
            return Failure(document.error);
        root = document.value;
    }

    const BrowserPage::KeptPicture keptPicture(*page);
    if (options.picture) {
        const FunctionCallResult<QImage> picture = page->grabPageScreenshot();
        if (picture.failed())
            return Failure(picture.error);
        dump.picture = picture.value;
    }
    Log log(options.log);
    const HtmlObjectDumpObjectTreeDelegate delegate(&log);
    DumpFilter wanted(DumpFilter::Only, options.properties.isEmpty() ? quickProperties() : options.properties,
        {pathProperty});
    DumpOptions dumpOptions;
    dumpOptions.screenshots = options.screenshots;
    dumpOptions.log = &log;
    auto tree = dumpObjectTree(root, {{"HTML_Object", &wanted}}, dumpOptions);
    if (tree.failed())
        return Failure(tree.error);
    dump.root = std::move(tree.value);
    return dump;
}

QString nameOf(const UIAbstraction::UIElement &element)
{
    for (const UIAbstraction::UIElement::Property &property : element.identifyingProperties()) {
        if (property.name == pathProperty)
            return property.value;
    }
    return {};
}

} // namespace Ostrel::Host
