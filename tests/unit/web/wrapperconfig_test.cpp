// Tests of the wrapper's options: what each implementation answers, where a value comes from, and what is
// fixed.
#include "wrappers/web/wrapperconfig.h"

#include "support/freshprocess.h"
#include "support/messagecapture.h"
#include "support/printers.h"
#include "support/scopedvariable.h"

#include <gtest/gtest.h>

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QRegularExpression>
#include <QTemporaryDir>

#include <algorithm>
#include <array>
#include <atomic>
#include <functional>
#include <thread>
#include <type_traits>
#include <vector>

using namespace Ostrel::WebWrapper;
using namespace Qt::StringLiterals;

namespace {

static_assert(std::is_abstract_v<WrapperConfig>);
static_assert(!std::has_virtual_destructor_v<WrapperConfig> && !std::is_destructible_v<WrapperConfig>,
    "a configuration is not deleted through its base");

QString toText(bool value)
{
    return value ? u"true"_s : u"false"_s;
}

QString toText(int value)
{
    return QString::number(value);
}

QString toText(const QString &value)
{
    return value;
}

/// What every operation answers, in their order, each as "operation=answer".
QStringList answersOf(WrapperConfig &config)
{
    return {
        u"enableObjectInfoOverlay="_s + toText(config.enableObjectInfoOverlay()),
        u"filterNonElementNodes="_s + toText(config.filterNonElementNodes()),
        u"proxyListenAddress="_s + toText(config.proxyListenAddress()),
        u"proxyInternalCommAddress="_s + toText(config.proxyInternalCommAddress()),
        u"proxyStartBrowser="_s + toText(config.proxyStartBrowser()),
        u"proxyDebugOutput="_s + toText(config.proxyDebugOutput()),
        u"proxyStartProxy="_s + toText(config.proxyStartProxy()),
        u"hookNewWindows="_s + toText(config.hookNewWindows()),
        u"debugJavaScriptExecution="_s + toText(config.debugJavaScriptExecution()),
        u"caseInsensitiveXPathNodeNameMatching="_s + toText(config.caseInsensitiveXPathNodeNameMatching()),
        u"backwardsCompatibleVisiblePropertyForHTML_Object="_s
            + toText(config.backwardsCompatibleVisiblePropertyForHTML_Object()),
        u"internetExplorerReadyStateTimeout="_s + toText(config.internetExplorerReadyStateTimeout()),
        u"openFirefoxWithConsole="_s + toText(config.openFirefoxWithConsole()),
        u"improvedTabAndWindowSupport="_s + toText(config.improvedTabAndWindowSupport()),
        u"supportSinglePropertyNaming="_s + toText(config.supportSinglePropertyNaming()),
        u"throwErrorOnUnknownContextNames="_s + toText(config.throwErrorOnUnknownContextNames()),
        u"enableBrowserDebugging="_s + toText(config.enableBrowserDebugging()),
        u"chromeDriverForChromiumBasedApps="_s + toText(config.chromeDriverForChromiumBasedApps()),
        u"includeIdPropertyInGeneratedNames="_s + toText(config.includeIdPropertyInGeneratedNames()),
        u"useSessionStorageForEvents="_s + toText(config.useSessionStorageForEvents()),
    };
}

const QStringList builtInAnswers = {
    u"enableObjectInfoOverlay=false"_s,
    u"filterNonElementNodes=true"_s,
    u"proxyListenAddress=localhost:8001"_s,
    u"proxyInternalCommAddress=localhost:8000"_s,
    u"proxyStartBrowser=true"_s,
    u"proxyDebugOutput=false"_s,
    u"proxyStartProxy=true"_s,
    u"hookNewWindows=false"_s,
    u"debugJavaScriptExecution=false"_s,
    u"caseInsensitiveXPathNodeNameMatching=true"_s,
    u"backwardsCompatibleVisiblePropertyForHTML_Object=false"_s,
    u"internetExplorerReadyStateTimeout=5000"_s,
    u"openFirefoxWithConsole=false"_s,
    u"improvedTabAndWindowSupport=true"_s,
    u"supportSinglePropertyNaming=false"_s,
    u"throwErrorOnUnknownContextNames=true"_s,
    u"enableBrowserDebugging=false"_s,
    u"chromeDriverForChromiumBasedApps=chromedriver"_s,
    u"includeIdPropertyInGeneratedNames=true"_s,
    u"useSessionStorageForEvents=false"_s,
};

/// The built-in answers but for the given ones.
QStringList builtInBut(const QStringList &others)
{
    QStringList answers = builtInAnswers;
    for (const QString &other : others) {
        const QString operation = other.left(other.indexOf(u'=') + 1);
        const auto place = std::find_if(answers.begin(), answers.end(),
            [&operation](const QString &answer) { return answer.startsWith(operation); });
        EXPECT_NE(place, answers.end()) << other.toStdString();
        if (place != answers.end())
            *place = other;
    }
    return answers;
}

/// For each key an entry that differs from the built-in value, and the one answer that it changes.
struct ChangedEntry
{
    QString entry;
    QString answer;
    bool once;
};

const std::vector<ChangedEntry> changedEntries = {
    {u"EnableObjectInfoOverlay = TRUE"_s, u"enableObjectInfoOverlay=true"_s, true},
    {u"DynamicTextNodeFilter = FALSE"_s, u"filterNonElementNodes=false"_s, true},
    {u"ProxyListenAddress = \"listen:1\""_s, u"proxyListenAddress=listen:1"_s, false},
    {u"ProxyConnectAddress = \"connect:2\""_s, u"proxyInternalCommAddress=connect:2"_s, false},
    {u"ProxyStartBrowser = 0"_s, u"proxyStartBrowser=false"_s, false},
    {u"ProxyDebugOutput = 1"_s, u"proxyDebugOutput=true"_s, false},
    {u"ProxyImplicitStart = 0"_s, u"proxyStartProxy=false"_s, false},
    {u"HookNewWindows = 1"_s, u"hookNewWindows=true"_s, true},
    {u"DebugJavaScriptExecution = 1"_s, u"debugJavaScriptExecution=true"_s, true},
    {u"CaseInsensitiveXPathNodeNameMatching = 0"_s, u"caseInsensitiveXPathNodeNameMatching=false"_s, true},
    {u"BackwardsCompatibleVisiblePropertyForHTML_Object = 1"_s,
        u"backwardsCompatibleVisiblePropertyForHTML_Object=true"_s, true},
    {u"InternetExplorerReadyStateTimeout = 250"_s, u"internetExplorerReadyStateTimeout=250"_s, false},
    {u"OpenFirefoxWithConsole = 1"_s, u"openFirefoxWithConsole=true"_s, false},
    {u"ImprovedTabAndWindowSupport = 0"_s, u"improvedTabAndWindowSupport=false"_s, true},
    {u"SupportSinglePropertyNaming = 1"_s, u"supportSinglePropertyNaming=true"_s, false},
    {u"ThrowErrorOnUnknownContextNames = 0"_s, u"throwErrorOnUnknownContextNames=false"_s, true},
    {u"EnableBrowserDebugging = 1"_s, u"enableBrowserDebugging=true"_s, true},
    {u"ChromeDriverForChromiumBasedApps = \"/opt/driver\""_s,
        u"chromeDriverForChromiumBasedApps=/opt/driver"_s, false},
    {u"IncludeIdPropertyInGeneratedNames = 0"_s, u"includeIdPropertyInGeneratedNames=false"_s, false},
    {u"UseSessionStorageForEvents = 1"_s, u"useSessionStorageForEvents=true"_s, true},
};

/// Every test has its own global and user file; both are missing at first.
class WrapperConfigTest : public testing::Test
{
protected:
    static void write(const QString &path, const QStringList &lines)
    {
        ASSERT_TRUE(QDir().mkpath(QFileInfo(path).path()));
        QFile file(path);
        ASSERT_TRUE(file.open(QIODevice::WriteOnly));
        file.write(lines.join(u'\n').toUtf8() + '\n');
    }

    void writeGlobalFile(const QStringList &entries) const
    {
        write(m_globalFile, QStringList{u"[General]"_s} + entries);
    }

    void writeUserFile(const QStringList &entries) const
    {
        write(m_userFile, QStringList{u"[General]"_s} + entries);
    }

    /// What an object answers, and the warnings so far behind it: in a fresh process nobody else hears them.
    QStringList ask(FileSystemBasedConfig &config)
    {
        QStringList answers = answersOf(config);
        return answers += m_messages.take();
    }

    /// What a new object answers in a process that has not asked before.
    QStringList freshAnswers()
    {
        return inFreshProcess([this] {
            FileSystemBasedConfig config;
            return ask(config);
        });
    }

    QTemporaryDir m_directory;
    const QString m_globalFile
        = m_directory.filePath(u"prefix"_s) + QDir::separator() + u"etc/webwrapper.ini"_s;
    const QString m_userFile = m_directory.filePath(u"user/ver1/webwrapper.ini"_s);
    ScopedVariable m_prefix{"OSTREL_PREFIX", m_directory.filePath(u"prefix"_s)};
    ScopedVariable m_userDirectory{"OSTREL_USER_SETTINGS_DIR", m_directory.filePath(u"user"_s)};
    ScopedVariable m_hookVariable{"OSTREL_WEB_NEWWINDOWHOOK"};
    MessageCapture m_messages;
};

// The table

TEST_F(WrapperConfigTest, TableListsEveryOperationInOrderWithItsValue)
{
    QStringList rows;
    for (const ConfigOption &option : configOptions())
        rows += option.operation.toString() + u'=' + option.defaultValue().toString();

    EXPECT_EQ(rows, builtInAnswers);
}

TEST_F(WrapperConfigTest, TableNamesKeysAndWhatIsFixed)
{
    ASSERT_EQ(configOptions().size(), changedEntries.size());
    for (std::size_t i = 0; i < changedEntries.size(); ++i) {
        const ConfigOption &option = configOptions()[i];
        EXPECT_EQ(option.key.toString(), changedEntries[i].entry.section(u' ', 0, 0));
        EXPECT_EQ(option.once, changedEntries[i].once) << option.key.toString().toStdString();
        EXPECT_EQ(option.switchedOnBy.toString(),
            option.key == u"HookNewWindows" ? u"OSTREL_WEB_NEWWINDOWHOOK"_s : u""_s);
    }
}

TEST_F(WrapperConfigTest, DocumentedSettingsFileHasEveryOptionWithItsValue)
{
    QFile file(u"" PAGEPROBE_SOURCE_DIR "/etc/webwrapper.ini"_s);
    ASSERT_TRUE(file.open(QIODevice::ReadOnly));
    const QString text = QString::fromUtf8(file.readAll());
    const QRegularExpression documentedEntry(
        u"^# [^\\n]+\\n#(\\w+) = "_s, QRegularExpression::MultilineOption);
    QStringList documented;
    for (const QRegularExpressionMatch &match : documentedEntry.globalMatch(text))
        documented += match.captured(1);
    QStringList keys;
    for (const ConfigOption &option : configOptions())
        keys += option.key.toString();

    EXPECT_EQ(documented, keys) << "each key once, in the order of the table, below its explanation";

    // As it stands the file sets nothing; with its entries uncommented it sets what holds anyway.
    write(m_globalFile, {text});
    write(m_userFile,
        {QString(text).replace(
            QRegularExpression(u"^#(?=\\w+ = )"_s, QRegularExpression::MultilineOption), u""_s)});
    const FileSystemBasedConfig config;
    for (const ConfigOption &option : configOptions()) {
        SCOPED_TRACE(option.key.toString().toStdString());
        const ResolvedOption resolved = config.resolve(option);
        EXPECT_EQ(resolved.source, ConfigSource::UserFile);
        EXPECT_EQ(resolved.value, option.defaultValue());
    }
    QFile::remove(m_userFile);
    const FileSystemBasedConfig asItStands;
    for (const ConfigOption &option : configOptions())
        EXPECT_EQ(asItStands.resolve(option).source, ConfigSource::BuiltIn);
}

// In memory

TEST_F(WrapperConfigTest, MemoryHasTheBuiltInValues)
{
    m_hookVariable.set(u"1"_s); // not looked at
    writeUserFile({u"ProxyDebugOutput = 1"_s});
    MemoryBasedConfig config;

    EXPECT_EQ(answersOf(config), builtInAnswers);
}

TEST_F(WrapperConfigTest, MemorySettersChangeTheirOwnAnswer)
{
    struct Row
    {
        std::function<void(MemoryBasedConfig &)> set;
        QString answer;
    };
    const std::vector<Row> rows = {
        {[](auto &c) { c.setObjectInfoOverlayEnabled(true); }, u"enableObjectInfoOverlay=true"_s},
        {[](auto &c) { c.setFilterNonElementNodes(false); }, u"filterNonElementNodes=false"_s},
        {[](auto &c) { c.setProxyListenAddress(u"a:1"_s); }, u"proxyListenAddress=a:1"_s},
        {[](auto &c) { c.setProxyInternalCommAddress(u"b:2"_s); }, u"proxyInternalCommAddress=b:2"_s},
        {[](auto &c) { c.setProxyStartBrowser(false); }, u"proxyStartBrowser=false"_s},
        {[](auto &c) { c.setProxyDebugOutput(true); }, u"proxyDebugOutput=true"_s},
        {[](auto &c) { c.setProxyStartProxy(false); }, u"proxyStartProxy=false"_s},
        {[](auto &c) { c.setHookNewWindows(true); }, u"hookNewWindows=true"_s},
        {[](auto &c) { c.setDebugJavaScriptExecution(true); }, u"debugJavaScriptExecution=true"_s},
        {[](auto &c) { c.setCaseInsensitiveXPathNodeNameMatching(false); },
            u"caseInsensitiveXPathNodeNameMatching=false"_s},
        {[](auto &c) { c.setBackwardsCompatibleVisiblePropertyForHTML_Object(true); },
            u"backwardsCompatibleVisiblePropertyForHTML_Object=true"_s},
        {[](auto &c) { c.setInternetExplorerReadyStateTimeout(-1); },
            u"internetExplorerReadyStateTimeout=-1"_s},
        {[](auto &c) { c.setOpenFirefoxWithConsole(true); }, u"openFirefoxWithConsole=true"_s},
        {[](auto &c) { c.setImprovedTabAndWindowSupport(false); }, u"improvedTabAndWindowSupport=false"_s},
        {[](auto &c) { c.setSupportSinglePropertyNaming(true); }, u"supportSinglePropertyNaming=true"_s},
        {[](auto &c) { c.setThrowErrorOnUnknownContextNames(false); },
            u"throwErrorOnUnknownContextNames=false"_s},
        {[](auto &c) { c.setEnableBrowserDebugging(true); }, u"enableBrowserDebugging=true"_s},
        {[](auto &c) { c.setChromeDriverForChromiumBasedApps(u""_s); },
            u"chromeDriverForChromiumBasedApps="_s},
        {[](auto &c) { c.setIncludeIdProperty(false); }, u"includeIdPropertyInGeneratedNames=false"_s},
    };
    for (const Row &row : rows) {
        MemoryBasedConfig config;
        row.set(config);
        EXPECT_EQ(answersOf(config), builtInBut({row.answer}));
    }
}

// From files

TEST_F(WrapperConfigTest, FilesAnswerWithTheBuiltInValuesWhenThereAreNone)
{
    EXPECT_EQ(freshAnswers(), builtInAnswers);
}

TEST_F(WrapperConfigTest, FilesLieInTheTwoSettingsDirectories)
{
    const FileSystemBasedConfig config;

    EXPECT_EQ(config.globalFileName(), m_globalFile);
    EXPECT_EQ(config.userFileName(), m_userFile);
}

TEST_F(WrapperConfigTest, EachKeyChangesItsOwnAnswer)
{
    for (const ChangedEntry &row : changedEntries) {
        SCOPED_TRACE(row.entry.toStdString());
        QFile::remove(m_userFile);
        writeGlobalFile({row.entry});
        EXPECT_EQ(freshAnswers(), builtInBut({row.answer}));

        QFile::remove(m_globalFile);
        writeUserFile({row.entry});
        EXPECT_EQ(freshAnswers(), builtInBut({row.answer}));
    }
}

TEST_F(WrapperConfigTest, OnlyTheGroupGeneralCounts)
{
    write(m_userFile, {u"[general]"_s, u"ProxyDebugOutput = 1"_s, u"[Other]"_s, u"ProxyStartBrowser = 0"_s});

    EXPECT_EQ(freshAnswers(), builtInAnswers);
}

TEST_F(WrapperConfigTest, UserFileGoesBeforeGlobalFileKeyByKey)
{
    struct Row
    {
        const char *name;
        QString global;
        QString user;
        QString answer;
        QStringList badFiles = {}; // those whose string is reported, in order
    };
    const QString global = m_globalFile;
    const QString user = m_userFile;
    const std::vector<Row> rows = {
        {"the user's number", u"InternetExplorerReadyStateTimeout = 1000"_s,
            u"InternetExplorerReadyStateTimeout = 2000"_s, u"internetExplorerReadyStateTimeout=2000"_s},
        {"a bad number of the user", u"InternetExplorerReadyStateTimeout = 1000"_s,
            u"InternetExplorerReadyStateTimeout = 2s"_s, u"internetExplorerReadyStateTimeout=1000"_s},
        {"two bad numbers", u"InternetExplorerReadyStateTimeout = \"1000\""_s,
            u"InternetExplorerReadyStateTimeout ="_s, u"internetExplorerReadyStateTimeout=5000"_s},
        {"the user says what holds anyway", u"ProxyStartBrowser = FALSE"_s, u"ProxyStartBrowser = TRUE"_s,
            u"proxyStartBrowser=true"_s},
        {"a word that is no boolean", u"ProxyStartBrowser = FALSE"_s, u"ProxyStartBrowser = yes"_s,
            u"proxyStartBrowser=false"_s},
        {"two words that are no booleans", u"ProxyStartBrowser = off"_s, u"ProxyStartBrowser = no"_s,
            u"proxyStartBrowser=true"_s},
        {"the user's text", u"ProxyListenAddress = \"global:1\""_s, u"ProxyListenAddress = \"user:2\""_s,
            u"proxyListenAddress=user:2"_s},
        {"the user's empty text is a text", u"ProxyListenAddress = \"global:1\""_s,
            u"ProxyListenAddress = \"\""_s, u"proxyListenAddress="_s},
        {"a text of the user without quotes", u"ProxyListenAddress = \"global:1\""_s,
            u"ProxyListenAddress = user:2"_s, u"proxyListenAddress=global:1"_s, {user}},
        {"a global text without quotes is reported although the user's counts",
            u"ProxyListenAddress = global:1"_s, u"ProxyListenAddress = \"user:2\""_s,
            u"proxyListenAddress=user:2"_s, {global}},
        {"two texts without quotes", u"ProxyListenAddress = global:1"_s, u"ProxyListenAddress = user:2"_s,
            u"proxyListenAddress=localhost:8001"_s, {global, user}},
        {"another key of the user", u"ProxyListenAddress = \"global:1\""_s,
            u"ProxyConnectAddress = \"localhost:8000\""_s, u"proxyListenAddress=global:1"_s},
    };
    for (const Row &row : rows) {
        SCOPED_TRACE(row.name);
        writeGlobalFile({row.global});
        writeUserFile({row.user});
        QStringList expected = builtInBut({row.answer});
        for (const QString &file : row.badFiles)
            expected += u"Ostrel::Settings: entry is not a string in %1"_s.arg(file);

        EXPECT_EQ(freshAnswers(), expected);
    }
}

TEST_F(WrapperConfigTest, BadEntryIsReportedAtEachRead)
{
    writeUserFile({u"ProxyListenAddress = user:2"_s});
    FileSystemBasedConfig config;

    EXPECT_EQ(config.proxyListenAddress(), u"localhost:8001"_s);
    EXPECT_EQ(config.proxyListenAddress(), u"localhost:8001"_s);

    const QString warning = u"Ostrel::Settings: entry is not a string in %1"_s.arg(m_userFile);
    EXPECT_EQ(m_messages.take(), (QStringList{warning, warning}));
}

TEST_F(WrapperConfigTest, ResolvingTellsWhereAValueComesFrom)
{
    writeGlobalFile({u"ProxyListenAddress = \"global:1\""_s, u"ProxyStartBrowser = 0"_s});
    writeUserFile({u"ProxyStartBrowser = 1"_s, u"InternetExplorerReadyStateTimeout = 5000"_s});
    m_hookVariable.set(u"1"_s);
    struct Row
    {
        QStringView operation;
        QVariant value;
        ConfigSource source;
    };
    const std::vector<Row> rows = {
        {u"proxyListenAddress", u"global:1"_s, ConfigSource::GlobalFile},
        {u"proxyInternalCommAddress", u"localhost:8000"_s, ConfigSource::BuiltIn},
        {u"proxyStartBrowser", true, ConfigSource::UserFile},
        {u"internetExplorerReadyStateTimeout", 5000, ConfigSource::UserFile},
        {u"hookNewWindows", true, ConfigSource::Environment},
        {u"openFirefoxWithConsole", false, ConfigSource::BuiltIn},
    };
    const FileSystemBasedConfig config;
    for (const Row &row : rows) {
        SCOPED_TRACE(row.operation.toString().toStdString());
        const auto options = configOptions();
        const auto option = std::find_if(options.begin(), options.end(),
            [&row](const ConfigOption &candidate) { return candidate.operation == row.operation; });
        ASSERT_NE(option, options.end());

        const ResolvedOption resolved = config.resolve(*option);

        EXPECT_EQ(resolved.value, row.value);
        EXPECT_EQ(resolved.value.metaType(), row.value.metaType());
        EXPECT_EQ(resolved.source, row.source);
    }
}

// The variable of hookNewWindows

TEST_F(WrapperConfigTest, VariableSwitchesHookNewWindowsOnAndNeverOff)
{
    struct Row
    {
        QString entry;
        QString variable;
        QString answer;
        ConfigSource source;
    };
    const std::vector<Row> rows = {
        {u""_s, u"1"_s, u"hookNewWindows=true"_s, ConfigSource::Environment},
        {u"HookNewWindows = 0"_s, u"1"_s, u"hookNewWindows=true"_s, ConfigSource::Environment},
        {u"HookNewWindows = 1"_s, u"1"_s, u"hookNewWindows=true"_s, ConfigSource::UserFile},
        {u"HookNewWindows = 1"_s, u"0"_s, u"hookNewWindows=true"_s, ConfigSource::UserFile},
        {u"HookNewWindows = 0"_s, u"0"_s, u"hookNewWindows=false"_s, ConfigSource::UserFile},
        {u"HookNewWindows = 0"_s, u"yes"_s, u"hookNewWindows=false"_s, ConfigSource::UserFile},
        {u"HookNewWindows = 0"_s, u"11"_s, u"hookNewWindows=false"_s, ConfigSource::UserFile},
        {u""_s, u"true"_s, u"hookNewWindows=false"_s, ConfigSource::BuiltIn},
        {u""_s, u" 1"_s, u"hookNewWindows=false"_s, ConfigSource::BuiltIn},
        {u""_s, u""_s, u"hookNewWindows=false"_s, ConfigSource::BuiltIn},
    };
    for (const Row &row : rows) {
        SCOPED_TRACE((row.entry + u" and variable "_s + row.variable).toStdString());
        writeUserFile({row.entry});
        m_hookVariable.set(row.variable);

        EXPECT_EQ(freshAnswers(), builtInBut({row.answer}));
        EXPECT_EQ(FileSystemBasedConfig().resolve(configOptions()[7]).source, row.source);
    }
}

// What is fixed when

TEST_F(WrapperConfigTest, ObjectKeepsToTheFilesItRead)
{
    const QStringList answers = inFreshProcess([this] {
        FileSystemBasedConfig config;
        QStringList entries;
        for (const ChangedEntry &row : changedEntries)
            entries += row.entry;
        writeGlobalFile(entries);
        writeUserFile(entries);
        return ask(config);
    });

    EXPECT_EQ(answers, builtInAnswers);
}

TEST_F(WrapperConfigTest, NewObjectSeesAChangedFileButForOnceOptions)
{
    QStringList entries;
    QStringList changedAnswers;
    for (const ChangedEntry &row : changedEntries) {
        entries += row.entry;
        if (!row.once)
            changedAnswers += row.answer;
    }

    const QStringList answers = inFreshProcess([this, &entries] {
        FileSystemBasedConfig first;
        ask(first);
        writeUserFile(entries);
        m_hookVariable.set(u"1"_s);
        FileSystemBasedConfig second;
        QStringList both = ask(second);
        return both += ask(first);
    });

    ASSERT_EQ(changedAnswers.size(), 10);
    EXPECT_EQ(answers, builtInBut(changedAnswers) + builtInAnswers);
}

TEST_F(WrapperConfigTest, OnceOptionsAreFixedByTheFirstCallNotByTheFirstObject)
{
    QStringList entries;
    QStringList changedAnswers;
    QStringList fixedAnswers;
    for (const ChangedEntry &row : changedEntries) {
        entries += row.entry;
        changedAnswers += row.answer;
        if (row.once)
            fixedAnswers += row.answer;
    }

    const QStringList answers = inFreshProcess([this, &entries] {
        FileSystemBasedConfig first;
        writeUserFile(entries);
        FileSystemBasedConfig second;
        QStringList both = ask(second);
        return both += ask(first);
    });

    EXPECT_EQ(answers, builtInBut(changedAnswers) + builtInBut(fixedAnswers));
}

TEST_F(WrapperConfigTest, ConcurrentFirstCallsSeeOneValue)
{
    const QStringList answers = inFreshProcess([this] {
        FileSystemBasedConfig off;
        writeUserFile({u"HookNewWindows = 1"_s});
        FileSystemBasedConfig on;

        std::array<bool, 8> seen{};
        std::array<std::thread, 8> threads;
        std::atomic<bool> start = false;
        for (std::size_t i = 0; i < threads.size(); ++i) {
            threads[i] = std::thread([&, i] {
                while (!start)
                    std::this_thread::yield();
                seen[i] = (i % 2 ? on : off).hookNewWindows();
            });
        }
        start = true;
        for (std::thread &thread : threads)
            thread.join();

        QStringList distinct;
        for (const bool value : seen)
            distinct += toText(value);
        distinct.removeDuplicates();
        return distinct;
    });

    EXPECT_EQ(answers.size(), 1);
}

} // namespace
