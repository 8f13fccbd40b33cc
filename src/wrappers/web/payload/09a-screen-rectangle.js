// 09a  Screen rectangles: where on the screen a user sees an element.
//
// Defines  __ostrel__getScreenRectAsObject, __ostrel__getScreenRect, __ostrel__getRectAsString,
//          __ostrel__getClientBoundingRect, __ostrel__measureClientRect, __ostrel__isLink,
//          __ostrel__dropOutOfViewParts, __ostrel__invalidRectangle, __ostrel__moveOntoScreen,
//          __ostrel__cutAtViewport, __ostrel__needsAccessibleBounds, __ostrel__readAccessibleBounds,
//          __ostrel__fixSizeForIE
// Calls    __ostrel__currentContext (02c-contexts), __ostrel__getDocumentForNode (02d-classification),
//          __ostrel__oncePerReading (08-object-tree),
//          __ostrel__applyBridgeZoom, __ostrel__applyDevicePixelRatio, __ostrel__getViewportScreenPosition,
//          __ostrel__viewportSizeOnScreen (09b-viewport)
// At load  nothing runs

/**
 * The part of an element that lies inside the viewport, in screen coordinates.
 * @param {Node} elem
 * @return {{x: number, y: number, width: number, height: number}} all -1 when nothing of it can be seen
 */
function __ostrel__getScreenRectAsObject(elem) {
    var rect = __ostrel__getClientBoundingRect(elem, true);
    var win = __ostrel__currentContext(elem);
    var elemDoc = __ostrel__getDocumentForNode(elem);
    var viewport;

    __ostrel__applyDevicePixelRatio(rect, win);
    __ostrel__applyBridgeZoom(rect);
    if (__ostrel__needsAccessibleBounds(win) && __ostrel__readAccessibleBounds(elem, rect)) {
        return rect;
    }
    if (window.top.__ostrel__ie && (rect.width === 0 || rect.height === 0)) {
        __ostrel__fixSizeForIE(elem, win, rect);
    }
    viewport = __ostrel__oncePerReading("viewport", win, function () {
        return {
            corner: __ostrel__getViewportScreenPosition(elemDoc, win),
            size: __ostrel__viewportSizeOnScreen(elemDoc, win)
        };
    });
    __ostrel__moveOntoScreen(rect, viewport.corner);
    return __ostrel__cutAtViewport(rect, viewport.corner, viewport.size);
}

/**
 * The screen rectangle as text.
 * @param {Node} elem
 * @return {string} "x,y,width,height"
 */
function __ostrel__getScreenRect(elem) {
    return __ostrel__getRectAsString(__ostrel__getScreenRectAsObject(elem));
}

/**
 * @param {{x: number, y: number, width: number, height: number}} rect
 * @return {string} the four numbers, rounded, with commas between them
 */
function __ostrel__getRectAsString(rect) {
    return Math.round(rect.x) + "," + Math.round(rect.y) + "," +
        Math.round(rect.width) + "," + Math.round(rect.height);
}

/**
 * The rectangle of an element relative to the viewport.
 * @param {Node} elem anything that cannot be measured, such as a document, has the rectangle of zeros
 * @param {boolean=} dropOutOfViewBoundingRectParts whether what lies left of or above the viewport is
 *     cut off; missing means true
 * @return {{x: number, y: number, width: number, height: number}}
 */
function __ostrel__getClientBoundingRect(elem, dropOutOfViewBoundingRectParts) {
    var rect = { x: 0, y: 0, width: 0, height: 0 };
    var measured = __ostrel__measureClientRect(elem);

    if (measured && measured.width) {
        rect.x = measured.left;
        rect.y = measured.top;
        rect.width = measured.width;
        rect.height = measured.height;
    } else if (measured && measured.bottom !== undefined) {
        // Old Internet Explorer tells the four edges only.
        rect.x = measured.left;
        rect.y = measured.top;
        rect.width = measured.right - measured.left;
        rect.height = measured.bottom - measured.top;
    }
    if (dropOutOfViewBoundingRectParts === undefined || dropOutOfViewBoundingRectParts === true) {
        __ostrel__dropOutOfViewParts(rect, "x", "width");
        __ostrel__dropOutOfViewParts(rect, "y", "height");
    }
    return rect;
}

/**
 * What the browser measures. The bounding box of a link that wraps is its largest extent, whose middle may
 * belong to another element, so that its first line counts instead.
 * @param {Node} elem
 * @return {(ClientRect|undefined)}
 */
function __ostrel__measureClientRect(elem) {
    var rects;

    if (__ostrel__isLink(elem)) {
        try {
            rects = elem.getClientRects();
            if (rects.length > 1) {
                return rects[0];
            }
        } catch (missingInOldBrowsers) {
            // The bounding box has to do.
        }
    }
    try {
        return elem.getBoundingClientRect();
    } catch (notMeasurable) {
        return undefined;
    }
}

/**
 * @param {Node} elem
 * @return {boolean}
 */
function __ostrel__isLink(elem) {
    return !!elem && elem.nodeType === 1 && elem.tagName === "A";
}

/**
 * Shortens a rectangle along one axis by the part before the viewport's edge. What lies there entirely gets
 * -1 for position and size.
 * @param {Object} rect
 * @param {string} start name of the position, "x" or "y"
 * @param {string} size name of the extent, "width" or "height"
 */
function __ostrel__dropOutOfViewParts(rect, start, size) {
    if (!(rect[start] < 0)) {
        return;
    }
    if (rect[start] + rect[size] > 0) {
        rect[size] += rect[start];
        rect[start] = 0;
        return;
    }
    rect[start] = -1;
    rect[size] = -1;
}

/**
 * @return {{x: number, y: number, width: number, height: number}} the rectangle of what cannot be seen
 */
function __ostrel__invalidRectangle() {
    return { x: -1, y: -1, width: -1, height: -1 };
}

/**
 * Moves a rectangle from the viewport's corner to its place on the screen. A negative coordinate marks an
 * element out of view and stays.
 * @param {Object} rect
 * @param {{x: number, y: number}} corner
 */
function __ostrel__moveOntoScreen(rect, corner) {
    if (rect.x >= 0) {
        rect.x += corner.x;
    }
    if (rect.y >= 0) {
        rect.y += corner.y;
    }
}

/**
 * Cuts a screen rectangle at the right and bottom edge of the viewport. Negative coordinates are no sign of
 * an element out of view here: on a second monitor they are normal.
 * @param {Object} rect
 * @param {{x: number, y: number}} corner screen position of the viewport
 * @param {{x: number, y: number}} size size of the viewport on the screen
 * @return {{x: number, y: number, width: number, height: number}}
 */
function __ostrel__cutAtViewport(rect, corner, size) {
    var right = corner.x + size.x;
    var bottom = corner.y + size.y;

    if (rect.width <= 0 || rect.height <= 0 || rect.x > right || rect.y > bottom) {
        return __ostrel__invalidRectangle();
    }
    if (rect.x + rect.width > right) {
        rect.width = size.x - (rect.x - corner.x);
    }
    if (rect.y + rect.height > bottom) {
        rect.height = size.y - (rect.y - corner.y);
    }
    return rect;
}

/**
 * Old Firefox does not tell where its viewport begins, and outer less inner height counts the status bar in.
 * There the accessibility interface is asked; it is slow, so nowhere else.
 * @param {Window} win
 * @return {boolean}
 */
function __ostrel__needsAccessibleBounds(win) {
    return !!win.top.__ostrel__mozilla && win.top.mozInnerScreenX === undefined;
}

/**
 * Takes the bounds of an element from the accessibility interface of old Firefox.
 * Kept as is: the size goes into the new members w and h; width and height keep the client values.
 * @param {Node} elem
 * @param {Object} rect
 * @return {boolean} false when there is no accessible for the element; the rectangle is then unchanged
 */
function __ostrel__readAccessibleBounds(elem, rect) {
    var x = {}, y = {}, w = {}, h = {};
    var retrieval;

    try {
        retrieval = Components.classes["@mozilla.org/accessibleRetrieval;1"]
            .createInstance(Components.interfaces["nsIAccessibleRetrieval"]);
        retrieval.getAccessibleFor(elem).getBounds(x, y, w, h);
    } catch (notAccessible) {
        return false;
    }
    rect.x = x.value;
    rect.y = y.value;
    rect.w = w.value;
    rect.h = h.value;
    return true;
}

/**
 * Internet Explorer measures some elements as empty until they are blocks of their own. The element is
 * made one, unseen, for the length of one measurement; this is the only place where measuring changes a page.
 * @param {Element} elem
 * @param {Window} win
 * @param {Object} rect takes the measured width and height
 */
function __ostrel__fixSizeForIE(elem, win, rect) {
    var position, display, visibility, measured;

    try {
        position = elem.style.position;
        display = elem.style.display;
        visibility = elem.style.visibility;
        elem.style.position = "absolute";
        elem.style.display = "block";
        elem.style.visibility = "hidden";
        measured = __ostrel__getClientBoundingRect(elem);
        elem.style.position = position;
        elem.style.display = display;
        elem.style.visibility = visibility;
        rect.width = measured.width;
        rect.height = measured.height;
    } catch (noStyle) {
        // Nodes without style, such as a document, keep the empty size.
    }
}
