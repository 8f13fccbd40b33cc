// Tests of the symbolic names that a recording makes up and keeps in a names file.
#include "host/record/recordednames.h"
#include "host/record/recordedscript.h"
#include "host/record/recordinglogger.h"
#include "ostrelhook/inspector.h"

#include "support/hostiletexts.h"
#include "support/printers.h"

#include <gtest/gtest.h>

#include <QFile>
#include <QTemporaryDir>

using namespace Ostrel;
using namespace Ostrel::Host;
using namespace Ostrel::Test;
using namespace Qt::StringLiterals;

namespace {

class Names : public testing::Test
{
protected:
    void write(const QByteArray &content) const
    {
        QFile file(fileName);
        ASSERT_TRUE(file.open(QIODevice::WriteOnly));
        file.write(content);
    }
    QString content() const
    {
        QFile file(fileName);
        return file.open(QIODevice::ReadOnly) ? QString::fromUtf8(file.readAll()) : u"no file"_s;
    }

    QTemporaryDir folder;
    QString fileName = folder.filePath(u"shop.names"_s);
};

TEST_F(Names, TellAPersonWhatAnObjectIs)
{
    RecordedNames names = RecordedNames::extending(fileName).value;

    EXPECT_EQ(names.nameFor(u"{tagName='BUTTON' id='add' simplifiedInnerText='Add to cart'}"_s),
        u"Add to cart (button)"_s);
    EXPECT_EQ(names.nameFor(u"{tagName='INPUT' type='submit' value='Pay'}"_s), u"Pay (button)"_s);
    EXPECT_EQ(names.nameFor(u"{tagName='INPUT' type='email' name='email' id='mail'}"_s), u"mail (field)"_s);
    EXPECT_EQ(names.nameFor(u"{tagName='TEXTAREA' name='note'}"_s), u"note (field)"_s);
    EXPECT_EQ(names.nameFor(u"{tagName='INPUT' type='radio' name='method' value='bicycle'}"_s),
        u"method bicycle (option)"_s);
    EXPECT_EQ(names.nameFor(u"{tagName='A' simplifiedInnerText='# {x} 1'}"_s), u"x} 1 (link)"_s);
    EXPECT_EQ(names.nameFor(u"{tagName='STOCK-BADGE' visible='true'}"_s), u"stock-badge"_s);
    EXPECT_EQ(names.nameFor(u"DOCUMENT.HTML1.BODY1"_s), u"DOCUMENT.HTML1.BODY1"_s);
    EXPECT_EQ(names.nameFor(u"[Window]"_s), u"[Window]"_s);
}

TEST_F(Names, AreTheSameForTheSameObjectAndDifferForOthers)
{
    RecordedNames names = RecordedNames::extending(fileName).value;
    const QString first = u"{tagName='BUTTON' simplifiedInnerText='Use'}"_s;

    EXPECT_EQ(names.nameFor(first), u"Use (button)"_s);
    EXPECT_EQ(
        names.nameFor(u"{tagName='BUTTON' simplifiedInnerText='Use' occurrence='2'}"_s), u"Use (button) 2"_s);
    EXPECT_EQ(names.nameFor(first), u"Use (button)"_s);
}

TEST_F(Names, ComeBehindThoseThatSomebodyWrote)
{
    write("# The till\npay\t{tagName='BUTTON' id='pay'}");
    RecordedNames names = RecordedNames::extending(fileName).value;

    EXPECT_EQ(names.nameFor(u"{tagName='BUTTON' id='pay'}"_s), u"pay"_s);
    EXPECT_EQ(names.nameFor(u"{tagName='BUTTON' id='add'}"_s), u"add (button)"_s);
    ASSERT_FALSE(names.save().failed());

    EXPECT_EQ(content(),
        u"# The till\npay\t{tagName='BUTTON' id='pay'}\nadd (button)\t{tagName='BUTTON' id='add'}\n"_s);
}

TEST_F(Names, OfAnyTextComeBackFromTheFile)
{
    RecordedNames names = RecordedNames::extending(fileName).value;
    QStringList symbolic;
    QStringList real;
    for (const HostileText &hostile : hostileTexts()) {
        ObjectName name(u"{tagName='BUTTON'}"_s);
        name.setProperty(u"simplifiedInnerText"_s, PropertyValue(hostile.text));
        real.append(name.qualifiedName());
        symbolic.append(names.nameFor(real.constLast()));
    }
    ASSERT_FALSE(names.save().failed());

    ObjectMap map;
    ASSERT_FALSE(map.load(fileName).failed());
    for (qsizetype i = 0; i < real.size(); ++i)
        EXPECT_EQ(map.realName(symbolic.at(i)), real.at(i));
}

TEST_F(Names, AreRefusedWithTheFaultyLine)
{
    write("pay BUTTON\n");

    EXPECT_EQ(RecordedNames::extending(fileName).error,
        u"%1:1: A symbolic name, a tab and a name with properties expected."_s.arg(fileName));
    EXPECT_EQ(content(), u"pay BUTTON\n"_s);
}

TEST_F(Names, StandInTheStatements)
{
    RecordedNames names = RecordedNames::extending(fileName).value;
    RecordedScript script;
    RecordingLogger logger(&script, {}, &names);

    logger.recordMethodCall(u"{tagName='INPUT' type='text' id='mail'}"_s, "typeText",
        {Inspector::self()->createPrimitive(u"a@b"_s)}, nullptr);
    logger.recordMethodCall(u"shop.html"_s, "waitForContextExists", {}, nullptr);

    EXPECT_EQ(script.lines(),
        (QStringList{u"typeText(\"mail (field)\", \"a@b\");"_s, u"waitForContextExists(\"shop.html\");"_s}));
}

} // namespace
