// WrapperConfig: the options of the web wrapper, answered from memory or from the settings files.
#pragma once

#include "wrappers/web/export.h"

#include <QString>
#include <QStringView>
#include <QVariant>

#include <memory>
#include <span>
#include <variant>

namespace Ostrel {
class Settings;
}

namespace Ostrel::WebWrapper {

/// What the web wrapper and its hosts ask for their options. No operation fails.
/// The one who asks does not own the configuration, and never deletes it through this class.
class PAGEPROBELIB_EXPORT WrapperConfig
{
public:
    virtual bool enableObjectInfoOverlay() const = 0;
    virtual bool filterNonElementNodes() const = 0;
    virtual QString proxyListenAddress() = 0;
    virtual QString proxyInternalCommAddress() = 0;
    virtual bool proxyStartBrowser() const = 0;
    virtual bool proxyDebugOutput() const = 0;
    virtual bool proxyStartProxy() const = 0;
    virtual bool hookNewWindows() const = 0;
    virtual bool debugJavaScriptExecution() const = 0;
    virtual bool caseInsensitiveXPathNodeNameMatching() const = 0;
    virtual bool backwardsCompatibleVisiblePropertyForHTML_Object() const = 0;
    /// In milliseconds.
    virtual int internetExplorerReadyStateTimeout() const = 0;
    virtual bool openFirefoxWithConsole() const = 0;
    virtual bool improvedTabAndWindowSupport() const = 0;
    virtual bool supportSinglePropertyNaming() const = 0;
    virtual bool throwErrorOnUnknownContextNames() const = 0;
    virtual bool enableBrowserDebugging() const = 0;
    virtual QString chromeDriverForChromiumBasedApps() = 0;
    virtual bool includeIdPropertyInGeneratedNames() const = 0;
    virtual bool useSessionStorageForEvents() const = 0;

protected:
    WrapperConfig() = default;
    WrapperConfig(const WrapperConfig &) = default;
    WrapperConfig &operator=(const WrapperConfig &) = default;
    ~WrapperConfig() = default;
};

/// One option: who answers it, where it stands in a settings file, and what holds when nobody sets it.
struct ConfigOption
{
    /// The operation of WrapperConfig that answers it.
    QStringView operation;
    /// The key in the group "General" of webwrapper.ini.
    QStringView key;
    /// The built-in value. Its type is the option's type.
    std::variant<bool, int, QStringView> builtIn;
    /// Whether the settings files are asked once in a process, so that the first answer holds to its end.
    bool once = false;
    /// An environment variable that switches the option on when its value is "1"; empty for most options.
    QStringView switchedOnBy = {};

    /// The built-in value as a bool, an int or a QString.
    PAGEPROBELIB_EXPORT QVariant defaultValue() const;
};

/// All options, in the order of the operations of WrapperConfig. The rows live as long as the library.
PAGEPROBELIB_EXPORT std::span<const ConfigOption> configOptions();

/// Options that code sets; a new object has the built-in values. Set them before the object is shared: there
/// is no lock.
class PAGEPROBELIB_EXPORT MemoryBasedConfig : public WrapperConfig
{
public:
    MemoryBasedConfig();
    virtual ~MemoryBasedConfig();

    bool enableObjectInfoOverlay() const override;
    bool filterNonElementNodes() const override;
    QString proxyListenAddress() override;
    QString proxyInternalCommAddress() override;
    bool proxyStartBrowser() const override;
    bool proxyDebugOutput() const override;
    bool proxyStartProxy() const override;
    bool hookNewWindows() const override;
    bool debugJavaScriptExecution() const override;
    bool caseInsensitiveXPathNodeNameMatching() const override;
    bool backwardsCompatibleVisiblePropertyForHTML_Object() const override;
    int internetExplorerReadyStateTimeout() const override;
    bool openFirefoxWithConsole() const override;
    bool improvedTabAndWindowSupport() const override;
    bool supportSinglePropertyNaming() const override;
    bool throwErrorOnUnknownContextNames() const override;
    bool enableBrowserDebugging() const override;
    QString chromeDriverForChromiumBasedApps() override;
    bool includeIdPropertyInGeneratedNames() const override;
    /// Always false. Kept as is: the option has no setter in the interface that hosts are built against.
    bool useSessionStorageForEvents() const override;

    // Kept as is: setObjectInfoOverlayEnabled and setIncludeIdProperty are not named like their operations;
    // hosts call them so.
    void setObjectInfoOverlayEnabled(bool on);
    void setFilterNonElementNodes(bool on);
    void setProxyListenAddress(const QString &address);
    void setProxyInternalCommAddress(const QString &address);
    void setProxyStartBrowser(bool on);
    void setProxyDebugOutput(bool on);
    void setProxyStartProxy(bool on);
    void setHookNewWindows(bool on);
    void setDebugJavaScriptExecution(bool on);
    void setCaseInsensitiveXPathNodeNameMatching(bool on);
    void setBackwardsCompatibleVisiblePropertyForHTML_Object(bool on);
    void setInternetExplorerReadyStateTimeout(int milliseconds);
    void setOpenFirefoxWithConsole(bool on);
    void setImprovedTabAndWindowSupport(bool on);
    void setSupportSinglePropertyNaming(bool on);
    void setThrowErrorOnUnknownContextNames(bool on);
    void setEnableBrowserDebugging(bool on);
    void setChromeDriverForChromiumBasedApps(const QString &program);
    void setIncludeIdProperty(bool on);

private:
    bool m_enableObjectInfoOverlay;
    bool m_filterNonElementNodes;
    QString m_proxyListenAddress;
    QString m_proxyInternalCommAddress;
    bool m_proxyStartBrowser;
    bool m_proxyDebugOutput;
    bool m_proxyStartProxy;
    bool m_hookNewWindows;
    bool m_debugJavaScriptExecution;
    bool m_caseInsensitiveXPathNodeNameMatching;
    bool m_backwardsCompatibleVisiblePropertyForHTML_Object;
    int m_internetExplorerReadyStateTimeout;
    bool m_openFirefoxWithConsole;
    bool m_improvedTabAndWindowSupport;
    bool m_supportSinglePropertyNaming;
    bool m_throwErrorOnUnknownContextNames;
    bool m_enableBrowserDebugging;
    QString m_chromeDriverForChromiumBasedApps;
    bool m_includeIdPropertyInGeneratedNames;
    bool m_useSessionStorageForEvents;
};

/// Where the value of an option comes from.
enum class ConfigSource { BuiltIn, GlobalFile, UserFile, Environment };

struct ResolvedOption
{
    QVariant value; ///< of the option's type
    ConfigSource source = ConfigSource::BuiltIn;
};

/// Options from webwrapper.ini: the user's file goes before the global one, and that before the built-in
/// value, key by key. An entry that cannot be used is a warning and counts as absent in its file.
///
/// Both files are read when the object is made, and never written; a missing one is normal. Reading from
/// several threads is safe.
class PAGEPROBELIB_EXPORT FileSystemBasedConfig : public WrapperConfig
{
public:
    FileSystemBasedConfig();
    virtual ~FileSystemBasedConfig();

    FileSystemBasedConfig(const FileSystemBasedConfig &) = delete;
    FileSystemBasedConfig &operator=(const FileSystemBasedConfig &) = delete;

    bool enableObjectInfoOverlay() const override;
    bool filterNonElementNodes() const override;
    QString proxyListenAddress() override;
    QString proxyInternalCommAddress() override;
    bool proxyStartBrowser() const override;
    bool proxyDebugOutput() const override;
    bool proxyStartProxy() const override;
    bool hookNewWindows() const override;
    bool debugJavaScriptExecution() const override;
    bool caseInsensitiveXPathNodeNameMatching() const override;
    bool backwardsCompatibleVisiblePropertyForHTML_Object() const override;
    int internetExplorerReadyStateTimeout() const override;
    bool openFirefoxWithConsole() const override;
    bool improvedTabAndWindowSupport() const override;
    bool supportSinglePropertyNaming() const override;
    bool throwErrorOnUnknownContextNames() const override;
    bool enableBrowserDebugging() const override;
    QString chromeDriverForChromiumBasedApps() override;
    bool includeIdPropertyInGeneratedNames() const override;
    bool useSessionStorageForEvents() const override;

    /// What this object's files, and the environment, say about an option. For an option that is asked once
    /// in a process this may differ from what its operation answers.
    ResolvedOption resolve(const ConfigOption &option) const;

    /// The files behind the answers, whether or not they exist.
    QString globalFileName() const;
    QString userFileName() const;

private:
    // The order matters: the user's store goes first when the object is destroyed.
    std::unique_ptr<Settings> m_globalStore;
    std::unique_ptr<Settings> m_userStore;
};

} // namespace Ostrel::WebWrapper
