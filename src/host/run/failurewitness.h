// FailureWitness: adds to each failure what the page looked like then.
#pragma once

#include "host/report/eventlines.h"
#include "ostrelhook/functioncallresult.h"

#include <functional>

namespace Ostrel::Host {

/// How to see the page under test. What cannot be had is left out of the report.
struct PageView
{
    std::function<FunctionCallResult<QByteArray>()> screenshot; ///< as PNG
    std::function<FunctionCallResult<QString>()> objectTree; ///< as XML
    /// Frees a page that is busy with itself or with dialogs without end, at the cost of what it runs; tells
    /// whether it can be looked at then.
    std::function<bool()> calm;
};

/// Writes events; behind a failed verification and before an error they are followed by a screenshot and the
/// object tree. Of the verifications only the first are, so that one in a loop does not fill the report.
class FailureWitness : public EventWriter
{
public:
    static constexpr int mostViews = 5;

    FailureWitness(Write write, PageView view) : EventWriter(std::move(write)), m_view(std::move(view)) { }

    void verified(const Verification &verification) override;
    void scriptEnded(const ScriptEnd &end) override;

    /// Shows the page at which a script is ended from outside, while the statement that runs is still there.
    void showLast();

private:
    void show();

    PageView m_view;
    int m_views = 0;
};

} // namespace Ostrel::Host
