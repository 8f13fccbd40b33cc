#include "host/browser/injection.h"

#include "host/browser/evaluation.h"
#include "wrappers/web/wrapperconfig.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QStringList>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace Ostrel::Host {

namespace {

QString operatingSystem()
{
#if defined(Q_OS_WIN)
    return u"Windows"_s;
#elif defined(Q_OS_MACOS)
    return u"MacOSX"_s;
#else
    return u"Linux"_s;
#endif
}

QString valueText(const QJsonValue &value)
{
    if (value.isString())
        return scriptLiteral(value.toString());
    const QByteArray array = QJsonDocument(QJsonArray{value}).toJson(QJsonDocument::Compact);
    return QString::fromUtf8(array.sliced(1, array.size() - 2));
}

// The names of the naming schemes. The payload only compares the first variable with the other two, so the
// values must be set and differ.
const QString multiPropertyNames = u"multiprop"_s;
const QString singlePropertyNames = u"singleprop"_s;
const QString hierarchicalNames = u"hierarchical"_s;

// The document that got the texts last.
const QString injectedDocument = u"window.__ostrel__injectedDocument"_s;

} // namespace

QList<PageVariable> pageVariables(const WebWrapper::WrapperConfig &config, const PageFacts &facts)
{
    QList<PageVariable> variables{
        {u"window.__ostrel__googlechrome"_s, true},
        {u"window.__ostrel__chromiumbased"_s, true},
        {u"window.__ostrel__os"_s, operatingSystem()},
        {u"window.top.__ostrel.browsermajorversion"_s, facts.browserMajorVersion},
        {u"window.__ostrel__filter__non__element__nodes"_s, config.filterNonElementNodes()},
        {u"window.top.__ostrel.includeIdPropertyInGeneratedNames"_s,
            config.includeIdPropertyInGeneratedNames()},
        {u"window.__ostrel__namegen__scheme"_s,
            config.supportSinglePropertyNaming() ? singlePropertyNames : multiPropertyNames},
        {u"window.__ostrel__namegen__singleprop"_s, singlePropertyNames},
        {u"window.__ostrel__namegen__hierarchical"_s, hierarchicalNames},
        {u"window.__ostrel__throwErrorForUnknownContextName"_s, config.throwErrorOnUnknownContextNames()},
        {u"window.__ostrel__improvedTabAndWindowSupport"_s, config.improvedTabAndWindowSupport()},
        {u"window.top.__ostrel.useSessionStorageForEvents"_s, config.useSessionStorageForEvents()},
        {u"window.__ostrel__enableObjectInfoOverlay"_s, config.enableObjectInfoOverlay()},
        {u"window.__ostrel__port"_s, facts.channelPort},
        {u"window.__ostrel__asynclog"_s, true},
        // The payload reads these two as bare names, which must exist even where no extension script defines
        // them: null switches the check off.
        {u"window.__ostrel__backbase__descriptors"_s, QJsonValue::Null},
        {u"window.__ostrel__backbase__className"_s, u""_s},
    };
    // The payload asks whether this one is defined at all, so it is left out rather than set to false.
    if (config.hookNewWindows())
        variables.append({u"window.__ostrel__newwindowhook"_s, true});
    return variables;
}

void Injection::setVariable(const QString &name, const QJsonValue &value)
{
    const auto found = std::find_if(variables.begin(), variables.end(),
        [&](const PageVariable &variable) { return variable.name == name; });
    if (found != variables.end())
        found->value = value;
    else
        variables.append({name, value});
}

QString Injection::script() const
{
    QStringList parts{namespaceCode};
    for (const PageVariable &variable : variables)
        parts.append(assignment(variable));
    parts.append(payload);
    if (!companion.isEmpty())
        parts.append(companion);
    return parts.join(u'\n');
}

// As a string the payload costs a frame no parsing, and the top window gets real global functions. The three
// texts are evaluated apart, so that the payload's text is exactly what it is.
QString Injection::newDocumentScript() const
{
    QStringList assignments;
    for (const PageVariable &variable : variables)
        assignments.append(assignment(variable));
    QString script = u"if (window === window.top) {\n"_s;
    for (const QString &text : {namespaceCode, assignments.join(u'\n'), payload, companion}) {
        if (!text.isEmpty())
            script += u"(0, eval)(%1);\n"_s.arg(scriptLiteral(text));
    }
    return script + u"%1 = document;\n}"_s.arg(injectedDocument);
}

QString Injection::isMissingExpression()
{
    return u"%1 !== document && (%1 !== undefined || location.href !== 'about:blank')"_s.arg(
        injectedDocument);
}

QString Injection::repeatedScript() const
{
    // The handler of the document before is ours and must not be taken for one of the page.
    return u"if (%2 !== undefined) {\n    window.onunload = null;\n}\n%1\n%2 = document;"_s.arg(
        script(), injectedDocument);
}

QString assignment(const PageVariable &variable)
{
    return u"%1 = %2;"_s.arg(variable.name, valueText(variable.value));
}

} // namespace Ostrel::Host
