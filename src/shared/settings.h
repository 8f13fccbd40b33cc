// Settings: the store for the tool's small settings files, and the directories in which they lie.
#pragma once

#include <QMap>
#include <QString>
#include <QStringList>

#include <optional>

namespace Ostrel {

/// The settings files of one user, by purpose.
enum class UserFile { Server, WebWrapper, TkWrapper, Paths, Ocr, ResultHubCmd };

/// The settings files of an installation, which an administrator edits.
enum class GlobalFile { Main, Paths };

/// The name of a settings file without its directory; empty for a value outside the enumeration.
QString settingsFileName(UserFile file);
QString settingsFileName(GlobalFile file);

/// A directory of the installation: OSTREL_PREFIX, the platform's separator and `name`. With the variable
/// unset only the separator stands before the name.
QString installedDirectory(const QString &name);

/// Where the global settings files lie: the installation's "etc".
QString globalSettingsDirectory();

/// The tool's own folder in the user's application data, or what OSTREL_USER_SETTINGS_DIR says, as it stands.
/// Creates the folder; when that fails the answer is the same.
QString userBaseDirectory();

/// Where the settings files of the user lie: a folder of the base directory named after the format's version.
QString userSettingsDirectory();

/// A settings file in memory: groups of keys with their raw text, which only a typed read interprets, so that
/// a value nobody understands survives a write unchanged.
///
/// The file is read once, at construction; a missing one is an empty store. Whatever is wrong with a file or
/// an entry goes out as a Qt warning and leaves the store usable: the reader gets its default. A changed
/// store writes its file at flush() and at destruction.
///
/// There is no lock: reads are safe from several threads as long as nobody writes.
class Settings
{
public:
    explicit Settings(const QString &fileName);
    Settings(const QString &directory, const QString &fileName);
    explicit Settings(UserFile file);
    explicit Settings(GlobalFile file);
    ~Settings();

    Settings(const Settings &) = delete;
    Settings &operator=(const Settings &) = delete;

    /// The full path of the file behind this store.
    QString fileName() const { return m_fileName; }

    /// Whether string reads replace "$(NAME)" by environment variables; off at first.
    void setExpandVariables(bool on) { m_expandVariables = on; }

    /// The text right of the "=", as it was read or set. False, and `out` untouched, when there is no entry.
    bool rawEntry(const QString &group, const QString &key, QString &out) const;

    /// Typed reads: nothing when the entry is absent or is not of that type.
    /// A string, and each item of a list, must stand in double quotes; a boolean is a number or TRUE or
    /// FALSE.
    std::optional<bool> boolEntry(const QString &group, const QString &key) const;
    std::optional<int> intEntry(const QString &group, const QString &key) const;
    std::optional<double> doubleEntry(const QString &group, const QString &key) const;
    std::optional<QString> stringEntry(const QString &group, const QString &key) const;
    std::optional<QStringList> stringListEntry(const QString &group, const QString &key) const;

    /// The same, with the answer for an entry that is absent or unusable.
    bool boolEntry(const QString &group, const QString &key, bool defaultValue) const;
    int intEntry(const QString &group, const QString &key, int defaultValue) const;
    double doubleEntry(const QString &group, const QString &key, double defaultValue) const;
    QString stringEntry(const QString &group, const QString &key, const QString &defaultValue) const;
    QStringList stringListEntry(
        const QString &group, const QString &key, const QStringList &defaultValue) const;

    /// All group names, sorted.
    QStringList groups() const;

    /// The keys directly under `path` in a group, without the path. Empty for an unknown group.
    QStringList keysOf(const QString &group, const QString &path) const;

    /// The names one level under `path` that have keys of their own. Empty for an unknown group.
    QStringList subGroupsOf(const QString &group, const QString &path) const;

    /// Writes go to memory only. They create the group, replace an earlier value and mark the store changed.
    void setRawEntry(const QString &group, const QString &key, const QString &text);
    void setBoolEntry(const QString &group, const QString &key, bool value);
    void setIntEntry(const QString &group, const QString &key, int value);
    void setDoubleEntry(const QString &group, const QString &key, double value);
    void setStringEntry(const QString &group, const QString &key, const QString &value);
    void setStringListEntry(const QString &group, const QString &key, const QStringList &value);

    /// Removes an entry, if it is there; its group stays. An unknown group is a warning and changes nothing.
    void removeEntry(const QString &group, const QString &key);

    /// Writes the whole file, and creates its directory. False when the file could not be written in full;
    /// the store keeps everything, so that the caller can try again.
    bool flush();

    /// A key as it is stored: no "/" at either end, no "=", one "/" between the parts of a path.
    static QString normalizeKey(QString key);

    /// A string as it stands in a file, and back. The way back warns and answers false for a text that is not
    /// one string, or not a list of strings; `text` is then unchanged, and `list` holds the items before the
    /// fault.
    static QString quoteString(const QString &text);
    bool unquoteString(QString &text) const;
    bool unquoteStringList(const QString &text, QStringList &list) const;

    /// Replaces "$(NAME)" by the environment variable, unless that is empty, and "$$" by "$".
    static void expandVariables(QString &text);

private:
    using Group = QMap<QString, QString>;

    void parse();
    const QString *find(const QString &group, const QString &key) const;

    QMap<QString, Group> m_groups;
    QString m_fileName;
    bool m_dirty = false;
    bool m_expandVariables = false;
};

} // namespace Ostrel
