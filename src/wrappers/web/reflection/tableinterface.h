// The table verification interface of wrappers that give their cells through HTML_TableVPInterface.
#pragma once

#include "wrappers/web/controls/table.h"
#include "wrappers/web/objectfactory.h"
#include "wrappers/web/reflection/webclasses.h"

#include <memory>

namespace Ostrel::WebWrapper {

/// The interface "<name of Table>_TableInterface", for a wrapper class that is an HTML_TableVPInterface as
/// well.
template <typename Table>
class HTML_TableVPInterface_TableInterfaceClass : public TableInterfaceClass
{
public:
    explicit HTML_TableVPInterface_TableInterfaceClass(Namespace *home)
        : TableInterfaceClass(QString::fromLatin1(Table::ScriptName), home)
    {
    }

protected:
    FunctionCallResult<int> rowCount(const SharedPtr<Object> &object) const override
    {
        const FunctionCallResult<const HTML_TableVPInterface *> table = tableOf(object);
        if (table.failed())
            return Failure(table.error);
        return table.value->rowCount();
    }

    FunctionCallResult<int> columnCount(const SharedPtr<Object> &object) const override
    {
        const FunctionCallResult<const HTML_TableVPInterface *> table = tableOf(object);
        if (table.failed())
            return Failure(table.error);
        return table.value->columnCount();
    }

    FunctionCallResult<std::unique_ptr<TableRange>> range(const SharedPtr<Object> &object, int topRow,
        int leftColumn, int bottomRow, int rightColumn) const override
    {
        const FunctionCallResult<const HTML_TableVPInterface *> table = tableOf(object);
        if (table.failed())
            return Failure(table.error);
        FunctionCallResult<std::unique_ptr<TableRange>> range;
        range.value = std::make_unique<HTML_TableVPInterface_TableRange>(
            table.value, topRow, leftColumn, bottomRow, rightColumn, object);
        return range;
    }

private:
    static FunctionCallResult<const HTML_TableVPInterface *> tableOf(const SharedPtr<Object> &object)
    {
        const HTML_Object *wrapper = retrieveObject(object);
        const auto *table = dynamic_cast<const HTML_TableVPInterface *>(wrapper);
        if (!table)
            return Failure(QStringLiteral("The object has no cells."));
        if (!wrapper->hasValidReference())
            return Failure(QString::fromUtf16(deadElementMessage));
        return table;
    }
};

} // namespace Ostrel::WebWrapper
