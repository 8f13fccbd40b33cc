// 09c  Document geometry: where in its page an element lies, whatever part of the page is in view.
//
// Defines  window.top.__ostrel.getElementRectangleInDocument, window.top.__ostrel.getElementRectAsObject,
//          window.top.__ostrel.getDocumentSize, __ostrel__getPageOffset, __ostrel__getPageOffsetX,
//          __ostrel__getPageOffsetY, __ostrel__isScrolledOut, __ostrel__findClippingParent,
//          __ostrel__isEndOfPage, __ostrel__clipsItsContent, __ostrel__isOutsideOf,
//          __ostrel__mapRectangle, __ostrel__largestOf, __ostrel__largestSide, __ostrel__documentOffset,
//          __ostrel__stableRectangle, __ostrel__stableCorner, __ostrel__offsetWithParents,
//          __ostrel__hasClippingStyle, __ostrel__devicePixelRatioOfDump, __ostrel__contentCorner,
//          __ostrel__cornerCorrection, __ostrel__scrollPositionOf
// Calls    __ostrel__currentContext (02c-contexts), __ostrel__isDocumentNode (02d-classification),
//          __ostrel__oncePerReading (08-object-tree),
//          __ostrel__invalidRectangle (09a-screen-rectangle), __ostrel__addPositions, __ostrel__getFrameOffset
//          (09b-viewport), __ostrel__styleInfo (12-visibility), __ostrel__memberOfNode (19-dom-access)
// At load  the members of window.top.__ostrel are set

/**
 * The rectangle of an element in a picture of its whole document, in device pixels.
 * Kept as is: the offset of a frame is not added, an element in a frame is placed in the frame's document.
 * @param {Node} element
 * @param {number} zoomFactor the browser's page zoom
 * @return {{x: number, y: number, width: number, height: number}} all -1 when a scrolled or clipping
 *     ancestor hides all of it
 */
window.top.__ostrel.getElementRectangleInDocument = function (element, zoomFactor) {
    var position, rect, ratio;

    if (__ostrel__isScrolledOut(element)) {
        return __ostrel__invalidRectangle();
    }
    position = __ostrel__documentOffset(element);
    rect = {
        x: position.x,
        y: position.y,
        width: __ostrel__largestSide(element, "scrollWidth", "offsetWidth"),
        height: __ostrel__largestSide(element, "scrollHeight", "offsetHeight")
    };
    if (!window.top.__ostrel__mozilla) {
        rect = __ostrel__mapRectangle(rect, function (value) {
            return Math.round(value * zoomFactor);
        });
    }
    ratio = __ostrel__devicePixelRatioOfDump();
    return __ostrel__mapRectangle(rect, function (value) {
        return Math.floor(value * ratio);
    });
};

/**
 * The position of an element for its script properties x, y, width and height. The numbers are meant to stay
 * the same from run to run, not to be exact; scrolling is left out by design.
 * @param {Node} e
 * @return {{x: number, y: number, width: number, height: number}}
 */
window.top.__ostrel.getElementRectAsObject = function (e) {
    return __ostrel__oncePerReading("rectangle", e, __ostrel__stableRectangle);
};

/**
 * @param {Node} e
 * @return {{x: number, y: number, width: number, height: number}}
 */
function __ostrel__stableRectangle(e) {
    var win = __ostrel__currentContext(e);
    var corner = __ostrel__oncePerReading("corner", win, __ostrel__stableCorner);
    var position = __ostrel__addPositions(corner, __ostrel__documentOffset(e));

    // Documents and drawings have no such size. A value that is left out would be asked for once more, one by one.
    return {
        x: position.x,
        y: position.y,
        width: __ostrel__memberOfNode(e, "offsetWidth") || 0,
        height: __ostrel__memberOfNode(e, "offsetHeight") || 0
    };
}

/**
 * @param {Window} win
 * @return {{x: number, y: number}} where the positions in a window begin
 */
function __ostrel__stableCorner(win) {
    var position = __ostrel__addPositions(__ostrel__contentCorner(win), __ostrel__getFrameOffset(win));

    return __ostrel__addPositions(position, __ostrel__cornerCorrection());
}

/**
 * @return {{width: number, height: number}} the size of the whole document in CSS pixels
 */
window.top.__ostrel.getDocumentSize = function () {
    var body = document.body;
    var root = document.documentElement;

    return {
        width: document.width || __ostrel__largestOf(
            [body.scrollWidth, body.offsetWidth, root.clientWidth, root.scrollWidth, root.offsetWidth]),
        height: document.height || __ostrel__largestOf(
            [body.scrollHeight, body.offsetHeight, root.clientHeight, root.scrollHeight, root.offsetHeight])
    };
};

/**
 * @return {number} how far the payload's own window is scrolled to the right
 */
function __ostrel__getPageOffsetX() {
    return __ostrel__getPageOffset().x;
}

/**
 * @return {number} how far the payload's own window is scrolled down
 */
function __ostrel__getPageOffsetY() {
    return __ostrel__getPageOffset().y;
}

/**
 * @return {{x: number, y: number}}
 */
function __ostrel__getPageOffset() {
    if (typeof window.pageXOffset === "number" && typeof window.pageYOffset === "number") {
        return { x: window.pageXOffset, y: window.pageYOffset };
    }
    // Old Internet Explorer scrolls the body or the root element, by document mode.
    return __ostrel__scrollPositionOf(document.body) ||
        __ostrel__scrollPositionOf(document.documentElement) ||
        { x: 0, y: 0 };
}

/**
 * @param {Element} element
 * @return {({x: number, y: number}|undefined)} undefined when the element is missing or not scrolled
 */
function __ostrel__scrollPositionOf(element) {
    if (element && (element.scrollLeft || element.scrollTop)) {
        return { x: element.scrollLeft, y: element.scrollTop };
    }
    return undefined;
}

/**
 * True when an ancestor that clips or scrolls its content shows no part of the element, or such an ancestor
 * is hidden itself by one further out.
 * @param {Node} element
 * @return {boolean}
 */
function __ostrel__isScrolledOut(element) {
    var clipping;

    while (element.tagName !== "BODY") {
        clipping = __ostrel__findClippingParent(element);
        if (!clipping) {
            return false;
        }
        if (__ostrel__isOutsideOf(element, clipping)) {
            return true;
        }
        element = clipping.parent;
    }
    return false;
}

/**
 * The nearest ancestor that clips its content, and on the way to it the offset parents, which the element's
 * own offset is relative to.
 * @param {Node} element
 * @return {({parent: Element, offsetParents: Array<Element>}|undefined)}
 */
function __ostrel__findClippingParent(element) {
    var offsetParents = [];
    var last = element;
    var parent;

    parent = __ostrel__memberOfNode(element, "parentNode");
    for (; !__ostrel__isEndOfPage(parent); parent = __ostrel__memberOfNode(parent, "parentNode")) {
        if (last.offsetParent === parent) {
            offsetParents.push(parent);
            last = parent;
        }
        if (__ostrel__clipsItsContent(parent)) {
            return { parent: parent, offsetParents: offsetParents };
        }
    }
    return undefined;
}

/**
 * @param {(Node|null)} node
 * @return {boolean}
 */
function __ostrel__isEndOfPage(node) {
    return !node || __ostrel__isDocumentNode(node) || node.tagName === "HTML" || node.tagName === "BODY";
}

/**
 * @param {Element} element
 * @return {boolean}
 */
function __ostrel__clipsItsContent(element) {
    return __ostrel__oncePerReading("clips", element, __ostrel__hasClippingStyle);
}

/**
 * @param {Element} element
 * @return {boolean}
 */
function __ostrel__hasClippingStyle(element) {
    var style = new __ostrel__styleInfo(element);
    var clipping = /^(hidden|scroll|auto)$/;

    return clipping.test(style.styleProperty("overflow")) ||
        clipping.test(style.styleProperty("overflowX")) ||
        clipping.test(style.styleProperty("overflowY"));
}

/**
 * @param {Element} element
 * @param {{parent: Element, offsetParents: Array<Element>}} clipping
 * @return {boolean} whether no part of the element lies in what the clipping parent shows
 */
function __ostrel__isOutsideOf(element, clipping) {
    var parent = clipping.parent;
    var x = element.offsetLeft - parent.offsetLeft;
    var y = element.offsetTop - parent.offsetTop;
    var i;

    for (i = 0; i < clipping.offsetParents.length; i++) {
        x += clipping.offsetParents[i].offsetLeft;
        y += clipping.offsetParents[i].offsetTop;
    }
    return x >= parent.offsetWidth + parent.scrollLeft ||
        x + element.offsetWidth <= parent.scrollLeft ||
        y >= parent.offsetHeight + parent.scrollTop ||
        y + element.offsetHeight <= parent.scrollTop;
}

/**
 * @param {Object} rect
 * @param {function(number): number} change
 * @return {{x: number, y: number, width: number, height: number}}
 */
function __ostrel__mapRectangle(rect, change) {
    return {
        x: change(rect.x),
        y: change(rect.y),
        width: change(rect.width),
        height: change(rect.height)
    };
}

/**
 * @param {Array<number>} sizes
 * @return {number} the largest size; what a node such as a document does not have counts as 0
 */
function __ostrel__largestOf(sizes) {
    var largest = 0;
    var i;

    for (i = 0; i < sizes.length; i++) {
        largest = Math.max(largest, sizes[i] || 0);
    }
    return largest;
}

/**
 * @param {Element} element
 * @param {string} one name of a size
 * @param {string} other
 * @return {number}
 */
function __ostrel__largestSide(element, one, other) {
    return __ostrel__largestOf([__ostrel__memberOfNode(element, one), __ostrel__memberOfNode(element, other)]);
}

/**
 * Where an element begins in its document. Nodes without offsets, such as text, count as 0.
 * @param {Node} element
 * @return {{x: number, y: number}}
 */
function __ostrel__documentOffset(element) {
    return element ? __ostrel__oncePerReading("offset", element, __ostrel__offsetWithParents) : { x: 0, y: 0 };
}

/**
 * @param {Node} element
 * @return {{x: number, y: number}}
 */
function __ostrel__offsetWithParents(element) {
    var own = {
        x: __ostrel__memberOfNode(element, "offsetLeft") || 0,
        y: __ostrel__memberOfNode(element, "offsetTop") || 0
    };

    return __ostrel__addPositions(own, __ostrel__documentOffset(__ostrel__memberOfNode(element, "offsetParent")));
}

/**
 * Pixels of a page picture for each CSS pixel. The browsers not named here take it unscaled.
 * @return {number}
 */
function __ostrel__devicePixelRatioOfDump() {
    var t = window.top;

    if (t.__ostrel__googlechrome || t.__ostrel__safari || t.__ostrel__chromiumbased ||
            t.__ostrel__microsoftedge) {
        return t.devicePixelRatio;
    }
    if (t.__ostrel__ie) {
        return t.devicePixelRatio || screen.systemXDPI / screen.logicalXDPI;
    }
    return 1.0;
}

/**
 * Roughly where the content of the browser window begins on the screen.
 * @param {Window} win
 * @return {{x: number, y: number}}
 */
function __ostrel__contentCorner(win) {
    var t = win.top;

    if (win.outerWidth) {
        return {
            x: t.screenX + (t.outerWidth - t.innerWidth),
            y: t.screenY + (t.outerHeight - t.innerHeight)
        };
    }
    return { x: t.screenLeft, y: t.screenTop };
}

/**
 * What the window frames of some browsers add to the difference of outer and inner size.
 * @return {{x: number, y: number}}
 */
function __ostrel__cornerCorrection() {
    if (window.__ostrel__mozilla && window.__ostrel__os === "Windows") {
        return { x: -4, y: -25 };
    }
    if (window.__ostrel__mozilla && window.__ostrel__os === "MacOSX") {
        return { x: 0, y: -18 };
    }
    if (window.__ostrel__safari || window.__ostrel__safariproxy) {
        return { x: 3, y: -13 };
    }
    return { x: 0, y: 0 };
}
