#include "host/script/vocabulary.h"

#include "support/printers.h"

#include <gtest/gtest.h>

#include <QSet>

using namespace Ostrel::Host;
using namespace Qt::StringLiterals;

namespace {

QList<QStringList> parametersOf(QStringView name)
{
    const Statement *statement = findStatement(name);
    return statement ? parameterLists(*statement) : QList<QStringList>();
}

TEST(Vocabulary, ListsTheParametersOfEachForm)
{
    EXPECT_EQ(parametersOf(u"mouseClick"),
        (QList<QStringList>{{u"object"_s}, {u"object"_s, u"state"_s}, {u"object"_s, u"x"_s, u"y"_s},
            {u"object"_s, u"state"_s, u"x"_s, u"y"_s}}));
    EXPECT_EQ(parametersOf(u"startBrowser"), QList<QStringList>{{u"url"_s}});
    EXPECT_EQ(parametersOf(u"waitForContextExists"), QList<QStringList>{{u"context"_s}});
    EXPECT_EQ(parametersOf(u"answerPrompt"), (QList<QStringList>{{}, {u"text"_s}}));
}

TEST(Vocabulary, KnowsNoOtherStatements)
{
    EXPECT_EQ(findStatement(u"keydown"), nullptr);
    EXPECT_EQ(findStatement(u""), nullptr);
    EXPECT_EQ(findStatement(u"mouseclick"), nullptr);
}

TEST(Vocabulary, NamesEachStatementOnceAndGivesItAForm)
{
    QSet<QString> names;
    for (const Statement &statement : vocabulary()) {
        const QString name = QString::fromLatin1(statement.name);

        EXPECT_FALSE(names.contains(name)) << statement.name;
        EXPECT_FALSE(parameterLists(statement).isEmpty()) << statement.name;
        names.insert(name);
    }
    EXPECT_EQ(names.size(), 23);
}

} // namespace
