// docs/script-reference.md is written from what is registered: the classes and their members from the
// reflection tables, the functions of a session with a description for each.
//
// With PAGEPROBE_UPDATE=1 in the environment the test writes the file instead of comparing it.
#include "host/script/scriptengine.h"
#include "host/script/testsession.h"
#include "ostrelhook/globalclass.h"
#include "ostrelhook/inspector.h"
#include "ostrelhook/namespace.h"
#include "support/printqt.h"

#include <gtest/gtest.h>

#include <QFile>
#include <QMap>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace Ostrel::Host {
namespace {

const QString referenceFile = QStringLiteral(PAGEPROBE_SOURCE_DIR "/docs/script-reference.md");

/// One line for each global function.
const QMap<QString, QString> &descriptions()
{
    static const QMap<QString, QString> texts{
        {u"activateItem"_s, u"Activates the entry of a menu that has this text."_s},
        {u"activeDocument"_s, u"The document of the active page."_s},
        {u"answerAlert"_s, u"Answers the next message box, before the statement that opens it."_s},
        {u"answerConfirm"_s, u"Answers the next question: whether to agree."_s},
        {u"answerPrompt"_s, u"Answers the next question for a text; without a text it is cancelled."_s},
        {u"checkTreeItem"_s, u"Ticks the box of the tree item that has this text."_s},
        {u"chooseColor"_s, u"Sets a colour field to a colour."_s},
        {u"chooseDate"_s, u"Sets a calendar to a date, \"yyyy-MM-dd\"."_s},
        {u"clickButton"_s, u"Clicks a button once it can be used."_s},
        {u"clickItem"_s, u"Clicks the item of a list, table or tree, by its text or by its cell."_s},
        {u"clickLink"_s, u"Clicks a link. New scripts use mouseClick."_s},
        {u"clickTab"_s, u"Shows the page of a tab bar that has this title."_s},
        {u"clickTreeHandle"_s, u"Opens or closes the tree item that has this text."_s},
        {u"closeWindow"_s, u"Closes a window of the browser."_s},
        {u"doubleClick"_s, u"Double-clicks an element, at a place in it."_s},
        {u"evaluateInPage"_s, u"Runs code in the active page and gives its value."_s},
        {u"findAllObjects"_s, u"Everything that has the name, in all windows and frames."_s},
        {u"findObject"_s, u"The object of that name, at once; an error says what did not match."_s},
        {u"installEventHandler"_s, u"Calls a function of the script whenever an event happens in a page."_s},
        {u"loadUrl"_s, u"Opens an address in the active page and waits until it has loaded."_s},
        {u"log"_s, u"Prints a line."_s},
        {u"mouseClick"_s, u"Clicks an element, with modifiers or at a place in it."_s},
        {u"nativeMouseClick"_s, u"Clicks by the browser's own input, at a place in an element."_s},
        {u"nativeType"_s, u"Types a text by the browser's own input, into an element."_s},
        {u"objectExists"_s, u"Whether there is an object of that name now."_s},
        {u"onAlert"_s, u"What happens at every message box that has no answer: a function gets its text."_s},
        {u"onConfirm"_s,
            u"What answers every question that has no answer: a function or the answer itself."_s},
        {u"onPrompt"_s, u"What answers every question for a text: a function or the text itself."_s},
        {u"saveScreenshot"_s,
            u"Writes a picture of the whole page, also into the report; the ending of the name is the format."_s},
        {u"scrollTo"_s, u"Scrolls an element to a position."_s},
        {u"selectOption"_s, u"Selects an entry of a list or a choice."_s},
        {u"serverAddress"_s, u"The address of the folder that is served meanwhile."_s},
        {u"setFocus"_s, u"Gives an element the keyboard."_s},
        {u"setText"_s, u"Sets the text of a field at once."_s},
        {u"snooze"_s, u"Waits for some seconds; the page goes on meanwhile."_s},
        {u"startBrowser"_s, u"Opens an address and waits until the page has loaded."_s},
        {u"toggleExpandable"_s, u"Opens or closes a section."_s},
        {u"typeText"_s, u"Types a text into a field, key by key."_s},
        {u"waitForContextExists"_s, u"Waits for a window or frame and lets lookups start in it."_s},
        {u"waitForObject"_s, u"Waits until an object is there and can be used, and gives it."_s},
        {u"waitForObjectExists"_s, u"Waits until an object is there, whether or not it can be used."_s},
    };
    return texts;
}

/// Functions that are written in script around others.
const QMap<QString, QString> &scriptedFunctions()
{
    static const QMap<QString, QString> texts{
        {u"callMethod(object, name, ...)"_s, u"Calls a method by its name."_s},
        {u"compare(actual, expected[, message])"_s,
            u"Verifies that two values are equal, and gives whether."_s},
        {u"sameObject(a, b)"_s, u"Whether two objects stand for the same element."_s},
        {u"section(title, body)"_s, u"Reports what a function does under a title."_s},
        {u"verify(condition[, message])"_s, u"Verifies that a condition holds, and gives whether."_s},
    };
    return texts;
}

/// What the functions above call; scripts do not.
bool isInternal(const QString &name)
{
    return name == "reportVerification"_L1 || name == "beginSection"_L1 || name == "endSection"_L1;
}

bool isElementOrValue(const Class *type)
{
    return type && type->isScriptVisible() && type->home() == Inspector::self()->globalNamespace();
}

/// A heading's place in the contents.
QString anchor(const QString &heading)
{
    return heading.toLower().replace(u' ', u'-');
}

QString linkTo(const QString &typeName, const QStringList &classes)
{
    return classes.contains(typeName) ? u"[%1](#%2)"_s.arg(typeName, anchor(typeName)) : typeName;
}

QString parameterList(const Signature &signature)
{
    QStringList parameters;
    for (const Argument &argument : signature.arguments())
        parameters.append(
            (argument.name() + (argument.name().isEmpty() ? QString() : u": "_s)) + argument.typeName());
    return parameters.join(u", "_s);
}

QString classSection(const Class &type, const QStringList &classes)
{
    QString text = u"### %1\n\n"_s.arg(type.name());
    if (type.superClass() && classes.contains(type.superClass()->name()))
        text += u"Has all that %1 has.\n\n"_s.arg(linkTo(type.superClass()->name(), classes));
    QStringList properties;
    for (int i = type.superClassOffset(Class::Properties); i < type.numProperties(); ++i) {
        const Property &property = *type.property(i);
        properties.append(
            u"| `%1` | %2 |%3 |\n"_s.arg(property.name(), linkTo(property.type().typeName(), classes),
                property.isReadOnly() ? u" read-only"_s : QString()));
    }
    if (!properties.isEmpty())
        text += u"| Property | Type | |\n|---|---|---|\n"_s + properties.join(QString()) + u'\n';
    QStringList methods;
    for (int i = type.superClassOffset(Class::Methods); i < type.numMethods(); ++i) {
        const Method &method = *type.method(i);
        const QString result = method.result().typeName();
        methods.append(u"| `%1%2(%3)` | %4 |\n"_s.arg(method.isStatic() ? type.name() + u'.' : QString(),
            method.name(), parameterList(method.signature()),
            result == "void"_L1 ? QString() : linkTo(result, classes)));
    }
    if (!methods.isEmpty())
        text += u"| Method | Result |\n|---|---|\n"_s + methods.join(QString()) + u'\n';
    for (int i = type.superClassOffset(Class::Enums); i < type.numEnums(); ++i) {
        const Enum &enumeration = *type.enumeration(i);
        text += u"| `%1` | Value |\n|---|---|\n"_s.arg(enumeration.name());
        for (const Enum::Item &item : enumeration.items())
            text += u"| `%1.%2` | %3 |\n"_s.arg(type.name(), item.name, QString::number(item.value));
        text += u'\n';
    }
    if (properties.isEmpty() && methods.isEmpty() && type.numEnums() == type.superClassOffset(Class::Enums))
        text += u"Nothing of its own.\n\n"_s;
    return text;
}

QString functionSection()
{
    QMap<QString, QStringList> forms;
    for (const GlobalMethod *method : Inspector::self()->globalClass()->globalMethods()) {
        if (!isInternal(method->name()))
            forms[method->name()].append(
                u"`%1(%2)`"_s.arg(method->name(), parameterList(method->signature())));
    }
    QStringList rows;
    for (auto function = forms.begin(); function != forms.end(); ++function) {
        EXPECT_TRUE(descriptions().contains(function.key()))
            << function.key().toStdString() << " needs a description";
        rows.append(u"| %1 | %2 |\n"_s.arg(function->join(u"<br>"_s), descriptions().value(function.key())));
    }
    for (auto function = scriptedFunctions().begin(); function != scriptedFunctions().end(); ++function)
        rows.append(u"| `%1` | %2 |\n"_s.arg(function.key(), function.value()));
    std::sort(rows.begin(), rows.end());
    for (const QString &name : descriptions().keys())
        EXPECT_TRUE(forms.contains(name)) << name.toStdString() << " is described but does not exist";
    return u"## Functions\n\n| Function | What it does |\n|---|---|\n"_s + rows.join(QString()) + u'\n';
}

QString reference()
{
    QList<const Class *> types;
    for (const Class *type : Inspector::self()->globalNamespace()->classes()) {
        if (isElementOrValue(type)
            && (type->numMethods() > 0 || type->numProperties() > 0 || type->numEnums() > 0)
            && type != Inspector::self()->globalClass())
            types.append(type);
    }
    std::sort(types.begin(), types.end(),
        [](const Class *a, const Class *b) { return a->name().compare(b->name(), Qt::CaseInsensitive) < 0; });
    QStringList classes;
    QString contents;
    for (const Class *type : types) {
        classes.append(type->name());
        contents += u"- [%1](#%2)\n"_s.arg(type->name(), anchor(type->name()));
    }
    QString text = u"# Script reference\n\n"
                   "Written from the tables of the program; do not change it by hand. "
                   "`PAGEPROBE_UPDATE=1 build/dev/bin/scriptreference_test` writes it anew.\n\n"
                   "## Contents\n\n- [Functions](#functions)\n- [Classes](#classes)\n\n"_s
        + functionSection() + u"## Classes\n\n"_s + contents + u'\n';
    for (const Class *type : types)
        text += classSection(*type, classes);
    return text.trimmed() + u'\n';
}

TEST(ScriptReference, IsWhatIsRegistered)
{
    ResultSink nobody;
    const auto session = TestSession::start({}, nobody);
    ASSERT_EQ(session.error, QString());

    const QString text = reference();

    if (qEnvironmentVariableIntValue("PAGEPROBE_UPDATE") == 1) {
        QFile file(referenceFile);
        ASSERT_TRUE(file.open(QIODevice::WriteOnly | QIODevice::Text));
        file.write(text.toUtf8());
        return;
    }
    QFile file(referenceFile);
    ASSERT_TRUE(file.open(QIODevice::ReadOnly | QIODevice::Text)) << referenceFile.toStdString();
    EXPECT_EQ(QString::fromUtf8(file.readAll()), text)
        << "Run this test with PAGEPROBE_UPDATE=1 and look at what has changed.";
}

} // namespace
} // namespace Ostrel::Host
