// ResultCollector: makes the values of an attempt from what a script reports.
#pragma once

#include "host/report/results.h"

namespace Ostrel::Host {

/// Collects one attempt. Of a script that reports without end only the first steps and pictures are kept, and
/// its failures.
class ResultCollector : public ResultSink
{
public:
    static constexpr int mostSteps = 20000;
    static constexpr int mostPictures = 100;

    void scriptEnded(const ScriptEnd &end) override;
    void sectionBegan(const QString &title, const ScriptPlace &place) override;
    void sectionEnded() override;
    void statementBegan(const StatementBegin &statement) override;
    void statementEnded(double milliseconds, const QString &error) override;
    void verified(const Verification &verification) override;
    void logged(const QString &text) override;
    void screenshotTaken(const Screenshot &screenshot) override;
    void objectTreeTaken(const QString &xml) override;

    /// Whether the script has told its end.
    bool hasEnded() const { return m_ended; }

    /// Where the innermost statement stands that has not ended; a place without a file when there is none.
    ScriptPlace openPlace() const;

    /// What was collected, without its times. The collector is empty afterwards.
    Attempt take();

private:
    std::vector<Step> &current();
    /// Null when the step was left out.
    Step *add(Step step, bool always = false);
    void begin(Step step);
    Step *endInnermost(Step::Kind kind);

    struct Open
    {
        Step::Kind kind;
        Step *step; ///< null when it was left out
    };

    Attempt m_attempt;
    std::vector<Open> m_open; ///< a step stays where it is as long as it is open
    int m_steps = 0;
    int m_pictures = 0;
    int m_leftOut = 0;
    int m_verifications = 0;
    int m_failedVerifications = 0;
    bool m_ended = false;
};

} // namespace Ostrel::Host
