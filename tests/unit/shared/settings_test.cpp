// Tests of the settings store: mostly tables of what a file says, how it is read and how it is written back.
#include "shared/settings.h"

#include "support/messagecapture.h"
#include "support/printers.h"
#include "support/scopedvariable.h"

#include <gtest/gtest.h>

#include <QDir>
#include <QFile>
#include <QTemporaryDir>

#include <functional>
#include <limits>
#include <type_traits>
#include <vector>

using namespace Ostrel;
using namespace Qt::StringLiterals;

namespace {

static_assert(!std::is_copy_constructible_v<Settings> && !std::is_copy_assignable_v<Settings>);

/// All leaves under `path` of a group, each as "[group] key=<raw text>".
QStringList leaves(const Settings &settings, const QString &group, const QString &path)
{
    QStringList found;
    const QString prefix = path.isEmpty() ? path : path + u'/';
    for (const QString &key : settings.keysOf(group, path)) {
        QString raw;
        EXPECT_TRUE(settings.rawEntry(group, prefix + key, raw));
        found += u"[%1] %2=<%3>"_s.arg(group, prefix + key, raw);
    }
    for (const QString &name : settings.subGroupsOf(group, path))
        found += leaves(settings, group, prefix + name);
    return found;
}

/// Everything that a store holds; a group without entries is "[group]".
QStringList contents(const Settings &settings)
{
    QStringList found;
    for (const QString &group : settings.groups()) {
        const QStringList entries = leaves(settings, group, QString());
        found += entries.isEmpty() ? QStringList{u"[%1]"_s.arg(group)} : entries;
    }
    return found;
}

class SettingsTest : public testing::Test
{
protected:
    QString path(const QString &name = u"test.ini"_s) const { return m_directory.filePath(name); }

    void writeFile(const QByteArray &text) const
    {
        QFile file(path());
        ASSERT_TRUE(file.open(QIODevice::WriteOnly));
        ASSERT_EQ(file.write(text), text.size());
    }

    QByteArray fileText() const
    {
        QFile file(path());
        return file.open(QIODevice::ReadOnly) ? file.readAll() : "<no file>"_ba;
    }

    QTemporaryDir m_directory;
    MessageCapture m_messages;
};

// Files: read and written back

struct FileRow
{
    const char *name;
    QByteArray text;
    QStringList readsAs;
    QByteArray writtenBack;
    QStringList warnings = {}; // "%1" is the file
};

TEST_F(SettingsTest, ReadsAndWritesFiles)
{
    const std::vector<FileRow> rows = {
        {"an empty file", "", {}, ""},
        {"an entry keeps the blank behind the equals sign, and is written trimmed", "[g]\nk = 1\n",
            {u"[g] k=< 1>"_s}, "[g]\nk = 1\n\n"},
        {"no blanks around the equals sign", "[g]\nk=1", {u"[g] k=<1>"_s}, "[g]\nk = 1\n\n"},
        {"blanks around the line and the key are dropped, inside the value they stay",
            "  [g]\t\n\t k  =  a  b  \n", {u"[g] k=<  a  b>"_s}, "[g]\nk = a  b\n\n"},
        {"line ends of Windows", "[g]\r\nk = 1\r\n", {u"[g] k=< 1>"_s}, "[g]\nk = 1\n\n"},
        {"comments and empty lines do not survive", "# top\n\n[g]\n  # inside\nk = 1\n\n", {u"[g] k=< 1>"_s},
            "[g]\nk = 1\n\n"},
        {"a hash inside a line is no comment", "[g]\nk = 1 # one\n", {u"[g] k=< 1 # one>"_s},
            "[g]\nk = 1 # one\n\n"},
        {"a semicolon starts no comment", "[g]\n; k = 1\n", {u"[g] ; k=< 1>"_s}, "[g]\n; k = 1\n\n"},
        {"an equals sign in the value belongs to it", "[g]\nk = a=b\n", {u"[g] k=< a=b>"_s},
            "[g]\nk = a=b\n\n"},
        {"an empty value", "[g]\nk =\n", {u"[g] k=<>"_s}, "[g]\nk = \n\n"},
        {"an empty key", "[g]\n= 1\n", {u"[g] =< 1>"_s}, "[g]\n = 1\n\n"},
        {"a repeated key: the last one counts", "[g]\nk = 1\nk = 2\n", {u"[g] k=< 2>"_s}, "[g]\nk = 2\n\n"},
        {"keys are stored in normal form", "[g]\n/x//y/ = 1\n", {u"[g] x/y=< 1>"_s}, "[g]\nx/y = 1\n\n"},
        {"groups and keys are sorted by code unit, with regard to case",
            "[b]\nz = 1\nB = 2\na = 3\n[a]\n[C]\n",
            {u"[C]"_s, u"[a]"_s, u"[b] B=< 2>"_s, u"[b] a=< 3>"_s, u"[b] z=< 1>"_s},
            "[C]\n\n[a]\n\n[b]\nB = 2\na = 3\nz = 1\n\n"},
        {"a character beyond the basic plane sorts before U+FF5E by its code units",
            "[\xEF\xBD\x9E]\n[\xF0\x9F\x98\x80]\n", {u"[\U0001F600]"_s, u"[\uFF5E]"_s},
            "[\xF0\x9F\x98\x80]\n\n[\xEF\xBD\x9E]\n\n"},
        {"text is UTF-8", "[g]\nk = \"\xC3\xA4\xE2\x82\xAC\"\n", {u"[g] k=< \"\u00E4\u20AC\">"_s},
            "[g]\nk = \"\xC3\xA4\xE2\x82\xAC\"\n\n"},
        {"a byte order mark, as some editors write it, is no text", "\xEF\xBB\xBF[g]\nk = 1\n",
            {u"[g] k=< 1>"_s}, "[g]\nk = 1\n\n"},
        {"a value nobody understands survives", "[g]\nk = yes, \"and \\q no\n",
            {u"[g] k=< yes, \"and \\q no>"_s}, "[g]\nk = yes, \"and \\q no\n\n"},
        {"a group without its closing bracket", "[g\nk = 1\n", {u"[g] k=< 1>"_s}, "[g]\nk = 1\n\n"},
        {"text behind the bracket keeps the bracket in the name", "[g] x\nk = 1\n", {u"[g] x] k=< 1>"_s},
            "[g] x]\nk = 1\n\n"},
        {"only one closing bracket goes", "[g]]\n", {u"[g]]"_s}, "[g]]\n\n"},
        {"blanks inside the brackets belong to the name", "[ g ]\n", {u"[ g ]"_s}, "[ g ]\n\n"},
        {"an empty group name", "[]\nk = 1\n", {u"[] k=< 1>"_s}, "[]\nk = 1\n\n"},
        {"a lone opening bracket", "[\nk = 1\n", {u"[] k=< 1>"_s}, "[]\nk = 1\n\n"},
        {"a group that comes again starts empty", "[a]\nx = 1\n[a]\ny = 2\n", {u"[a] y=< 2>"_s},
            "[a]\ny = 2\n\n"},
        {"an entry above any group ends the reading", "a = 1\n[g]\nk = 1\n", {}, "",
            {u"Ostrel::Settings::parse: in file %1: line `a = 1' not in a group"_s}},
        {"a bad line above any group is first of all not in a group", "  a \n", {}, "",
            {u"Ostrel::Settings::parse: in file %1: line `a' not in a group"_s}},
        {"a line without an equals sign ends the reading, what stood above it stays",
            "[a]\nx = 1\n[b]\n y \n[c]\nz = 2\n", {u"[a] x=< 1>"_s, u"[b]"_s}, "[a]\nx = 1\n\n[b]\n\n",
            {u"Ostrel::Settings::parse: in file %1: corrupted line `y' in group `b'"_s}},
    };
    for (const FileRow &row : rows) {
        SCOPED_TRACE(row.name);
        writeFile(row.text);

        Settings settings(path());
        const QStringList readsAs = contents(settings);
        const QStringList warnings = m_messages.take();
        const bool written = settings.flush();

        EXPECT_EQ(readsAs, row.readsAs);
        EXPECT_EQ(warnings.join(u'\n'), row.warnings.join(u'\n').replace(u"%1"_s, path()));
        EXPECT_TRUE(written);
        EXPECT_EQ(fileText(), row.writtenBack);
        EXPECT_TRUE(Settings(path()).flush());
        EXPECT_EQ(fileText(), row.writtenBack) << "what was written reads as the same";
    }
}

TEST_F(SettingsTest, MissingFileIsAnEmptyStoreWithoutWarning)
{
    const Settings settings(path());

    EXPECT_EQ(settings.groups(), QStringList());
    EXPECT_EQ(settings.fileName(), path());
}

TEST_F(SettingsTest, UnreadableFileIsAnEmptyStoreWithOneWarning)
{
    const Settings settings(m_directory.path()); // there, but no file

    EXPECT_EQ(settings.groups(), QStringList());
    EXPECT_EQ(m_messages.take(),
        QStringList{
            u"Ostrel::Settings::parse: could not open file `%1' for reading"_s.arg(m_directory.path())});
}

TEST_F(SettingsTest, ReadingChangesNothing)
{
    writeFile("# mine\n[g]\nk=1\n");
    {
        const Settings settings(path());
        EXPECT_EQ(settings.intEntry(u"g"_s, u"k"_s, 0), 1);
        EXPECT_EQ(settings.intEntry(u"other"_s, u"k"_s, 0), 0);
        EXPECT_EQ(settings.intEntry(u"g"_s, u"other"_s, 0), 0);
        EXPECT_EQ(settings.groups(), QStringList{u"g"_s});
    }
    EXPECT_EQ(fileText(), "# mine\n[g]\nk=1\n");
}

TEST_F(SettingsTest, ChangeOnDiskIsSeenOnlyByANewStore)
{
    writeFile("[g]\nk = 1\n");
    const Settings before(path());
    writeFile("[g]\nk = 2\n");

    EXPECT_EQ(before.intEntry(u"g"_s, u"k"_s, 0), 1);
    EXPECT_EQ(Settings(path()).intEntry(u"g"_s, u"k"_s, 0), 2);
}

// Typed reads

template <typename Value>
struct ReadRow
{
    QString raw;
    std::optional<Value> readsAs; // nothing: the default
    QStringList warnings = {}; // "%1" is the file
};

template <typename Value>
using Read = std::optional<Value> (Settings::*)(const QString &, const QString &) const;
template <typename Value, typename Default>
using ReadOr = Value (Settings::*)(const QString &, const QString &, Default) const;

/// Reads each row without and with a default, and expects the row's warnings from each of the two.
template <typename Value, typename Default>
void expectReads(const QString &path, MessageCapture &messages, Read<Value> read,
    ReadOr<Value, Default> readOr, const Value &defaultValue, const std::vector<ReadRow<Value>> &rows)
{
    for (const ReadRow<Value> &row : rows) {
        SCOPED_TRACE(row.raw.toStdString());
        Settings settings(path);
        settings.setRawEntry(u"g"_s, u"k"_s, row.raw);

        const std::optional<Value> plain = (settings.*read)(u"g"_s, u"k"_s);
        const QString plainWarnings = messages.take().join(u'\n');
        const Value withDefault = (settings.*readOr)(u"g"_s, u"k"_s, defaultValue);
        const QString defaultWarnings = messages.take().join(u'\n');

        const QString warnings = row.warnings.join(u'\n').replace(u"%1"_s, path);
        EXPECT_EQ(plain, row.readsAs);
        EXPECT_EQ(plainWarnings, warnings);
        EXPECT_EQ(withDefault, row.readsAs.value_or(defaultValue));
        EXPECT_EQ(defaultWarnings, warnings);
    }

    const Settings settings(path);
    EXPECT_EQ((settings.*read)(u"no group"_s, u"k"_s), std::nullopt);
    EXPECT_EQ((settings.*readOr)(u"no group"_s, u"k"_s, defaultValue), defaultValue);
    EXPECT_EQ((settings.*readOr)(u"g"_s, u"no key"_s, defaultValue), defaultValue);
    EXPECT_EQ((settings.*readOr)(u"G"_s, u"k"_s, defaultValue), defaultValue) << "names have a case";
}

TEST_F(SettingsTest, ReadsBooleans)
{
    const std::vector<ReadRow<bool>> rows = {
        {u" 1"_s, true}, {u"0"_s, false}, {u"-2"_s, true}, {u"+0"_s, false}, {u" true "_s, true},
        {u"True"_s, true}, {u"FALSE"_s, false}, {u"false"_s, false}, {u" \"TRUE\" "_s, true},
        {u"\"0\""_s, false}, {u"true\""_s, true}, // each quote is tolerated alone
        {u"\"false"_s, false}, {u"\" 1 \""_s, true}, // a number may have blanks inside the quotes
        {u"\" true \""_s, {}}, // a word may not
        {u"\"\"1\"\""_s, {}}, // only one quote at each end
        {u"yes"_s, {}}, {u""_s, {}}, {u"\""_s, {}}, {u"1.0"_s, {}}, {u"0x1"_s, {}}, // base 10 only
        {u"99999999999"_s, {}}, // no int
    };
    for (const bool defaultValue : {false, true})
        expectReads<bool, bool>(
            path(), m_messages, &Settings::boolEntry, &Settings::boolEntry, defaultValue, rows);
}

TEST_F(SettingsTest, ReadsIntegers)
{
    expectReads<int, int>(path(), m_messages, &Settings::intEntry, &Settings::intEntry, -7,
        {
            {u" 12 "_s, 12},
            {u"-3"_s, -3},
            {u"012"_s, 12},
            {u"2147483647"_s, 2147483647},
            {u"12x"_s, {}},
            {u"\"12\""_s, {}}, // quotes are tolerated in booleans only
            {u"1.5"_s, {}},
            {u"0x10"_s, {}},
            {u"2147483648"_s, {}},
            {u""_s, {}},
        });
}

TEST_F(SettingsTest, ReadsDoubles)
{
    expectReads<double, double>(path(), m_messages, &Settings::doubleEntry, &Settings::doubleEntry, -0.25,
        {
            {u" 1.5 "_s, 1.5},
            {u"2"_s, 2.0},
            {u"-1e3"_s, -1000.0},
            {u"1,5"_s, {}}, // never the comma of a locale
            {u"1.5x"_s, {}},
            {u"\"1.5\""_s, {}},
            {u""_s, {}},
        });
}

TEST_F(SettingsTest, ReadsStrings)
{
    expectReads<QString, const QString &>(path(), m_messages, &Settings::stringEntry, &Settings::stringEntry,
        u"default"_s,
        {
            {u" \"text\" "_s, u"text"_s},
            {u"\"\""_s, u""_s},
            {u"\" a, b \""_s, u" a, b "_s},
            {u"before \"text\" behind"_s, u"text"_s},
            {u"\"\\t\\n\\r\\\"\\\\\""_s, u"\t\n\r\"\\"_s},
            {u"\"\u00E4\u20AC\U0001F600\""_s, u"\u00E4\u20AC\U0001F600"_s},
            {u" localhost:9000"_s, {}, {u"Ostrel::Settings: entry is not a string in %1"_s}},
            {u""_s, {}, {u"Ostrel::Settings: entry is not a string in %1"_s}},
            {u"\"a\" \"b\""_s, {}, {u"Ostrel::Settings: entry is not a string in %1"_s}},
            {u"\"open"_s, {}, {u"Ostrel::Settings: string not delimited by quotes in %1"_s}},
            {u"\"a\" \""_s, {}, {u"Ostrel::Settings: string not delimited by quotes in %1"_s}},
            {u"\"open in an escape\\"_s, {}, {u"Ostrel::Settings: string not delimited by quotes in %1"_s}},
            {u"\"a \\q\""_s, {}, {u"Ostrel::Settings: unknown quoted character 'q' (0x71) in %1"_s}},
            {u"\"\\N\""_s, {}, {u"Ostrel::Settings: unknown quoted character 'N' (0x4e) in %1"_s}},
            {u"\"\\\u00FF\""_s, {}, {u"Ostrel::Settings: unknown quoted character '\u00FF' (0xff) in %1"_s}},
            {u"\"\\\u0100\""_s, {},
                {u"Ostrel::Settings: unknown quoted character with hex code 0x100 in %1"_s}},
            // The first half of the surrogate pair is what stands behind the backslash.
            {u"\"\\\U0001F600\""_s, {},
                {u"Ostrel::Settings: unknown quoted character with hex code 0xd83d in %1"_s}},
        });
}

TEST_F(SettingsTest, ReadsStringLists)
{
    expectReads<QStringList, const QStringList &>(path(), m_messages, &Settings::stringListEntry,
        &Settings::stringListEntry, QStringList{u"default"_s},
        {
            {u" \"a\",\"b\""_s, QStringList{u"a"_s, u"b"_s}},
            {u"\"a\"\"b\""_s, QStringList{u"a"_s, u"b"_s}},
            {u"\"a\" and \"b\""_s, QStringList{u"a"_s, u"b"_s}},
            {u"\"\",\"\""_s, QStringList{u""_s, u""_s}},
            {u"\"a,\\\"b\""_s, QStringList{u"a,\"b"_s}},
            {u""_s, QStringList()}, // an empty list, not the default
            {u" a, b"_s, QStringList()},
            {u"\"a\", \"b"_s, {}, {u"Ostrel::Settings: string not delimited by quotes in %1"_s}},
            {u"\"a\", \"\\x\""_s, {}, {u"Ostrel::Settings: unknown quoted character 'x' (0x78) in %1"_s}},
        });
}

TEST_F(SettingsTest, UnquotingKeepsTheTextOnFailureAndTheItemsBeforeTheFault)
{
    const Settings settings(path());
    QString text = u"\"a\" \"b\""_s;
    QStringList items;

    EXPECT_FALSE(settings.unquoteString(text));
    EXPECT_EQ(m_messages.take(), QStringList{u"Ostrel::Settings: entry is not a string in %1"_s.arg(path())});
    EXPECT_FALSE(settings.unquoteStringList(u"\"a\" \"b"_s, items));
    EXPECT_EQ(m_messages.take(),
        QStringList{u"Ostrel::Settings: string not delimited by quotes in %1"_s.arg(path())});

    EXPECT_EQ(text, u"\"a\" \"b\""_s);
    EXPECT_EQ(items, QStringList{u"a"_s});
}

TEST_F(SettingsTest, RawEntryLeavesTheOutputAloneWhenThereIsNoEntry)
{
    writeFile("[g]\na/b = \"x\" \n");
    const Settings settings(path());
    QString raw = u"before"_s;

    EXPECT_FALSE(settings.rawEntry(u"h"_s, u"a/b"_s, raw));
    EXPECT_FALSE(settings.rawEntry(u"g"_s, u"a"_s, raw));
    EXPECT_EQ(raw, u"before"_s);

    EXPECT_TRUE(settings.rawEntry(u"g"_s, u"/a//b/"_s, raw)); // asked for in normal form
    EXPECT_EQ(raw, u" \"x\""_s);
}

// Keys

TEST_F(SettingsTest, NormalizesKeys)
{
    struct Row
    {
        QString key;
        QString normalForm;
    };
    const std::vector<Row> rows = {
        {u"k"_s, u"k"_s},
        {u""_s, u""_s},
        {u"/"_s, u""_s},
        {u"//"_s, u""_s},
        {u"/x/"_s, u"x"_s},
        {u"//x//"_s, u"/x/"_s}, // only one goes at either end
        {u"x//y"_s, u"x/y"_s},
        {u"x///y"_s, u"x//y"_s}, // one pass
        {u"x////y"_s, u"x//y"_s},
        {u"a=b="_s, u"a_b_"_s},
        {u"/x//y=z/"_s, u"x/y_z"_s},
        {u" x "_s, u" x "_s},
    };
    for (const Row &row : rows)
        EXPECT_EQ(Settings::normalizeKey(row.key), row.normalForm) << row.key.toStdString();
}

TEST_F(SettingsTest, WalksKeysAsPaths)
{
    writeFile("[g]\n"
              "top = 1\n"
              "a/x = 1\n"
              "a/y = 1\n"
              "a/b/z = 1\n"
              "a/b/w = 1\n"
              "a/B/w = 1\n"
              "ab/x = 1\n"
              "[other]\n"
              "a/other = 1\n");
    struct Row
    {
        QString group;
        QString path;
        QStringList keys;
        QStringList subGroups;
    };
    const std::vector<Row> rows = {
        {u"g"_s, u""_s, {u"top"_s}, {u"a"_s, u"ab"_s}},
        {u"g"_s, u"a"_s, {u"x"_s, u"y"_s}, {u"B"_s, u"b"_s}}, // names that differ in case are two
        {u"g"_s, u"/a/"_s, {u"x"_s, u"y"_s}, {u"B"_s, u"b"_s}}, // the path in normal form
        {u"g"_s, u"a//b"_s, {u"w"_s, u"z"_s}, {}},
        {u"g"_s, u"A"_s, {}, {}},
        {u"g"_s, u"top"_s, {}, {}}, // a leaf is no path
        {u"other"_s, u"a"_s, {u"other"_s}, {}},
        {u"unknown"_s, u""_s, {}, {}},
    };
    const Settings settings(path());
    for (const Row &row : rows) {
        SCOPED_TRACE((row.group + u':' + row.path).toStdString());
        EXPECT_EQ(settings.keysOf(row.group, row.path), row.keys);
        EXPECT_EQ(settings.subGroupsOf(row.group, row.path), row.subGroups);
    }
    EXPECT_EQ(settings.groups(), (QStringList{u"g"_s, u"other"_s}));
}

// Writes

TEST_F(SettingsTest, EncodesValues)
{
    struct Row
    {
        const char *name;
        std::function<void(Settings &)> write;
        QByteArray file;
    };
    const std::vector<Row> rows = {
        {"true", [](Settings &s) { s.setBoolEntry(u"g"_s, u"k"_s, true); }, "[g]\nk = 1\n\n"},
        {"false", [](Settings &s) { s.setBoolEntry(u"g"_s, u"k"_s, false); }, "[g]\nk = 0\n\n"},
        {"an integer", [](Settings &s) { s.setIntEntry(u"g"_s, u"k"_s, -12); }, "[g]\nk = -12\n\n"},
        {"a double has six digits", [](Settings &s) { s.setDoubleEntry(u"g"_s, u"k"_s, 3.14159265); },
            "[g]\nk = 3.14159\n\n"},
        {"a large double", [](Settings &s) { s.setDoubleEntry(u"g"_s, u"k"_s, 1.5e9); },
            "[g]\nk = 1.5e+09\n\n"},
        {"a string", [](Settings &s) { s.setStringEntry(u"g"_s, u"k"_s, u" a=b "_s); },
            "[g]\nk = \" a=b \"\n\n"},
        {"an empty string", [](Settings &s) { s.setStringEntry(u"g"_s, u"k"_s, u""_s); },
            "[g]\nk = \"\"\n\n"},
        {"a string with everything that needs an escape",
            [](Settings &s) { s.setStringEntry(u"g"_s, u"k"_s, u"\t\n\r\"\\"_s); },
            "[g]\nk = \"\\t\\n\\r\\\"\\\\\"\n\n"},
        {"characters beyond Latin-1 stand for themselves",
            [](Settings &s) { s.setStringEntry(u"g"_s, u"k"_s, u"\u00E4\u20AC\U0001F600"_s); },
            "[g]\nk = \"\xC3\xA4\xE2\x82\xAC\xF0\x9F\x98\x80\"\n\n"},
        {"a list has no blanks",
            [](Settings &s) {
                s.setStringListEntry(u"g"_s, u"k"_s, {u"a"_s, u"b,c"_s, u""_s});
            },
            "[g]\nk = \"a\",\"b,c\",\"\"\n\n"},
        {"an empty list", [](Settings &s) { s.setStringListEntry(u"g"_s, u"k"_s, {}); }, "[g]\nk = \n\n"},
        {"raw text is trimmed on its way out", [](Settings &s) { s.setRawEntry(u"g"_s, u"k"_s, u"  x "_s); },
            "[g]\nk = x\n\n"},
        {"the key is stored in normal form",
            [](Settings &s) { s.setRawEntry(u"g"_s, u"/x//y=z/"_s, u"1"_s); }, "[g]\nx/y_z = 1\n\n"},
        {"the group name is not", [](Settings &s) { s.setRawEntry(u"/g//h/"_s, u"k"_s, u"1"_s); },
            "[/g//h/]\nk = 1\n\n"},
        {"a later value replaces an earlier one",
            [](Settings &s) {
                s.setIntEntry(u"g"_s, u"k"_s, 1);
                s.setIntEntry(u"g"_s, u"/k"_s, 2);
            },
            "[g]\nk = 2\n\n"},
        {"a blank line follows each group",
            [](Settings &s) {
                s.setBoolEntry(u"b"_s, u"k"_s, true);
                s.setBoolEntry(u"a"_s, u"k"_s, true);
            },
            "[a]\nk = 1\n\n[b]\nk = 1\n\n"},
        {"a group stays when its last entry goes",
            [](Settings &s) {
                s.setIntEntry(u"g"_s, u"k"_s, 1);
                s.removeEntry(u"g"_s, u"/k/"_s);
            },
            "[g]\n\n"},
    };
    for (const Row &row : rows) {
        SCOPED_TRACE(row.name);
        QFile::remove(path());
        Settings settings(path());

        row.write(settings);
        EXPECT_FALSE(QFile::exists(path())) << "a write goes to memory only";

        EXPECT_TRUE(settings.flush());
        EXPECT_EQ(fileText(), row.file);
    }
}

TEST_F(SettingsTest, ReadsBackWhatItWrote)
{
    const QString hostile = u"\" \\ \t\r\n = [x] # ; $$ %1 \u00E4\u20AC\U0001F600"_s;
    {
        Settings settings(path());
        settings.setBoolEntry(u"g"_s, u"bool"_s, true);
        settings.setIntEntry(u"g"_s, u"int"_s, std::numeric_limits<int>::min());
        settings.setDoubleEntry(u"g"_s, u"double"_s, -0.125);
        settings.setStringEntry(u"g"_s, u"string"_s, hostile);
        settings.setStringListEntry(u"g"_s, u"list"_s, {hostile, u""_s, hostile});
    }
    const Settings settings(path());

    EXPECT_EQ(settings.boolEntry(u"g"_s, u"bool"_s, false), true);
    EXPECT_EQ(settings.intEntry(u"g"_s, u"int"_s, 0), std::numeric_limits<int>::min());
    EXPECT_EQ(settings.doubleEntry(u"g"_s, u"double"_s, 0), -0.125);
    EXPECT_EQ(settings.stringEntry(u"g"_s, u"string"_s, u""_s), hostile);
    EXPECT_EQ(settings.stringListEntry(u"g"_s, u"list"_s, {}), (QStringList{hostile, u""_s, hostile}));
}

TEST_F(SettingsTest, RemovingFromAnUnknownGroupWarnsAndMarksNothing)
{
    {
        Settings settings(path());
        settings.removeEntry(u"g"_s, u"k"_s);
    }
    EXPECT_EQ(m_messages.take(),
        QStringList{u"Ostrel::Settings::removeEntry: group 'g' not found in %1"_s.arg(path())});
    EXPECT_FALSE(QFile::exists(path()));

    {
        Settings settings(path());
        settings.setBoolEntry(u"other"_s, u"k"_s, true);
        settings.removeEntry(u"g"_s, u"k"_s);
    }
    EXPECT_EQ(m_messages.take(),
        QStringList{u"Ostrel::Settings::removeEntry: group 'g' not found in %1"_s.arg(path())});
    EXPECT_EQ(fileText(), "[other]\nk = 1\n\n") << "a mark that was there stays";
}

TEST_F(SettingsTest, RemovingAnUnknownKeyMarksTheStore)
{
    writeFile("# comment\n[g]\n");
    {
        Settings settings(path());
        settings.removeEntry(u"g"_s, u"k"_s);
    }
    EXPECT_EQ(fileText(), "[g]\n\n");
}

TEST_F(SettingsTest, ChangedStoreWritesItsFileWhenDestroyedAndCreatesDirectories)
{
    const QString deep = path(u"a/b/c.ini"_s);
    {
        Settings settings(path(u"a/b"_s), u"c.ini"_s);
        EXPECT_EQ(settings.fileName(), deep);
        settings.setIntEntry(u"g"_s, u"k"_s, 1);
        EXPECT_FALSE(QFile::exists(path(u"a"_s)));
    }
    EXPECT_EQ(Settings(deep).intEntry(u"g"_s, u"k"_s, 0), 1);
}

TEST_F(SettingsTest, FlushKeepsTheStoreMarkedAsChanged)
{
    {
        Settings settings(path());
        settings.setIntEntry(u"g"_s, u"k"_s, 1);
        EXPECT_TRUE(settings.flush());
        EXPECT_TRUE(QFile::remove(path()));
    }
    EXPECT_EQ(fileText(), "[g]\nk = 1\n\n");
}

TEST_F(SettingsTest, FlushReplacesALongerFile)
{
    writeFile("[g]\nk = " + QByteArray(1000, 'x') + '\n');
    Settings settings(path());
    settings.setIntEntry(u"g"_s, u"k"_s, 1);

    EXPECT_TRUE(settings.flush());
    EXPECT_EQ(fileText(), "[g]\nk = 1\n\n");
}

TEST_F(SettingsTest, FlushFailsWhenTheDirectoryCannotBeMade)
{
    writeFile("");
    const QString below = path() + u"/sub"_s; // below a file
    Settings settings(below, u"x.ini"_s);

    EXPECT_FALSE(settings.flush());
    EXPECT_EQ(m_messages.take(),
        QStringList{u"Ostrel::Settings::flush: could not create directory `%1'."_s.arg(below)});
}

TEST_F(SettingsTest, FlushFailsWhenTheFileCannotBeOpened)
{
    Settings settings(path());
    ASSERT_TRUE(QDir().mkpath(path()));

    EXPECT_FALSE(settings.flush());
    EXPECT_EQ(m_messages.take(),
        QStringList{u"Ostrel::Settings::flush: could not open file `%1' for writing"_s.arg(path())});
}

TEST_F(SettingsTest, FlushFailsOnAFullDiskAndTheStoreKeepsEverything)
{
    if (!QFile::exists(u"/dev/full"_s))
        GTEST_SKIP() << "no device that is always full";

    for (const qsizetype size : {1, 100000}) { // less and more than any buffer holds
        SCOPED_TRACE(size);
        QFile::remove(path());
        Settings settings(path());
        settings.setStringEntry(u"g"_s, u"k"_s, QString(size, u'x'));
        ASSERT_TRUE(QFile::link(u"/dev/full"_s, path()));

        EXPECT_FALSE(settings.flush());
        EXPECT_EQ(settings.stringEntry(u"g"_s, u"k"_s, u""_s), QString(size, u'x'));

        ASSERT_TRUE(QFile::remove(path()));
        EXPECT_TRUE(settings.flush());
        EXPECT_EQ(Settings(path()).stringEntry(u"g"_s, u"k"_s, u""_s), QString(size, u'x'));
    }
}

// Variables

TEST_F(SettingsTest, ExpandsVariables)
{
    const ScopedVariable name("SETTINGS_TEST_NAME", u"value"_s);
    const ScopedVariable one("SETTINGS_TEST_ONE", u"1"_s);
    const ScopedVariable nested("SETTINGS_TEST_NESTED", u"ab$(SETTINGS_TEST_NAME)"_s);
    const ScopedVariable tooEarly("SETTINGS_TEST_TOO_EARLY", u"$(SETTINGS_TEST_NAME)"_s);
    const ScopedVariable unset("SETTINGS_TEST_UNSET");
    struct Row
    {
        const char *name;
        QString text;
        QString expanded;
    };
    const std::vector<Row> rows = {
        {"nothing to do", u"plain (text)"_s, u"plain (text)"_s},
        {"empty", u""_s, u""_s},
        {"a variable", u"a/$(SETTINGS_TEST_NAME)/b"_s, u"a/value/b"_s},
        {"two variables", u"$(SETTINGS_TEST_NAME)$(SETTINGS_TEST_NAME)"_s, u"valuevalue"_s},
        {"a variable that is not set stays", u"a$(SETTINGS_TEST_UNSET)b"_s, u"a$(SETTINGS_TEST_UNSET)b"_s},
        {"no name", u"$()"_s, u"$()"_s},
        {"behind one that is not set", u"$(SETTINGS_TEST_UNSET)$(SETTINGS_TEST_NAME)"_s,
            u"$(SETTINGS_TEST_UNSET)value"_s},
        {"a doubled dollar", u"a$$b"_s, u"a$b"_s},
        {"a doubled dollar protects a bracket", u"$$(SETTINGS_TEST_NAME)"_s, u"$(SETTINGS_TEST_NAME)"_s},
        {"three dollars", u"$$$(SETTINGS_TEST_NAME)"_s, u"$value"_s},
        {"four dollars", u"$$$$"_s, u"$$"_s},
        {"a dollar before something else", u"$a $(SETTINGS_TEST_NAME)"_s, u"$a value"_s},
        {"a dollar at the end", u"a$"_s, u"a$"_s},
        {"an open bracket ends the expansion", u"$(open $$ $$"_s, u"$(open $$ $$"_s},
        {"an open bracket at the end", u"$(SETTINGS_TEST_NAME) $("_s, u"value $("_s},
        {"the bracket closes at the next one", u"$(open $(SETTINGS_TEST_NAME)"_s, u"$(open value"_s},
        {"a value is expanded from its third character on", u"$(SETTINGS_TEST_NESTED)"_s, u"abvalue"_s},
        {"but not before", u"$(SETTINGS_TEST_TOO_EARLY)"_s, u"$(SETTINGS_TEST_NAME)"_s},
        {"a value of one character shields a neighbour", u"$(SETTINGS_TEST_ONE)$(SETTINGS_TEST_NAME)"_s,
            u"1$(SETTINGS_TEST_NAME)"_s},
        {"and only a neighbour", u"$(SETTINGS_TEST_ONE) $(SETTINGS_TEST_NAME)"_s, u"1 value"_s},
    };
    for (const Row &row : rows) {
        SCOPED_TRACE(row.name);
        QString text = row.text;
        Settings::expandVariables(text);
        EXPECT_EQ(text, row.expanded);
    }
}

TEST_F(SettingsTest, VariableThatNamesItselfComesToAnEnd)
{
    const ScopedVariable endless("SETTINGS_TEST_ENDLESS", u"ab$(SETTINGS_TEST_ENDLESS)"_s);
    QString text = u"$(SETTINGS_TEST_ENDLESS)"_s;

    Settings::expandVariables(text);

    EXPECT_EQ(text, u"ab"_s.repeated(1000) + u"$(SETTINGS_TEST_ENDLESS)"_s);
}

TEST_F(SettingsTest, StringReadsExpandVariablesOnlyWhenToldTo)
{
    const ScopedVariable name("SETTINGS_TEST_NAME", u"value"_s);
    writeFile("[g]\ns = \"$(SETTINGS_TEST_NAME)\"\nl = \"$$\",\"$(SETTINGS_TEST_NAME)\"\n");
    Settings settings(path());

    EXPECT_EQ(settings.stringEntry(u"g"_s, u"s"_s, u""_s), u"$(SETTINGS_TEST_NAME)"_s);
    EXPECT_EQ(
        settings.stringListEntry(u"g"_s, u"l"_s, {}), (QStringList{u"$$"_s, u"$(SETTINGS_TEST_NAME)"_s}));

    settings.setExpandVariables(true);

    EXPECT_EQ(settings.stringEntry(u"g"_s, u"s"_s, u""_s), u"value"_s);
    EXPECT_EQ(settings.stringListEntry(u"g"_s, u"l"_s, {}), (QStringList{u"$"_s, u"value"_s}));
    EXPECT_EQ(settings.stringEntry(u"g"_s, u"absent"_s, u"$$"_s), u"$$"_s) << "a default stands as it is";
}

// Directories

TEST_F(SettingsTest, NamesFilesByPurpose)
{
    EXPECT_EQ(settingsFileName(UserFile::Server), u"server.ini"_s);
    EXPECT_EQ(settingsFileName(UserFile::WebWrapper), u"webwrapper.ini"_s);
    EXPECT_EQ(settingsFileName(UserFile::TkWrapper), u"tkwrapper.ini"_s);
    EXPECT_EQ(settingsFileName(UserFile::Paths), u"paths.ini"_s);
    EXPECT_EQ(settingsFileName(UserFile::Ocr), u"ocr.ini"_s);
    EXPECT_EQ(settingsFileName(UserFile::ResultHubCmd), u"resulthubcmd.ini"_s);
    EXPECT_EQ(settingsFileName(static_cast<UserFile>(6)), u""_s);
    EXPECT_EQ(settingsFileName(static_cast<UserFile>(-1)), u""_s);

    EXPECT_EQ(settingsFileName(GlobalFile::Main), u"ostrel.ini"_s);
    EXPECT_EQ(settingsFileName(GlobalFile::Paths), u"paths.ini"_s);
    EXPECT_EQ(settingsFileName(static_cast<GlobalFile>(2)), u""_s);
}

TEST_F(SettingsTest, FilePurposesHaveFixedNumbers)
{
    EXPECT_EQ(static_cast<int>(UserFile::Server), 0);
    EXPECT_EQ(static_cast<int>(UserFile::WebWrapper), 1);
    EXPECT_EQ(static_cast<int>(UserFile::TkWrapper), 2);
    EXPECT_EQ(static_cast<int>(UserFile::Paths), 3);
    EXPECT_EQ(static_cast<int>(UserFile::Ocr), 4);
    EXPECT_EQ(static_cast<int>(UserFile::ResultHubCmd), 5);
    EXPECT_EQ(static_cast<int>(GlobalFile::Main), 0);
    EXPECT_EQ(static_cast<int>(GlobalFile::Paths), 1);
}

TEST_F(SettingsTest, GlobalDirectoryIsTheInstallationsEtc)
{
    ScopedVariable prefix("OSTREL_PREFIX", u"/opt/ostrel"_s);
    const QString separator = QDir::separator();

    EXPECT_EQ(globalSettingsDirectory(), u"/opt/ostrel"_s + separator + u"etc"_s);
    EXPECT_EQ(installedDirectory(u"lib"_s), u"/opt/ostrel"_s + separator + u"lib"_s);
    EXPECT_EQ(Settings(GlobalFile::Main).fileName(), globalSettingsDirectory() + u"/ostrel.ini"_s);
    EXPECT_EQ(Settings(GlobalFile::Paths).fileName(), globalSettingsDirectory() + u"/paths.ini"_s);

    prefix.set(u""_s);
    EXPECT_EQ(globalSettingsDirectory(), separator + u"etc"_s);
}

TEST_F(SettingsTest, UserDirectoryIsWhatTheVariableSaysAndIsCreated)
{
    const QString base = path(u"deep/user"_s);
    const ScopedVariable directory("OSTREL_USER_SETTINGS_DIR", base);

    EXPECT_EQ(userBaseDirectory(), base);
    EXPECT_TRUE(QDir(base).exists());
    EXPECT_EQ(userSettingsDirectory(), base + u"/ver1"_s);
    EXPECT_EQ(Settings(UserFile::Ocr).fileName(), base + u"/ver1/ocr.ini"_s);
    EXPECT_FALSE(QDir(base + u"/ver1"_s).exists()) << "only a write creates it";
}

TEST_F(SettingsTest, UserDirectoryThatCannotBeCreatedIsStillTheAnswer)
{
    writeFile("");
    const ScopedVariable directory("OSTREL_USER_SETTINGS_DIR", path() + u"/sub"_s);

    EXPECT_EQ(userBaseDirectory(), path() + u"/sub"_s);
    EXPECT_EQ(Settings(UserFile::Server).groups(), QStringList());
}

#ifndef Q_OS_WIN
TEST_F(SettingsTest, UserDirectoryWithoutTheVariableLiesInTheApplicationData)
{
    const ScopedVariable directory("OSTREL_USER_SETTINGS_DIR", u""_s); // empty counts as not set
    const ScopedVariable applicationData("APPDATA", path(u"unused"_s));
    const ScopedVariable configuration("XDG_CONFIG_HOME", path(u"config"_s));

    EXPECT_EQ(userBaseDirectory(), path(u"config/Brenvale/Ostrel"_s));
    EXPECT_TRUE(QDir(path(u"config/Brenvale/Ostrel"_s)).exists());
    EXPECT_EQ(userSettingsDirectory(), path(u"config/Brenvale/Ostrel/ver1"_s));
}
#endif

// Warnings

TEST_F(SettingsTest, WarningsNameTheirPlaceInTheCode)
{
    static QByteArray file;
    static QByteArray function;
    const QtMessageHandler previous
        = qInstallMessageHandler([](QtMsgType, const QMessageLogContext &context, const QString &) {
              file = context.file;
              function = context.function;
          });
    Settings(path()).removeEntry(u"g"_s, u"k"_s);
    qInstallMessageHandler(previous);

    EXPECT_TRUE(file.endsWith("settings.cpp")) << file.constData();
    EXPECT_TRUE(function.contains("removeEntry")) << function.constData();
}

TEST_F(SettingsTest, WarningsCarryAnyText)
{
    writeFile("[\xC3\xA4 %s]\n\xE2\x82\xAC %1 %n\n");

    const Settings settings(path());

    EXPECT_EQ(m_messages.take(),
        QStringList{u"Ostrel::Settings::parse: in file "_s + path()
            + u": corrupted line `\u20AC %1 %n' in group `\u00E4 %s'"_s});
}

} // namespace
