// ClassCase: what a script-visible class adds to its base, as a row of a table.
//
//     {"HTML_Tab", R"(base HTML_Object
//     title String
//     setTitle(String title) void)"},
#pragma once

#include "ostrelhook/class.h"
#include "ostrelhook/inspector.h"
#include "ostrelhook/reflection.h"
#include "support/printers.h"
#include "wrappers/web/reflection/webclasses.h"

#include <gtest/gtest.h>

#include <QStringList>

#include <ostream>
#include <string>

namespace Ostrel::Test {

struct ClassCase
{
    const char *name;
    /// The base, the properties and the methods, one a line, in the order of the class.
    const char *text;
};

inline void PrintTo(const ClassCase &row, std::ostream *stream)
{
    *stream << row.name;
}

inline std::string className(const testing::TestParamInfo<ClassCase> &info)
{
    return info.param.name;
}

/// Makes the classes known, for every test of the process.
inline void createWebObjectClassesOnce()
{
    static const bool created = (WebWrapper::createWebObjectClasses(), true);
    (void)created;
}

/// For tests of what scripts see.
class WebClasses : public testing::Test
{
protected:
    static void SetUpTestSuite() { createWebObjectClassesOnce(); }
};

/// The same for each row of a table.
class EachWebClass : public WebClasses, public testing::WithParamInterface<ClassCase>
{
};

/// The same text of a class of the framework.
inline QString classText(const QString &name)
{
    const Class *type = Inspector::self()->findClass(name);
    if (!type)
        return QStringLiteral("no such class");
    QStringList lines{
        QStringLiteral("base ") + (type->superClass() ? type->superClass()->name() : QStringLiteral("none"))};
    for (int i = type->superClassOffset(Class::Properties); i < type->numProperties(); ++i) {
        const Property *property = type->property(i);
        lines += property->name() + u' ' + property->type().typeName()
            + (property->isReadOnly() ? QStringLiteral(" read-only") : QString());
    }
    for (int i = type->superClassOffset(Class::Methods); i < type->numMethods(); ++i) {
        const Method *method = type->method(i);
        QStringList parameters;
        for (const Argument &argument : method->signature().arguments())
            parameters += (argument.typeName() + u' ' + argument.name()).trimmed();
        lines += QStringLiteral("%1(%2) %3")
                     .arg(method->name(), parameters.join(QStringLiteral(", ")), method->result().typeName());
    }
    return lines.join(u'\n');
}

} // namespace Ostrel::Test
