#include "host/run/failurewitness.h"

namespace Ostrel::Host {

using namespace Qt::StringLiterals;

void FailureWitness::verified(const Verification &verification)
{
    EventWriter::verified(verification);
    if (!verification.passed && ++m_views <= mostViews)
        show();
}

void FailureWitness::scriptEnded(const ScriptEnd &end)
{
    if (end.outcome == Outcome::Error)
        showLast();
    EventWriter::scriptEnded(end);
}

void FailureWitness::showLast()
{
    if (m_view.calm())
        show();
}

void FailureWitness::show()
{
    if (const FunctionCallResult<QByteArray> png = m_view.screenshot(); !png.failed())
        screenshotTaken({u"The page at the failure"_s, png.value});
    if (const FunctionCallResult<QString> tree = m_view.objectTree(); !tree.failed())
        objectTreeTaken(tree.value);
}

} // namespace Ostrel::Host
