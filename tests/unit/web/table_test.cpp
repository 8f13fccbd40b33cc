// Tests of tables that a page extension describes, and of their verification.
#include "wrappers/web/controls/table.h"
#include "wrappers/web/objectfactory.h"
#include "wrappers/web/reflection/webclasses.h"

#include "support/fakepage.h"
#include "support/operationcase.h"
#include "support/printers.h"
#include "support/scriptcalls.h"

#include <gtest/gtest.h>

using namespace Ostrel;
using namespace Ostrel::Test;
using namespace Ostrel::WebWrapper;
using namespace Qt::StringLiterals;

namespace {

using Rows = HTML_TableVPInterface::Rows;
using Range = HTML_TableVPInterface::TableRange;

class TableOperation : public Operations
{
};

Rows rowsOf(const QString &answer)
{
    FakePage page;
    page.answer(answer);
    const FunctionCallResult<Rows> rows = acme<HTML_Table>(page).cellTexts();
    EXPECT_EQ(rows.error, QString());
    return rows.value;
}

/// A table of this page with three rows and two columns.
const QString threeRows = u"Name$Price$|Ada$1$|Bob$2$|"_s;

SharedPtr<Object> tableObject(FakePage &page)
{
    return wrapObject(new HTML_Table({}, u"el"_s, u"Acme"_s, &page));
}

/// A call of the table interface, as the framework makes it for a verification.
template <typename... Bounds>
ScriptAnswer getRange(const SharedPtr<Object> &table, Bounds... bounds)
{
    TableInterfaceClass *interface = TableInterfaceClass::of(table->objectClass());
    const ObjectList arguments{argument(bounds)...};
    const FunctionCallResult<Method *> method = interface->resolve(u"getRange"_s, arguments);
    if (method.failed())
        return {{}, method.error};
    SharedPtr<Object> range = interface->call(table, arguments, method.value);
    return {std::move(range), Inspector::self()->takeError()};
}

class TableVerification : public testing::Test
{
protected:
    static void SetUpTestSuite() { createWebObjectClasses(); }
};

} // namespace

TEST_P(TableOperation, SendsItsScriptAndReadsTheAnswer)
{
    sendsItsScriptAndReadsTheAnswer();
}

TEST_P(TableOperation, SaysWhatFailed)
{
    saysWhatFailed();
}

INSTANTIATE_TEST_SUITE_P(Table, TableOperation,
    testing::ValuesIn(QList<OperationCase>{
        {"number of rows", on<&HTML_Table::rowCount>(), u"AcmeExtension.rowCount(el);"_s, u"3"_s, u"3"_s,
            u"Error obtaining number of rows: gone"_s},
        {"number of columns", on<&HTML_Table::columnCount>(), u"AcmeExtension.columnCount(el);"_s, u"2"_s,
            u"2"_s, u"Error obtaining number of columns: gone"_s},
        {"cell text", on<&HTML_Table::cellText>(4, 1), u"AcmeExtension.cellText(el, 4, 1);"_s, u" 3.50 "_s,
            u" 3.50 "_s, u"Error obtaining cell text for row 4 and column 1"_s},
        {"cell object", on<&HTML_Table::cellAt>(4, 1), identifying(u"AcmeExtension.cellAt(el, 4, 1);"_s),
            foundAnswer(u"TD"_s), u"HTML_Object found"_s,
            u"Failed to get cell object for row 4 and column 1: gone"_s},
    }),
    rowName<OperationCase>);

TEST(Table, SaysWhichAnswerIsNoNumber)
{
    FakePage page;
    page.answer(u"many"_s);
    page.answer(u"many"_s);
    const HTML_Table table = acme<HTML_Table>(page);

    EXPECT_EQ(table.rowCount().error, u"Cannot convert 'many' to number of rows."_s);
    EXPECT_EQ(table.columnCount().error, u"Cannot convert 'many' to number of columns."_s);
}

TEST(Table, CellIsNamedByItsPlace)
{
    FakePage page;
    page.answerObject(u"TD"_s, u"found"_s);
    const HTML_Table table = acme<HTML_Table>(page);

    const std::unique_ptr<HTML_Object> cell(table.cellAt(4, 1).value);
    ASSERT_TRUE(cell);

    EXPECT_EQ(cell->name().value, u"TableCell_4_1"_s);
    EXPECT_EQ(page.calls().size(), 1) << "the name is known";
    EXPECT_EQ(page.calls().constFirst().timeoutMs, 0u);
}

TEST(Table, MissingCellIsAnError)
{
    FakePage page;
    page.answer(nothingAnswer());
    const HTML_Table table = acme<HTML_Table>(page);

    EXPECT_EQ(
        table.cellAt(9, 1).error, u"Failed to get cell object for row 9 and column 1: No valid object."_s);
}

TEST(Table, AsksForAllTextsAtOnce)
{
    FakePage page;
    page.answer(threeRows);
    page.fail(u"gone"_s);
    const HTML_Table table = acme<HTML_Table>(page);

    EXPECT_EQ(table.cellTexts().value, (Rows{{"Name", "Price"}, {"Ada", "1"}, {"Bob", "2"}}));
    EXPECT_EQ(table.cellTexts().error, u"Error obtaining cell texts: gone"_s);
    EXPECT_EQ(page.scripts().constFirst(), u"AcmeExtension.cellTexts(el);"_s);
}

TEST(Table, TakesCellTextsApart)
{
    struct Case
    {
        const char *name;
        QString text;
        Rows rows;
    };
    const Case cases[] = {
        {"no row", u""_s, {}},
        {"a row without cells", u"|"_s, {{}}},
        {"an empty cell", u"$|"_s, {{""}}},
        {"empty cells between others", u"a$$b$|"_s, {{"a", "", "b"}}},
        {"rows of different lengths", u"a$|b$c$|"_s, {{"a"}, {"b", "c"}}},
        {"marks in texts", u"5 \\$$a\\|b$|"_s, {{"5 $", "a|b"}}},
        {"backslashes in texts", u"C:\\\\temp$\\\\$|"_s, {{"C:\\temp", "\\"}}},
        {"a letter behind a backslash", u"\\n$|"_s, {{"n"}}},
        {"blanks and line breaks", u" a \nb$|"_s, {{" a \nb"}}},
        {"other letters", u"Käse \U0001F9C0$|"_s, {{"K\xC3\xA4se \xF0\x9F\xA7\x80"}}},
        {"a last cell without its end", u"a$b|c|"_s, {{"a", "b"}, {"c"}}},
        {"a row without its end", u"a$|b$"_s, {{"a"}}},
        {"a backslash at the end", u"a$|\\"_s, {{"a"}}},
    };

    for (const Case &row : cases)
        EXPECT_EQ(rowsOf(row.text), row.rows) << row.name;
}

// Ranges

TEST(TableRange, ReadsTheTextsOnce)
{
    FakePage page;
    page.answer(threeRows);
    const HTML_Table table = acme<HTML_Table>(page);

    const Range range(&table, 0, 0, 2, 2);

    EXPECT_EQ(range.cellText(0, 1), u"Price"_s);
    EXPECT_EQ(range.cellText(2, 0), u"Bob"_s);
    EXPECT_EQ(page.scripts(), QStringList{u"AcmeExtension.cellTexts(el);"_s});
}

TEST(TableRange, CellOutsideHasNoText)
{
    FakePage page;
    page.answer(threeRows);
    const HTML_Table table = acme<HTML_Table>(page);

    const Range range(&table, -1, -1, -1, -1);

    EXPECT_EQ(range.cellText(3, 0), QString());
    EXPECT_EQ(range.cellText(0, 2), QString());
    EXPECT_EQ(range.cellText(-1, 0), QString());
    EXPECT_EQ(range.cellText(0, -1), QString());
}

TEST(TableRange, HasNoColours)
{
    FakePage page;
    page.answer(threeRows);
    const HTML_Table table = acme<HTML_Table>(page);

    const Range range(&table, -1, -1, -1, -1);

    EXPECT_EQ(range.cellBackgroundColor(0, 0), CellColor{});
}

TEST(TableRange, WritesFailuresToStandardErrorAndStaysEmpty)
{
    FakePage page;
    page.fail(u"gone"_s);
    page.fail(u"no rows"_s);
    page.fail(u"no columns"_s);
    const HTML_Table table = acme<HTML_Table>(page);
    testing::internal::CaptureStderr();

    const Range range(&table, -1, -1, -1, -1);
    const int rows = range.rowCount();
    const int columns = range.columnCount();
    const std::string written = testing::internal::GetCapturedStderr();

    EXPECT_EQ(range.cellText(0, 0), QString());
    EXPECT_EQ(rows, 0);
    EXPECT_EQ(columns, 0);
    EXPECT_EQ(written,
        "Error obtaining cell texts: gone\n"
        "Error obtaining number of rows: no rows\n"
        "Error obtaining number of columns: no columns\n");
}

// Verification

TEST_F(TableVerification, TableHasTheInterface)
{
    FakePage page;
    const SharedPtr<Object> table = tableObject(page);

    EXPECT_EQ(TableInterfaceClass::of(table->objectClass())->name(), u"HTML_Table_TableInterface"_s);
    EXPECT_EQ(TableInterfaceClass::of(objectModelHtmlObjectClass()), nullptr);
}

TEST_F(TableVerification, InterfaceTellsTheSize)
{
    FakePage page;
    page.answer(u"3"_s);
    page.answer(u"2"_s);
    page.fail(u"gone"_s);
    const SharedPtr<Object> table = tableObject(page);
    TableInterfaceClass *interface = TableInterfaceClass::of(table->objectClass());

    EXPECT_EQ(interface->read(table, interface->findProperty(u"rowCount"_s))->toInt(), 3);
    EXPECT_EQ(interface->read(table, interface->findProperty(u"columnCount"_s))->toInt(), 2);
    EXPECT_EQ(interface->read(table, interface->findProperty(u"rowCount"_s)), nullptr);
    EXPECT_EQ(Inspector::self()->takeError(), u"Error obtaining number of rows: gone"_s);
}

TEST_F(TableVerification, RangeWithoutBoundsIsTheWholeTable)
{
    FakePage page;
    page.answer(threeRows);
    page.answer(u"3"_s);
    page.answer(u"2"_s);
    const SharedPtr<Object> table = tableObject(page);

    const ScriptAnswer range = getRange(table);
    const ScriptAnswer xml = callMethod(range.value, u"contentAsXml"_s, 1);

    EXPECT_EQ(xml.error, QString());
    EXPECT_EQ(xml.text(),
        u"<?xml version=\"1.0\" encoding=\"utf-8\" ?>\n"
        "<table hasText=\"1\">\n"
        "    <row>\n"
        "        <cell>\n            <text>Name</text>\n        </cell>\n"
        "        <cell>\n            <text>Price</text>\n        </cell>\n"
        "    </row>\n"
        "    <row>\n"
        "        <cell>\n            <text>Ada</text>\n        </cell>\n"
        "        <cell>\n            <text>1</text>\n        </cell>\n"
        "    </row>\n"
        "    <row>\n"
        "        <cell>\n            <text>Bob</text>\n        </cell>\n"
        "        <cell>\n            <text>2</text>\n        </cell>\n"
        "    </row>\n"
        "</table>\n"_s);
}

TEST_F(TableVerification, LastRowAndColumnAreNotPartOfTheRange)
{
    FakePage page;
    page.answer(u"0$|1$|2$|3$|4$|"_s);
    const SharedPtr<Object> table = tableObject(page);

    const ScriptAnswer range = getRange(table, 1, 0, 3, 1);
    const ScriptAnswer xml = callMethod(range.value, u"contentAsXml"_s, 1);

    EXPECT_EQ(xml.text(),
        u"<?xml version=\"1.0\" encoding=\"utf-8\" ?>\n"
        "<table hasText=\"1\">\n"
        "    <row>\n        <cell>\n            <text>1</text>\n        </cell>\n    </row>\n"
        "    <row>\n        <cell>\n            <text>2</text>\n        </cell>\n    </row>\n"
        "</table>\n"_s);
    EXPECT_EQ(page.scripts(), QStringList{u"AcmeExtension.cellTexts(el);"_s}) << "the size is given";
}

TEST_F(TableVerification, ColoursAreAskedForByDefaultAlthoughNoCellHasOne)
{
    FakePage page;
    page.answer(u"a<b$|"_s);
    const SharedPtr<Object> table = tableObject(page);

    const ScriptAnswer range = getRange(table, 0, 0, 1, 1);
    const ScriptAnswer xml = callMethod(range.value, u"contentAsXml"_s);

    EXPECT_EQ(xml.text(),
        u"<?xml version=\"1.0\" encoding=\"utf-8\" ?>\n"
        "<table hasText=\"1\" hasBackgroundColor=\"1\">\n"
        "    <row>\n        <cell>\n            <text>a&lt;b</text>\n        </cell>\n    </row>\n"
        "</table>\n"_s);
}

TEST_F(TableVerification, ColoursAloneLeaveTheCellsEmpty)
{
    FakePage page;
    page.answer(u"a$|"_s);
    const SharedPtr<Object> table = tableObject(page);

    const ScriptAnswer range = getRange(table, 0, 0, 1, 1);
    const ScriptAnswer xml = callMethod(range.value, u"contentAsXml"_s, 2);

    EXPECT_EQ(xml.text(),
        u"<?xml version=\"1.0\" encoding=\"utf-8\" ?>\n"
        "<table hasBackgroundColor=\"1\">\n"
        "    <row>\n        <cell />\n    </row>\n"
        "</table>\n"_s);
}

TEST_F(TableVerification, WithoutContentOnlyTheDeclarationIsLeft)
{
    FakePage page;
    page.answer(threeRows);
    const SharedPtr<Object> table = tableObject(page);

    const ScriptAnswer range = getRange(table);
    const ScriptAnswer xml = callMethod(range.value, u"contentAsXml"_s, 0);

    EXPECT_EQ(xml.text(), u"<?xml version=\"1.0\" encoding=\"utf-8\" ?>\n"_s);
}

TEST_F(TableVerification, DollarInACellReachesTheXml)
{
    FakePage page;
    page.answer(u"5 \\$$|"_s);
    const SharedPtr<Object> table = tableObject(page);

    const ScriptAnswer range = getRange(table, 0, 0, 1, 1);
    const ScriptAnswer xml = callMethod(range.value, u"contentAsXml"_s, 1);

    EXPECT_TRUE(xml.text().contains(u"<text>5 $</text>"_s)) << xml.text().toStdString();
}

TEST_F(TableVerification, BoundThatIsNotGivenLeavesTheSizeToTheTable)
{
    FakePage page;
    page.answer(u"a$b$|c$d$|"_s);
    page.answer(u"2"_s);
    const SharedPtr<Object> table = tableObject(page);

    const ScriptAnswer range = getRange(table, 1, 1, 2);
    const auto *native = static_cast<const Ostrel::TableRange *>(range.value->data());

    EXPECT_EQ(native->firstRow, 1);
    EXPECT_EQ(native->firstColumn, 1);
    EXPECT_EQ(native->lastRow, 2);
    EXPECT_EQ(native->lastColumn, -1);
}

TEST_F(TableVerification, RangeOutlivesTheScriptsTable)
{
    FakePage page;
    page.answer(u"a$|"_s);
    page.answer(u"1"_s);
    page.answer(u"1"_s);
    SharedPtr<Object> table = tableObject(page);

    const ScriptAnswer range = getRange(table);
    table.reset();
    const ScriptAnswer xml = callMethod(range.value, u"contentAsXml"_s, 1);

    EXPECT_TRUE(xml.text().contains(u"<text>a</text>"_s)) << xml.text().toStdString();
}

TEST_F(TableVerification, DeadTableGivesNoRange)
{
    FakePage page;
    const SharedPtr<Object> table = tableObject(page);
    retrieveObject(table)->invalidate();

    const ScriptAnswer range = getRange(table);

    EXPECT_EQ(range.value, nullptr);
    EXPECT_EQ(range.error,
        u"Object reference deleted in browser already, please obtain a new reference using waitForObject or "
        "findObject"_s);
    EXPECT_EQ(page.scripts(), QStringList());
}

TEST_F(TableVerification, ScriptReadsSizeAndCells)
{
    FakePage page;
    page.answer(u"3"_s);
    page.answerObject(u"TD"_s, u"found"_s);
    const SharedPtr<Object> table = tableObject(page);

    EXPECT_EQ(readProperty(table, u"rowCount"_s).text(), u"3"_s);
    EXPECT_EQ(callMethod(table, u"cellAt"_s, 1, 0).value->objectClass()->name(), u"HTML_Object"_s);
    EXPECT_EQ(writeProperty(table, u"columnCount"_s, 4), u"Cannot set read-only property columnCount."_s);
}
