// HTML_Table: tables that a page extension describes, and the ranges of their cells that scripts verify.
#pragma once

#include "ostrelhook/tableinterface.h"
#include "wrappers/web/controls/extensionbacked.h"

#include <string>
#include <vector>

namespace Ostrel::WebWrapper {

class HTML_TableVPInterface_TableRange;

/// Where the cells of a range come from. Rows and columns count from 0.
class PAGEPROBELIB_EXPORT HTML_TableVPInterface
{
public:
    using TableRange = HTML_TableVPInterface_TableRange;
    /// The rows of a table, each with the UTF-8 texts of its cells.
    using Rows = std::vector<std::vector<std::string>>;

    // Virtual operations in the order that derived classes rely on.
    virtual FunctionCallResult<Rows> cellTexts() const = 0;
    virtual FunctionCallResult<QString> cellText(int row, int column) const = 0;
    virtual FunctionCallResult<int> rowCount() const = 0;
    virtual FunctionCallResult<int> columnCount() const = 0;

protected:
    ~HTML_TableVPInterface() = default;
};

/// A range of the cells of a web table. It reads all texts when it is made and keeps them. It cannot report
/// to a script: a failure goes to standard error and leaves the range empty, so that a comparison fails
/// visibly.
class PAGEPROBELIB_EXPORT HTML_TableVPInterface_TableRange : public Ostrel::TableRange
{
public:
    /// `table` belongs to `owner`, which the range keeps alive; without an owner the table outlives the
    /// range.
    HTML_TableVPInterface_TableRange(const HTML_TableVPInterface *table, int topRow, int leftColumn,
        int bottomRow, int rightColumn, SharedPtr<Object> owner = {});

    int rowCount() const override;
    int columnCount() const override;
    /// Web tables have no colours to verify: always without colour.
    CellColor cellBackgroundColor(int row, int column) const override;
    QString cellText(int row, int column) const override;

private:
    const HTML_TableVPInterface *m_table;
    SharedPtr<Object> m_owner;
    HTML_TableVPInterface::Rows m_rows;
};

class PAGEPROBELIB_EXPORT HTML_Table : public ExtensionBacked<HTML_Object>, public HTML_TableVPInterface
{
public:
    static constexpr char ScriptName[] = "HTML_Table";

    using ExtensionBacked::ExtensionBacked;
    const char *className() const override { return ScriptName; }

    FunctionCallResult<Rows> cellTexts() const override;
    FunctionCallResult<QString> cellText(int row, int column) const override;
    FunctionCallResult<int> rowCount() const override;
    FunctionCallResult<int> columnCount() const override;

    /// A new wrapper, owned by the caller; an error when the page has no such cell.
    FunctionCallResult<HTML_Object *> cellAt(int row, int column) const;
};

} // namespace Ostrel::WebWrapper
