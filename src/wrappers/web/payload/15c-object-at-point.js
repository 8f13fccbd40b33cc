// 15  Object search, by place: finds the object at a point of the screen, for the host's picker.
//
// Defines  __ostrel__childAt, __ostrel__firstChildOnScreen, __ostrel__documentOfHookedFrame, __ostrel__isGlassPane,
//          __ostrel__hasExtent, __ostrel__containsPoint
// Calls    __ostrel__getScreenRectAsObject (09a-screen-rectangle), __ostrelDOMAPI (19-dom-access), Ostrel
//          (23-extension-interface)
// At load  nothing runs

/**
 * Finds the deepest object at a point. Of siblings that overlap, the first in document order wins, not the one on top.
 * @param {Object} object  where to begin: an element or a document
 * @param {number} relX  in the coordinates of __ostrel__getScreenRectAsObject, as is relY
 * @param {number} relY
 * @return {Object|null}
 */
function __ostrel__childAt(object, relX, relY) {
    var rect = __ostrel__getScreenRectAsObject(object),
        isValid = __ostrel__hasExtent(rect),
        minimal = isValid ? rect : { x: 0, y: 0, width: 10000, height: 10000 },
        child, found, foundRect;
    if (isValid && !__ostrel__containsPoint(rect, relX, relY)) {
        return null;
    }
    for (child = __ostrel__firstChildOnScreen(object); child; child = __ostrelDOMAPI.nextSibling(child)) {
        // Also asked of a child without extent: what stands in it may still be visible.
        found = __ostrel__childAt(child, relX, relY);
        if (found && !__ostrel__isGlassPane(found)) {
            foundRect = __ostrel__getScreenRectAsObject(found);
            if (foundRect.width <= minimal.width && foundRect.height <= minimal.height) {
                return found;
            }
        }
    }
    return isValid ? object : null;
}

/**
 * @param {Object} object
 * @return {Object|null|undefined} the first child to look at: a frame's document, a document's body, or the first node
 */
function __ostrel__firstChildOnScreen(object) {
    var child = __ostrel__documentOfHookedFrame(object) || __ostrelDOMAPI.firstChild(object);
    if (child && child.tagName === 'HTML') {
        return __ostrelDOMAPI.nextSibling(__ostrelDOMAPI.firstChild(child));
    }
    return child;
}

/**
 * @param {Object} object
 * @return {Document|undefined} of a frame element that is hooked; others cannot be entered
 */
function __ostrel__documentOfHookedFrame(object) {
    var doc;
    if (object.tagName !== 'IFRAME' && object.tagName !== 'FRAME') {
        return undefined;
    }
    try {
        doc = object.contentWindow.document;
        return doc.__ostrel__hooked__events ? doc : undefined;
    } catch (e) {
        return undefined; // a document of another origin
    }
}

/**
 * @param {Object} object
 * @return {boolean} whether this is an element that a page lays over others, and that no user means
 */
function __ostrel__isGlassPane(object) {
    var panes = window.top.__ostrel;
    return Ostrel.arrayIndexOf(panes.glassPaneIds, object.id) !== -1 ||
        Ostrel.arrayIndexOf(panes.glassPaneClassNames, object.className) !== -1;
}

/**
 * @param {{width: number, height: number}} rect
 * @return {boolean}
 */
function __ostrel__hasExtent(rect) {
    return rect.width > 0 && rect.height > 0;
}

/**
 * @param {{x: number, y: number, width: number, height: number}} rect
 * @param {number} x
 * @param {number} y
 * @return {boolean} true also on each of the four edges
 */
function __ostrel__containsPoint(rect, x, y) {
    return x >= rect.x && x <= rect.x + rect.width && y >= rect.y && y <= rect.y + rect.height;
}
