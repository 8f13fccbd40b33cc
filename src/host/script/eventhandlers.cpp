#include "host/script/eventhandlers.h"

#include "host/browser/browserpage.h"
#include "host/channel/pagechannel.h"
#include "host/script/windowlist.h"
#include "ostrelhook/inspector.h"

#include <QStringList>

#include <memory>
#include <utility>

namespace Ostrel::Host {

using namespace Qt::StringLiterals;

namespace {

/// What pages tell of, and what a handler of it gets, in order.
struct PageEvent
{
    QLatin1StringView name;
    QList<QLatin1StringView> parameters;
};

const QList<PageEvent> &pageEvents()
{
    static const QList<PageEvent> events{
        {"AlertOpened"_L1, {}},
        {"ConfirmOpened"_L1, {}},
        {"PromptOpened"_L1, {}},
        {"WindowOpened"_L1, {}},
        {"BodyUnloaded"_L1, {"location"_L1, "context"_L1}},
    };
    return events;
}

const QString bodyUnloaded = u"BodyUnloaded"_s;

QString withoutFragment(const QString &address)
{
    return address.section(u'#', 0, 0);
}

const PageEvent *findPageEvent(const QString &name)
{
    for (const PageEvent &event : pageEvents()) {
        if (event.name == name)
            return &event;
    }
    return nullptr;
}

} // namespace

EventHandlers::EventHandlers(PageChannel &channel)
{
    connect(&channel, &PageChannel::eventHandlerCalled, this, &EventHandlers::receive);
    m_functions.add("installEventHandler", {"event", "handler"},
        [this](const QString &event, const ScriptFunction &handler) { return install(event, handler); });
}

void EventHandlers::attend(BrowserPage *page)
{
    const auto shown = std::make_shared<QString>();
    connect(page, &BrowserPage::documentGone, this, [this, shown](const QString &next) {
        const QString gone = std::exchange(*shown, withoutFragment(next));
        m_shown.removeOne(gone);
        m_shown.append(*shown);
        if (!gone.isEmpty() && gone != "about:blank"_L1)
            noteDocumentGone(gone);
    });
}

void EventHandlers::receive(const QString &event, const QMap<QString, QString> &parameters)
{
    if (event == bodyUnloaded) {
        const QString location = withoutFragment(parameters.value(u"location"_s));
        if (m_toldByHost.remove(location))
            return;
        if (m_shown.contains(location))
            m_toldByPage.insert(location);
    }
    call(event, parameters);
}

void EventHandlers::noteDocumentGone(const QString &address)
{
    if (m_toldByPage.remove(address))
        return;
    m_toldByHost.insert(address);
    call(bodyUnloaded, {{u"location"_s, address}, {u"context"_s, contextFile(address)}});
}

FunctionCallResult<void> EventHandlers::install(const QString &event, const ScriptFunction &handler)
{
    if (!findPageEvent(event)) {
        QStringList known;
        for (const PageEvent &entry : pageEvents())
            known.append(entry.name);
        return Failure(
            u"installEventHandler: there is no event '%1'. Events are %2."_s.arg(event, known.join(", "_L1)));
    }
    if (handler)
        m_handlers.insert(event, handler);
    else
        m_handlers.remove(event);
    return {};
}

void EventHandlers::call(const QString &event, const QMap<QString, QString> &parameters)
{
    const ScriptFunction handler = m_handlers.value(event);
    if (!handler)
        return;
    ObjectList arguments;
    for (const QLatin1StringView parameter : findPageEvent(event)->parameters)
        arguments.append(Inspector::self()->createPrimitive(parameters.value(parameter)));
    const FunctionCallResult<SharedPtr<Object>> result = handler(arguments);
    if (result.failed())
        Inspector::self()->raiseError(u"The handler of '%1' failed: %2"_s.arg(event, result.error));
}

} // namespace Ostrel::Host
