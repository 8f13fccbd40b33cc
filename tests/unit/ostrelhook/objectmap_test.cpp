// Tests of symbolic names and names files.
#include "ostrelhook/objectname.h"

#include "support/printers.h"

#include <gtest/gtest.h>

#include <QDir>
#include <QFile>
#include <QTemporaryDir>

using namespace Ostrel;
using namespace Qt::StringLiterals;

namespace {

class ObjectMapTest : public testing::Test
{
protected:
    QString path() const { return m_directory.filePath(u"names"_s); }

    void write(const QByteArray &text) const
    {
        QFile file(path());
        ASSERT_TRUE(file.open(QIODevice::WriteOnly));
        file.write(text);
    }

    QString load(const QByteArray &text)
    {
        write(text);
        return map.load(path()).error;
    }

    QString insert(const QString &symbolicName, const QString &realName)
    {
        return map.insert(symbolicName, realName).error;
    }

    ObjectMap map;

private:
    QTemporaryDir m_directory;
};

TEST_F(ObjectMapTest, GivesTheNameThatASymbolicNameStandsFor)
{
    EXPECT_EQ(insert(u"Save button"_s, u"{tagName='BUTTON'}"_s), QString());

    EXPECT_EQ(map.realName(u"Save button"_s), u"{tagName='BUTTON'}"_s);
    EXPECT_EQ(map.symbolicName(u"{tagName='BUTTON'}"_s), u"Save button"_s);
}

TEST_F(ObjectMapTest, AnyOtherNameStandsForItself)
{
    insert(u"Save"_s, u"{tagName='BUTTON'}"_s);

    EXPECT_EQ(map.realName(u"save"_s), u"save"_s);
    EXPECT_EQ(map.realName(u"{tagName='BUTTON'}"_s), u"{tagName='BUTTON'}"_s);
    EXPECT_EQ(map.symbolicName(u"{tagName='A'}"_s), QString());
}

TEST_F(ObjectMapTest, OfSeveralSymbolicNamesTheFirstIsWritten)
{
    insert(u"one"_s, u"{a='b'}"_s);
    insert(u"two"_s, u"{a='b'}"_s);

    EXPECT_EQ(map.symbolicName(u"{a='b'}"_s), u"one"_s);
    EXPECT_EQ(map.realName(u"two"_s), u"{a='b'}"_s);
}

TEST_F(ObjectMapTest, RefusesNamesThatCannotBe)
{
    insert(u"taken"_s, u"{a='b'}"_s);

    EXPECT_EQ(insert(u""_s, u"{a='b'}"_s), u"'' cannot be a symbolic name."_s);
    EXPECT_EQ(insert(u"a\tb"_s, u"{a='b'}"_s), u"'a\tb' cannot be a symbolic name."_s);
    EXPECT_EQ(insert(u"#a"_s, u"{a='b'}"_s), u"'#a' cannot be a symbolic name."_s);
    EXPECT_EQ(insert(u"{a='c'}"_s, u"{a='b'}"_s), u"'{a='c'}' cannot be a symbolic name."_s);
    EXPECT_EQ(insert(u"taken"_s, u"{a='c'}"_s), u"The symbolic name 'taken' is used twice."_s);
    EXPECT_EQ(insert(u"x"_s, u"plain"_s), u"'plain' is no name with properties on one line."_s);
    EXPECT_EQ(insert(u"x"_s, u"{a='1\n2'}"_s), u"'{a='1\n2'}' is no name with properties on one line."_s);
    EXPECT_EQ(insert(u"x"_s, u""_s), u"The object name is empty."_s);
    EXPECT_EQ(map.names(), QStringList{u"taken"_s});
}

TEST_F(ObjectMapTest, ANameIsNeverItsOwnContainer)
{
    EXPECT_EQ(insert(u"inner"_s, u"{container='outer' tagName='A'}"_s), QString());
    EXPECT_EQ(insert(u"outer"_s, u"{container={container='inner' id='p'} tagName='DIV'}"_s),
        u"The symbolic name 'outer' is its own container."_s);
    EXPECT_EQ(
        insert(u"self"_s, u"{container='self'}"_s), u"The symbolic name 'self' is its own container."_s);
    EXPECT_EQ(insert(u"outer"_s, u"{tagName='DIV'}"_s), QString());
}

TEST_F(ObjectMapTest, ReadsANamesFile)
{
    EXPECT_EQ(load("# names\n"
                   "\n"
                   "Save button\t{tagName='BUTTON' value='a\tb'}\r\n"
                   "M\xc3\xa9nu\t{tagName='X-MENU' title='\xf0\x9f\x98\x80 it\\'s'}\n"
                   "Last\t{a='b'}"),
        QString());

    EXPECT_EQ(map.names(), (QStringList{u"Save button"_s, u"M\u00e9nu"_s, u"Last"_s}));
    EXPECT_EQ(map.realName(u"Save button"_s), u"{tagName='BUTTON' value='a\tb'}"_s);
    EXPECT_EQ(map.realName(u"M\u00e9nu"_s), u"{tagName='X-MENU' title='\U0001f600 it\\'s'}"_s);
}

TEST_F(ObjectMapTest, AFaultyLineIsNamedAndNothingIsTaken)
{
    insert(u"old"_s, u"{a='b'}"_s);

    EXPECT_EQ(load("new\t{a='b'}\nno tab here\n"),
        path() + u":2: A symbolic name, a tab and a name with properties expected."_s);
    EXPECT_EQ(load("new\t{a='b'}\n\nbad\t{a=b}\n"),
        path() + u":3: Invalid object name '{a=b}': value in quotes or braces expected at character 4."_s);
    EXPECT_EQ(load("new\t{a='b'}\nnew\t{a='c'}\n"), path() + u":2: The symbolic name 'new' is used twice."_s);
    EXPECT_EQ(load("\t{a='b'}\n"), path() + u":1: '' cannot be a symbolic name."_s);
    EXPECT_EQ(map.names(), QStringList{u"old"_s});
}

TEST_F(ObjectMapTest, AnUnreadableFileIsAnError)
{
    EXPECT_EQ(
        map.load(path()).error, u"Cannot read the names file '%1': No such file or directory."_s.arg(path()));
}

TEST_F(ObjectMapTest, WhatIsSavedIsReadBack)
{
    insert(u"b"_s, u"{ a='1\t2' }"_s);
    insert(u"a"_s, u"{b='\U0001f600'}"_s);
    ASSERT_EQ(map.save(path()).error, QString());

    ObjectMap other;
    ASSERT_EQ(other.load(path()).error, QString());

    EXPECT_EQ(other.names(), (QStringList{u"b"_s, u"a"_s}));
    EXPECT_EQ(other.realName(u"b"_s), u"{ a='1\t2' }"_s);
    EXPECT_EQ(other.realName(u"a"_s), u"{b='\U0001f600'}"_s);
}

TEST_F(ObjectMapTest, SavingWhereNobodyMayWriteIsAnError)
{
    const QString nowhere = path() + u"/sub/names"_s;

    EXPECT_TRUE(map.save(nowhere).error.startsWith(u"Cannot write the names file '%1': "_s.arg(nowhere)));
}

TEST_F(ObjectMapTest, ClearingForgetsAll)
{
    insert(u"a"_s, u"{a='b'}"_s);

    map.clear();

    EXPECT_EQ(map.realName(u"a"_s), u"a"_s);
    EXPECT_EQ(map.symbolicName(u"{a='b'}"_s), QString());
    EXPECT_TRUE(map.names().isEmpty());
}

TEST_F(ObjectMapTest, TheProcessHasOne)
{
    EXPECT_EQ(ObjectMap::self(), ObjectMap::self());
}

} // namespace
