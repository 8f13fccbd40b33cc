// Tests of trace points: nothing is built or said unless somebody looks at the category.
#include "probelog/tracepoint.h"

#include "support/printers.h"
#include "support/scopedvariable.h"

#include <gtest/gtest.h>

using namespace Ostrel::ProbeLog;
using namespace Qt::StringLiterals;

namespace {

struct Heard
{
    QString category;
    QString text;
    QStringList values;
    int visits;
};

class TracePointTest : public testing::Test
{
protected:
    TracePointTest()
    {
        setTraceReceiver(
            [this](const TracePoint &point, const QString &text, const VariableSnapshot &values) {
                QStringList shown;
                for (const VariableValue &value : values)
                    shown.append(value.name + u'=' + value.value);
                heard.append({QString::fromLatin1(point.category()), text, shown, point.visits()});
            });
    }
    ~TracePointTest() override
    {
        setActiveCategories({});
        setTraceReceiver(nullptr);
    }

    /// Builds a text and counts that it was built.
    QString text(const QString &text)
    {
        ++built;
        return text;
    }

    void passSearch() { PROBELOG_TRACE("Search", text(u"looking, 'here'"_s)); }
    void passDump() { PROBELOG_TRACE("Dump", text(u"dumping"_s)); }
    void passWithValues()
    {
        PROBELOG_TRACE_VALUES("Search", text(u"found"_s), {{u"index"_s, u"3"_s}, {u"name"_s, u"a, b"_s}});
    }

    QList<Heard> heard;
    int built = 0;
};

TEST_F(TracePointTest, BuildsNoTextWhenNobodyLooks)
{
    passSearch();
    passWithValues();

    EXPECT_EQ(built, 0);
    EXPECT_TRUE(heard.isEmpty());
}

TEST_F(TracePointTest, SaysOnlyWhatBelongsToActiveCategories)
{
    setActiveCategories({u"Search"_s});

    passDump();
    passSearch();

    EXPECT_EQ(built, 1);
    ASSERT_EQ(heard.size(), 1);
    EXPECT_EQ(heard.at(0).category, u"Search"_s);
    EXPECT_EQ(heard.at(0).text, u"looking, 'here'"_s);
    EXPECT_EQ(heard.at(0).values, QStringList());
}

TEST_F(TracePointTest, StarStandsForAllCategories)
{
    setActiveCategories({u"*"_s});

    passDump();
    passSearch();

    EXPECT_EQ(heard.size(), 2);
}

TEST_F(TracePointTest, FollowsChangesOfTheCategories)
{
    setActiveCategories({u"Dump"_s});
    passDump();
    setActiveCategories({});
    passDump();
    setActiveCategories({u"Dump"_s});
    passDump();

    EXPECT_EQ(heard.size(), 2);
    EXPECT_EQ(built, 2);
}

TEST_F(TracePointTest, CountsVisitsWhileActive)
{
    TracePoint point("Counted", "file.cpp", 7, "here");

    EXPECT_FALSE(point.advanceVisit());
    setActiveCategories({u"Counted"_s});
    EXPECT_TRUE(point.advanceVisit());
    EXPECT_TRUE(point.advanceVisit());

    EXPECT_EQ(point.visits(), 2);
    EXPECT_STREQ(point.file(), "file.cpp");
    EXPECT_EQ(point.line(), 7);
    EXPECT_STREQ(point.function(), "here");
}

TEST_F(TracePointTest, PassesVariablesOn)
{
    setActiveCategories({u"Search"_s});

    passWithValues();

    ASSERT_EQ(heard.size(), 1);
    EXPECT_EQ(heard.at(0).text, u"found"_s);
    EXPECT_EQ(heard.at(0).values, (QStringList{u"index=3"_s, u"name=a, b"_s}));
}

TEST_F(TracePointTest, ReceiverMayTraceAndReplaceItself)
{
    setActiveCategories({u"Search"_s, u"Dump"_s});
    QStringList texts;
    setTraceReceiver([&](const TracePoint &, const QString &said, const VariableSnapshot &) {
        texts.append(said);
        setTraceReceiver([&texts](const TracePoint &, const QString &later, const VariableSnapshot &) {
            texts.append(later);
        });
        passDump();
    });

    passSearch();

    EXPECT_EQ(texts, (QStringList{u"looking, 'here'"_s, u"dumping"_s}));
}

TEST_F(TracePointTest, WithoutReceiverWritesLinesToStandardError)
{
    setActiveCategories({u"*"_s});
    setTraceReceiver(nullptr);

    testing::internal::CaptureStderr();
    passSearch();
    passWithValues();

    EXPECT_EQ(
        testing::internal::GetCapturedStderr(), "Search: looking, 'here'\nSearch: found index=3 name=a, b\n");
}

} // namespace
