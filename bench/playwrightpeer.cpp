#include "playwrightpeer.h"

#include "host/browser/browserprocess.h"

namespace Ostrel::Bench {

using namespace Qt::StringLiterals;

namespace {

constexpr int answerLimitMs = 120000;
constexpr int endLimitMs = 10000;
const QString peerScript = QStringLiteral(PAGEPROBE_BENCH_DIR "/playwright-peer.js");

} // namespace

// The peer ends its browser and then itself when its input ends.
PlaywrightPeer::~PlaywrightPeer()
{
    m_process.closeWriteChannel();
    if (m_process.state() != QProcess::NotRunning)
        m_process.waitForFinished(endLimitMs);
}

FunctionCallResult<void> PlaywrightPeer::start()
{
    const FunctionCallResult<QString> browser = Host::findBrowser({});
    if (browser.failed())
        return Failure(browser.error);
    m_process.setProcessChannelMode(QProcess::ForwardedErrorChannel);
    m_process.start(u"node"_s, {peerScript, browser.value});
    const FunctionCallResult<QString> ready = answer();
    if (ready.failed())
        return Failure(ready.error);
    return {};
}

FunctionCallResult<double> PlaywrightPeer::ask(const QString &command)
{
    m_process.write(command.toUtf8() + '\n');
    const FunctionCallResult<QString> text = answer();
    if (text.failed())
        return Failure(text.error);
    bool isNumber = false;
    const double milliseconds = text.value.toDouble(&isNumber);
    if (!isNumber)
        return Failure(u"playwright-peer.js failed at '%1': %2"_s.arg(command, text.value));
    return milliseconds;
}

FunctionCallResult<QString> PlaywrightPeer::answer()
{
    while (!m_process.canReadLine()) {
        if (!m_process.waitForReadyRead(answerLimitMs))
            return Failure(u"playwright-peer.js gives no answer: %1"_s.arg(m_process.errorString()));
    }
    return QString::fromUtf8(m_process.readLine()).trimmed();
}

} // namespace Ostrel::Bench
