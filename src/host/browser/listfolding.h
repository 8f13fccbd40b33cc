// Folding lists: a script with a long list of like elements, written shorter.
#pragma once

#include <QString>

#include <optional>

namespace Ostrel::Host {

/// A script that has the same value and takes a browser far less time and memory than one that calls
/// functions by their names, one with the result of the other and the innermost with a list: "a.show( sum(
/// [...] ) )", by itself or as evaluateAsJson() evaluates it. What differs by nothing but a number in
/// brackets, as the store's entry of an object, is written once, as a function of that number: a dump's
/// script of 50 MB, with its twenty functions for each element, becomes one of 200 kB.
///
/// Nothing for any other script, for one whose elements have little in common, and where more than strings,
/// brackets and regular expressions as arguments would have to be understood to tell the elements from each
/// other: templates, divisions, line breaks, comments, omitted and spread elements.
std::optional<QString> foldedList(const QString &script);

} // namespace Ostrel::Host
