#include "wrappers/web/wrapperconfig.h"

#include "shared/settings.h"

#include <iterator>
#include <optional>
#include <string_view>
#include <type_traits>

namespace Ostrel::WebWrapper {

using namespace Qt::StringLiterals;

namespace {

constexpr bool Once = true;
constexpr bool EachTime = false;

// The one list of options, in the order of the operations.
// Kept as is: the keys DynamicTextNodeFilter, ProxyConnectAddress and ProxyImplicitStart are not named like
// their operations. They are what stands in the settings files of users.
constexpr ConfigOption options[] = {
    {u"enableObjectInfoOverlay", u"EnableObjectInfoOverlay", false, Once},
    {u"filterNonElementNodes", u"DynamicTextNodeFilter", true, Once},
    {u"proxyListenAddress", u"ProxyListenAddress", QStringView(u"localhost:8001"), EachTime},
    {u"proxyInternalCommAddress", u"ProxyConnectAddress", QStringView(u"localhost:8000"), EachTime},
    {u"proxyStartBrowser", u"ProxyStartBrowser", true, EachTime},
    {u"proxyDebugOutput", u"ProxyDebugOutput", false, EachTime},
    {u"proxyStartProxy", u"ProxyImplicitStart", true, EachTime},
    {u"hookNewWindows", u"HookNewWindows", false, Once, u"OSTREL_WEB_NEWWINDOWHOOK"},
    {u"debugJavaScriptExecution", u"DebugJavaScriptExecution", false, Once},
    {u"caseInsensitiveXPathNodeNameMatching", u"CaseInsensitiveXPathNodeNameMatching", true, Once},
    {u"backwardsCompatibleVisiblePropertyForHTML_Object", u"BackwardsCompatibleVisiblePropertyForHTML_Object",
        false, Once},
    {u"internetExplorerReadyStateTimeout", u"InternetExplorerReadyStateTimeout", 5000, EachTime},
    {u"openFirefoxWithConsole", u"OpenFirefoxWithConsole", false, EachTime},
    {u"improvedTabAndWindowSupport", u"ImprovedTabAndWindowSupport", true, Once},
    {u"supportSinglePropertyNaming", u"SupportSinglePropertyNaming", false, EachTime},
    {u"throwErrorOnUnknownContextNames", u"ThrowErrorOnUnknownContextNames", true, Once},
    {u"enableBrowserDebugging", u"EnableBrowserDebugging", false, Once},
    {u"chromeDriverForChromiumBasedApps", u"ChromeDriverForChromiumBasedApps", QStringView(u"chromedriver"),
        EachTime},
    {u"includeIdPropertyInGeneratedNames", u"IncludeIdPropertyInGeneratedNames", true, EachTime},
    {u"useSessionStorageForEvents", u"UseSessionStorageForEvents", false, Once},
};

/// The place of an operation in the table. A name that is not there does not compile.
consteval std::size_t row(std::u16string_view operation)
{
    for (std::size_t i = 0; i < std::size(options); ++i) {
        const QStringView candidate = options[i].operation;
        if (operation == std::u16string_view(candidate.utf16(), static_cast<std::size_t>(candidate.size())))
            return i;
    }
    throw "no such option";
}

/// What an operation answers with: bool, int or QString, as the built-in value of its row says.
template <std::size_t Row>
using ValueOf = std::conditional_t<std::holds_alternative<bool>(options[Row].builtIn), bool,
    std::conditional_t<std::holds_alternative<int>(options[Row].builtIn), int, QString>>;

template <std::size_t Row>
ValueOf<Row> builtIn()
{
    return options[Row].defaultValue().template value<ValueOf<Row>>();
}

/// The answer of FileSystemBasedConfig, the same way for every option.
template <std::size_t Row>
ValueOf<Row> answer(const FileSystemBasedConfig &config)
{
    const auto ask = [&config] { return config.resolve(options[Row]).value.template value<ValueOf<Row>>(); };
    if constexpr (options[Row].once) {
        static const ValueOf<Row> firstAnswer = ask();
        return firstAnswer;
    } else {
        return ask();
    }
}

/// Reads the entry of one option with the read of its type; invalid when the store has none that is usable.
struct EntryReader
{
    const Settings &store;
    const QString key;
    const QString group = u"General"_s;

    QVariant operator()(bool) const { return toVariant(store.boolEntry(group, key)); }
    QVariant operator()(int) const { return toVariant(store.intEntry(group, key)); }
    QVariant operator()(QStringView) const { return toVariant(store.stringEntry(group, key)); }

    template <typename Value>
    static QVariant toVariant(const std::optional<Value> &value)
    {
        return value ? QVariant(*value) : QVariant();
    }
};

QVariant readEntry(const Settings &store, const ConfigOption &option)
{
    // The rows live as long as the process, so the key need not be copied.
    const QString key = QString::fromRawData(option.key.data(), option.key.size());
    return std::visit(EntryReader{store, key}, option.builtIn);
}

} // namespace

QVariant ConfigOption::defaultValue() const
{
    if (const QStringView *text = std::get_if<QStringView>(&builtIn))
        return text->toString();
    if (const int *number = std::get_if<int>(&builtIn))
        return *number;
    return std::get<bool>(builtIn);
}

std::span<const ConfigOption> configOptions()
{
    return options;
}

MemoryBasedConfig::MemoryBasedConfig()
    : m_enableObjectInfoOverlay(builtIn<row(u"enableObjectInfoOverlay")>()),
      m_filterNonElementNodes(builtIn<row(u"filterNonElementNodes")>()),
      m_proxyListenAddress(builtIn<row(u"proxyListenAddress")>()),
      m_proxyInternalCommAddress(builtIn<row(u"proxyInternalCommAddress")>()),
      m_proxyStartBrowser(builtIn<row(u"proxyStartBrowser")>()),
      m_proxyDebugOutput(builtIn<row(u"proxyDebugOutput")>()),
      m_proxyStartProxy(builtIn<row(u"proxyStartProxy")>()),
      m_hookNewWindows(builtIn<row(u"hookNewWindows")>()),
      m_debugJavaScriptExecution(builtIn<row(u"debugJavaScriptExecution")>()),
      m_caseInsensitiveXPathNodeNameMatching(builtIn<row(u"caseInsensitiveXPathNodeNameMatching")>()),
      m_backwardsCompatibleVisiblePropertyForHTML_Object(
          builtIn<row(u"backwardsCompatibleVisiblePropertyForHTML_Object")>()),
      m_internetExplorerReadyStateTimeout(builtIn<row(u"internetExplorerReadyStateTimeout")>()),
      m_openFirefoxWithConsole(builtIn<row(u"openFirefoxWithConsole")>()),
      m_improvedTabAndWindowSupport(builtIn<row(u"improvedTabAndWindowSupport")>()),
      m_supportSinglePropertyNaming(builtIn<row(u"supportSinglePropertyNaming")>()),
      m_throwErrorOnUnknownContextNames(builtIn<row(u"throwErrorOnUnknownContextNames")>()),
      m_enableBrowserDebugging(builtIn<row(u"enableBrowserDebugging")>()),
      m_chromeDriverForChromiumBasedApps(builtIn<row(u"chromeDriverForChromiumBasedApps")>()),
      m_includeIdPropertyInGeneratedNames(builtIn<row(u"includeIdPropertyInGeneratedNames")>()),
      m_useSessionStorageForEvents(builtIn<row(u"useSessionStorageForEvents")>())
{
}

MemoryBasedConfig::~MemoryBasedConfig() = default;

bool MemoryBasedConfig::enableObjectInfoOverlay() const
{
    return m_enableObjectInfoOverlay;
}

bool MemoryBasedConfig::filterNonElementNodes() const
{
    return m_filterNonElementNodes;
}

QString MemoryBasedConfig::proxyListenAddress()
{
    return m_proxyListenAddress;
}

QString MemoryBasedConfig::proxyInternalCommAddress()
{
    return m_proxyInternalCommAddress;
}

bool MemoryBasedConfig::proxyStartBrowser() const
{
    return m_proxyStartBrowser;
}

bool MemoryBasedConfig::proxyDebugOutput() const
{
    return m_proxyDebugOutput;
}

bool MemoryBasedConfig::proxyStartProxy() const
{
    return m_proxyStartProxy;
}

bool MemoryBasedConfig::hookNewWindows() const
{
    return m_hookNewWindows;
}

bool MemoryBasedConfig::debugJavaScriptExecution() const
{
    return m_debugJavaScriptExecution;
}

bool MemoryBasedConfig::caseInsensitiveXPathNodeNameMatching() const
{
    return m_caseInsensitiveXPathNodeNameMatching;
}

bool MemoryBasedConfig::backwardsCompatibleVisiblePropertyForHTML_Object() const
{
    return m_backwardsCompatibleVisiblePropertyForHTML_Object;
}

int MemoryBasedConfig::internetExplorerReadyStateTimeout() const
{
    return m_internetExplorerReadyStateTimeout;
}

bool MemoryBasedConfig::openFirefoxWithConsole() const
{
    return m_openFirefoxWithConsole;
}

bool MemoryBasedConfig::improvedTabAndWindowSupport() const
{
    return m_improvedTabAndWindowSupport;
}

bool MemoryBasedConfig::supportSinglePropertyNaming() const
{
    return m_supportSinglePropertyNaming;
}

bool MemoryBasedConfig::throwErrorOnUnknownContextNames() const
{
    return m_throwErrorOnUnknownContextNames;
}

bool MemoryBasedConfig::enableBrowserDebugging() const
{
    return m_enableBrowserDebugging;
}

QString MemoryBasedConfig::chromeDriverForChromiumBasedApps()
{
    return m_chromeDriverForChromiumBasedApps;
}

bool MemoryBasedConfig::includeIdPropertyInGeneratedNames() const
{
    return m_includeIdPropertyInGeneratedNames;
}

bool MemoryBasedConfig::useSessionStorageForEvents() const
{
    return m_useSessionStorageForEvents;
}

void MemoryBasedConfig::setObjectInfoOverlayEnabled(bool on)
{
    m_enableObjectInfoOverlay = on;
}

void MemoryBasedConfig::setFilterNonElementNodes(bool on)
{
    m_filterNonElementNodes = on;
}

void MemoryBasedConfig::setProxyListenAddress(const QString &address)
{
    m_proxyListenAddress = address;
}

void MemoryBasedConfig::setProxyInternalCommAddress(const QString &address)
{
    m_proxyInternalCommAddress = address;
}

void MemoryBasedConfig::setProxyStartBrowser(bool on)
{
    m_proxyStartBrowser = on;
}

void MemoryBasedConfig::setProxyDebugOutput(bool on)
{
    m_proxyDebugOutput = on;
}

void MemoryBasedConfig::setProxyStartProxy(bool on)
{
    m_proxyStartProxy = on;
}

void MemoryBasedConfig::setHookNewWindows(bool on)
{
    m_hookNewWindows = on;
}

void MemoryBasedConfig::setDebugJavaScriptExecution(bool on)
{
    m_debugJavaScriptExecution = on;
}

void MemoryBasedConfig::setCaseInsensitiveXPathNodeNameMatching(bool on)
{
    m_caseInsensitiveXPathNodeNameMatching = on;
}

void MemoryBasedConfig::setBackwardsCompatibleVisiblePropertyForHTML_Object(bool on)
{
    m_backwardsCompatibleVisiblePropertyForHTML_Object = on;
}

void MemoryBasedConfig::setInternetExplorerReadyStateTimeout(int milliseconds)
{
    m_internetExplorerReadyStateTimeout = milliseconds;
}

void MemoryBasedConfig::setOpenFirefoxWithConsole(bool on)
{
    m_openFirefoxWithConsole = on;
}

void MemoryBasedConfig::setImprovedTabAndWindowSupport(bool on)
{
    m_improvedTabAndWindowSupport = on;
}

void MemoryBasedConfig::setSupportSinglePropertyNaming(bool on)
{
    m_supportSinglePropertyNaming = on;
}

void MemoryBasedConfig::setThrowErrorOnUnknownContextNames(bool on)
{
    m_throwErrorOnUnknownContextNames = on;
}

void MemoryBasedConfig::setEnableBrowserDebugging(bool on)
{
    m_enableBrowserDebugging = on;
}

void MemoryBasedConfig::setChromeDriverForChromiumBasedApps(const QString &program)
{
    m_chromeDriverForChromiumBasedApps = program;
}

void MemoryBasedConfig::setIncludeIdProperty(bool on)
{
    m_includeIdPropertyInGeneratedNames = on;
}

FileSystemBasedConfig::FileSystemBasedConfig()
    : m_globalStore(
        std::make_unique<Settings>(globalSettingsDirectory(), settingsFileName(UserFile::WebWrapper))),
      m_userStore(std::make_unique<Settings>(UserFile::WebWrapper))
{
}

FileSystemBasedConfig::~FileSystemBasedConfig() = default;

ResolvedOption FileSystemBasedConfig::resolve(const ConfigOption &option) const
{
    // Both files are read, in this order, also when the second decides: a bad entry is reported in either.
    const QVariant fromGlobalFile = readEntry(*m_globalStore, option);
    const QVariant fromUserFile = readEntry(*m_userStore, option);

    ResolvedOption resolved{option.defaultValue(), ConfigSource::BuiltIn};
    if (fromUserFile.isValid())
        resolved = {fromUserFile, ConfigSource::UserFile};
    else if (fromGlobalFile.isValid())
        resolved = {fromGlobalFile, ConfigSource::GlobalFile};

    if (!option.switchedOnBy.isEmpty() && !resolved.value.toBool()
        && qEnvironmentVariable(option.switchedOnBy.toLatin1().constData()) == "1"_L1)
        resolved = {true, ConfigSource::Environment};
    return resolved;
}

QString FileSystemBasedConfig::globalFileName() const
{
    return m_globalStore->fileName();
}

QString FileSystemBasedConfig::userFileName() const
{
    return m_userStore->fileName();
}

bool FileSystemBasedConfig::enableObjectInfoOverlay() const
{
    return answer<row(u"enableObjectInfoOverlay")>(*this);
}

bool FileSystemBasedConfig::filterNonElementNodes() const
{
    return answer<row(u"filterNonElementNodes")>(*this);
}

QString FileSystemBasedConfig::proxyListenAddress()
{
    return answer<row(u"proxyListenAddress")>(*this);
}

QString FileSystemBasedConfig::proxyInternalCommAddress()
{
    return answer<row(u"proxyInternalCommAddress")>(*this);
}

bool FileSystemBasedConfig::proxyStartBrowser() const
{
    return answer<row(u"proxyStartBrowser")>(*this);
}

bool FileSystemBasedConfig::proxyDebugOutput() const
{
    return answer<row(u"proxyDebugOutput")>(*this);
}

bool FileSystemBasedConfig::proxyStartProxy() const
{
    return answer<row(u"proxyStartProxy")>(*this);
}

bool FileSystemBasedConfig::hookNewWindows() const
{
    return answer<row(u"hookNewWindows")>(*this);
}

bool FileSystemBasedConfig::debugJavaScriptExecution() const
{
    return answer<row(u"debugJavaScriptExecution")>(*this);
}

bool FileSystemBasedConfig::caseInsensitiveXPathNodeNameMatching() const
{
    return answer<row(u"caseInsensitiveXPathNodeNameMatching")>(*this);
}

bool FileSystemBasedConfig::backwardsCompatibleVisiblePropertyForHTML_Object() const
{
    return answer<row(u"backwardsCompatibleVisiblePropertyForHTML_Object")>(*this);
}

int FileSystemBasedConfig::internetExplorerReadyStateTimeout() const
{
    return answer<row(u"internetExplorerReadyStateTimeout")>(*this);
}

bool FileSystemBasedConfig::openFirefoxWithConsole() const
{
    return answer<row(u"openFirefoxWithConsole")>(*this);
}

bool FileSystemBasedConfig::improvedTabAndWindowSupport() const
{
    return answer<row(u"improvedTabAndWindowSupport")>(*this);
}

bool FileSystemBasedConfig::supportSinglePropertyNaming() const
{
    return answer<row(u"supportSinglePropertyNaming")>(*this);
}

bool FileSystemBasedConfig::throwErrorOnUnknownContextNames() const
{
    return answer<row(u"throwErrorOnUnknownContextNames")>(*this);
}

bool FileSystemBasedConfig::enableBrowserDebugging() const
{
    return answer<row(u"enableBrowserDebugging")>(*this);
}

QString FileSystemBasedConfig::chromeDriverForChromiumBasedApps()
{
    return answer<row(u"chromeDriverForChromiumBasedApps")>(*this);
}

bool FileSystemBasedConfig::includeIdPropertyInGeneratedNames() const
{
    return answer<row(u"includeIdPropertyInGeneratedNames")>(*this);
}

bool FileSystemBasedConfig::useSessionStorageForEvents() const
{
    return answer<row(u"useSessionStorageForEvents")>(*this);
}

} // namespace Ostrel::WebWrapper
