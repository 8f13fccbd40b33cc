// XPath engine: the entry points by which the host evaluates XPath against the live DOM.
//
// Defines  xpathDomEval, xpathParse, ExprContext
// Calls    __ostrel__xpath__package (xpath-support)
// At load  gives ExprContext its operation

/**
 * Evaluates an expression.
 * @param {string} expr XPath 1.0
 * @param {Node} node context node
 * @return {Object} a value with stringValue(), booleanValue(), numberValue() and nodeSetValue(), the last of which
 *     gives an array of nodes in document order and throws for a value of another kind
 */
function xpathDomEval(expr, node) {
    var parsed = xpathParse(expr),
        context = new ExprContext(node);

    context.setCaseInsensitive(top.__ostrel__xpath__caseInSensitiveMatching);
    return parsed.evaluate(context);
}

/**
 * Parses an expression. What is no expression is thrown as a text.
 * @param {string} expr
 * @return {{evaluate: function(ExprContext): Object}}
 */
function xpathParse(expr) {
    var xpath = __ostrel__xpath__package(),
        expression, reason;

    try {
        expression = new xpath.XPathParser().parse(String(expr)).expression;
    } catch (e) {
        // The parser's own word for a misplaced token is no more than our prefix, and it ends texts with a zero.
        reason = e.message === "XPath parse error" ? "Unexpected token" : e.message.split("\0").join("");
        throw "XPath parse error " + reason + " in: " + expr;
    }
    return {
        evaluate: function (context) {
            return expression.evaluate(context.forPackage());
        }
    };
}

/**
 * What an expression is evaluated in.
 * @constructor
 * @param {Node} node
 */
function ExprContext(node) {
    this.node = node;
    this.caseInsensitive = false;
}

/**
 * Says whether node tests by name ignore case, in all steps and predicates.
 * @param {*} caseInsensitive a truth value; the digits 0 and 1 will do
 */
ExprContext.prototype.setCaseInsensitive = function (caseInsensitive) {
    this.caseInsensitive = Boolean(caseInsensitive);
};

/**
 * The same as an object of the package.
 * @return {Object}
 */
ExprContext.prototype.forPackage = function () {
    var xpath = __ostrel__xpath__package(),
        context = new xpath.XPathContext();

    if (!this.node || !this.node.nodeType) {
        throw new Error("The context of an XPath expression must be a node");
    }
    return context.extend({
        expressionContextNode: this.node,
        contextNode: this.node,
        contextSize: 1,
        contextPosition: 1,
        caseInsensitive: this.caseInsensitive
    });
};
