// Tables as scripts verify them: a range of cells that renders itself as XML, and the interface through which
// a table object gives such a range.
#pragma once

#include "ostrelhook/class.h"

#include <array>

class TiXmlNode;

namespace Ostrel {

/// A colour as four channels, in the order in which it is written.
using CellColor = std::array<quint8, 4>;

/// A range of table cells. Rows and columns count from 0; a negative bound is one that was not given.
class OSTRELHOOK_EXPORT TableRange
{
public:
    static constexpr char ScriptName[] = "TableRange";

    enum Content {
        CellTexts = 1,
        CellBackgroundColors = 2,
        AllContent = CellTexts | CellBackgroundColors,
    };

    TableRange() = default;
    TableRange(int topRow, int leftColumn, int bottomRow, int rightColumn);

    virtual ~TableRange();
    /// Appends the range to `parent`, with what `flags`, a sum of Content values, asks for. Does nothing
    /// without a parent or without flags.
    virtual void contentAsXml(TiXmlNode *parent, int flags) const;
    /// The size of the whole table.
    virtual int rowCount() const = 0;
    virtual int columnCount() const = 0;
    /// Four times 0 for a cell that has no colour of its own.
    virtual CellColor cellBackgroundColor(int row, int column) const = 0;
    /// Empty for a cell that does not exist.
    virtual QString cellText(int row, int column) const = 0;

    /// The range as the text of an XML document.
    QString contentAsXml(int flags = AllContent) const;

    int firstRow = -1;
    /// Kept as is: the last row and column are not part of the range, as those who store ranges count.
    int lastRow = -1;
    int firstColumn = -1;
    int lastColumn = -1;
};

/// The class "TableRange"; its objects own a TableRange.
class OSTRELHOOK_EXPORT TableRangeClass : public Class
{
public:
    explicit TableRangeClass(Namespace *home);

    SharedPtr<Object> invoke(int index, const SharedPtr<Object> &object, const ObjectList &arguments,
        const Method *method) override;
    void deleteObjectData(Object *object) override;

protected:
    std::unique_ptr<Method> createMethod(int index) const override;
};

/// A script object that owns the range; the null object of its class for a null pointer.
OSTRELHOOK_EXPORT SharedPtr<Object> wrapTableRange(std::unique_ptr<TableRange> range);

/// The table members of another class: the properties rowCount and columnCount, and the method getRange with
/// up to four integers, the top row, left column, bottom row and right column. They are called with objects
/// of that other class.
///
/// The interface is added to its class under its own name, by Class::addInterface().
class OSTRELHOOK_EXPORT TableInterfaceClass : public Class
{
public:
    /// The interface of the class `tableClassName`, under the name that nameFor() gives.
    TableInterfaceClass(const QString &tableClassName, Namespace *home);

    /// "HTML_Table_TableInterface" for "HTML_Table".
    static QString nameFor(const QString &tableClassName);
    /// The interface of a class or of its nearest base class that has one; null when none has.
    static TableInterfaceClass *of(const Class *tableClass);

    SharedPtr<Object> invoke(int index, const SharedPtr<Object> &object, const ObjectList &arguments,
        const Method *method) override;
    SharedPtr<Object> getProperty(const SharedPtr<Object> &object, const Property *property) override;
    bool setProperty(
        const SharedPtr<Object> &object, const Property *property, const SharedPtr<Object> &value) override;

protected:
    // What a kind of table implements. `object` is of the table's class and wraps something.
    virtual FunctionCallResult<int> rowCount(const SharedPtr<Object> &object) const = 0;
    virtual FunctionCallResult<int> columnCount(const SharedPtr<Object> &object) const = 0;
    /// A new range; bounds that were not given are -1.
    virtual FunctionCallResult<std::unique_ptr<TableRange>> range(const SharedPtr<Object> &object, int topRow,
        int leftColumn, int bottomRow, int rightColumn) const = 0;

    std::unique_ptr<Method> createMethod(int index) const override;
    std::unique_ptr<Property> createProperty(int index) const override;

private:
    bool isTable(const SharedPtr<Object> &object, const QString &member) const;

    QString m_tableClassName;
};

} // namespace Ostrel
