#include "ostrelhook/tableinterface.h"

#include "ostrelhook/inspector.h"

#include <tinyxml.h>

namespace Ostrel {

using namespace Qt::StringLiterals;

namespace {

TiXmlElement *append(TiXmlNode *parent, const char *name)
{
    return parent->LinkEndChild(new TiXmlElement(name))->ToElement();
}

void appendText(TiXmlNode *parent, const char *name, const QString &text)
{
    append(parent, name)->LinkEndChild(new TiXmlText(text.toUtf8().constData()));
}

QString colorText(const CellColor &color)
{
    return QString::asprintf("#%02X%02X%02X%02X", color[0], color[1], color[2], color[3]);
}

void appendCell(TiXmlElement *parent, const TableRange &range, int row, int column, int flags)
{
    TiXmlElement *cell = append(parent, "cell");
    if (flags & TableRange::CellTexts)
        appendText(cell, "text", range.cellText(row, column));
    if (flags & TableRange::CellBackgroundColors) {
        const CellColor color = range.cellBackgroundColor(row, column);
        if (color != CellColor{})
            appendText(cell, "backgroundColor", colorText(color));
    }
}

bool areGiven(int first, int last)
{
    return first >= 0 && last >= 0;
}

} // namespace

TableRange::TableRange(int topRow, int leftColumn, int bottomRow, int rightColumn)
    : firstRow(topRow), lastRow(bottomRow), firstColumn(leftColumn), lastColumn(rightColumn)
{
}

TableRange::~TableRange() = default;

void TableRange::contentAsXml(TiXmlNode *parent, int flags) const
{
    if (!parent || flags == 0)
        return;
    TiXmlElement *table = append(parent, "table");
    if (flags & CellTexts)
        table->SetAttribute("hasText", "1");
    if (flags & CellBackgroundColors)
        table->SetAttribute("hasBackgroundColor", "1");

    const int rows = areGiven(firstRow, lastRow) ? lastRow - firstRow : rowCount();
    const int columns = areGiven(firstColumn, lastColumn) ? lastColumn - firstColumn : columnCount();
    for (int i = 0; i < rows; ++i) {
        TiXmlElement *row = append(table, "row");
        for (int j = 0; j < columns; ++j)
            appendCell(row, *this, i + qMax(firstRow, 0), j + qMax(firstColumn, 0), flags);
    }
}

QString TableRange::contentAsXml(int flags) const
{
    TiXmlDocument document;
    document.LinkEndChild(new TiXmlDeclaration("1.0", "utf-8", ""));
    contentAsXml(&document, flags);
    TiXmlPrinter printer;
    printer.SetIndent("    ");
    document.Accept(&printer);
    return QString::fromUtf8(printer.CStr());
}

// --- TableRange as scripts see it

TableRangeClass::TableRangeClass(Namespace *home) : Class(QString::fromLatin1(TableRange::ScriptName), home)
{
    setOwnMembers(2, 0);
}

/// One method for each number of arguments.
std::unique_ptr<Method> TableRangeClass::createMethod(int index) const
{
    QList<Argument> parameters;
    if (index - superClassOffset(Methods) == 1)
        parameters.append(Argument(u"flags"_s, u"int"_s, ObjectAttribute::Value(), nullptr));
    return std::make_unique<Method>(const_cast<TableRangeClass *>(this),
        Argument(u"String"_s, ObjectAttribute::Pointer()), u"contentAsXml"_s, Signature(parameters), 0,
        index);
}

SharedPtr<Object> TableRangeClass::invoke(
    int, const SharedPtr<Object> &object, const ObjectList &arguments, const Method *method)
{
    if (!verifyMethodInvocation(object, method) || !verifyMethodArgumentCount(name(), method, arguments))
        return {};
    const auto *range = static_cast<const TableRange *>(object->data());
    const int flags = arguments.isEmpty() || !arguments.first() ? int(TableRange::AllContent)
                                                                : arguments.first()->toInt();
    return Inspector::self()->createPrimitive(range->contentAsXml(flags));
}

void TableRangeClass::deleteObjectData(Object *object)
{
    delete static_cast<TableRange *>(object->data());
}

SharedPtr<Object> wrapTableRange(std::unique_ptr<TableRange> range)
{
    const Class *type = Inspector::self()->findClass(QString::fromLatin1(TableRange::ScriptName));
    SharedPtr<Object> object = type->wrap(range.get(), ObjectAttribute::Pointer());
    object->setOwning(range != nullptr);
    static_cast<void>(range.release()); // the object owns it now
    return object;
}

// --- the interface of tables

namespace {

constexpr const char *bounds[] = {"topRow", "leftColumn", "bottomRow", "rightColumn"};
constexpr const char *counts[] = {"rowCount", "columnCount"};

} // namespace

TableInterfaceClass::TableInterfaceClass(const QString &tableClassName, Namespace *home)
    : Class(nameFor(tableClassName), home, false), m_tableClassName(tableClassName)
{
    setOwnMembers(int(std::size(bounds)) + 1, int(std::size(counts)));
}

QString TableInterfaceClass::nameFor(const QString &tableClassName)
{
    return tableClassName + u"_TableInterface"_s;
}

TableInterfaceClass *TableInterfaceClass::of(const Class *tableClass)
{
    for (; tableClass; tableClass = tableClass->superClass()) {
        if (Serializable *found = tableClass->interfaceNamed(nameFor(tableClass->name())))
            return dynamic_cast<TableInterfaceClass *>(found);
    }
    return nullptr;
}

/// One method for each number of bounds that may be given.
std::unique_ptr<Method> TableInterfaceClass::createMethod(int index) const
{
    QList<Argument> parameters;
    for (int i = 0; i < index - superClassOffset(Methods); ++i) {
        parameters.append(
            Argument(QString::fromLatin1(bounds[i]), u"int"_s, ObjectAttribute::Value(), nullptr));
    }
    return std::make_unique<Method>(const_cast<TableInterfaceClass *>(this),
        Argument(QString::fromLatin1(TableRange::ScriptName), ObjectAttribute::Pointer()), u"getRange"_s,
        Signature(parameters), 0, index);
}

std::unique_ptr<Property> TableInterfaceClass::createProperty(int index) const
{
    return std::make_unique<Property>(const_cast<TableInterfaceClass *>(this),
        Argument(u"int"_s, ObjectAttribute::Value()),
        QString::fromLatin1(counts[index - superClassOffset(Properties)]), Property::ReadOnly, index);
}

bool TableInterfaceClass::isTable(const SharedPtr<Object> &object, const QString &member) const
{
    const Class *tableClass = Inspector::self()->findClass(m_tableClassName);
    if (object && object->data() && object->objectClass()->inherits(tableClass))
        return true;
    Inspector::self()->raiseError(
        u"Cannot access '%1' of an object that is no %2."_s.arg(member, m_tableClassName));
    return false;
}

SharedPtr<Object> TableInterfaceClass::invoke(
    int, const SharedPtr<Object> &object, const ObjectList &arguments, const Method *method)
{
    if (!isTable(object, method->name()) || !verifyMethodArgumentCount(name(), method, arguments))
        return {};
    const auto bound = [&arguments](qsizetype i) {
        const SharedPtr<Object> given = arguments.value(i);
        return given ? given->toInt() : -1;
    };
    FunctionCallResult<std::unique_ptr<TableRange>> result
        = range(object, bound(0), bound(1), bound(2), bound(3));
    if (result.failed()) {
        Inspector::self()->raiseError(result.error);
        return {};
    }
    return wrapTableRange(std::move(result.value));
}

SharedPtr<Object> TableInterfaceClass::getProperty(const SharedPtr<Object> &object, const Property *property)
{
    if (!isTable(object, property->name()))
        return {};
    const bool isRowCount = property->name() == QLatin1StringView(counts[0]);
    const FunctionCallResult<int> count = isRowCount ? rowCount(object) : columnCount(object);
    if (count.failed()) {
        Inspector::self()->raiseError(count.error);
        return {};
    }
    return Inspector::self()->createPrimitive(count.value);
}

bool TableInterfaceClass::setProperty(
    const SharedPtr<Object> &, const Property *property, const SharedPtr<Object> &)
{
    Inspector::self()->raiseError(u"Cannot set read-only property %1."_s.arg(property->name()));
    return false;
}

} // namespace Ostrel
