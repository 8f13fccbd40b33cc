// The statements of recorded scripts: what a recorder may write is what replay must understand, so both read
// this one table.
//
// A statement is a global function of the script. Its first argument is the subject, if it has one; the forms
// tell what may follow. Replay attaches its functions by name: for each list of parameterLists() there is one
// global function of that name with these parameters (addGlobalFunction(statement.name, parameters, ...)).
#pragma once

#include <QStringList>
#include <QStringView>

#include <array>
#include <span>

namespace Ostrel::Host {

/// What the first argument of a statement is; always a text.
enum class Subject {
    Nothing, ///< the statement has no first argument of that kind
    ObjectName, ///< the name of an object, symbolic or real; replay takes the object itself as well
    Address, ///< the address of a page
    Context, ///< the name of a window or frame
};

/// One statement. A form lists the arguments behind the subject, with blanks between:
///   state          the modifiers and the button, the sum of values of ModifierState
///   x, y           pixels from the upper left corner of the object
///   button         a value of MouseButton
///   row, column    a cell, counted from 0
///   text           any text
///   date           a text "yyyy-MM-dd"
///   accept         true or false
struct Statement
{
    static constexpr std::size_t mostForms = 4;

    const char *name;
    Subject subject;
    /// Distinct in number or in type of their arguments. Null behind the last one.
    std::array<const char *, mostForms> forms;
};

/// All statements, in the order in which documents list them.
std::span<const Statement> vocabulary();

/// The statement of that name, or null.
const Statement *findStatement(QStringView name);

/// The parameter names of each form of a statement, the subject among them ("object", "url" or "context").
QList<QStringList> parameterLists(const Statement &statement);

} // namespace Ostrel::Host
