// Tests of the folding of lists in scripts.
#include "host/browser/listfolding.h"
#include "wrappers/web/jsonenvelope.h"

#include "support/printers.h"

#include <gtest/gtest.h>

#include <QStringList>

namespace Ostrel::Host {
namespace {

using namespace Qt::StringLiterals;

constexpr int count = 200;

/// Many elements; %1 is their number.
QString elements(const QString &shape)
{
    QStringList all;
    for (int i = 0; i < count; ++i)
        all.append(shape.arg(i));
    return all.join(u", "_s);
}

/// Calls a function with the elements.
QString callWith(const QString &list)
{
    return u"show( [%1] )"_s.arg(list);
}

/// The short form of a list.
QString foldedForm(const QStringList &makers, const QString &entries)
{
    return u"(function (makers, entries) {\n"_s
           "    var list = [], i, make;\n"
           "    for (i = 0; i < entries.length; i += 2) {\n"
           "        make = makers[entries[i]];\n"
           "        list[i / 2] = make(entries[i + 1]);\n"
           "    }\n"
           "    return list;\n"
           "})([%1], [%2])"_s.arg(makers.join(u','), entries);
}

TEST(ListFolding, WritesLikeElementsOnce)
{
    QString script = u"show( ["_s;
    QString entries;
    for (int i = 0; i < count; ++i) {
        const QString shape = i % 2 ? u"{ at: store[%1], 'of': 'a[%2]' }"_s : u"sum(store[%1], other[7])"_s;
        script += i > 0 ? u","_s : QString();
        script += i % 2 ? shape.arg(i).arg(7) : shape.arg(i);
        entries += i > 0 ? u",%1,%2"_s.arg(i % 2).arg(i) : u"0,0"_s;
    }

    EXPECT_EQ(foldedList(script + u"] )"_s),
        u"show( "_s
            + foldedForm(
                {u"function (__ostrel__number) { return sum(store[__ostrel__number], other[7]); }"_s,
                    u"function (__ostrel__number) { return { at: store[__ostrel__number], 'of': 'a[7]' }; }"_s},
                entries)
            + u" )"_s);
}

TEST(ListFolding, KeepsWhatIsAroundTheList)
{
    const QString list = elements(u"store[%1].text( 'long', \"text\" )"_s);
    const QString call = u"window.top.show( JSON.stringify($a_1([%1]) ) )"_s.arg(list);
    const QString enveloped
        = WebWrapper::envelopeHead.toString() + call + WebWrapper::envelopeTail.toString();

    const std::optional<QString> folded = foldedList(enveloped);
    ASSERT_TRUE(folded.has_value());
    EXPECT_TRUE(folded->startsWith(
        WebWrapper::envelopeHead.toString() + u"window.top.show( JSON.stringify($a_1((function"_s));
    EXPECT_TRUE(folded->endsWith(u",199])) ) )"_s + WebWrapper::envelopeTail.toString()));
    EXPECT_LT(folded->size(), enveloped.size());
}

TEST(ListFolding, ElementsMayHoldWhatIsNoBracketOfTheirs)
{
    for (const char *shape : {"store[%1].replace( /[/\\]'\"]+[)]\\/$/g, ']' )",
             "'it\\'s ], \\\\' + store[%1]", "\"[%%, ' }\" + store[%1]", "f(0, /[\\]}]/, store[%1])",
             "[{ a: [[store[%1]]] }, (b)]", "function() { return store[%1], 'and', 'more'; }"}) {
        EXPECT_TRUE(foldedList(callWith(elements(QLatin1StringView(shape)))).has_value()) << shape;
    }
}

TEST(ListFolding, OnlyTheFirstNumberMakesElementsAlike)
{
    const std::optional<QString> folded
        = foldedList(callWith(elements(u"f(a[%1], a[7], '[%1]', a[%1], a[01], b[%1.5])"_s)));

    // what stands in a string is text, and that tells these apart from each other
    EXPECT_FALSE(folded.has_value());
    EXPECT_TRUE(foldedList(callWith(elements(u"f(a[%1], a[7], a[%1], a[01])"_s))).has_value());
}

TEST(ListFolding, NumbersStayAsTheyAreWritten)
{
    for (const char *number : {"0%1", "1%1.0", "-%1", "1234567890123456%1", "0x%1", "'%1'", " %1"}) {
        const QString shape = u"someFunction( 'of long texts', store[%1] )"_s.arg(QLatin1StringView(number));
        // more kinds than a list of like elements has
        const QString list = elements(shape) + u", "_s + elements(shape.toUpper());
        EXPECT_FALSE(foldedList(callWith(list)).has_value()) << number;
    }
}

TEST(ListFolding, LeavesScriptsThatAreNotUnderstood)
{
    const QString list = elements(u"someFunction( 'of long texts', store[%1] )"_s);
    ASSERT_TRUE(foldedList(callWith(list)).has_value());

    const QStringList others{
        QString(),
        u"show( [] )"_s,
        u"["_s + list + u"]"_s,
        u"show( a, ["_s + list + u"] )"_s,
        u"show( ["_s + list + u"], a )"_s,
        u"show( ["_s + list + u"] ); more()"_s,
        u"show( ["_s + list + u"] "_s,
        u"show( ["_s + list + u"] ) )"_s,
        u"show( ["_s + list + u"].length )"_s,
        u"show( ["_s + list,
        u"show + ( ["_s + list + u"] )"_s,
        u"show\n( ["_s + list + u"] )"_s,
        u"function f() { show( ["_s + list + u"] ) }"_s,
    };
    for (const QString &script : others) {
        EXPECT_FALSE(foldedList(script).has_value())
            << qPrintable(script.left(30) + u"..."_s + script.right(30));
    }
    for (const char *element : {"", " ", "`text`", "a / b", "a //", "/* a */ b", "f(/* a */ b)", "f(//)",
             "f(/a", "a\n", "a\r", "...a", "f(...a)", "f(a", "f(a]", "{a)", "a)", "a}", "'a", "\"a'", "'a\\",
             "f(/a\n/)", "f(/[/)", "arguments[0]", "eval('var a')", "__ostrel__number"}) {
        for (const QString &withOdd :
            {list + u", "_s + QLatin1StringView(element), QLatin1StringView(element) + u", "_s + list}) {
            EXPECT_FALSE(foldedList(callWith(withOdd)).has_value()) << element;
        }
    }
}

TEST(ListFolding, LeavesAListOfUnlikeElements)
{
    QStringList all;
    for (int i = 0; i < 257; ++i)
        all.append(QString(i + 100, u'a'));
    EXPECT_FALSE(foldedList(callWith((all + all).join(u','))).has_value());
    all.removeLast();
    EXPECT_TRUE(foldedList(callWith((all + all).join(u','))).has_value());
}

} // namespace
} // namespace Ostrel::Host
