// 17g  Scrolling: brings an element into view.
//
// Defines  __ostrel__scrollToElement, __ostrel__knowsInstantScrolling
// Calls    nothing
// At load  nothing runs

/**
 * Scrolls an element into view. Nothing happens for what cannot be scrolled to, such as a document.
 * @param {Node} e
 * @param {boolean} top whether the element comes to the top of the view rather than to its bottom
 */
function __ostrel__scrollToElement(e, top) {
    if (!e) {
        return;
    }
    try {
        if (__ostrel__knowsInstantScrolling()) {
            e.scrollIntoView({ block: top ? "start" : "end", behavior: "instant" });
        } else {
            e.scrollIntoView(top);
        }
    } catch (notScrollable) {
        // Documents and text nodes.
    }
}

/**
 * Pages may ask for smooth scrolling. Where the browser can be told not to, it is, since the coordinates
 * that are read next must be those of the end.
 * @return {boolean}
 */
function __ostrel__knowsInstantScrolling() {
    var version = window.top.__ostrel.browsermajorversion;

    return !!((window.top.__ostrel__mozilla && version >= 36) ||
        (window.top.__ostrel__googlechrome && version >= 61));
}
