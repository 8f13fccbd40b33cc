// Feeds the recorder with texts that no page would write. Each input is a sequence of event texts, one a
// line. What must hold for all of them: nothing crashes, and a text that is no event makes no statement.
#include "wrappers/web/eventlogger.h"
#include "ostrelhook/inspector.h"
#include "wrappers/web/webevents.h"
#include "wrappers/web/webutilities.h"

#include <QByteArrayView>
#include <QSet>

#include <cstdio>
#include <cstdlib>

using namespace Ostrel;
using namespace Ostrel::WebWrapper;
using namespace Qt::StringLiterals;

namespace {

const QSet<QString> events{u"mousedown"_s, u"touchend"_s, u"click"_s, u"dblclick"_s, u"keyup"_s, u"keydown"_s,
    u"unload"_s, u"change"_s, u"chooseColor"_s, u"ignoreEvent"_s, u"startBrowser"_s,
    u"addUnmatchedProperty"_s, u"removeUnmatchedProperties"_s};

const QSet<QString> statements{u"mouseClick"_s, u"clickButton"_s, u"nativeMouseClick"_s, u"setFocus"_s,
    u"typeText"_s, u"setText"_s, u"selectOption"_s, u"chooseDate"_s, u"clickItem"_s, u"checkTreeItem"_s,
    u"clickTreeHandle"_s, u"clickTab"_s, u"toggleExpandable"_s, u"activateItem"_s, u"doubleClick"_s,
    u"chooseColor"_s, u"closeWindow"_s, u"startBrowser"_s, u"waitForContextExists"_s};

void require(bool condition, const char *what)
{
    if (condition)
        return;
    std::fprintf(stderr, "violated: %s\n", what);
    std::abort();
}

/// What the text says its event is, read in another way than by the recorder.
bool isEvent(const QString &text)
{
    QString event;
    for (QStringView part : QStringView(text).split(u'&')) {
        if (part.startsWith(u"event="))
            event = unescape(part.sliced(6).toString());
        else if (part == u"event")
            event = u"event"_s;
    }
    return events.contains(event);
}

class Counter : public EventLogger
{
public:
    int calls = 0;

    void recordMethodCall(
        const QString &, const char *methodName, const ObjectList &arguments, const QTime *) override
    {
        ++calls;
        require(statements.contains(QString::fromUtf8(methodName)), "only known statements");
        require(arguments.size() <= 3, "no statement has more arguments than that");
        for (const SharedPtr<Object> &argument : arguments)
            require(argument != nullptr, "arguments are values");
    }
    void addUnmatchedProperty(const QString &, const QString &) override { ++calls; }
    void removeUnmatchedProperties(const QString &) override { ++calls; }
    void noteDoubleClick(const QString &, const QMap<QString, QString> &) override { ++calls; }
    void noteKeyUp(const QString &) override { ++calls; }
    EventData lastRecordedEventData() override { return {}; }
    void noteOptionChoice() override { ++calls; }
    bool isRecordedAlready(const QString &, const QString &) override { return ++calls % 2; }
};

bool prepare()
{
    initWebEvents();
    Inspector::self()->setRecording(true);
    Inspector::self()->setRecorderAttached(true);
    // Warnings are what the recorder has to say about most of these texts.
    qInstallMessageHandler([](QtMsgType, const QMessageLogContext &, const QString &) {});
    return true;
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    static const bool prepared = prepare();
    Q_UNUSED(prepared)

    Counter logger;
    const QString input = QString::fromUtf8(reinterpret_cast<const char *>(data), qsizetype(size));
    for (const QString &text : input.split(u'\n')) {
        const int before = logger.calls;
        logger.logEvent(text);
        require(isEvent(text) || logger.calls == before, "no statement from a text that is no event");
    }
    logger.flushRecordedTextInput();
    return 0;
}
