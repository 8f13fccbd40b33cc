// Recording: what tests of recordings share: a session with a recorder, kept files, and the state that a
// user leaves a page in.
#pragma once

#include "host/record/recorder.h"
#include "host/staticserver.h"
#include "trusteduser.h"

#include "support/scopedvariable.h"
#include "support/waitfor.h"

#include <gtest/gtest.h>

#include <QFile>
#include <QRegularExpression>
#include <QTemporaryDir>

#include <memory>

namespace Ostrel::Test {

using namespace Qt::StringLiterals;

/// Where a kept recording lies, or what belongs to it.
inline QString recordingFile(const QString &name)
{
    return QStringLiteral(PAGEPROBE_SOURCE_DIR "/tests/data/recordings/") + name;
}

/// The content of a kept file.
inline QString kept(const QString &fileName)
{
    QFile file(fileName);
    EXPECT_TRUE(file.open(QIODevice::ReadOnly)) << qPrintable(fileName);
    return QString::fromUtf8(file.readAll());
}

inline bool isUpdating()
{
    return qEnvironmentVariableIsSet("PAGEPROBE_UPDATE");
}

/// What varies from run to run is made the same by a normaliser before texts are compared.
using Normaliser = QString (*)(QString text);

inline QString asItIs(QString text)
{
    return text;
}

/// Where exactly a press hits what a page moves in at that moment.
inline QString withoutPlaces(QString script)
{
    static const QRegularExpression place(
        u"^(mouseClick\\(\".*\"), -?\\d+, -?\\d+\\);$"_s, QRegularExpression::MultilineOption);
    return script.replace(place, u"\\1, X, Y);"_s);
}

/// Compares with a kept file, or writes it when PAGEPROBE_UPDATE is set. The difference is reviewed like
/// code.
inline void compareWithKept(const QString &fileName, const QString &text, Normaliser normalised = asItIs)
{
    if (isUpdating()) {
        QFile file(fileName);
        ASSERT_TRUE(file.open(QIODevice::WriteOnly)) << qPrintable(fileName);
        file.write(text.toUtf8());
        return;
    }
    const QStringList found = normalised(text).split(u'\n');
    const QStringList wanted = normalised(kept(fileName)).split(u'\n');
    for (qsizetype i = 0; i < qMax(found.size(), wanted.size()); ++i)
        ASSERT_EQ(found.value(i), wanted.value(i)) << "line " << i + 1;
}

/// Which remarks there are on the pointer depends on what moves below it.
inline QString withoutHovers(QString script)
{
    static const QRegularExpression hover(u"// not recorded: the pointer over .*\n"_s);
    return script.remove(hover);
}

/// Expression for all that the shop knows at the end of the visit, and what its catalogue shows of it. The
/// log of the visit is left out: it holds what no statement can express, such as keys on the wishlist.
inline QString shopState()
{
    return u"({ page: location.pathname, search: document.getElementById('search').value,"
           " title: document.getElementById('goods-title').textContent, shop: Object.assign(shopState(), { log: null }) })"_s;
}

/// Expression for the text of a state, to be compared as it stands.
inline QString stateText(const QString &state)
{
    return u"JSON.stringify(%1, null, 4) + '\\n'"_s.arg(state);
}

/// The state of a page as text.
inline QString stateOf(Host::BrowserPage *page, const QString &state)
{
    const auto answer = page->evaluateJavaScript(stateText(state), 0);
    EXPECT_FALSE(answer.failed) << qPrintable(answer.result);
    return answer.result;
}

/// The state as soon as it is the kept one, since pages take their time; where it never gets so, as it is at
/// last.
inline QString settledState(Host::BrowserPage *page, const QString &state, const QString &fileName)
{
    if (isUpdating())
        return stateOf(page, state);
    const QString wanted = kept(fileName);
    QString found;
    static_cast<void>(waitFor([&] {
        found = stateOf(page, state);
        return found == wanted;
    }));
    return found;
}

/// A browser whose user is recorded. What became of each event is printed when a test fails, and with
/// PAGEPROBE_EXPLAIN.
class Recording : public testing::Test
{
protected:
    void SetUp() override
    {
        auto started = Host::TestSession::start(Host::SessionOptions());
        ASSERT_FALSE(started.failed()) << qPrintable(started.error);
        session = std::move(started.value);
        recorder = std::make_unique<Host::Recorder>(session.get(), names());
        QObject::connect(recorder.get(), &Host::Recorder::explained, recorder.get(),
            [this](const QString &line) { explanations.append(line); });
    }
    void TearDown() override
    {
        recorder.reset();
        session.reset();
        if (HasFailure() || qEnvironmentVariableIsSet("PAGEPROBE_EXPLAIN")) {
            for (const QString &line : explanations)
                fprintf(stderr, "%s\n", qPrintable(line));
        }
    }

    /// Of a recording with symbolic names: what it takes them from.
    virtual Host::RecordedNames *names() { return nullptr; }

    void serve(const QString &name, const QByteArray &content)
    {
        QFile file(folder.filePath(name));
        ASSERT_TRUE(file.open(QIODevice::WriteOnly));
        file.write(content);
    }
    void record(const QString &address)
    {
        const auto opened = recorder->start(address);
        ASSERT_FALSE(opened.failed()) << qPrintable(opened.error);
        ASSERT_TRUE(
            waitUntil(page(), u"location.href !== 'about:blank' && document.readyState === 'complete'"_s));
    }
    /// The statements behind the start, once all has been handled.
    QStringList statements()
    {
        EXPECT_TRUE(waitFor([this] { return recorder->isSettled(); }));
        recorder->finish();
        return recorder->script().lines().mid(1);
    }
    Host::BrowserPage *page() const { return session->activePage(); }
    bool settle()
    {
        return waitFor([this] { return recorder->isSettled(); });
    }
    /// The window that opened last, once its document is there.
    Host::BrowserPage *newWindow(int count)
    {
        EXPECT_TRUE(waitFor([&] { return session->browser()->pages().size() == count; }));
        Host::BrowserPage *opened = session->browser()->pages().constLast();
        EXPECT_TRUE(waitUntil(opened, u"document.readyState === 'complete'"_s));
        return opened;
    }

    /// Where the page extensions lie.
    ScopedVariable prefix{"OSTREL_PREFIX", QStringLiteral(PAGEPROBE_SOURCE_DIR)};
    QTemporaryDir folder;
    Host::StaticServer server{folder.path()};
    std::unique_ptr<Host::TestSession> session;
    std::unique_ptr<Host::Recorder> recorder;
    QStringList explanations;
};

} // namespace Ostrel::Test
