#include "host/script/lookup.h"
#include "host/resourcetext.h"

#include "host/browser/evaluation.h"
#include "host/inseconds.h"
#include "ostrelhook/inspector.h"
#include "ostrelhook/objectname.h"
#include "wrappers/web/objectfactory.h"
#include "wrappers/web/replay.h"
#include "wrappers/web/webobject.h"
#include "wrappers/web/webobjectdelegate.h"
#include "wrappers/web/webutilities.h"

#include <QDeadlineTimer>
#include <QEventLoop>
#include <QFileInfo>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QTimer>

namespace Ostrel::Host {

using namespace Qt::StringLiterals;
using namespace WebWrapper;

namespace {

const QString contextProperty = u"context"_s;
const QString containerProperty = u"container"_s;

/// The pauses between two looks: short at first, so that what comes soon is seen soon, and then ever longer,
/// so that a long wait costs the page little.
constexpr int firstPauseMs = 10;
constexpr int longestPauseMs = 400;

/// How much an error shows of a text of the page, and of a name.
constexpr qsizetype shownOfText = 80;
constexpr qsizetype shownOfName = 400;

QString pageQuery(const QString &name)
{
    return resourceText(u"pagequeries/%1.js"_s.arg(name));
}

QString shortened(const QString &text, qsizetype limit = shownOfName)
{
    return text.size() <= limit ? text : text.left(limit) + u"…"_s;
}

QString quotedText(const QString &text)
{
    return u"'%1'"_s.arg(shortened(text, shownOfText));
}

/// Calls a page query; the comment in front of its expression ends with a line break.
FunctionCallResult<QJsonDocument> ask(
    const BrowserPage *page, const QString &query, const QStringList &arguments, int limitMs = 0)
{
    const auto answer = page->evaluateJavaScript(
        u"%1\n(%2);"_s.arg(pageQuery(query), arguments.join(", "_L1)), unsigned(limitMs));
    if (answer.failed)
        return Failure(answer.result);
    return QJsonDocument::fromJson(answer.result.toUtf8());
}

QString windowsOfPage()
{
    return pageQuery(u"windows"_s) + u"()"_s;
}

/// What a name as users write it stands for; an error shows where it is no proper name.
FunctionCallResult<ObjectName> parseName(const QString &name)
{
    return ObjectName::parse(ObjectMap::self()->realName(name));
}

/// The demand of a name on one property, as a person would say it.
QString demand(const ObjectName &name, const QString &property)
{
    const PropertyValue value = name.property(property);
    switch (value.matchKind()) {
    case PropertyValue::Strict:
        return u"%1 %2"_s.arg(property, quotedText(value.stringValue()));
    case PropertyValue::RegularExpression:
        return u"%1 matching the regular expression %2"_s.arg(property, quotedText(value.stringValue()));
    case PropertyValue::Wildcard:
        return u"%1 matching %2"_s.arg(property, quotedText(value.stringValue()));
    }
    return property;
}

QString describeNearest(const QJsonObject &nearest)
{
    QStringList differences;
    const QJsonArray failed = nearest.value("failed"_L1).toArray();
    for (const auto &entry : failed) {
        const QJsonValue actual = entry.toObject().value("actual"_L1);
        differences.append(u"%1 is %2"_s.arg(entry.toObject().value("name"_L1).toString(),
            actual.isString() ? quotedText(actual.toString()) : u"missing"_s));
    }
    return u"\n    nearest: %1, where %2"_s.arg(
        shortened(unescape(nearest.value("name"_L1).toString())), differences.join(" and "_L1));
}

/// What the answer of "explainlookup" says, in sentences.
QString describeMiss(const ObjectName &name, const QJsonObject &facts)
{
    if (facts.contains("fault"_L1))
        return facts.value("fault"_L1).toString();
    const QString tag = facts.value("tag"_L1).toString();
    if (!facts.value("context"_L1).toBool())
        return u"there is no window or frame %1"_s.arg(
            quotedText(name.property(contextProperty).stringValue()));
    const int candidates = facts.value("candidates"_L1).toInt();
    if (candidates == 0)
        return u"found no %1"_s.arg(tag);
    if (const int all = facts.value("all"_L1).toInt())
        return u"found %1 %2 with these properties, not as many as its occurrence asks for"_s.arg(
            QString::number(all), tag);

    QStringList missing;
    const QJsonArray properties = facts.value("properties"_L1).toArray();
    for (const auto &property : properties) {
        if (property.toObject().value("having"_L1).toInt() == 0)
            missing.append(demand(name, property.toObject().value("name"_L1).toString()));
    }
    QString text = missing.isEmpty()
        ? u"found %1 %2, none with all of these properties at once"_s.arg(QString::number(candidates), tag)
        : u"found %1 %2, none with %3"_s.arg(QString::number(candidates), tag, missing.join(" or "_L1));
    const QJsonArray nearest = facts.value("nearest"_L1).toArray();
    for (const auto &entry : nearest)
        text += describeNearest(entry.toObject());
    return text;
}

/// A user can press what counts as hidden, such as an area of an image map. A recording then names it as
/// hidden, and nothing of that name will ever be visible.
bool asksForHidden(const QString &name)
{
    const ObjectName parsed(ObjectMap::self()->realName(name));
    return parsed.property(u"visible"_s).stringValue().compare("false"_L1, Qt::CaseInsensitive) == 0;
}

BrowserPage *pageOfObject(const SharedPtr<Object> &object)
{
    const HTML_Object *wrapper = retrieveObject(object);
    return wrapper ? dynamic_cast<BrowserPage *>(wrapper->component()) : nullptr;
}

ObjectList objectsFromRecords(BrowserPage *page, const QJsonArray &records)
{
    ObjectList objects;
    for (const auto &entry : records) {
        const QJsonObject record = entry.toObject();
        HTML_Object *wrapper = htmlObjectFromReferenceInfo(page, record.value("typeString"_L1).toString(),
            record.value("reference"_L1).toString(), record.value("nameInLeaf"_L1).toString());
        if (wrapper)
            objects.append(wrapObject(wrapper));
    }
    return objects;
}

/// The outermost member of a chain of containers says in which window all of it lies.
QString outermostContext(const ObjectName &name)
{
    if (!name.hasProperty(containerProperty))
        return name.property(contextProperty).stringValue();
    return outermostContext(
        ObjectName(ObjectMap::self()->realName(name.property(containerProperty).stringValue())));
}

} // namespace

Lookup::Lookup(WindowList *windows) : m_windows(windows) { }

FunctionCallResult<SharedPtr<Object>> Lookup::find(const QString &name)
{
    const Attempt attempt = lookInSettledPage(name);
    if (attempt.object)
        return attempt.object;
    if (!attempt.error.isEmpty())
        return Failure(attempt.error);
    return Failure(u"Object not found: %1: %2"_s.arg(shortened(name), explain(name)));
}

FunctionCallResult<bool> Lookup::exists(const QString &name)
{
    const Attempt attempt = lookInSettledPage(name);
    if (!attempt.error.isEmpty())
        return Failure(attempt.error);
    return bool(attempt.object);
}

FunctionCallResult<SharedPtr<Object>> Lookup::waitUntilThere(const QString &name, int timeoutMs)
{
    if (const auto parsed = parseName(name); parsed.failed())
        return Failure(parsed.error);
    Attempt attempt;
    const auto look = [&] {
        attempt = lookOnce(name);
        return bool(attempt.object);
    };
    if (waitFor(look, timeoutMs))
        return attempt.object;
    return Failure(u"Object not found within %1: %2: %3"_s.arg(
        inSeconds(timeoutMs), shortened(name), attempt.error.isEmpty() ? explain(name) : attempt.error));
}

FunctionCallResult<SharedPtr<Object>> Lookup::waitUntilReady(const QString &name, int timeoutMs)
{
    const QDeadlineTimer deadline(timeoutMs);
    FunctionCallResult<SharedPtr<Object>> found = waitUntilThere(name, timeoutMs);
    if (found.failed() || asksForHidden(name))
        return found;
    QString error;
    // The page may put another object into the place of the one that was found first.
    const auto look = [&] {
        if (const Attempt attempt = lookOnce(name); attempt.object)
            found.value = attempt.object;
        const FunctionCallResult<bool> ready = isObjectReady(retrieveObject(found.value));
        error = ready.error;
        return !ready.failed() && ready.value;
    };
    const FunctionCallResult<bool> ready = isObjectReady(retrieveObject(found.value));
    if ((!ready.failed() && ready.value) || waitFor(look, int(deadline.remainingTime())))
        return found;
    return Failure(u"Object not ready within %1: %2: %3"_s.arg(inSeconds(timeoutMs), shortened(name),
        error.isEmpty() ? u"it is there, but hidden or disabled"_s : error));
}

FunctionCallResult<void> Lookup::waitUntilReady(const SharedPtr<Object> &object, int timeoutMs)
{
    QString error;
    const auto look = [&] {
        HTML_Object *wrapper = retrieveObject(object);
        if (!wrapper || !wrapper->hasValidReference()) {
            error = u"the page that it belonged to is gone"_s;
            return false;
        }
        const FunctionCallResult<bool> ready = isObjectReady(wrapper);
        error = ready.error;
        return !ready.failed() && ready.value;
    };
    if (waitFor(look, timeoutMs))
        return {};
    return Failure(u"Object not ready within %1: %2"_s.arg(
        inSeconds(timeoutMs), error.isEmpty() ? u"it is hidden or disabled"_s : error));
}

FunctionCallResult<void> Lookup::waitForContext(const QString &context, int timeoutMs)
{
    const ContextName wanted = ContextName::parse(context);
    const auto look = [&] {
        BrowserPage *page = m_windows->pageOf(wanted);
        if (!page)
            return false;
        const auto chosen = page->evaluateJavaScript(
            u"__ostrel__setContext(%1);"_s.arg(scriptLiteral(wanted.insidePage())), 0);
        if (chosen.failed || chosen.result != "true"_L1)
            return false;
        // Paths start at the document of the context.
        m_windows->forgetDocument();
        m_windows->activate(page);
        return true;
    };
    if (waitFor(look, timeoutMs))
        return {};
    QStringList known;
    const QList<BrowserPage *> pages = m_windows->pages();
    for (const BrowserPage *page : pages)
        known.append(m_windows->contextOf(page));
    return Failure(u"There was no window or frame '%1' within %2; open windows: %3"_s.arg(
        context, inSeconds(timeoutMs), known.isEmpty() ? u"none"_s : known.join(", "_L1)));
}

FunctionCallResult<ObjectList> Lookup::findAll(const QString &name)
{
    const auto parsed = parseName(name);
    if (parsed.failed())
        return Failure(parsed.error);
    ObjectName inner = parsed.value;
    QList<BrowserPage *> pages = m_windows->pages();
    QString containerReference = u"null"_s;
    if (inner.hasProperty(containerProperty)) {
        const FunctionCallResult<SharedPtr<Object>> container
            = find(inner.property(containerProperty).stringValue());
        if (container.failed())
            return Failure(container.error);
        containerReference = retrieveObject(container.value)->jsReference();
        pages = {pageOfObject(container.value)};
        inner.removeProperty(containerProperty);
    } else if (!inner.isMultiProperty()) {
        const FunctionCallResult<SharedPtr<Object>> found = find(name);
        if (found.failed())
            return Failure(found.error);
        return ObjectList{found.value};
    }

    ObjectList all;
    QString error;
    for (BrowserPage *page : std::as_const(pages)) {
        const auto records = ask(
            page, u"findall"_s, {windowsOfPage(), scriptLiteral(inner.qualifiedName()), containerReference});
        if (records.failed() && error.isEmpty())
            error = records.error;
        all += objectsFromRecords(page, records.value.array());
    }
    if (!all.isEmpty())
        return all;
    return Failure(
        u"Object not found: %1: %2"_s.arg(shortened(name), error.isEmpty() ? explain(name) : error));
}

void Lookup::stop()
{
    m_stopped = true;
    Q_EMIT stopped();
}

// A document that goes in the middle of a lookup says nothing of what the next one has.
Lookup::Attempt Lookup::lookInSettledPage(const QString &name)
{
    constexpr int mostAttempts = 3;
    Attempt attempt;
    int changes = -1;
    for (int i = 0; i < mostAttempts && changes != m_windows->documentChanges(); ++i) {
        changes = m_windows->documentChanges();
        attempt = lookOnce(name);
        if (attempt.object || attempt.error.isEmpty())
            return attempt;
    }
    return attempt;
}

Lookup::Attempt Lookup::lookOnce(const QString &name)
{
    // Children that were fetched earlier show the page as it was then.
    HTMLObjectHierarchyDelegate::registered()->clearChildCache();
    Inspector *inspector = Inspector::self();
    const FunctionCallResult<SharedPtr<Object>> found = inspector->findObject(inRightWindow(name));
    const QString error = inspector->takeError();
    if (found.failed())
        return {nullptr, found.error};
    if (!found.value)
        return {nullptr, error};
    if (BrowserPage *page = pageOfObject(found.value))
        m_windows->activate(page);
    return {found.value, {}};
}

bool Lookup::waitFor(const Try &attempt, int timeoutMs)
{
    const QDeadlineTimer deadline(timeoutMs);
    for (int pauseMs = firstPauseMs; !m_stopped; pauseMs = qMin(longestPauseMs, pauseMs * 2)) {
        if (attempt())
            return true;
        if (deadline.hasExpired())
            return false;
        pause(int(qMin<qint64>(pauseMs, deadline.remainingTime())));
    }
    return false;
}

void Lookup::pause(int milliseconds)
{
    QEventLoop loop;
    QTimer::singleShot(milliseconds, Qt::PreciseTimer, &loop, &QEventLoop::quit);
    connect(this, &Lookup::stopped, &loop, &QEventLoop::quit);
    loop.exec();
}

QString Lookup::inRightWindow(const QString &name)
{
    const QString realName = ObjectMap::self()->realName(name);
    ObjectName parsed(realName);
    const QString context = unescape(outermostContext(parsed));
    if (context.isEmpty())
        return realName;
    const ContextName wanted = ContextName::parse(context);
    BrowserPage *page = m_windows->pageOf(wanted);
    if (!page)
        return realName;
    m_windows->activate(page);
    if (wanted.number > 1 && parsed.hasProperty(contextProperty)) {
        const PropertyValue value = parsed.property(contextProperty);
        parsed.setProperty(
            contextProperty, PropertyValue(wanted.insidePage(), value.matchKind(), value.form()));
    }
    return parsed.qualifiedName();
}

QString Lookup::explain(const QString &name)
{
    if (m_windows->pages().isEmpty())
        return u"there is no open page"_s;
    ObjectName wanted(inRightWindow(name));
    BrowserPage *page = m_windows->active();
    if (!wanted.isMultiProperty())
        return u"nothing has this id, name, text or path"_s;

    QString containerReference = u"null"_s;
    if (wanted.hasProperty(containerProperty)) {
        const QString containerName = wanted.property(containerProperty).stringValue();
        const Attempt container = lookOnce(containerName);
        if (!container.object)
            return u"its container %1 was not found: %2"_s.arg(
                shortened(containerName), explain(containerName));
        containerReference = retrieveObject(container.object)->jsReference();
        page = pageOfObject(container.object);
        wanted.removeProperty(containerProperty);
    }
    const auto facts = ask(page, u"explainlookup"_s,
        {windowsOfPage(), scriptLiteral(wanted.qualifiedName()), containerReference});
    if (facts.failed())
        return facts.error;
    return describeMiss(wanted, facts.value.object());
}

FunctionCallResult<QStringList> namesOfAllElements(BrowserPage *page)
{
    // Each portion ends long before the page's limit, however many elements there are.
    constexpr int portionMs = 2000;
    QStringList names;
    for (bool complete = false; !complete;) {
        const auto portion
            = ask(page, u"allnames"_s, {QString::number(names.size()), QString::number(portionMs)});
        if (portion.failed())
            return Failure(portion.error);
        const QJsonArray more = portion.value.object().value("names"_L1).toArray();
        for (const auto &name : more)
            names.append(unescape(name.toString()));
        complete = portion.value.object().value("complete"_L1).toBool() || more.isEmpty();
    }
    return names;
}

FunctionCallResult<void> loadNamesBeside(const QString &scriptFile)
{
    ObjectMap::self()->clear();
    const QFileInfo script(scriptFile);
    const QString namesFile = u"%1/%2.names"_s.arg(script.path(), script.completeBaseName());
    if (!QFileInfo::exists(namesFile))
        return {};
    return ObjectMap::self()->load(namesFile);
}

} // namespace Ostrel::Host
