// 13  Text content: what an element says by itself, for the object tree dump.
//
// Defines  window.top.__ostrel.getTextContent, __ostrel__assembleText, __ostrel__textPart,
//          __ostrel__hasTextOfItsOwn, __ostrel__isTextTag, __ostrel__beginsWithText
// Calls    __ostrel.simplifyText (11-text-simplification), __ostrelDOMAPI, __ostrel__memberOfNode (19-dom-access)
// At load  the member of window.top.__ostrel is set

/**
 * The text that belongs to an element itself. Nested elements are dumped for themselves and do not count.
 * @param {Node} element
 * @return {string} empty for an element that holds other elements rather than text
 */
window.top.__ostrel.getTextContent = function (element) {
    return __ostrel__hasTextOfItsOwn(element) ? __ostrel__assembleText(element) : "";
};

/**
 * @param {Element} element
 * @return {string} its parts with one blank between them, also around a line break
 */
function __ostrel__assembleText(element) {
    var parts = [];
    var child, part;

    for (child = element.firstChild; child; child = child.nextSibling) {
        part = __ostrel__textPart(child);
        if (part) {
            parts.push(part);
        }
    }
    return parts.join(" ");
}

/**
 * What one child adds to the text. Comments count as text.
 * @param {Node} child
 * @return {string} empty when it adds nothing
 */
function __ostrel__textPart(child) {
    if (__ostrelDOMAPI.isNonElementNode(child)) {
        return window.top.__ostrel.simplifyText(child.nodeValue);
    }
    switch (__ostrel__memberOfNode(child, "tagName").toUpperCase()) {
    case "BR":
        return "\n";
    case "SELECT":
    case "TEXTAREA":
        return __ostrel__assembleText(child);
    default:
        return "";
    }
}

/**
 * An element has text of its own when its tag says so, or when it begins with text that its parent does not
 * cover already.
 * @param {Node} element
 * @return {boolean}
 */
function __ostrel__hasTextOfItsOwn(element) {
    var tagName = element && __ostrel__memberOfNode(element, "tagName");
    var parent;

    if (!tagName) {
        return false;
    }
    if (__ostrel__isTextTag(tagName)) {
        return true;
    }
    if (!__ostrel__beginsWithText(element)) {
        return false;
    }
    parent = __ostrel__memberOfNode(element, "parentNode");
    return !parent || parent.tagName === "BODY" || !__ostrel__hasTextOfItsOwn(parent);
}

/**
 * @param {string} tagName
 * @return {boolean} whether elements of this tag are made for text
 */
function __ostrel__isTextTag(tagName) {
    var textTags = /^(A|ADDRESS|BLOCKQUOTE|BUTTON|CAPTION|H[1-6]|LABEL|OPTION|P|PRE|Q|SUMMARY|TEXTAREA|TITLE)$/;

    return textTags.test(tagName.toUpperCase());
}

/**
 * True when the first child that is not blank is no element.
 * Kept as is: one replacement only, so that it takes the white space before a text or, where there is none,
 * that behind it. A blank text becomes empty either way, which is all that is asked.
 * @param {Element} element
 * @return {boolean}
 */
function __ostrel__beginsWithText(element) {
    var child;

    for (child = element.firstChild; child; child = child.nextSibling) {
        if (!__ostrelDOMAPI.isNonElementNode(child)) {
            return false;
        }
        if (child.nodeValue.replace(/^\s+|\s+$/, "") !== "") {
            return true;
        }
    }
    return false;
}
