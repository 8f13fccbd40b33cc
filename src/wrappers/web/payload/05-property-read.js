// 05  Property read: the value of one property of an object, from a member or an attribute.
//
// Defines  __ostrel.reservedJsKeywords, __ostrel.getPropertyValue, __ostrel__getObjectAttribute,
//          __ostrel__reservedJsKeywordNames, __ostrel__isReservedJsKeyword, __ostrel__readMemberPath,
//          __ostrel__needsAttribute, __ostrel__attributeOfEmptyCollection
// Calls    __ostrel__isQWebViewBrowser (07-browser-detection), __ostrel__memberOfNode (19-dom-access)
// At load  assigns members of the namespace

/** Names that are read as attributes, since script cannot use them as members everywhere. */
window.top.__ostrel.reservedJsKeywords = [
    "break", "case", "catch", "continue", "debugger", "default", "delete", "do", "else", "finally", "for",
    "function", "if", "in", "instanceof", "new", "return", "switch", "this", "throw", "try", "typeof", "var",
    "void", "while", "with", "class", "enum", "export", "extends", "import", "super", "implements", "interface",
    "let", "package", "private", "protected", "public", "static", "yield"
];

/** The same names as members, for a quick look: searches read a property of every candidate. */
var __ostrel__reservedJsKeywordNames = {};

window.top.__ostrel.reservedJsKeywords.forEach(function (name) {
    __ostrel__reservedJsKeywordNames[name] = true;
});

/**
 * Reads a property by its name or by a path of names with dots between them. Never raises an error.
 * @param {Object} obj
 * @param {string} propName
 * @return {*} the value as it is; an empty string for undefined and for what cannot be read; "null" for null
 */
window.top.__ostrel.getPropertyValue = function (obj, propName) {
    var value;

    try {
        value = __ostrel__isReservedJsKeyword(propName) ? obj.getAttribute(propName)
            : __ostrel__readMemberPath(obj, propName);
    } catch (e) {
        value = "";
    }
    try {
        if (__ostrel__needsAttribute(propName, value)) {
            value = __ostrel__getObjectAttribute(obj, propName);
        }
        // What follows is about objects, and searches read a text of each candidate.
        if (typeof value === "string") {
            return value;
        }
        value = __ostrel__attributeOfEmptyCollection(obj, propName, value);
        // SVG wraps its attributes' values in objects.
        if (({}).toString.call(value).indexOf("SVG") !== -1) {
            value = value.baseVal;
        }
    } catch (e2) {
        value = "";
    }
    if (value === undefined) {
        return "";
    }
    return value === null ? "null" : value;
};

/**
 * @param {string} name
 * @return {boolean}
 */
function __ostrel__isReservedJsKeyword(name) {
    return __ostrel__reservedJsKeywordNames[name] === true;
}

/**
 * Walks from member to member. Raises the browser's error when a step but the last leads to nothing.
 * @param {Object} obj
 * @param {string} path
 * @return {*}
 */
function __ostrel__readMemberPath(obj, path) {
    var value = obj,
        names, i;

    if (path.indexOf(".") === -1) {
        return __ostrel__memberOfNode(obj, path);
    }
    names = path.split(".");
    for (i = 0; i < names.length; i++) {
        value = __ostrel__memberOfNode(value, names[i]);
    }
    return value;
}

/**
 * True when a member's value says that an attribute was meant.
 * @param {string} propName
 * @param {*} value
 * @return {boolean}
 */
function __ostrel__needsAttribute(propName, value) {
    var text = String(value);

    // QtWebKit gives an empty text for a hyphenated name; the other two resolve it as a member.
    if (text === "" && propName.indexOf("-") !== -1 &&
        !window.top.__ostrel__ie && !window.top.__ostrel__mozilla) {
        return true;
    }
    return text === "undefined" || text.lastIndexOf("__OSTREL__ERROR", 0) === 0;
}

/**
 * QWebView gives empty collections for attributes that it does not know as members: the attribute counts there.
 * @param {Object} obj
 * @param {string} propName
 * @param {*} value what was found so far
 * @return {*}
 */
function __ostrel__attributeOfEmptyCollection(obj, propName, value) {
    var attribute;

    if (!__ostrel__isQWebViewBrowser() || !value || value.length !== 0) {
        return value;
    }
    attribute = __ostrel__getObjectAttribute(obj, propName);
    return attribute === undefined || attribute === null ? value : attribute;
}

/**
 * Reads an attribute. Never raises an error: a script that does would leave the host waiting for its answer.
 * @param {Object} obj
 * @param {string} attrName
 * @return {?string|undefined} undefined when the object has no attributes
 */
function __ostrel__getObjectAttribute(obj, attrName) {
    try {
        if (obj && obj.getAttribute) {
            return obj.getAttribute(attrName);
        }
    } catch (e) {
        // the neutral value below
    }
    return undefined;
}
