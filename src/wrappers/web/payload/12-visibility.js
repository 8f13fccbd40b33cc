// 12  Visibility and style: tells whether a user could see an element, and reads computed style.
//
// Defines  __ostrel__isVisible, __ostrel__hasDisplayNone, __ostrel__styleInfo,
//          __ostrel__currentStyle, __ostrel__allCSSProperties, __ostrel__isColorName, __ostrel__colorRecord,
//          __ostrel__cssToPx
// Calls    __ostrel__getDocumentForNode (02d-classification), __ostrel__knownInReading (08-object-tree),
//          __ostrel__memberOfNode (19-dom-access), __ostrel__parseCSSColor (25-css-colour-parser)
// At load  the methods of __ostrel__styleInfo are set

/**
 * True when neither the element nor an ancestor is taken out of the rendering. Geometry, opacity and overlap
 * play no part. Whatever cannot be told counts as visible, and so does a document, which has no style.
 * @param {Node} elem
 * @param {Map} [known] what a caller who asks for many elements hands to each call, so that the same ancestors are
 *     not asked over and over; it is good while the page does not change
 * @return {boolean}
 */
function __ostrel__isVisible(elem, known) {
    var style;

    if (!elem) {
        return true;
    }
    try {
        style = new __ostrel__styleInfo(elem);
        if (style.styleProperty("display") === "none" || style.styleProperty("visibility") === "hidden") {
            return false;
        }
        // The computed visibility has the ancestors in it already, and a child may overrule them. The
        // computed display has not.
        return !__ostrel__hasDisplayNone(__ostrel__memberOfNode(elem, "parentNode"), known);
    } catch (notReadable) {
        return true;
    }
}

/**
 * True when the node or an ancestor has the display "none".
 * @param {Node} node
 * @param {Map} [known] answers by node
 * @return {boolean} false also where a node on the way refuses to tell
 */
function __ostrel__hasDisplayNone(node, known) {
    var passed = [],
        answer = false;

    known = known || __ostrel__knownInReading("not displayed");
    try {
        for (; node; node = __ostrel__memberOfNode(node, "parentNode")) {
            if (known && known.has(node)) {
                answer = known.get(node);
                break;
            }
            passed.push(node);
            if (new __ostrel__styleInfo(node).styleProperty("display") === "none") {
                answer = true;
                break;
            }
        }
    } catch (notReadable) {
        // What cannot be told counts as visible.
    }
    while (known && passed.length) {
        known.set(passed.pop(), answer);
    }
    return answer;
}

/**
 * Reads the computed style of one node.
 * @constructor
 * @param {Node} obj
 */
function __ostrel__styleInfo(obj) {
    this.obj = obj;
}

/**
 * @param {Node} obj
 * @return {boolean} whether the browser computes styles for nodes of this document; false for text nodes
 */
__ostrel__styleInfo.prototype.hasComputedStyle = function (obj) {
    var doc = __ostrel__getDocumentForNode(obj);

    return !!(doc && doc.defaultView && doc.defaultView.getComputedStyle);
};

/**
 * @param {string} prop name as in the computed style object, such as "borderLeftWidth"
 * @return {(string|undefined)} undefined where there is no such property or no style
 */
__ostrel__styleInfo.prototype.styleProperty = function (prop) {
    if (prop === undefined || !this.obj) {
        return undefined;
    }
    try {
        if (!this.hasComputedStyle(this.obj)) {
            return __ostrel__currentStyle(this.obj, prop);
        }
        return __ostrel__getDocumentForNode(this.obj).defaultView.getComputedStyle(this.obj, null)[prop];
    } catch (noStyle) {
        return undefined;
    }
};

/**
 * Old Internet Explorer has no computed style: an inherited value says "inherit", and the ancestors have to
 * be asked.
 * @param {Node} node
 * @param {string} prop
 * @return {(string|undefined)}
 */
function __ostrel__currentStyle(node, prop) {
    var value = node.currentStyle[prop];

    while (value === "inherit" && node.currentStyle) {
        node = node.parentNode;
        value = node.currentStyle[prop];
    }
    return value;
}

/**
 * The values of several style properties.
 * @param {Node} domObj
 * @param {Array<string>} propNames
 * @return {Object} name to value: a colour record where the value is a colour, else the text, which is
 *     "undefined" for a property that does not exist
 */
function __ostrel__allCSSProperties(domObj, propNames) {
    var style = new __ostrel__styleInfo(domObj);
    var properties = {};
    var i, name, value;

    for (i = 0; i < propNames.length; i++) {
        name = propNames[i];
        value = style.styleProperty(name);
        if (__ostrel__isColorName(name) && value !== undefined) {
            properties[name] = __ostrel__colorRecord(value) || value;
        } else {
            properties[name] = value === undefined ? "undefined" : value;
        }
    }
    return properties;
}

/**
 * @param {string} name
 * @return {boolean}
 */
function __ostrel__isColorName(name) {
    return name.toLowerCase().indexOf("color") !== -1;
}

/**
 * @param {string} value
 * @return {({red: number, green: number, blue: number, alpha: number}|undefined)} undefined for a text
 *     that is no colour
 */
function __ostrel__colorRecord(value) {
    var parts;

    try {
        parts = __ostrel__parseCSSColor(value);
    } catch (notAColor) {
        return undefined;
    }
    if (parts === null) {
        return undefined;
    }
    return { red: parts[0], green: parts[1], blue: parts[2], alpha: parts[3] };
}

/**
 * @param {*} sizeVal
 * @return {*} the number of a text such as "12px", anything else as it came
 */
function __ostrel__cssToPx(sizeVal) {
    if (typeof sizeVal === "string" && /px$/.test(sizeVal)) {
        return parseInt(sizeVal.slice(0, -2), 10);
    }
    return sizeVal;
}
