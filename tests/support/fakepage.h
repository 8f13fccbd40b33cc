// FakePage: a bridge without a browser. It records the scripts and plays the answers that a test queued.
#pragma once

#include "wrappers/web/htmlcomponent.h"
#include "wrappers/web/wrapperconfig.h"

#include <QQueue>
#include <QStringList>

namespace Ostrel::Test {

class FakePage : public WebWrapper::HTMLComponent
{
public:
    struct Call
    {
        QString script;
        unsigned int timeoutMs;
    };

    /// Queues an answer; without one an evaluation gives "undefined".
    void answer(const QString &text) { m_answers.enqueue({text, false, false}); }
    /// Queues the answer of an envelope: {"result": json}.
    void answerJson(const QString &json) { answer(QStringLiteral("{\"result\":%1}").arg(json)); }
    /// Queues the answer that identifies an element.
    void answerObject(const QString &type, const QString &reference)
    {
        answer(QStringLiteral("{\"refName\":\"%1\",\"type\":\"%2\"}").arg(reference, type));
    }
    /// Queues a failure with both flags set, as an exception of the page gives.
    void fail(const QString &message) { m_answers.enqueue({message, true, true}); }
    void failWith(const QString &message, bool failed, bool threw)
    {
        m_answers.enqueue({message, failed, threw});
    }

    QStringList scripts() const
    {
        QStringList texts;
        for (const Call &call : m_calls)
            texts.append(call.script);
        return texts;
    }
    const QList<Call> &calls() const { return m_calls; }
    QStringList files() const { return m_files; }

    WebWrapper::MemoryBasedConfig memoryConfig;
    int kind = 0;
    bool available = true;

    EvalResult evaluateJavaScript(const QString &script, unsigned int timeoutMs) const override
    {
        m_calls.append({script, timeoutMs});
        if (m_answers.isEmpty())
            return {QStringLiteral("undefined"), false, false};
        return m_answers.dequeue();
    }
    int browserType() const override { return kind; }
    bool isPageAvailable() const override { return available; }
    WebWrapper::WrapperConfig *config() const override
    {
        return const_cast<WebWrapper::MemoryBasedConfig *>(&memoryConfig);
    }
    FunctionCallResult<void> setFileInputValue(WebWrapper::HTML_TextBase *, const QString &path) override
    {
        m_files.append(path);
        return fileResult;
    }
    FunctionCallResult<void> setCustomFileInputValue(
        WebWrapper::HTML_CustomText *, const QString &path) override
    {
        m_files.append(path);
        return fileResult;
    }

    /// What the file operations give.
    FunctionCallResult<void> fileResult;

private:
    mutable QQueue<EvalResult> m_answers;
    mutable QList<Call> m_calls;
    QStringList m_files;
};

} // namespace Ostrel::Test
