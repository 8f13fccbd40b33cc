// What scripts see of tables that a page extension describes, and how the framework verifies them.
#include "wrappers/web/controls/table.h"

#include "wrappers/web/reflection/tableinterface.h"
#include "wrappers/web/reflection/tables.h"

namespace Ostrel::WebWrapper {

namespace {

constexpr PropertyRow tableProperties[] = {
    property<&HTML_Table::columnCount>("columnCount"),
    property<&HTML_Table::rowCount>("rowCount"),
};

constexpr MethodRow tableMethods[] = {
    method<&HTML_Table::columnCount>("columnCount"),
    method<&HTML_Table::cellAt>("cellAt", "row", "col"),
    method<&HTML_Table::rowCount>("rowCount"),
};

} // namespace

constinit const ClassTable HTML_Table_Class{"HTML_Table", "HTML_Object", tableProperties, tableMethods};

} // namespace Ostrel::WebWrapper
