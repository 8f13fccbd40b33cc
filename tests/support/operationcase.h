// OperationCase: one operation of a wrapper as a row of a table: what it sends, what it makes of an answer
// and what it says when the page fails.
//
//     {"checked of a check box", on<&HTML_CustomCheckbox::checked>(),
//         u"AcmeExtension.isChecked(el);"_s, u"true"_s, u"true"_s,
//         u"Error retrieving checked property: gone"_s},
#pragma once

#include "ostrelhook/functioncallresult.h"
#include "ostrelhook/valueclasses.h"
#include "support/fakepage.h"
#include "support/printers.h"
#include "wrappers/web/webobject.h"

#include <gtest/gtest.h>

#include <QString>

#include <functional>
#include <memory>
#include <ostream>
#include <string>

namespace Ostrel::Test {

/// What came of an operation: its value as text, or its error.
struct Outcome
{
    QString value;
    QString error;
};

inline QString valueText(const QString &value)
{
    return value;
}
inline QString valueText(bool value)
{
    return value ? QStringLiteral("true") : QStringLiteral("false");
}
inline QString valueText(int value)
{
    return QString::number(value);
}
inline QString valueText(const DateTime &value)
{
    return value.toString(QStringLiteral("yyyy-MM-dd HH:mm"));
}
/// The class and the reference of a wrapper, which is deleted.
inline QString valueText(WebWrapper::HTML_Object *wrapper)
{
    const std::unique_ptr<WebWrapper::HTML_Object> owned(wrapper);
    if (!owned)
        return QStringLiteral("nothing");
    return QString::fromLatin1(owned->className()) + u' ' + owned->jsReference();
}

template <typename T>
Outcome outcomeOf(const FunctionCallResult<T> &result)
{
    if (result.failed())
        return {{}, result.error};
    if constexpr (std::is_void_v<T>)
        return {QStringLiteral("done"), {}};
    else
        return {valueText(result.value), {}};
}

namespace Detail {

template <typename Operation>
struct WrapperOf;
template <typename R, typename C, typename... Args>
struct WrapperOf<R (C::*)(Args...)>
{
    using Type = C;
};
template <typename R, typename C, typename... Args>
struct WrapperOf<R (C::*)(Args...) const>
{
    using Type = C;
};

} // namespace Detail

/// A wrapper of the element "el" that the extension "Acme" operates.
template <typename Wrapper>
Wrapper acme(FakePage &page)
{
    return Wrapper(QString(), QStringLiteral("el"), QStringLiteral("Acme"), &page);
}

/// The operation on such a wrapper.
template <auto Operation, typename... Args>
std::function<Outcome(FakePage &)> on(Args... arguments)
{
    return [arguments...](FakePage &page) {
        auto wrapper = acme<typename Detail::WrapperOf<decltype(Operation)>::Type>(page);
        return outcomeOf(std::invoke(Operation, wrapper, arguments...));
    };
}

/// The script that asks what the value of an expression is.
inline QString identifying(const QString &expression)
{
    return QStringLiteral("(function() {\n  try {\n    var dummy = ") + expression
        + QStringLiteral(
            ";\n    if ( !dummy ) {\n        return JSON.stringify({'refName': null, 'type': '[unknown]'});\n"
            "    }\n    var globalRefName = __ostrel__idForObject( dummy );\n"
            "    return JSON.stringify({'refName': globalRefName, 'type': __ostrel__typeOf( dummy ) });\n"
            "  } catch( e ) {\n    return JSON.stringify({'error': {'name': e['name'], 'message': "
            "e['message'], "
            "'file': e['fileName'], 'line': e['lineNumber'], 'stack': e['stack']}});  }\n})();");
}

/// The page's answer to that: an element with the reference "found", or nothing.
inline QString foundAnswer(const QString &type)
{
    return QStringLiteral("{\"refName\":\"found\",\"type\":\"%1\"}").arg(type);
}
inline QString nothingAnswer()
{
    return QStringLiteral("{\"refName\":null,\"type\":\"[unknown]\"}");
}

struct OperationCase
{
    const char *name;
    std::function<Outcome(FakePage &)> call;
    QString script;
    QString answer;
    QString value;
    /// What a page that fails with "gone" leads to; empty when the operation bears it.
    QString error;
};

inline void PrintTo(const OperationCase &row, std::ostream *stream)
{
    *stream << row.name;
}

/// The name of a row as a name of a test.
template <typename Row>
std::string rowName(const testing::TestParamInfo<Row> &info)
{
    std::string name = info.param.name;
    for (char &c : name) {
        if (!std::isalnum(static_cast<unsigned char>(c)))
            c = '_';
    }
    return name;
}

/// Derive a suite from this and give it rows; the tests of the rows are below.
class Operations : public testing::TestWithParam<OperationCase>
{
protected:
    void sendsItsScriptAndReadsTheAnswer()
    {
        FakePage page;
        page.answer(GetParam().answer);

        const Outcome outcome = GetParam().call(page);

        EXPECT_EQ(page.scripts(), QStringList{GetParam().script});
        EXPECT_EQ(outcome.error, QString());
        EXPECT_EQ(outcome.value, GetParam().value);
    }

    void saysWhatFailed()
    {
        FakePage page;
        page.fail(QStringLiteral("gone"));

        const Outcome outcome = GetParam().call(page);

        EXPECT_EQ(page.scripts(), QStringList{GetParam().script});
        EXPECT_EQ(outcome.error, GetParam().error);
    }
};

} // namespace Ostrel::Test
