// Tests of the payload's assembly: what stands in the text, in which order, and what separates it.
#include "wrappers/web/payload.h"

#include "ostrelhook/inspector.h"
#include "wrappers/web/wrapperconfig.h"

#include "support/printers.h"
#include "support/scopedvariable.h"

#include <gtest/gtest.h>

#include <QDir>
#include <QFile>
#include <QJSEngine>
#include <QRegularExpression>
#include <QStringList>
#include <QTemporaryDir>

#include <sys/stat.h>
#include <unistd.h>

using namespace Ostrel;
using namespace Ostrel::WebWrapper;
using namespace Qt::StringLiterals;

namespace {

QString readText(const QString &path)
{
    QFile file(path);
    EXPECT_TRUE(file.open(QIODevice::ReadOnly)) << path.toStdString();
    return QString::fromUtf8(file.readAll());
}

/// A page script file as the payload carries it: with the packages' files that it embeds, and one kind of
/// line end.
QString scriptFile(const QString &name)
{
    static const QRegularExpression embedLine(u"[ \\t]*// embed: ([^\\n]+)\\n"_s);
    const QString sourceDir = QStringLiteral(PAGEPROBE_SOURCE_DIR);
    QString text = readText(sourceDir + u"/src/wrappers/web/payload/"_s + name);
    for (auto match = embedLine.match(text); match.hasMatch(); match = embedLine.match(text)) {
        text.replace(match.capturedStart(), match.capturedLength(),
            readText(sourceDir + u"/node_modules/"_s + match.captured(1)) + u'\n');
    }
    return text.replace(u"\r\n"_s, u"\n"_s);
}

QStringList listedFiles()
{
    QStringList names;
    const QStringList lines
        = readText(QStringLiteral(PAGEPROBE_SOURCE_DIR "/src/wrappers/web/payload/sections.txt"))
              .split(u'\n');
    for (const QString &line : lines)
        if (!line.isEmpty() && !line.startsWith(u'#'))
            names += line;
    return names;
}

/// The sections' files, in load order.
QStringList sectionFiles()
{
    return listedFiles().filter(QRegularExpression(u"^[0-9]"_s));
}

QString baseText()
{
    QString text;
    for (const QString &name : sectionFiles())
        text += scriptFile(name);
    return text.trimmed();
}

QString xpathTexts()
{
    return scriptFile(u"xpath-support.js"_s).trimmed() + u'\n' + scriptFile(u"xpath-engine.js"_s).trimmed();
}

/// Where two long texts part, with a line of each; nothing for equal ones.
testing::AssertionResult same(const QString &actual, const QString &expected)
{
    if (actual == expected)
        return testing::AssertionSuccess();
    qsizetype i = 0;
    while (i < qMin(actual.size(), expected.size()) && actual[i] == expected[i])
        ++i;
    return testing::AssertionFailure()
        << "at " << i << " of " << expected.size() << "\n  actual:   " << actual.mid(i, 80).toStdString()
        << "\n  expected: " << expected.mid(i, 80).toStdString();
}

const QString flagOn = u"\ntop.__ostrel__xpath__caseInSensitiveMatching = 1;"_s;

/// An installation with its own extension scripts.
class PayloadTest : public testing::Test
{
protected:
    void SetUp() override
    {
        ASSERT_TRUE(QDir().mkpath(extensionDir()));
        Inspector::self()->setExtensionCode({});
    }

    void TearDown() override { Inspector::self()->setExtensionCode({}); }

    QString extensionDir() const { return m_prefix.path() + u"/lib/extensions/web"_s; }

    QString addExtension(const QString &name, const QByteArray &text)
    {
        QFile file(extensionDir() + u'/' + name);
        EXPECT_TRUE(file.open(QIODevice::WriteOnly));
        file.write(text);
        return file.fileName();
    }

    QTemporaryDir m_prefix;
    ScopedVariable m_prefixVariable{"OSTREL_PREFIX", m_prefix.path()};
    MemoryBasedConfig m_config;
};

/// While it lives, the process may not read what only others may. Root may read everything.
class WithoutPrivileges
{
public:
    WithoutPrivileges() : m_user(geteuid())
    {
        constexpr uid_t nobody = 65534;
        if (m_user == 0) {
            EXPECT_EQ(seteuid(nobody), 0);
        }
    }
    ~WithoutPrivileges()
    {
        if (m_user == 0) {
            EXPECT_EQ(seteuid(m_user), 0);
        }
    }

    WithoutPrivileges(const WithoutPrivileges &) = delete;
    WithoutPrivileges &operator=(const WithoutPrivileges &) = delete;

private:
    uid_t m_user;
};

} // namespace

TEST_F(PayloadTest, AllSectionsStandInTheOrderOfTheirList)
{
    const QString code = getJSCode(m_config);

    EXPECT_TRUE(same(code.left(baseText().size()), baseText()));
}

TEST_F(PayloadTest, ThereAreTwentyFiveSections)
{
    QStringList numbers;
    for (const QString &name : sectionFiles())
        if (numbers.isEmpty() || numbers.last() != name.left(2))
            numbers += name.left(2);

    QStringList expected;
    for (int number = 1; number <= 25; ++number)
        expected += u"%1"_s.arg(number, 2, 10, QChar(u'0'));

    EXPECT_EQ(numbers, expected);
}

TEST_F(PayloadTest, FiveLineBreaksStandBeforeTheXPathTextsWhenNobodyExtendsThePayload)
{
    const QString code = getJSCode(m_config);

    EXPECT_TRUE(same(code, baseText() + u"\n\n\n\n\n"_s + xpathTexts() + flagOn));
}

TEST_F(PayloadTest, ExtensionsStandBetweenTheSectionsAndTheXPathTexts)
{
    addExtension(u"toolkit.js"_s, "toolkit();");
    Inspector::self()->setExtensionCode(u"framework();"_s);

    const QString code = getJSCode(m_config);

    EXPECT_TRUE(same(code, baseText() + u"\ntoolkit();\n\nframework();\n\n"_s + xpathTexts() + flagOn));
}

TEST_F(PayloadTest, EndsWithTheFlagAndNoLineBreak)
{
    EXPECT_TRUE(getJSCode(m_config).endsWith(flagOn));
}

TEST_F(PayloadTest, TheXPathOptionChangesNothingButTheDigit)
{
    MemoryBasedConfig caseSensitive;
    caseSensitive.setCaseInsensitiveXPathNodeNameMatching(false);

    QString on = getJSCode(m_config);
    const QString off = getJSCode(caseSensitive);

    EXPECT_TRUE(off.endsWith(u"\ntop.__ostrel__xpath__caseInSensitiveMatching = 0;"_s));
    EXPECT_TRUE(same(on.replace(on.size() - 2, 1, u'0'), off));
}

TEST_F(PayloadTest, ExtensionsAreSortedWithoutRegardToCase)
{
    addExtension(u"B.js"_s, "second();");
    addExtension(u"a.js"_s, "first();");
    addExtension(u"c.js"_s, "third();");

    EXPECT_TRUE(getJSCode(m_config).contains(u"\nfirst();\nsecond();\nthird();\n"_s));
}

TEST_F(PayloadTest, OnlyScriptFilesAreExtensions)
{
    addExtension(u"a.js"_s, "script();");
    addExtension(u"a.js.bak"_s, "backup();");
    addExtension(u"readme.txt"_s, "text();");
    ASSERT_TRUE(QDir(extensionDir()).mkdir(u"x.js"_s));

    testing::internal::CaptureStderr();
    const QString code = getJSCode(m_config);

    EXPECT_EQ(testing::internal::GetCapturedStderr(), "");
    EXPECT_TRUE(same(code, baseText() + u"\nscript();\n\n\n\n"_s + xpathTexts() + flagOn));
}

TEST_F(PayloadTest, ExtensionsAreTakenAsTheyAre)
{
    addExtension(u"a.js"_s, "line();\r\nother(\"\xc3\xa4 %1\");\n");

    EXPECT_TRUE(getJSCode(m_config).contains(u"\nline();\r\nother(\"ä %1\");\n\n\n"_s));
}

TEST_F(PayloadTest, AnExtensionThatCannotBeReadIsReportedAndLeavesAnEmptyLine)
{
    addExtension(u"a.js"_s, "first();");
    const QString secret = addExtension(u"b.js"_s, "secret();");
    addExtension(u"c.js"_s, "third();");
    ASSERT_EQ(chmod(secret.toLocal8Bit().constData(), 0), 0);
    ASSERT_EQ(chmod(m_prefix.path().toLocal8Bit().constData(), 0755), 0);

    testing::internal::CaptureStderr();
    QString code;
    {
        const WithoutPrivileges guard;
        code = getJSCode(m_config);
    }

    EXPECT_EQ(testing::internal::GetCapturedStderr(),
        "Failed to read JavaScript extension: " + secret.toStdString() + "\n");
    EXPECT_TRUE(code.contains(u"\nfirst();\n\nthird();\n"_s));
}

TEST_F(PayloadTest, AChangedExtensionTakesEffectAtTheNextCall)
{
    addExtension(u"a.js"_s, "before();");
    ASSERT_TRUE(getJSCode(m_config).contains(u"\nbefore();\n"_s));

    addExtension(u"a.js"_s, "after();");

    EXPECT_TRUE(getJSCode(m_config).contains(u"\nafter();\n"_s));
    EXPECT_FALSE(getJSCode(m_config).contains(u"before();"_s));
}

TEST_F(PayloadTest, AnInstallationWithoutExtensionsIsNoError)
{
    m_prefixVariable.set(m_prefix.path() + u"/nowhere"_s);

    testing::internal::CaptureStderr();
    const QString code = getJSCode(m_config);

    EXPECT_EQ(testing::internal::GetCapturedStderr(), "");
    EXPECT_TRUE(same(code, baseText() + u"\n\n\n\n\n"_s + xpathTexts() + flagOn));
}

TEST_F(PayloadTest, AnUnsetPrefixIsNoError)
{
    const ScopedVariable unset("OSTREL_PREFIX");

    testing::internal::CaptureStderr();
    const QString code = getJSCode(m_config);

    EXPECT_EQ(testing::internal::GetCapturedStderr(), "");
    EXPECT_TRUE(same(code, baseText() + u"\n\n\n\n\n"_s + xpathTexts() + flagOn));
}

TEST(NamespaceInitCode, IsOneFunctionThatIsTheSameAtEachCall)
{
    EXPECT_TRUE(same(getOstrelJsNamespaceInitCode(), scriptFile(u"namespace.js"_s)));
    EXPECT_EQ(getOstrelJsNamespaceInitCode().constData(), getOstrelJsNamespaceInitCode().constData());
}

TEST(NamespaceInitCode, EvaluatedAgainItKeepsWhatScriptsRegistered)
{
    QJSEngine page;
    page.evaluate(u"var window = {}; window.top = window;"_s);
    page.evaluate(getOstrelJsNamespaceInitCode());
    page.evaluate(
        u"window.__ostrel.addGlassPaneId('pane'); window.__ostrel.addGlassPaneClassName('shade');"_s);

    const QJSValue again = page.evaluate(getOstrelJsNamespaceInitCode());

    EXPECT_FALSE(again.isError()) << again.toString().toStdString();
    EXPECT_EQ(page.evaluate(u"JSON.stringify(window.__ostrel)"_s).toString(),
        u"{\"glassPaneIds\":[\"pane\"],\"lastTouches\":null,\"glassPaneClassNames\":[\"shade\"]}"_s);
}

TEST(JsonSection, DefinesWhatAnOldBrowserDoesNotHave)
{
    QJSEngine page;
    page.evaluate(u"delete this.JSON;"_s);
    ASSERT_EQ(page.evaluate(u"typeof JSON"_s).toString(), u"undefined"_s);

    const QJSValue loaded = page.evaluate(scriptFile(u"24-json2.js"_s));

    EXPECT_FALSE(loaded.isError()) << loaded.toString().toStdString();
    EXPECT_EQ(
        page.evaluate(u"__ostrel__JSON.stringify({ a: [1, 'x\"\\n', null], b: JSON.parse('[2]')[0] })"_s)
            .toString(),
        uR"({"a":[1,"x\"\n",null],"b":2})"_s);
}

TEST(JsonSection, LeavesWhatTheBrowserHas)
{
    QJSEngine page;
    page.evaluate(u"var stringify = JSON.stringify, parse = JSON.parse;"_s);

    page.evaluate(scriptFile(u"24-json2.js"_s));

    EXPECT_TRUE(page.evaluate(u"JSON.stringify === stringify && JSON.parse === parse"_s).toBool());
    EXPECT_TRUE(page.evaluate(u"__ostrel__JSON.stringify === stringify && __ostrel__JSON.parse === parse"_s)
                    .toBool());
}
