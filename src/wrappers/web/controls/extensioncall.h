// How the answers of a page extension's functions are read.
//
//     cleaned(evaluate(script(u"%1Extension.getTitle(%2);", ext(), ref()), u"Error fetching title: %1"))
#pragma once

#include "wrappers/web/scripttext.h"
#include "wrappers/web/webobject.h"

#include <concepts>

namespace Ostrel::WebWrapper {

/// A boolean as messages show it.
QString wordOf(bool value);

/// Whether the answer is the word "true".
FunctionCallResult<bool> isTrue(const FunctionCallResult<QString> &answer);

/// The same for page functions that may answer "True" as well.
FunctionCallResult<bool> isTrueInAnyCase(FunctionCallResult<QString> answer);

/// The answer without white space at its ends and without line breaks; "undefined" counts as no text.
FunctionCallResult<QString> cleaned(const FunctionCallResult<QString> &answer);

/// The answer as it stands, but for "undefined", which counts as no text.
FunctionCallResult<QString> definedText(const FunctionCallResult<QString> &answer);

/// The answer as a number; `error` holds the text at %1 when it is none.
FunctionCallResult<int> toNumber(const FunctionCallResult<QString> &answer, QStringView error);

/// The wrapper as one of its subclasses. One of another class is deleted and gives null, as a missing one
/// does.
template <std::derived_from<HTML_Object> Wrapper>
FunctionCallResult<Wrapper *> as(const FunctionCallResult<HTML_Object *> &object)
{
    if (object.failed())
        return Failure(object.error);
    auto *wrapper = dynamic_cast<Wrapper *>(object.value);
    if (!wrapper)
        delete object.value;
    return wrapper;
}

/// Calls a function that an extension may lack. A failure is no error: the answer is empty then, and
/// `traced`, with the page's message at %1, goes to the trace; without `traced` nobody is told.
QString optionalAnswer(const HTMLComponent *component, const QString &script, QStringView traced = {});

} // namespace Ostrel::WebWrapper
