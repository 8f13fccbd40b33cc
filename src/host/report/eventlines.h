// Event lines: what a script reports, as JSON, one event a line. So a worker process tells its runner.
#pragma once

#include "host/report/resultsink.h"

#include <functional>

namespace Ostrel::Host {

/// Writes each event as a line, with its line break.
class EventWriter : public ResultSink
{
public:
    using Write = std::function<void(const QByteArray &line)>;

    explicit EventWriter(Write write) : m_write(std::move(write)) { }

    void scriptBegan(const QString &script) override;
    void scriptEnded(const ScriptEnd &end) override;
    void sectionBegan(const QString &title, const ScriptPlace &place) override;
    void sectionEnded() override;
    void statementBegan(const StatementBegin &statement) override;
    void statementEnded(double milliseconds, const QString &error) override;
    void verified(const Verification &verification) override;
    void logged(const QString &text) override;
    void screenshotTaken(const Screenshot &screenshot) override;
    void objectTreeTaken(const QString &xml) override;

private:
    Write m_write;
};

/// Gives the event of a line to `sink`. False for a line that is none.
bool deliverEvent(const QByteArray &line, ResultSink &sink);

} // namespace Ostrel::Host
