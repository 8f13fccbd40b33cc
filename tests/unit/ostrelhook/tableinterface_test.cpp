// Tests of table ranges and of the interface through which tables give them.
#include "samplewidgets.h"

#include "ostrelhook/namespace.h"
#include "ostrelhook/tableinterface.h"
#include "support/printers.h"

#include <gtest/gtest.h>

#include <QXmlStreamReader>

using namespace Ostrel;
using namespace Ostrel::Test;
using namespace Qt::StringLiterals;

namespace {

/// Three rows of two cells; the cell text tells the place.
class SmallTable : public TableRange
{
public:
    using TableRange::TableRange;
    ~SmallTable() override { ++gone; }

    int rowCount() const override { return 3; }
    int columnCount() const override { return 2; }
    CellColor cellBackgroundColor(int row, int column) const override
    {
        return row == 1 && column == 1 ? CellColor{0xff, 0, 0x0a, 0x80} : CellColor{};
    }
    QString cellText(int row, int column) const override
    {
        return row == 2 && column == 0 ? u"<$&'\u00e9>"_s
                                       : u"%1/%2"_s.arg(QString::number(row), QString::number(column));
    }

    static inline int gone = 0;
};

const QString declaration = u"<?xml version=\"1.0\" encoding=\"utf-8\" ?>\n"_s;

/// Cell texts row by row, as the document holds them.
QList<QStringList> textsOf(const TableRange &range)
{
    QXmlStreamReader document(range.contentAsXml(TableRange::CellTexts));
    QList<QStringList> rows;
    while (!document.atEnd()) {
        if (document.readNext() != QXmlStreamReader::StartElement)
            continue;
        if (document.name() == "row"_L1)
            rows.append(QStringList());
        else if (document.name() == "text"_L1)
            rows.last().append(document.readElementText());
    }
    EXPECT_FALSE(document.hasError()) << document.errorString().toStdString();
    return rows;
}

TEST(TableRange, RendersTextsAndColours)
{
    EXPECT_EQ(SmallTable(1, 0, 3, 2).contentAsXml(),
        declaration
            + u"<table hasText=\"1\" hasBackgroundColor=\"1\">\n"
              "    <row>\n"
              "        <cell>\n"
              "            <text>1/0</text>\n"
              "        </cell>\n"
              "        <cell>\n"
              "            <text>1/1</text>\n"
              "            <backgroundColor>#FF000A80</backgroundColor>\n"
              "        </cell>\n"
              "    </row>\n"
              "    <row>\n"
              "        <cell>\n"
              "            <text>&lt;$&amp;&apos;\u00e9&gt;</text>\n"
              "        </cell>\n"
              "        <cell>\n"
              "            <text>2/1</text>\n"
              "        </cell>\n"
              "    </row>\n"
              "</table>\n"_s);
}

TEST(TableRange, WithoutFlagsOnlyTheDeclarationRemains)
{
    EXPECT_EQ(SmallTable().contentAsXml(0), declaration);
}

TEST(TableRange, ColoursAloneLeaveOtherCellsEmpty)
{
    EXPECT_EQ(SmallTable(0, 0, 1, 1).contentAsXml(TableRange::CellBackgroundColors),
        declaration
            + u"<table hasBackgroundColor=\"1\">\n    <row>\n        <cell />\n    </row>\n</table>\n"_s);
}

TEST(TableRange, WithoutBoundsTheWholeTableComesOut)
{
    EXPECT_EQ(textsOf(SmallTable()),
        (QList<QStringList>{{u"0/0"_s, u"0/1"_s}, {u"1/0"_s, u"1/1"_s}, {u"<$&'\u00e9>"_s, u"2/1"_s}}));
}

TEST(TableRange, TheLastRowAndColumnAreNotPartOfIt)
{
    EXPECT_EQ(textsOf(SmallTable(1, 1, 3, 2)), (QList<QStringList>{{u"1/1"_s}, {u"2/1"_s}}));
    EXPECT_EQ(textsOf(SmallTable(1, 1, 1, 2)), QList<QStringList>());
    EXPECT_EQ(textsOf(SmallTable(3, 1, 1, 2)), QList<QStringList>());
}

TEST(TableRange, AFirstBoundAloneShiftsTheWholeLength)
{
    EXPECT_EQ(textsOf(SmallTable(1, 1, -1, -1)).first(), (QStringList{u"1/1"_s, u"1/2"_s}));
    EXPECT_EQ(textsOf(SmallTable(-1, -1, 1, 1)).first(), (QStringList{u"0/0"_s, u"0/1"_s}));
}

TEST(TableRange, ScriptsRenderItWithAndWithoutFlags)
{
    SmallTable::gone = 0;
    SharedPtr<Object> range = wrapTableRange(std::make_unique<SmallTable>(0, 0, 1, 1));

    EXPECT_EQ(callByName(range, u"contentAsXml"_s, {})->toQString(), SmallTable(0, 0, 1, 1).contentAsXml(3));
    EXPECT_EQ(callByName(range, u"contentAsXml"_s, argumentList(0))->toQString(), declaration);
    EXPECT_EQ(SmallTable::gone, 1);
    range.reset();
    EXPECT_EQ(SmallTable::gone, 2);
    EXPECT_EQ(Inspector::self()->takeError(), QString());
}

/// The interface of sample widgets: 3 rows and as many columns as they are wide.
class WidgetTable : public TableInterfaceClass
{
public:
    explicit WidgetTable(Namespace *home) : TableInterfaceClass(u"Sample_Widget"_s, home) { }

    QString failure;
    mutable QList<int> asked;

protected:
    FunctionCallResult<int> rowCount(const SharedPtr<Object> &) const override { return 3; }
    FunctionCallResult<int> columnCount(const SharedPtr<Object> &object) const override
    {
        if (!failure.isEmpty())
            return Failure(failure);
        return readByName(object, u"width"_s)->toInt();
    }
    FunctionCallResult<std::unique_ptr<TableRange>> range(
        const SharedPtr<Object> &, int topRow, int leftColumn, int bottomRow, int rightColumn) const override
    {
        asked = {topRow, leftColumn, bottomRow, rightColumn};
        if (!failure.isEmpty())
            return Failure(failure);
        return std::unique_ptr<TableRange>(
            std::make_unique<SmallTable>(topRow, leftColumn, bottomRow, rightColumn));
    }
};

class TableInterfaceTest : public testing::Test
{
protected:
    TableInterfaceTest() { sampleClasses().widget->addInterface(table->name(), table.get()); }
    ~TableInterfaceTest() override
    {
        sampleClasses().widget->addInterface(table->name(), nullptr);
        EXPECT_EQ(inspector->takeError(), QString());
    }

    SharedPtr<Object> getRange(const ObjectList &bounds, const SharedPtr<Object> &object)
    {
        const FunctionCallResult<Method *> method = table->resolve(u"getRange"_s, bounds);
        EXPECT_EQ(method.error, QString());
        return table->call(object, bounds, method.value);
    }

    Inspector *inspector = Inspector::self();
    const std::unique_ptr<WidgetTable> table = std::make_unique<WidgetTable>(inspector->globalNamespace());
    const SharedPtr<Object> widget = wrapped(new Button);
};

TEST_F(TableInterfaceTest, IsNamedAfterItsClassAndFoundForClassesBelow)
{
    EXPECT_EQ(table->name(), u"Sample_Widget_TableInterface"_s);
    EXPECT_EQ(TableInterfaceClass::of(sampleClasses().button), table.get());
    EXPECT_EQ(TableInterfaceClass::of(inspector->findClass(u"Array"_s)), nullptr);
    EXPECT_EQ(TableInterfaceClass::of(nullptr), nullptr);
}

TEST_F(TableInterfaceTest, CountsAreReadOnlyProperties)
{
    const Property *columns = table->findProperty(u"columnCount"_s);

    EXPECT_EQ(table->read(widget, table->findProperty(u"rowCount"_s))->toInt(), 3);
    EXPECT_EQ(table->read(widget, columns)->toInt(), 10);
    EXPECT_FALSE(table->write(widget, columns, inspector->createPrimitive(1)));
    EXPECT_EQ(inspector->takeError(), u"Cannot set read-only property columnCount."_s);
}

TEST_F(TableInterfaceTest, EveryBoundOfARangeIsOptional)
{
    getRange({}, widget);
    EXPECT_EQ(table->asked, (QList<int>{-1, -1, -1, -1}));
    getRange(argumentList(1), widget);
    EXPECT_EQ(table->asked, (QList<int>{1, -1, -1, -1}));
    getRange(argumentList(1, 2, 3), widget);
    EXPECT_EQ(table->asked, (QList<int>{1, 2, 3, -1}));

    const SharedPtr<Object> range = getRange(argumentList(1, 0, 3, 2), widget);

    EXPECT_EQ(table->asked, (QList<int>{1, 0, 3, 2}));
    ASSERT_TRUE(range);
    EXPECT_EQ(callByName(range, u"contentAsXml"_s, {})->toQString(), SmallTable(1, 0, 3, 2).contentAsXml());
}

TEST_F(TableInterfaceTest, FailuresAreScriptErrors)
{
    table->failure = u"No table: %1"_s;

    EXPECT_FALSE(getRange({}, widget));
    EXPECT_EQ(inspector->takeError(), u"No table: %1"_s);
    EXPECT_FALSE(table->read(widget, table->findProperty(u"columnCount"_s)));
    EXPECT_EQ(inspector->takeError(), u"No table: %1"_s);
}

TEST_F(TableInterfaceTest, OnlyObjectsOfTheTablesClassHaveIt)
{
    EXPECT_FALSE(getRange({}, wrapDateTime({})));
    EXPECT_EQ(inspector->takeError(), u"Cannot access 'getRange' of an object that is no Sample_Widget."_s);
    EXPECT_FALSE(table->read(wrapped(nullptr), table->findProperty(u"rowCount"_s)));
    EXPECT_EQ(inspector->takeError(), u"Cannot access 'rowCount' of an object that is no Sample_Widget."_s);
}

} // namespace
