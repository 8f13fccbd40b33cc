#include "shared/settings.h"

#include "shared/platform.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QTextStream>

#include <utility>

namespace Ostrel {

using namespace Qt::StringLiterals;

namespace {

/// The text without the double quote at either end; each of the two may be missing.
QString withoutQuotes(QString text)
{
    if (text.endsWith(u'"'))
        text.chop(1);
    if (text.startsWith(u'"'))
        text.remove(0, 1);
    return text;
}

/// What the character behind a backslash stands for; nothing when no such escape exists.
std::optional<QChar> unescaped(QChar character)
{
    switch (character.unicode()) {
    case u'"':
    case u'\\':
        return character;
    case u'n':
        return u'\n';
    case u'r':
        return u'\r';
    case u't':
        return u'\t';
    default:
        return {};
    }
}

/// Calls `visit` with the rest of each key under `path` and the place of the next "/" in it, or -1.
template <typename Visit>
void visitKeysUnder(const QString &path, const QMap<QString, QString> &entries, Visit visit)
{
    QString prefix = Settings::normalizeKey(path);
    if (!prefix.isEmpty())
        prefix += u'/';

    for (auto entry = entries.cbegin(); entry != entries.cend(); ++entry) {
        if (!entry.key().startsWith(prefix))
            continue;
        const QString rest = entry.key().mid(prefix.size());
        visit(rest, rest.indexOf(u'/'));
    }
}

} // namespace

QString settingsFileName(UserFile file)
{
    switch (file) {
    case UserFile::Server:
        return u"server.ini"_s;
    case UserFile::WebWrapper:
        return u"webwrapper.ini"_s;
    case UserFile::TkWrapper:
        return u"tkwrapper.ini"_s;
    case UserFile::Paths:
        return u"paths.ini"_s;
    case UserFile::Ocr:
        return u"ocr.ini"_s;
    case UserFile::ResultHubCmd:
        return u"resulthubcmd.ini"_s;
    }
    return {};
}

QString settingsFileName(GlobalFile file)
{
    switch (file) {
    case GlobalFile::Main:
        return u"ostrel.ini"_s;
    case GlobalFile::Paths:
        return u"paths.ini"_s;
    }
    return {};
}

QString installedDirectory(const QString &name)
{
    // Kept as is: the platform's separator here, but "/" in front of file names, so that on Windows the two
    // mix in one path. All components of the tool write these paths so.
    return Platform::environmentValue(u"OSTREL_PREFIX"_s) + QDir::separator() + name;
}

QString globalSettingsDirectory()
{
    return installedDirectory(u"etc"_s);
}

QString userBaseDirectory()
{
    QString directory = Platform::environmentValue(u"OSTREL_USER_SETTINGS_DIR"_s);
    if (directory.isEmpty()) {
        directory = Platform::applicationDataDirectory();
        if (directory.isEmpty())
            directory = Platform::environmentValue(u"APPDATA"_s);
        directory += "/Brenvale/Ostrel"_L1;
    }
    QDir().mkpath(directory);
    return directory;
}

QString userSettingsDirectory()
{
    return userBaseDirectory() + "/ver1"_L1;
}

Settings::Settings(const QString &fileName) : m_fileName(fileName)
{
    parse();
}

Settings::Settings(const QString &directory, const QString &fileName) : Settings(directory + u'/' + fileName)
{
}

Settings::Settings(UserFile file) : Settings(userSettingsDirectory(), settingsFileName(file)) { }

Settings::Settings(GlobalFile file) : Settings(globalSettingsDirectory(), settingsFileName(file)) { }

Settings::~Settings()
{
    if (m_dirty)
        flush();
}

const QString *Settings::find(const QString &group, const QString &key) const
{
    const auto entries = m_groups.constFind(group);
    if (entries == m_groups.cend())
        return nullptr;
    const auto entry = entries->constFind(normalizeKey(key));
    return entry == entries->cend() ? nullptr : &*entry;
}

bool Settings::rawEntry(const QString &group, const QString &key, QString &out) const
{
    const QString *raw = find(group, key);
    if (!raw)
        return false;
    out = *raw;
    return true;
}

std::optional<bool> Settings::boolEntry(const QString &group, const QString &key) const
{
    const QString *raw = find(group, key);
    if (!raw)
        return {};

    // Only booleans tolerate quotes: files that were edited by hand have them.
    const QString word = withoutQuotes(raw->trimmed());
    bool isNumber = false;
    const int number = word.toInt(&isNumber, 10);
    if (isNumber)
        return number != 0;
    if (word.toUpper() == "FALSE"_L1)
        return false;
    if (word.toUpper() == "TRUE"_L1)
        return true;
    return {};
}

std::optional<int> Settings::intEntry(const QString &group, const QString &key) const
{
    const QString *raw = find(group, key);
    if (!raw)
        return {};

    bool isNumber = false;
    const int number = raw->trimmed().toInt(&isNumber, 10);
    return isNumber ? std::optional(number) : std::nullopt;
}

std::optional<double> Settings::doubleEntry(const QString &group, const QString &key) const
{
    const QString *raw = find(group, key);
    if (!raw)
        return {};

    bool isNumber = false;
    const double number = raw->trimmed().toDouble(&isNumber);
    return isNumber ? std::optional(number) : std::nullopt;
}

std::optional<QString> Settings::stringEntry(const QString &group, const QString &key) const
{
    QString text;
    if (!rawEntry(group, key, text) || !unquoteString(text))
        return {};

    if (m_expandVariables)
        expandVariables(text);
    return text;
}

std::optional<QStringList> Settings::stringListEntry(const QString &group, const QString &key) const
{
    const QString *raw = find(group, key);
    QStringList items;
    if (!raw || !unquoteStringList(*raw, items))
        return {};

    if (m_expandVariables) {
        for (QString &item : items)
            expandVariables(item);
    }
    return items;
}

bool Settings::boolEntry(const QString &group, const QString &key, bool defaultValue) const
{
    return boolEntry(group, key).value_or(defaultValue);
}

int Settings::intEntry(const QString &group, const QString &key, int defaultValue) const
{
    return intEntry(group, key).value_or(defaultValue);
}

double Settings::doubleEntry(const QString &group, const QString &key, double defaultValue) const
{
    return doubleEntry(group, key).value_or(defaultValue);
}

QString Settings::stringEntry(const QString &group, const QString &key, const QString &defaultValue) const
{
    return stringEntry(group, key).value_or(defaultValue);
}

QStringList Settings::stringListEntry(
    const QString &group, const QString &key, const QStringList &defaultValue) const
{
    return stringListEntry(group, key).value_or(defaultValue);
}

QStringList Settings::groups() const
{
    return m_groups.keys();
}

QStringList Settings::keysOf(const QString &group, const QString &path) const
{
    QStringList keys;
    visitKeysUnder(path, m_groups.value(group), [&keys](const QString &rest, qsizetype slash) {
        if (slash < 0)
            keys += rest;
    });
    return keys;
}

QStringList Settings::subGroupsOf(const QString &group, const QString &path) const
{
    QStringList names;
    visitKeysUnder(path, m_groups.value(group), [&names](const QString &rest, qsizetype slash) {
        if (slash >= 0 && !names.contains(rest.left(slash)))
            names += rest.left(slash);
    });
    return names;
}

void Settings::setRawEntry(const QString &group, const QString &key, const QString &text)
{
    m_groups[group].insert(normalizeKey(key), text);
    m_dirty = true;
}

void Settings::setBoolEntry(const QString &group, const QString &key, bool value)
{
    setRawEntry(group, key, value ? u"1"_s : u"0"_s);
}

void Settings::setIntEntry(const QString &group, const QString &key, int value)
{
    setRawEntry(group, key, QString::number(value));
}

void Settings::setDoubleEntry(const QString &group, const QString &key, double value)
{
    setRawEntry(group, key, QString::number(value, 'g', 6));
}

void Settings::setStringEntry(const QString &group, const QString &key, const QString &value)
{
    setRawEntry(group, key, quoteString(value));
}

void Settings::setStringListEntry(const QString &group, const QString &key, const QStringList &value)
{
    QStringList quoted;
    for (const QString &item : value)
        quoted += quoteString(item);
    setRawEntry(group, key, quoted.join(u','));
}

void Settings::removeEntry(const QString &group, const QString &key)
{
    const auto entries = m_groups.find(group);
    if (entries == m_groups.end()) {
        qWarning("Ostrel::Settings::removeEntry: group '%s' not found in %s", qPrintable(group),
            qPrintable(m_fileName));
        return;
    }
    entries->remove(normalizeKey(key));
    m_dirty = true;
}

void Settings::parse()
{
    QFile file(m_fileName);
    if (!file.exists())
        return;
    if (!file.open(QIODevice::ReadOnly | QIODevice::Text)) {
        qWarning("Ostrel::Settings::parse: could not open file `%s' for reading", qPrintable(m_fileName));
        return;
    }

    // Reading stops at the first bad line: what stands above it stays usable, the rest is not guessed at.
    QTextStream stream(&file);
    auto group = m_groups.end();
    while (!stream.atEnd()) {
        const QString line = stream.readLine().trimmed();
        if (line.isEmpty() || line.startsWith(u'#'))
            continue;
        if (line.startsWith(u'[')) {
            const QString name = line.mid(1, line.size() - (line.endsWith(u']') ? 2 : 1));
            // Kept as is: a group that comes a second time starts empty again; nothing is merged.
            group = m_groups.insert(name, Group());
            continue;
        }
        if (group == m_groups.end()) {
            qWarning("Ostrel::Settings::parse: in file %s: line `%s' not in a group", qPrintable(m_fileName),
                qPrintable(line));
            return;
        }
        const qsizetype equals = line.indexOf(u'=');
        if (equals < 0) {
            qWarning("Ostrel::Settings::parse: in file %s: corrupted line `%s' in group `%s'",
                qPrintable(m_fileName), qPrintable(line), qPrintable(group.key()));
            return;
        }
        group->insert(normalizeKey(line.left(equals).trimmed()), line.mid(equals + 1));
    }
}

bool Settings::flush()
{
    const QDir directory = QFileInfo(m_fileName).absoluteDir();
    if (!directory.exists() && !QDir().mkpath(directory.absolutePath())) {
        qWarning("Ostrel::Settings::flush: could not create directory `%s'.",
            qPrintable(directory.absolutePath()));
        return false;
    }
    QFile file(m_fileName);
    if (!file.open(QIODevice::WriteOnly | QIODevice::Text)) {
        qWarning("Ostrel::Settings::flush: could not open file `%s' for writing", qPrintable(m_fileName));
        return false;
    }

    QTextStream stream(&file);
    for (auto group = m_groups.cbegin(); group != m_groups.cend(); ++group) {
        stream << '[' << group.key() << "]\n";
        for (auto entry = group->cbegin(); entry != group->cend(); ++entry)
            stream << entry.key() << " = " << entry->trimmed() << '\n';
        stream << '\n';
    }

    // Kept as is: the store stays marked as changed, so that the destructor writes once more.
    stream.flush();
    file.close();
    return stream.status() == QTextStream::Ok && file.error() == QFileDevice::NoError;
}

QString Settings::normalizeKey(QString key)
{
    if (key.startsWith(u'/'))
        key.remove(0, 1);
    if (key.endsWith(u'/'))
        key.chop(1);
    key.replace(u'=', u'_'); // a "=" would end the key when the file is read again
    // Kept as is: a single pass, so that three slashes become two. Stored keys have this form.
    return key.replace("//"_L1, "/"_L1);
}

QString Settings::quoteString(const QString &text)
{
    QString quoted = u"\""_s;
    for (const QChar character : text) {
        switch (character.unicode()) {
        case u'\t':
            quoted += "\\t"_L1;
            break;
        case u'\n':
            quoted += "\\n"_L1;
            break;
        case u'\r':
            quoted += "\\r"_L1;
            break;
        case u'"':
            quoted += "\\\""_L1;
            break;
        case u'\\':
            quoted += "\\\\"_L1;
            break;
        default:
            quoted += character;
        }
    }
    return quoted += u'"';
}

bool Settings::unquoteString(QString &text) const
{
    QStringList items;
    if (!unquoteStringList(text, items))
        return false;
    if (items.size() != 1) {
        qWarning("Ostrel::Settings: entry is not a string in %s", qPrintable(m_fileName));
        return false;
    }
    text = items.first();
    return true;
}

bool Settings::unquoteStringList(const QString &text, QStringList &list) const
{
    enum class State {
        Outside, ///< between items; whatever stands there is skipped, commas and other text alike
        Inside, ///< between the quotes of an item
        Escape, ///< behind a backslash in an item
    };
    State state = State::Outside;
    QString item;

    for (const QChar character : text) {
        switch (state) {
        case State::Outside:
            if (character == u'"')
                state = State::Inside;
            break;
        case State::Inside:
            if (character == u'"') {
                list += std::exchange(item, QString());
                state = State::Outside;
            } else if (character == u'\\') {
                state = State::Escape;
            } else {
                item += character;
            }
            break;
        case State::Escape:
            const unsigned int code = character.unicode();
            if (code > 255) {
                qWarning("Ostrel::Settings: unknown quoted character with hex code 0x%x in %s", code,
                    qPrintable(m_fileName));
                return false;
            }
            const std::optional<QChar> meaning = unescaped(character);
            if (!meaning) {
                qWarning("Ostrel::Settings: unknown quoted character '%c' (0x%x) in %s",
                    static_cast<int>(code), code, qPrintable(m_fileName));
                return false;
            }
            item += *meaning;
            state = State::Inside;
            break;
        }
    }

    if (state != State::Outside) {
        qWarning("Ostrel::Settings: string not delimited by quotes in %s", qPrintable(m_fileName));
        return false;
    }
    return true;
}

void Settings::expandVariables(QString &text)
{
    // A variable whose value names itself would never come to an end.
    int replacementsLeft = 1000;

    qsizetype dollar = text.indexOf(u'$');
    while (dollar >= 0) {
        const QStringView behind = QStringView(text).mid(dollar + 1);
        qsizetype from = dollar + 1;
        if (behind.startsWith(u'$')) {
            text.remove(dollar, 1);
        } else if (behind.startsWith(u'(')) {
            const qsizetype closing = text.indexOf(u')', dollar);
            if (closing < 0) {
                // Kept as is: the failed search goes on as a start counted from the end, so that an open
                // bracket ends the expansion of all that follows.
                from = -1;
            } else {
                const QString value = Platform::environmentValue(text.mid(dollar + 2, closing - dollar - 2));
                if (!value.isEmpty() && replacementsLeft-- > 0)
                    text.replace(dollar, closing - dollar + 1, value);
                // Kept as is: two characters further, whatever was put in. Values that name variables are
                // expanded from their third character on, and one-character values shield a neighbour.
                from = dollar + 2;
            }
        }
        dollar = text.indexOf(u'$', from);
    }
}

} // namespace Ostrel
