// XPath and CSS on the pages of the demo shop: what we give is what the browser itself gives.
#include "host/script/testsession.h"
#include "ostrelhook/inspector.h"
#include "support/printqt.h"
#include "support/scriptcalls.h"
#include "wrappers/web/objectfactory.h"
#include "wrappers/web/webobject.h"

#include <gtest/gtest.h>

#include <QJsonDocument>
#include <QJsonObject>
#include <QRegularExpression>

using namespace Qt::StringLiterals;
using Ostrel::Test::callMethod;
using Ostrel::Test::readProperty;
using Ostrel::Test::ScriptAnswer;

namespace Ostrel::Host {
namespace {

const QStringList shopPages{u"index.html"_s, u"product.html?id=pellow-mug"_s, u"cart.html"_s,
    u"checkout.html"_s, u"wishlist.html"_s, u"help.html"_s};

/// Compares expressions from several nodes of the page, node for node. Gives the differences and how much was
/// compared. No number here has more than six digits: the browser writes no more of them into a text, where
/// the language asks for as many as tell one number from another.
const QString compareWithBrowser = uR"((function () {
    var axes = ['ancestor', 'ancestor-or-self', 'attribute', 'child', 'descendant', 'descendant-or-self', 'following',
            'following-sibling', 'namespace', 'parent', 'preceding', 'preceding-sibling', 'self'],
        tests = ['*', 'node()', 'text()', 'comment()', 'processing-instruction()', 'div', 'a', 'li', 'p'],
        expressions = [
            '/', '.', '..', '//*', '//a[1]', '(//a)[1]', '//a[last()]', '//li[position() mod 2 = 1]', '//@class',
            '//*[@id]', '//a | //button', '//*[@class and not(@id)]', '//*[count(*) > 3]', '//p[2]/preceding::*[3]',
            '//*[self::h1 or self::h2 or self::h3]', '//a[@href][position() < 3]', '//ul/li[position() != 1]',
            '//*[contains(concat(" ", normalize-space(@class), " "), " button ")]',
            '//*[starts-with(@id, "c")]', '//*[string-length(@id) >= 6]', '//*[lang("en")][1]',
            'id("top")', 'id("top goods")', 'count(//*)', 'count(//a) + count(//button)', 'count(//a) - 1',
            'count(//li) * 2', 'count(//li) div 4', 'count(//li) mod 3', '-count(//a)', '1 div 0', '-1 div 0', '0 div 0',
            'position()', 'last()', 'local-name()', 'name()', 'namespace-uri()', 'local-name(//a)', 'name(//@class)',
            'string()', 'string(//title)', 'string(count(//a))', 'string(1 div 4)', 'string(true())',
            'concat("a", 1, true())', 'starts-with("abc", "ab")', 'contains("abc", "d")',
            'substring-before("1999/04/01", "/")', 'substring-after("1999/04/01", "/")', 'substring("12345", 2, 3)',
            'substring("12345", 1.5, 2.6)', 'substring("12345", 0, 3)', 'substring("12345", -42, 1 div 0)',
            'substring("12345", 2)', 'string-length("abc")', 'string-length()', 'normalize-space("  a  b ")',
            'normalize-space()', 'translate("--aaa--", "abc-", "ABC")', 'boolean(//a)', 'boolean(//nothing)',
            'boolean("")', 'not(//a)', 'true()', 'false()', 'number("12.5")', 'number(" x")', 'number(true())',
            'number()', 'sum(//*[@width]/@width)', 'floor(-1.5)', 'ceiling(-1.5)', 'round(2.5)', 'round(-2.5)',
            '//a = //h1', '//a != //a', 'count(//a) > count(//li)', 'count(//a) <= 3', '"a" = "a"', '1 < 2 and 2 < 3',
            '1 > 2 or true()', '//a/@href = "index.html"', '//*[@width > 30]', '//*[. = "Shop"]'
        ],
        contexts = [document, document.documentElement, document.body, document.querySelector('a'),
            document.querySelector('li') || document.querySelector('p'), document.querySelector('h1').firstChild],
        differences = [], compared = 0, kinds = { 1: 'number', 2: 'string', 3: 'boolean' };

    function nodesOf(expression, context) {
        var result = document.evaluate(expression, context, null, 7, null), nodes = [], i;
        for (i = 0; i < result.snapshotLength; i++) {
            nodes.push(result.snapshotItem(i));
        }
        return nodes;
    }
    function same(a, b) {
        return Array.isArray(b) ? a.length === b.length && b.every(function (node, i) { return a[i] === node; })
            : Object.is(a, b);
    }
    // Names of elements as the document has them: the browser ignores their case, we do as the option says.
    function asNamed(expression) {
        return expression.replace(/(^|[/:(|[] ?)(a|button|div|h[123]|li|p|title|ul)(?![\w(:-])/g, function (all, before, name) {
            return before + name.toUpperCase();
        });
    }
    function compare(expression, context, number, ignoreCase) {
        var result = document.evaluate(expression, context, null, 0, null),
            kind = kinds[result.resultType],
            theirs = kind ? result[kind + 'Value'] : nodesOf(expression, context),
            value = xpathDomEval(ignoreCase ? expression : asNamed(expression), context),
            ours = kind ? value[kind + 'Value']() : value.nodeSetValue();
        compared++;
        if (!same(ours, theirs)) {
            differences.push(expression + ' from ' + number + ' ' + ignoreCase + ': ' + (kind ? ours : ours.length + ' nodes') +
                ' instead of ' + (kind ? theirs : theirs.length + ' nodes'));
        }
    }
    axes.forEach(function (axis) {
        tests.forEach(function (test) {
            expressions.push(axis + '::' + test, axis + '::' + test + '[1]', axis + '::' + test + '[last()]',
                '//p/' + axis + '::' + test);
        });
    });
    var before = top.__ostrel__xpath__caseInSensitiveMatching;
    [true, false].forEach(function (ignoreCase) {
        top.__ostrel__xpath__caseInSensitiveMatching = ignoreCase;
        contexts.forEach(function (context, number) {
            expressions.forEach(function (expression) {
                try {
                    compare(expression, context, number, ignoreCase);
                } catch (error) {
                    differences.push(expression + ' from ' + number + ': ' + error);
                }
            });
        });
    });
    top.__ostrel__xpath__caseInSensitiveMatching = before;
    return differences.slice(0, 10).join('\n') + (compared > 6000 ? '' : 'compared only ' + compared);
}()))"_s;

/// Every operator between values of all kinds. Gives the differences and how much was compared.
const QString compareOperators = uR"((function () {
    var operands = ['true()', 'false()', '""', '"x"', '" 2 "', '"-2.5"', '0', '2', '-2.5', '1 div 0', '0 div 0', '//a',
            '//@class', '//nothing', 'count(//li)'],
        operators = ['=', '!=', '<', '<=', '>', '>=', 'and', 'or', '+', '-', '*', 'div', 'mod'],
        differences = [], compared = 0;

    function compare(expression) {
        var theirs = document.evaluate(expression, document, null, 0, null),
            ours = xpathDomEval(expression, document),
            isNumber = theirs.resultType === 1;
        compared++;
        if (!Object.is(isNumber ? ours.numberValue() : ours.booleanValue(), isNumber ? theirs.numberValue : theirs.booleanValue)) {
            differences.push(expression + ': ' + ours.stringValue());
        }
    }
    operands.forEach(function (left) {
        compare('-(' + left + ')');
        compare('not(' + left + ')');
        operands.forEach(function (right) {
            operators.forEach(function (operator) {
                compare('(' + left + ') ' + operator + ' (' + right + ')');
            });
        });
    });
    return differences.slice(0, 10).join('\n') + (compared > 2900 ? '' : 'compared only ' + compared);
}()))"_s;

/// Node sets of a document whose names differ in case, with the option off and on. The browser has no such
/// option; it is asked in other words.
const QString compareCase = uR"((function () {
    var xml = new DOMParser().parseFromString('<Shop Name="a"><item Id="1"/><Item id="2"><ITEM/></Item>' +
            '<iTem name="x">text</iTem><other NAME="y"/></Shop>', 'application/xml'),
        upper = 'ABCDEFGHIJKLMNOPQRSTUVWXYZ', lower = upper.toLowerCase(), differences = [];

    function folded(test) {
        return '[translate(name(), "' + upper + '", "' + lower + '") = "' + test.toLowerCase() + '"]';
    }
    function nodesOf(expression) {
        var result = xml.evaluate(expression, xml, null, 7, null), nodes = [], i;
        for (i = 0; i < result.snapshotLength; i++) {
            nodes.push(result.snapshotItem(i));
        }
        return nodes;
    }
    function compare(ignoreCase, expression, inOtherWords) {
        var theirs = nodesOf(inOtherWords), ours;
        top.__ostrel__xpath__caseInSensitiveMatching = ignoreCase;
        ours = xpathDomEval(expression, xml).nodeSetValue();
        if (ours.length !== theirs.length || theirs.some(function (node, i) { return ours[i] !== node; })) {
            differences.push(ignoreCase + ' ' + expression + ': ' + ours.length + ' instead of ' + theirs.length);
        }
    }
    var before = top.__ostrel__xpath__caseInSensitiveMatching;
    ['item', 'Item', 'ITEM', 'iTem', 'shop', 'Shop', 'other', 'none'].forEach(function (name) {
        compare(false, '//' + name, '//' + name);
        compare(true, '//' + name, '//*' + folded(name));
        compare(false, '//Shop/child::' + name + '[1]', '//Shop/child::' + name + '[1]');
        compare(true, '//shop/child::' + name + '[1]', '/*/*' + folded(name) + '[1]');
        compare(true, '//*[' + name + ']', '//*[*' + folded(name) + ']');
        compare(true, '//' + name + '/following-sibling::other', '//*' + folded(name) + '/following-sibling::other');
    });
    top.__ostrel__xpath__caseInSensitiveMatching = before;
    return differences.join('\n');
}()))"_s;

class PageLanguagesTest : public ::testing::Test
{
protected:
    static void SetUpTestSuite()
    {
        static ResultSink nobody;
        SessionOptions options;
        options.servedDirectory = QStringLiteral(PAGEPROBE_SOURCE_DIR "/demo");
        auto started = TestSession::start(options, nobody);
        ASSERT_EQ(started.error, QString());
        session = std::move(started.value);
    }
    static void TearDownTestSuite() { session.reset(); }

    static void open(const QString &page)
    {
        ASSERT_EQ(session->open(session->serverAddress().value + page).error, QString());
    }
    static QString evaluate(const QString &script)
    {
        const auto evaluated = session->activePage()->evaluateJavaScript(script, 0);
        EXPECT_FALSE(evaluated.failed) << evaluated.result.toStdString();
        return evaluated.result;
    }

    static SharedPtr<Object> object(const QString &expression)
    {
        const auto found
            = WebWrapper::htmlObjectFromJavaScriptResult(session->activePage(), expression, {}, 0);
        EXPECT_EQ(found.error, QString());
        return WebWrapper::wrapObject(found.value);
    }

    static std::unique_ptr<TestSession> session;
};

std::unique_ptr<TestSession> PageLanguagesTest::session;

TEST_F(PageLanguagesTest, XPathGivesWhatTheBrowserGives)
{
    for (const QString &page : shopPages) {
        SCOPED_TRACE(page.toStdString());
        open(page);

        EXPECT_EQ(evaluate(compareWithBrowser), QString());
    }
}

TEST_F(PageLanguagesTest, OperatorsOfXPathGiveWhatTheBrowserGives)
{
    open(u"index.html"_s);

    EXPECT_EQ(evaluate(compareOperators), QString());
}

TEST_F(PageLanguagesTest, TheCaseOptionOfXPathIsWhatFoldedNamesGive)
{
    open(u"index.html"_s);

    EXPECT_EQ(evaluate(compareCase), QString());
}

TEST_F(PageLanguagesTest, ScriptsReadWhatAStatementGives)
{
    open(u"index.html"_s);
    const SharedPtr<Object> document = object(u"document"_s);
    const auto resultOf = [&](const QString &statement) {
        const ScriptAnswer result = callMethod(document, u"evaluateXPath"_s, statement);
        EXPECT_EQ(result.error, QString()) << statement.toStdString();
        return result.value;
    };
    const auto answer
        = [](const ScriptAnswer &read) { return read.error.isEmpty() ? read.text() : read.error; };

    const SharedPtr<Object> links = resultOf(u"//a[\n  @href\r\n]"_s);
    const SharedPtr<Object> title = resultOf(u"string(//title)"_s);

    // Each has a variable of its own.
    EXPECT_EQ(answer(readProperty(links, u"snapshotLength"_s)), evaluate(u"document.links.length"_s));
    EXPECT_EQ(answer(readProperty(title, u"stringValue"_s)), evaluate(u"document.title"_s));
    EXPECT_EQ(answer(readProperty(title, u"snapshotLength"_s)), u"-1"_s);
    EXPECT_TRUE(
        answer(readProperty(title, u"numberValue"_s)).endsWith(" to double, received value is 'NaN'"_L1));
    EXPECT_EQ(answer(readProperty(links, u"booleanValue"_s)), u"true"_s);
    EXPECT_EQ(answer(readProperty(resultOf(u"count(//a) > 3"_s), u"booleanValue"_s)), u"true"_s);
    EXPECT_EQ(answer(readProperty(resultOf(u"1 div 4"_s), u"numberValue"_s)), u"0.25"_s);

    const ScriptAnswer first = callMethod(links, u"singleNodeValue"_s);
    EXPECT_EQ(first.value->objectClass()->name(), u"HTML_Anchor"_s);
    EXPECT_EQ(WebWrapper::retrieveObject(first.value)->jsReference(),
        evaluate(u"__ostrel__idForObject(document.links[0])"_s));
    EXPECT_EQ(WebWrapper::retrieveObject(callMethod(links, u"snapshotItem"_s, 2).value)->jsReference(),
        evaluate(u"__ostrel__idForObject(document.links[2])"_s));
    for (const ScriptAnswer &none :
        {callMethod(links, u"snapshotItem"_s, 5000), callMethod(title, u"snapshotItem"_s, 0),
            callMethod(resultOf(u"//nothing"_s), u"singleNodeValue"_s)}) {
        EXPECT_EQ(none.error, QString());
        EXPECT_TRUE(none.value->isNull());
    }

    EXPECT_EQ(callMethod(document, u"evaluateXPath"_s, u"//["_s).error,
        u"Error evaluating xpath '//[': XPath parse error Unexpected token in: //["_s);
    EXPECT_TRUE(callMethod(document, u"evaluateXPath"_s, u"sum(1)"_s)
                    .error.startsWith("Error evaluating xpath 'sum(1)': "_L1));

    open(u"help.html"_s);
    EXPECT_EQ(answer(readProperty(title, u"stringValue"_s)),
        u"XPathResult reference deleted in browser already, please obtain a new reference using the "
        "obj.evaluateXPath() function."_s);
}

TEST_F(PageLanguagesTest, ScriptsReadAStyleByTheNamesOfThePage)
{
    open(u"index.html"_s);
    const SharedPtr<Object> link = object(u"document.links[0]"_s);

    const ScriptAnswer style = callMethod(link, u"style"_s);

    ASSERT_EQ(style.error, QString());
    for (const QString &name : {u"color"_s, u"display"_s, u"borderLeftWidth"_s})
        EXPECT_EQ(callMethod(style.value, u"value"_s, name).text(),
            evaluate(u"getComputedStyle(document.links[0])."_s + name));
    EXPECT_EQ(callMethod(style.value, u"value"_s, u"it's none"_s).text(), u"undefined"_s);
}

/// "rgb(1, 2, 3)" and "rgba(1, 2, 3, 0.5)", the forms in which the browser computes colours.
QString colorText(const QString &computed)
{
    static const QRegularExpression form(u"^rgba?\\((\\d+), (\\d+), (\\d+)(?:, ([\\d.]+))?\\)$"_s);
    const QRegularExpressionMatch match = form.match(computed);
    const QString alpha = match.captured(4);
    return match.hasMatch() ? u"%1 %2 %3 %4"_s.arg(match.captured(1), match.captured(2), match.captured(3),
               QString::number(alpha.isEmpty() ? 1.0 : alpha.toDouble(), 'g', 4))
                            : QString();
}

TEST_F(PageLanguagesTest, EveryStylePropertyReadsAsTheBrowserComputesIt)
{
    const Class *styles = Inspector::self()->findClass(u"CSSProperties"_s);
    ASSERT_TRUE(styles);
    ASSERT_EQ(styles->numProperties(), 218);
    int colors = 0;
    for (const QString &page : shopPages) {
        open(page);
        for (const QString &selector : {u"html"_s, u"body"_s, u"a"_s, u"h1"_s, u"button"_s, u"svg, img"_s}) {
            SCOPED_TRACE((page + u' ' + selector).toStdString());
            const QString element = u"document.querySelector('%1')"_s.arg(selector);
            const auto found
                = WebWrapper::htmlObjectFromJavaScriptResult(session->activePage(), element, {}, 0);
            ASSERT_EQ(found.error, QString());
            if (!found.value)
                continue;
            const SharedPtr<Object> object = WebWrapper::wrapObject(found.value);
            const QJsonObject computed = QJsonDocument::fromJson(
                evaluate(u"(() => { const all = {}, style = getComputedStyle(%1); for (const name in style) "
                         "all[name] = String(style[name]); return JSON.stringify(all); })()"_s.arg(element))
                    .toUtf8())
                                             .object();
            const Ostrel::Test::ScriptAnswer css = readProperty(object, u"css"_s);
            ASSERT_EQ(css.error, QString());

            for (int i = 0; i < styles->numProperties(); ++i) {
                const QString name = styles->property(i)->name();
                const Ostrel::Test::ScriptAnswer value = readProperty(css.value, name);
                ASSERT_EQ(value.error, QString()) << name.toStdString();
                const QString expected = computed.value(name).toString(u"undefined"_s);
                const QString expectedColor = colorText(expected);
                if (value.value->objectClass()->name() != "CssColor"_L1) {
                    EXPECT_EQ(value.text(), expected) << name.toStdString();
                } else {
                    ++colors;
                    const auto part = [&](const char *side) {
                        return readProperty(value.value, QString::fromLatin1(side)).text();
                    };
                    EXPECT_EQ(u"%1 %2 %3 %4"_s.arg(part("red"), part("green"), part("blue"),
                                  QString::number(part("alpha").toDouble(), 'g', 4)),
                        expectedColor)
                        << name.toStdString();
                }
            }
        }
    }
    EXPECT_GT(colors, 100);
}

} // namespace
} // namespace Ostrel::Host
