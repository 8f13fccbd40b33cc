// 22  Focus test: tells whether an element has the keyboard focus, through frames and shadow trees.
//
// Defines  window.top.__ostrel.hasFocus, __ostrel__findFocusedDocument, __ostrel__framesHaveFocus
// Calls    __ostrel__currentContext (02c-contexts), __ostrel__isShadowRoot (02d-classification)
// At load  the member of window.top.__ostrel is set

/**
 * True when a key press would reach the element, provided that the browser window has the focus.
 * @param {Element} element
 * @return {boolean}
 */
window.top.__ostrel.hasFocus = function (element) {
    var doc = __ostrel__findFocusedDocument(element);
    var win;

    if (!doc) {
        return false;
    }
    win = doc.defaultView !== undefined ? doc.defaultView : __ostrel__currentContext(element);
    return !win || win === window.top || __ostrel__framesHaveFocus(win);
};

/**
 * The document in which the element, or the outermost shadow host around it, is the active element. Each
 * shadow tree has an active element of its own, and for the tree outside the host takes its place.
 * @param {Element} element
 * @return {(Document|undefined)} undefined when some tree on the way has another active element
 */
function __ostrel__findFocusedDocument(element) {
    var doc = element.ownerDocument;

    if (element.getRootNode) {
        doc = element.getRootNode();
        while (__ostrel__isShadowRoot(doc)) {
            if (doc.activeElement !== element) {
                return undefined;
            }
            element = doc.host;
            doc = element.getRootNode();
        }
    }
    return doc.activeElement === element ? doc : undefined;
}

/**
 * @param {Window} win
 * @return {boolean} whether each frame on the way up is the active element of the window that holds it
 */
function __ostrel__framesHaveFocus(win) {
    while (win.frameElement) {
        if (win.parent.document.activeElement !== win.frameElement) {
            return false;
        }
        win = win.parent;
    }
    return true;
}
