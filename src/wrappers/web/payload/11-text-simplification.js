// 11  Text simplification: texts in the form in which they are compared and stored in names.
//
// Defines  window.top.__ostrel.simplifyText, window.top.__ostrel.getSimplifiedInnerText, __ostrel__clean
// Calls    __ostrel.getPropertyValue (05-property-read)
// At load  the members of window.top.__ostrel are set

/**
 * Brings a text into one line without white space at its ends and with single blanks between its words.
 * @param {?string} text a falsy argument comes back unchanged
 * @return {?string}
 */
window.top.__ostrel.simplifyText = function (text) {
    if (!text) {
        return text;
    }
    // An expression for the white space at the end takes forever on a text with a long gap in the middle.
    return text.trim().replace("\r\n", "\n").replace(/\s+/g, " ");
};

/**
 * @param {Node} o
 * @return {string} the simplified inner text of an element
 */
window.top.__ostrel.getSimplifiedInnerText = function (o) {
    return window.top.__ostrel.simplifyText(window.top.__ostrel.getPropertyValue(o, "innerText"));
};

/**
 * Evens out what browsers put differently into one and the same text: line breaks, no-break blanks and
 * hyphens. The argument may be a number, as some toolkits give one.
 * Kept as is: tabs are joined after blanks, so that a tab beside a blank leaves two blanks. Names recorded
 * long ago hold such texts.
 * @param {*} s a falsy argument comes back unchanged
 * @return {*} a string for every other argument
 */
function __ostrel__clean(s) {
    if (!s) {
        return s;
    }
    s = String(s);
    // Most texts are clean, and searches clean several of each candidate.
    if (!/[\u00a0\n\r\t\u2011\u2013]| {2}|^ | $/.test(s)) {
        return s;
    }
    return s
        .replace(/\u00a0/g, " ")
        .replace(/\n+/g, " ")
        .replace(/\r/g, "")
        .replace(/ +/g, " ")
        .replace(/\t+/g, " ")
        .replace(/[\u2011\u2013]/g, "-")
        .replace(/^ /, "")
        .replace(/ $/, "");
}
