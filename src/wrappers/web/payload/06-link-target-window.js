// 06  Link target window: the window that a link or form would load into.
//
// Nothing here calls it; it is there for hooks and extensions.
//
// Defines  __ostrel__findTargetWindow, __ostrel__findFrameRecursive
// Calls    __ostrel.getAllFrames, __ostrel__topWindow (02c-contexts), __ostrel__isFrameElement,
//          __ostrel__matchFrameByName (17b-frame-contexts)
// At load  nothing runs

/**
 * The window that a link or form would load into. The target "_blank" opens a new one.
 * @param {Element} elem
 * @return {Window}
 */
function __ostrel__findTargetWindow(elem) {
    var win = elem.ownerDocument.defaultView,
        frame;

    switch (elem.target || "_self") {
    case "_self":
        return win;
    case "_top":
        return __ostrel__topWindow;
    case "_parent":
        return win.parent;
    case "_blank":
        return window.open("", "_blank");
    }
    frame = __ostrel__findFrameRecursive(__ostrel__topWindow.document, elem.target);
    // A window that was opened under this name cannot be kept as a reference across page loads.
    return frame ? frame.contentWindow : win;
}

/**
 * A frame by id or name at any depth, unlike __ostrel__findFrame, which stays on one level and knows FRAME numbers.
 * @param {Document} [ctxdoc]
 * @param {string} frameName
 * @return {Element|null}
 */
function __ostrel__findFrameRecursive(ctxdoc, frameName) {
    var element, frames, i;

    if (!ctxdoc) {
        return null;
    }
    element = ctxdoc.getElementById(frameName);
    if (!__ostrel__isFrameElement(element)) {
        element = __ostrel__matchFrameByName(ctxdoc, frameName);
    }
    frames = window.top.__ostrel.getAllFrames(ctxdoc);
    for (i = 0; i < frames.length && !element; i++) {
        try {
            element = __ostrel__findFrameRecursive(frames[i].contentWindow.document, frameName);
        } catch (e) {
            // A frame of another origin cannot be looked into.
        }
    }
    return element || null;
}
