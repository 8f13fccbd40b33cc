#include "host/report/junitreport.h"

#include "host/report/failuretext.h"
#include "host/report/xmltext.h"

#include <QFileInfo>
#include <QXmlStreamWriter>

#include <algorithm>

namespace Ostrel::Host {

using namespace Qt::StringLiterals;

namespace {

QString seconds(double milliseconds)
{
    return QString::number(milliseconds / 1000, 'f', 3);
}

/// A suite: the scripts of one folder, in the order of the run.
struct Suite
{
    QString folder;
    std::vector<const ScriptResult *> scripts;

    int count(std::initializer_list<Outcome> outcomes) const
    {
        return int(std::count_if(scripts.begin(), scripts.end(), [&](const ScriptResult *script) {
            return std::find(outcomes.begin(), outcomes.end(), script->outcome()) != outcomes.end();
        }));
    }
    double milliseconds() const
    {
        double sum = 0;
        for (const ScriptResult *script : scripts)
            sum += script->milliseconds();
        return sum;
    }
};

std::vector<Suite> suitesOf(const RunResult &run)
{
    std::vector<Suite> suites;
    for (const ScriptResult &script : run.scripts) {
        const QString folder = QFileInfo(script.script).path();
        auto found = std::find_if(
            suites.begin(), suites.end(), [&](const Suite &suite) { return suite.folder == folder; });
        if (found == suites.end())
            found = suites.insert(suites.end(), Suite{folder, {}});
        found->scripts.push_back(&script);
    }
    return suites;
}

/// How an attempt that did not pass is called: the script's own, or as one try of several.
struct ElementNames
{
    QString failure;
    QString error;
};

const ElementNames decisive{u"failure"_s, u"error"_s};
const ElementNames beforeAPass{u"flakyFailure"_s, u"flakyError"_s};
const ElementNames again{u"rerunFailure"_s, u"rerunError"_s};

class Writer
{
public:
    explicit Writer(QIODevice *device) : m_xml(device)
    {
        m_xml.setAutoFormatting(true);
        m_xml.setAutoFormattingIndent(2);
    }

    void write(const RunResult &run)
    {
        m_xml.writeStartDocument();
        m_xml.writeStartElement(u"testsuites"_s);
        attribute(u"name"_s, u"pageprobe"_s);
        Suite all{{}, {}};
        for (const ScriptResult &script : run.scripts)
            all.scripts.push_back(&script);
        writeCounts(all);
        attribute(u"time"_s, seconds(run.milliseconds));
        for (const Suite &suite : suitesOf(run))
            writeSuite(suite);
        m_xml.writeEndDocument();
    }

private:
    void attribute(const QString &name, const QString &value)
    {
        m_xml.writeAttribute(name, withoutForbiddenCharacters(value));
    }

    void writeCounts(const Suite &suite)
    {
        attribute(u"tests"_s, QString::number(suite.scripts.size()));
        attribute(u"failures"_s, QString::number(suite.count({Outcome::Failed})));
        attribute(u"errors"_s, QString::number(suite.count({Outcome::Error, Outcome::Unusable})));
        attribute(u"skipped"_s, QString::number(suite.count({Outcome::NotRun})));
    }

    void writeSuite(const Suite &suite)
    {
        m_xml.writeStartElement(u"testsuite"_s);
        attribute(u"name"_s, suite.folder);
        writeCounts(suite);
        attribute(u"time"_s, seconds(suite.milliseconds()));
        const std::vector<Attempt> &first = suite.scripts.front()->attempts;
        if (!first.empty() && first.front().began.isValid())
            attribute(u"timestamp"_s, first.front().began.toString(Qt::ISODate));
        for (const ScriptResult *script : suite.scripts)
            writeCase(*script, suite.folder);
        m_xml.writeEndElement();
    }

    void writeCase(const ScriptResult &script, const QString &folder)
    {
        m_xml.writeStartElement(u"testcase"_s);
        attribute(u"name"_s, QFileInfo(script.script).fileName());
        attribute(u"classname"_s, folder);
        attribute(u"file"_s, script.script);
        attribute(u"time"_s, seconds(script.milliseconds()));
        const bool passed = script.outcome() == Outcome::Passed;
        bool isFirst = true;
        for (const Attempt &attempt : script.attempts) {
            if (!attempt.passed())
                writeUnsuccessful(attempt, passed ? beforeAPass : isFirst ? decisive : again);
            isFirst = false;
        }
        if (!script.attempts.empty())
            writeOutput(script.attempts.back());
        m_xml.writeEndElement();
    }

    void writeUnsuccessful(const Attempt &attempt, const ElementNames &names)
    {
        if (attempt.end.outcome == Outcome::NotRun) {
            m_xml.writeEmptyElement(u"skipped"_s);
            attribute(u"message"_s, attempt.end.message);
            return;
        }
        const QStringList texts = failureTexts(attempt);
        m_xml.writeStartElement(attempt.end.outcome == Outcome::Failed ? names.failure : names.error);
        attribute(u"message"_s, texts.first().section(u'\n', 0, 0));
        attribute(u"type"_s, attempt.end.outcome == Outcome::Failed ? u"verification"_s : u"script"_s);
        const QString all = withoutForbiddenCharacters(texts.join(u'\n'));
        // Tries that do not decide have their text in an element of its own.
        if (names.failure == decisive.failure)
            m_xml.writeCharacters(all);
        else
            m_xml.writeTextElement(u"stackTrace"_s, all);
        m_xml.writeEndElement();
    }

    void writeOutput(const Attempt &attempt)
    {
        const QString logged = loggedText(attempt.steps);
        if (!logged.isEmpty())
            m_xml.writeTextElement(u"system-out"_s, withoutForbiddenCharacters(logged));
        if (!attempt.diagnostics.isEmpty())
            m_xml.writeTextElement(u"system-err"_s, withoutForbiddenCharacters(attempt.diagnostics));
    }

    QXmlStreamWriter m_xml;
};

} // namespace

void writeJUnitReport(const RunResult &run, QIODevice *device)
{
    Writer(device).write(run);
}

} // namespace Ostrel::Host
