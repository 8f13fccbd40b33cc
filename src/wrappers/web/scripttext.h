// Composing page script: every value enters through a piece that says how it is written.
//
//     script(u"%1.checked=%2;", ref(), true)
//     script(u"__ostrel__setTextFieldValue(%1, '%2');", ref(), Quoted {text})
//
// Unmarked text does not compile, so nothing reaches a page unescaped by oversight.
#pragma once

#include "wrappers/web/composing.h"

#include <QString>

#include <algorithm>

namespace Ostrel::WebWrapper {

/// Text for a single-quoted script string: backslash, quote and line feed escaped, carriage returns removed.
QString escapeForScriptString(const QString &text);

/// The shorter form for text that holds no line break: backslash and single quote.
QString escapeQuotes(const QString &text);

/// Text for a double-quoted script string: backslash and double quote, and line breaks, which would end the
/// string.
QString escapeForDoubleQuotes(const QString &text);

/// Text that goes between single quotes of the shape.
struct Quoted
{
    QString text;
};

/// Text without line breaks that goes between single quotes of the shape.
struct QuotedLine
{
    QString text;
};

/// Text that goes between double quotes of the shape.
struct DoubleQuoted
{
    QString text;
};

namespace Detail {

inline QString piece(const Expr &value)
{
    return value.text;
}
inline QString piece(const Quoted &value)
{
    return escapeForScriptString(value.text);
}
inline QString piece(const QuotedLine &value)
{
    return escapeQuotes(value.text);
}
inline QString piece(const DoubleQuoted &value)
{
    return escapeForDoubleQuotes(value.text);
}
inline QString piece(int value)
{
    return QString::number(value);
}
inline QString piece(bool value)
{
    return value ? QStringLiteral("true") : QStringLiteral("false");
}
QString piece(const QString &) = delete;
QString piece(const char *) = delete;

} // namespace Detail

/// The script text of a shape whose %1, %2, ... are filled in one go, so that a "%1" inside a value stays.
template <typename... Pieces>
QString script(QStringView shape, const Pieces &...pieces)
{
    return shape.toString().arg(Detail::piece(pieces)...);
}

/// Puts texts before and after a large one within its own memory: copies of a dump's script took longer than
/// the page took to carry it out.
template <typename Text, typename View>
void enclose(Text &text, const View &before, const View &after)
{
    const qsizetype size = text.size();
    text.resize(before.size() + size + after.size());
    const auto end = std::copy_backward(text.begin(), text.begin() + size, text.end() - after.size());
    Q_ASSERT(end - text.begin() == before.size());
    std::copy(before.begin(), before.end(), text.begin());
    std::copy(after.begin(), after.end(), text.end() - after.size());
}

/// Wraps an action so that the page runs it 100 ms later, outside the call stack of the evaluation.
QString deferred(const QString &action);

} // namespace Ostrel::WebWrapper
