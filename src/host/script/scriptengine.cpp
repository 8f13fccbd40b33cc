#include "host/script/scriptengine.h"

#include "host/script/scriptbridge.h"
#include "ostrelhook/inspector.h"

#include <QFile>
#include <QUrl>

namespace Ostrel::Host {

using namespace Qt::StringLiterals;

namespace {

/// How the addresses of the script side of the host itself begin.
constexpr auto ownScripts = ":/pageprobe/"_L1;

/// One line of the engine's stack trace: "function:line:column:address".
struct Frame
{
    QString function;
    int line = 0;
    QString file;
};

Frame parseFrame(const QString &text)
{
    const QString function = text.section(u':', 0, 0);
    const QUrl address(text.section(u':', 3));
    return {function == "%entry"_L1 ? QString() : function, text.section(u':', 1, 1).toInt(),
        address.isLocalFile() ? address.toLocalFile() : address.toString()};
}

/// The script's own frames, without those of the glue.
QList<Frame> scriptFrames(const QStringList &trace)
{
    QList<Frame> frames;
    for (const QString &line : trace) {
        if (!line.contains(ownScripts))
            frames.append(parseFrame(line));
    }
    return frames;
}

/// What a script has thrown that is no error. A plain object tells nothing as text, but by what it holds.
QString valueText(QJSEngine &engine, const QJSValue &thrown)
{
    const QString text = thrown.toString();
    if (text != "[object Object]"_L1)
        return text;
    const QJSValue json = engine.globalObject().property(u"JSON"_s).property(u"stringify"_s).call({thrown});
    return json.isString() ? json.toString() : text;
}

QString messageOf(QJSEngine &engine, const QJSValue &thrown)
{
    if (!thrown.isError())
        return valueText(engine, thrown);
    const QString text = thrown.property(u"message"_s).toString();
    const QString kind = thrown.property(u"name"_s).toString();
    // The frame's errors are the script's errors, word for word; those of the language say their kind.
    return kind == "Error"_L1 ? text : u"%1: %2"_s.arg(kind, text);
}

ResultSink &nobody()
{
    static ResultSink sink;
    return sink;
}

} // namespace

QString ScriptError::text() const
{
    if (line <= 0)
        return u"%1: %2"_s.arg(file, message);
    return u"%1:%2: %3"_s.arg(file, QString::number(line), message);
}

ScriptEngine::ScriptEngine() : ScriptEngine(nobody()) { }

ScriptEngine::ScriptEngine(ResultSink &results) : m_bridge(std::make_unique<ScriptBridge>(&m_engine, results))
{
    m_engine.installExtensions(QJSEngine::ConsoleExtension);
    const QString error = m_bridge->install();
    if (!error.isEmpty())
        qFatal("The script glue does not work: %s", qUtf8Printable(error));
}

ScriptEngine::~ScriptEngine() = default;

ScriptOutcome ScriptEngine::runFile(const QString &fileName)
{
    QFile file(fileName);
    const QByteArray source = file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
    if (file.error() != QFileDevice::NoError)
        return {true, {u"Cannot read the script: %1."_s.arg(file.errorString()), fileName, 0, {}}};
    return run(QString::fromUtf8(source), fileName);
}

ScriptOutcome ScriptEngine::run(const QString &source, const QString &fileName)
{
    // An error that nobody received belongs to nobody.
    Inspector::self()->takeError();
    m_engine.setInterrupted(false);

    QStringList trace;
    const QJSValue value = m_engine.evaluate(source, fileName, 1, &trace);
    const bool interrupted = m_engine.isInterrupted();
    // A value that merely is an error object has no trace: nothing was thrown.
    if (trace.isEmpty() && !interrupted)
        return {};

    ScriptError error{
        interrupted ? u"The script was interrupted."_s : messageOf(m_engine, value), fileName, 0, {}};
    const QList<Frame> frames = scriptFrames(trace);
    if (!frames.isEmpty()) {
        error.file = frames.first().file.isEmpty() ? fileName : frames.first().file;
        error.line = frames.first().line;
        for (const Frame &frame : frames)
            error.callers.append(u"%1 (%2:%3)"_s.arg(frame.function.isEmpty() ? u"script"_s : frame.function,
                frame.file, QString::number(frame.line)));
    }
    return {true, error};
}

void ScriptEngine::interrupt()
{
    m_engine.setInterrupted(true);
}

} // namespace Ostrel::Host
