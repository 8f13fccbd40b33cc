// Compares everything that scripts can see with the written catalogue, tests/data/catalogue.txt.
#include "wrappers/web/reflection/webclasses.h"

#include "ostrelhook/classtable.h"
#include "ostrelhook/inspector.h"
#include "ostrelhook/namespace.h"

#include "support/printers.h"

#include <gtest/gtest.h>

#include <QFile>
#include <QHash>

using namespace Ostrel;
using namespace Ostrel::WebWrapper;
using namespace Qt::StringLiterals;

namespace {

QString argumentText(const Argument &argument)
{
    return argument.name().isEmpty() ? argument.typeName() : argument.typeName() + u' ' + argument.name();
}

QString methodLine(const Method &method)
{
    QStringList parameters;
    for (const Argument &parameter : method.signature().arguments())
        parameters.append(argumentText(parameter));
    return u"%1 %2(%3) -> %4"_s.arg(method.isStatic() ? u"static"_s : u"method"_s, method.name(),
        parameters.join(u", "_s), method.result().typeName());
}

/// What an array property holds; the type of a property alone does not tell.
QString itemType(const Class &type, int localIndex)
{
    const auto *table = dynamic_cast<const TableClass *>(&type);
    const char *item = table ? table->table().properties[std::size_t(localIndex)].type.item : nullptr;
    return item ? u" of "_s + QString::fromLatin1(item) : QString();
}

QString enumLine(const Enum &enumeration)
{
    QStringList items;
    for (const Enum::Item &item : enumeration.items())
        items.append(u"%1 = %2"_s.arg(item.name, QString::number(item.value)));
    return u"enum %1 { %2 }"_s.arg(enumeration.name(), items.join(u", "_s));
}

/// The class and its own members, as the catalogue writes them.
QStringList description(const Class &type)
{
    const Class *base = type.superClass();
    QStringList lines{
        base ? u"class %1 : %2"_s.arg(type.name(), base->name()) : u"class %1"_s.arg(type.name())};
    const int firstProperty = type.superClassOffset(Class::Properties);
    for (int i = firstProperty; i < type.numProperties(); ++i) {
        const Property &property = *type.property(i);
        lines.append(u"    property %1 %2%3%4"_s.arg(property.name(), property.type().typeName(),
            itemType(type, i - firstProperty), property.isReadOnly() ? u" read-only"_s : QString()));
    }
    for (int i = type.superClassOffset(Class::Methods); i < type.numMethods(); ++i)
        lines.append(u"    "_s + methodLine(*type.method(i)));
    for (int i = type.superClassOffset(Class::Enums); i < type.numEnums(); ++i)
        lines.append(u"    "_s + enumLine(*type.enumeration(i)));
    return lines;
}

/// The written catalogue: the lines of each class, and the classes in order.
struct Catalogue
{
    QStringList order;
    QHash<QString, QStringList> classes;

    static Catalogue fromFile(const QString &path)
    {
        Catalogue catalogue;
        QFile file(path);
        if (!file.open(QIODevice::ReadOnly | QIODevice::Text))
            return catalogue;
        const QStringList lines = QString::fromUtf8(file.readAll()).split(u'\n', Qt::SkipEmptyParts);
        for (const QString &line : lines) {
            if (line.startsWith(u'#'))
                continue;
            if (line.startsWith(u"class "_s))
                catalogue.order.append(line.section(u' ', 1, 1));
            catalogue.classes[catalogue.order.value(catalogue.order.size() - 1)].append(line);
        }
        return catalogue;
    }
};

/// The classes that the library registers; taken once for all tests.
const QList<Class *> &registeredClasses()
{
    static const QList<Class *> classes = [] {
        const Namespace *names = Inspector::self()->globalNamespace();
        const qsizetype before = names->classes().size();
        createWebObjectClasses();
        QList<Class *> visible;
        for (Class *type : names->classes().mid(before)) {
            if (type->isScriptVisible())
                visible.append(type);
        }
        return visible;
    }();
    return classes;
}

const Catalogue &catalogue()
{
    static const Catalogue written
        = Catalogue::fromFile(QStringLiteral(PAGEPROBE_SOURCE_DIR "/tests/data/catalogue.txt"));
    return written;
}

} // namespace

TEST(Catalogue, ClassesAreRegisteredInOrder)
{
    QStringList names;
    for (const Class *type : registeredClasses())
        names.append(type->name());

    ASSERT_EQ(catalogue().order.size(), 66);
    EXPECT_EQ(names, catalogue().order);
}

TEST(Catalogue, TheNativeBaseOfTheElementsIsNoClassOfScripts)
{
    (void)registeredClasses();

    EXPECT_EQ(Inspector::self()->findClass(u"HTML_ObjectBase_Class"_s), nullptr);
    EXPECT_EQ(Inspector::self()->findClass(u"HTML_ObjectBase"_s), nullptr);
    EXPECT_EQ(Inspector::self()->findClass(u"HTML_Object"_s)->superClass(), nullptr);
}

TEST(Catalogue, EveryClassHasExactlyTheWrittenMembers)
{
    ASSERT_FALSE(registeredClasses().isEmpty());
    for (const Class *type : registeredClasses()) {
        SCOPED_TRACE(type->name().toStdString());

        EXPECT_EQ(description(*type), catalogue().classes.value(type->name()));
    }
}

TEST(Catalogue, EveryNamedTypeExists)
{
    for (const Class *type : registeredClasses()) {
        for (int i = 0; i < type->numMethods(); ++i) {
            const Method &method = *type->method(i);
            EXPECT_NE(method.result().type(), nullptr) << method.result().typeName().toStdString();
            for (const Argument &parameter : method.signature().arguments())
                EXPECT_NE(parameter.type(), nullptr) << parameter.typeName().toStdString();
        }
        for (int i = 0; i < type->numProperties(); ++i)
            EXPECT_NE(type->property(i)->type().type(), nullptr) << type->property(i)->name().toStdString();
    }
}

TEST(Catalogue, OwnOptionAtOfTheComboBoxHidesTheInheritedOne)
{
    (void)registeredClasses();
    const Class *type = Inspector::self()->findClass(u"HTML_BackBaseComboBox"_s);
    ASSERT_NE(type, nullptr);

    const QList<Method *> found = type->findMethods(u"optionAt"_s);

    ASSERT_EQ(found.size(), 1);
    EXPECT_EQ(found.first()->result().typeName(), u"String"_s);
    EXPECT_FALSE(type->findMethods(u"setSelectedIndex"_s).isEmpty());
}
