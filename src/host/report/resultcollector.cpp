#include "host/report/resultcollector.h"

#include "host/report/failuretext.h"

#include <algorithm>
#include <utility>

namespace Ostrel::Host {

using namespace Qt::StringLiterals;

namespace {

Step makeStep(Step::Kind kind, const QString &text, const ScriptPlace &place = {})
{
    Step step;
    step.kind = kind;
    step.text = text;
    step.place = place;
    return step;
}

} // namespace

void ResultCollector::scriptEnded(const ScriptEnd &end)
{
    m_attempt.end = end;
    m_ended = true;
}

void ResultCollector::sectionBegan(const QString &title, const ScriptPlace &place)
{
    begin(makeStep(Step::Kind::Section, title, place));
}

void ResultCollector::sectionEnded()
{
    endInnermost(Step::Kind::Section);
}

void ResultCollector::statementBegan(const StatementBegin &statement)
{
    begin(makeStep(Step::Kind::Statement, statement.text, statement.place));
}

void ResultCollector::statementEnded(double milliseconds, const QString &error)
{
    if (Step *step = endInnermost(Step::Kind::Statement)) {
        step->milliseconds = milliseconds;
        step->error = error;
    }
}

void ResultCollector::verified(const Verification &verification)
{
    ++m_verifications;
    if (!verification.passed)
        ++m_failedVerifications;
    Step step = makeStep(Step::Kind::Verification, verification.message, verification.place);
    step.passed = verification.passed;
    step.actual = verification.actual;
    step.expected = verification.expected;
    add(std::move(step), !verification.passed);
}

void ResultCollector::logged(const QString &text)
{
    add(makeStep(Step::Kind::Log, text));
}

void ResultCollector::screenshotTaken(const Screenshot &screenshot)
{
    if (++m_pictures > mostPictures) {
        add(makeStep(Step::Kind::Log, u"(the picture '%1' is left out)"_s.arg(screenshot.title)));
        return;
    }
    Step step = makeStep(Step::Kind::Screenshot, screenshot.title);
    step.png = screenshot.png;
    add(std::move(step));
}

void ResultCollector::objectTreeTaken(const QString &xml)
{
    add(makeStep(Step::Kind::ObjectTree, xml), true);
}

ScriptPlace ResultCollector::openPlace() const
{
    const auto found = std::find_if(m_open.rbegin(), m_open.rend(),
        [](const Open &open) { return open.kind == Step::Kind::Statement && open.step; });
    return found != m_open.rend() ? found->step->place : ScriptPlace();
}

Attempt ResultCollector::take()
{
    m_open.clear();
    if (m_leftOut > 0) {
        m_attempt.steps.push_back(
            makeStep(Step::Kind::Log, u"(%1 further steps are left out)"_s.arg(m_leftOut)));
    }
    if (m_attempt.end.outcome == Outcome::Passed && m_failedVerifications > 0) {
        m_attempt.end.outcome = Outcome::Failed;
        m_attempt.end.message = u"%1 of %2 verifications failed"_s.arg(
            QString::number(m_failedVerifications), QString::number(m_verifications));
    }
    Attempt attempt = std::move(m_attempt);
    m_attempt = {};
    m_steps = m_pictures = m_leftOut = m_verifications = m_failedVerifications = 0;
    m_ended = false;
    return attempt;
}

std::vector<Step> &ResultCollector::current()
{
    const auto found
        = std::find_if(m_open.rbegin(), m_open.rend(), [](const Open &open) { return open.step != nullptr; });
    return found != m_open.rend() ? found->step->steps : m_attempt.steps;
}

Step *ResultCollector::add(Step step, bool always)
{
    if (m_steps >= mostSteps && !always) {
        ++m_leftOut;
        return nullptr;
    }
    ++m_steps;
    return &current().emplace_back(std::move(step));
}

void ResultCollector::begin(Step step)
{
    const Step::Kind kind = step.kind;
    step.ended = false;
    m_open.push_back({kind, add(std::move(step))});
}

// An end closes what was left open inside, too.
Step *ResultCollector::endInnermost(Step::Kind kind)
{
    const auto found = std::find_if(
        m_open.rbegin(), m_open.rend(), [kind](const Open &open) { return open.kind == kind; });
    if (found == m_open.rend())
        return nullptr;
    Step *step = found->step;
    m_open.erase(found.base() - 1, m_open.end());
    if (step)
        step->ended = true;
    return step;
}

} // namespace Ostrel::Host
