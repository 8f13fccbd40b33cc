// PageScript: a script engine in place of a page. It runs composed script and notes the calls that it makes,
// so that a test reads its arguments back as the page would get them.
//
//     PageScript page({u"__ostrel__click"_s});
//     page.run(u"setTimeout(function(e){__ostrel__click(el, true);}, 100);"_s);
//     EXPECT_EQ(page.arguments(), QVariantList({true}));
#pragma once

#include <QJSEngine>
#include <QStringList>
#include <QVariantList>

namespace Ostrel::Test {

class PageScript
{
public:
    /// `functions` are noted when they are called; each answers true. A dotted name makes the objects in
    /// front. The element is the global `el`; deferred functions run at once.
    explicit PageScript(const QStringList &functions = {})
    {
        using namespace Qt::StringLiterals;
        run(u"var calls = [], window = this, el = {};\n"
            "function setTimeout(f) { f(); return 1; }\n"
            "function note(name) {\n"
            "    return function() { calls.push([name].concat([].slice.call(arguments))); return true; };\n"
            "}\n"
            "function define(path) {\n"
            "    var owner = window, names = path.split('.');\n"
            "    while (names.length > 1) { var n = names.shift(); owner = owner[n] = owner[n] || {}; }\n"
            "    owner[names[0]] = note(path);\n"
            "}"_s);
        for (const QString &function : functions)
            run(u"define('%1')"_s.arg(function));
    }

    /// Runs a script; gives its value, or nothing after an exception, whose text error() then tells.
    QJSValue run(const QString &script)
    {
        // This engine is older than the browsers of today, which take line separators inside strings.
        const QJSValue value = m_engine.evaluate(
            QString(script).replace(QChar(QChar::LineSeparator), QStringLiteral("\\u2028")));
        m_error = value.isError() ? value.toString() : QString();
        return value.isError() ? QJSValue() : value;
    }

    /// What the last script threw; empty when it threw nothing.
    const QString &error() const { return m_error; }

    /// The names of the noted functions that were called, in order.
    QStringList calls()
    {
        QStringList names;
        for (const QVariant &call : m_engine.evaluate(QStringLiteral("calls")).toVariant().toList())
            names.append(call.toList().constFirst().toString());
        return names;
    }

    /// The arguments of the last call, without the element.
    QVariantList arguments()
    {
        return m_engine
            .evaluate(QStringLiteral("calls.length ? calls[calls.length - 1].slice(1).filter("
                                     "function(a) { return a !== el && typeof a !== 'function'; }) : []"))
            .toVariant()
            .toList();
    }

private:
    QJSEngine m_engine;
    QString m_error;
};

} // namespace Ostrel::Test
