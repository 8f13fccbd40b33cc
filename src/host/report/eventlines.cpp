#include "host/report/eventlines.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>

#include <algorithm>
#include <iterator>

namespace Ostrel::Host {

using namespace Qt::StringLiterals;

namespace {

struct OutcomeName
{
    Outcome outcome;
    QLatin1StringView name;
};

constexpr OutcomeName outcomes[] = {
    {Outcome::Passed, "passed"_L1},
    {Outcome::Failed, "failed"_L1},
    {Outcome::Error, "error"_L1},
    {Outcome::Unusable, "unusable"_L1},
    {Outcome::NotRun, "notRun"_L1},
};

QString nameOf(Outcome outcome)
{
    const auto *found = std::find_if(std::begin(outcomes), std::end(outcomes),
        [outcome](const OutcomeName &row) { return row.outcome == outcome; });
    return found->name;
}

Outcome outcomeFrom(const QString &name)
{
    const auto *found = std::find_if(std::begin(outcomes), std::end(outcomes),
        [&name](const OutcomeName &row) { return row.name == name; });
    return found != std::end(outcomes) ? found->outcome : Outcome::Error;
}

ScriptPlace placeFrom(const QJsonObject &event)
{
    return {event.value("file"_L1).toString(), event.value("line"_L1).toInt()};
}

QString textFrom(const QJsonObject &event, QLatin1StringView name = "text"_L1)
{
    return event.value(name).toString();
}

struct EventRow
{
    QLatin1StringView name;
    void (*deliver)(const QJsonObject &event, ResultSink &sink);
};

constexpr EventRow rows[] = {
    {"scriptBegan"_L1, [](const QJsonObject &event, ResultSink &sink) { sink.scriptBegan(textFrom(event)); }},
    {"scriptEnded"_L1,
        [](const QJsonObject &event, ResultSink &sink) {
            sink.scriptEnded({outcomeFrom(textFrom(event, "outcome"_L1)), textFrom(event), placeFrom(event),
                event.value("callers"_L1).toVariant().toStringList()});
        }},
    {"sectionBegan"_L1,
        [](const QJsonObject &event, ResultSink &sink) {
            sink.sectionBegan(textFrom(event), placeFrom(event));
        }},
    {"sectionEnded"_L1, [](const QJsonObject &, ResultSink &sink) { sink.sectionEnded(); }},
    {"statementBegan"_L1,
        [](const QJsonObject &event, ResultSink &sink) {
            sink.statementBegan({textFrom(event), placeFrom(event)});
        }},
    {"statementEnded"_L1,
        [](const QJsonObject &event, ResultSink &sink) {
            sink.statementEnded(event.value("ms"_L1).toDouble(), textFrom(event, "error"_L1));
        }},
    {"verified"_L1,
        [](const QJsonObject &event, ResultSink &sink) {
            sink.verified({event.value("passed"_L1).toBool(), textFrom(event), textFrom(event, "actual"_L1),
                textFrom(event, "expected"_L1), placeFrom(event)});
        }},
    {"logged"_L1, [](const QJsonObject &event, ResultSink &sink) { sink.logged(textFrom(event)); }},
    {"screenshot"_L1,
        [](const QJsonObject &event, ResultSink &sink) {
            sink.screenshotTaken(
                {textFrom(event), QByteArray::fromBase64(textFrom(event, "png"_L1).toLatin1())});
        }},
    {"objectTree"_L1,
        [](const QJsonObject &event, ResultSink &sink) { sink.objectTreeTaken(textFrom(event)); }},
};

QByteArray lineOf(const QString &name, QJsonObject members)
{
    members.insert("event"_L1, name);
    return QJsonDocument(members).toJson(QJsonDocument::Compact) + '\n';
}

QJsonObject placed(QJsonObject members, const ScriptPlace &place)
{
    members.insert("file"_L1, place.file);
    members.insert("line"_L1, place.line);
    return members;
}

} // namespace

void EventWriter::scriptBegan(const QString &script)
{
    m_write(lineOf(u"scriptBegan"_s, {{u"text"_s, script}}));
}

void EventWriter::scriptEnded(const ScriptEnd &end)
{
    m_write(lineOf(u"scriptEnded"_s,
        placed({{u"outcome"_s, nameOf(end.outcome)}, {u"text"_s, end.message},
                   {u"callers"_s, QJsonArray::fromStringList(end.callers)}},
            end.place)));
}

void EventWriter::sectionBegan(const QString &title, const ScriptPlace &place)
{
    m_write(lineOf(u"sectionBegan"_s, placed({{u"text"_s, title}}, place)));
}

void EventWriter::sectionEnded()
{
    m_write(lineOf(u"sectionEnded"_s, {}));
}

void EventWriter::statementBegan(const StatementBegin &statement)
{
    m_write(lineOf(u"statementBegan"_s, placed({{u"text"_s, statement.text}}, statement.place)));
}

void EventWriter::statementEnded(double milliseconds, const QString &error)
{
    m_write(lineOf(u"statementEnded"_s, {{u"ms"_s, milliseconds}, {u"error"_s, error}}));
}

void EventWriter::verified(const Verification &verification)
{
    m_write(lineOf(u"verified"_s,
        placed({{u"passed"_s, verification.passed}, {u"text"_s, verification.message},
                   {u"actual"_s, verification.actual}, {u"expected"_s, verification.expected}},
            verification.place)));
}

void EventWriter::logged(const QString &text)
{
    m_write(lineOf(u"logged"_s, {{u"text"_s, text}}));
}

void EventWriter::screenshotTaken(const Screenshot &screenshot)
{
    m_write(lineOf(u"screenshot"_s,
        {{u"text"_s, screenshot.title}, {u"png"_s, QString::fromLatin1(screenshot.png.toBase64())}}));
}

void EventWriter::objectTreeTaken(const QString &xml)
{
    m_write(lineOf(u"objectTree"_s, {{u"text"_s, xml}}));
}

bool deliverEvent(const QByteArray &line, ResultSink &sink)
{
    const QJsonObject event = QJsonDocument::fromJson(line).object();
    const QString name = textFrom(event, "event"_L1);
    const auto *found = std::find_if(
        std::begin(rows), std::end(rows), [&name](const EventRow &row) { return row.name == name; });
    if (found == std::end(rows))
        return false;
    found->deliver(event, sink);
    return true;
}

} // namespace Ostrel::Host
