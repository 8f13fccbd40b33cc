// 17b  Frame contexts: frames by path, such as "menu.FRAME2", below the payload's window.
//
// Defines  __ostrel__setFrameContext, __ostrel__hasFrameContext, __ostrel__findFrame, __ostrel__findFrameDocument,
//          __ostrel__matchFrameByName, __ostrel__isFrameElement, __ostrel__walkFrames
// Calls    __ostrel.getAllFrames, __ostrel__ctxwin (02c-contexts)
// At load  nothing runs

/**
 * Makes a frame the search window. The explicitly chosen context, to which names are relative, stays as it is.
 * @param {string} frameId ids, names or FRAME numbers of nested frames, joined by "."
 * @return {boolean} whether there is such a frame
 */
function __ostrel__setFrameContext(frameId) {
    var parts = frameId.split("."),
        last = parts.pop(),
        way = __ostrel__walkFrames(parts),
        frame;

    if (!way.found) {
        return false;
    }
    try {
        frame = __ostrel__findFrame(way.document, last);
        if (!frame) {
            return false;
        }
        window.__ostrel__ctxwin = frame.contentWindow;
        return true;
    } catch (e) {
        return false;
    }
}

/**
 * Tells whether there is a frame of this path whose document can be read.
 * @param {string} frameId as for __ostrel__setFrameContext
 * @return {boolean}
 */
function __ostrel__hasFrameContext(frameId) {
    return __ostrel__walkFrames(frameId.split(".")).found;
}

/**
 * Goes down from frame to frame, beginning in the payload's document.
 * @param {Array.<string>} parts
 * @return {{document: Document, found: boolean}} the document reached, and whether every part led to one
 */
function __ostrel__walkFrames(parts) {
    var way = { document: window.document, found: true },
        next, i;

    for (i = 0; i < parts.length; i++) {
        try {
            next = __ostrel__findFrameDocument(way.document, parts[i]);
            if (!next) {
                way.found = false;
                break;
            }
            way.document = next;
        } catch (e) {
            // Kept as is: the walk goes on in the old document, though its answer is settled.
            way.found = false;
        }
    }
    return way;
}

/**
 * The document of a frame.
 * @param {Document} ctxdoc
 * @param {string} frame as for __ostrel__findFrame
 * @return {Document|undefined}
 */
function __ostrel__findFrameDocument(ctxdoc, frame) {
    var element = __ostrel__findFrame(ctxdoc, frame);

    return element ? element.contentWindow.document : undefined;
}

/**
 * A frame of a document by id, by name, or by its position as in "FRAME2".
 * @param {Document} ctxdoc
 * @param {string} frame
 * @return {Element|undefined}
 */
function __ostrel__findFrame(ctxdoc, frame) {
    var element = ctxdoc.getElementById(frame),
        position;

    if (__ostrel__isFrameElement(element)) {
        return element;
    }
    element = __ostrel__matchFrameByName(ctxdoc, frame);
    if (element) {
        return element;
    }
    position = /FRAME(\d+)/.exec(frame);
    return position ? window.top.__ostrel.getAllFrames(ctxdoc)[Number(position[1]) - 1] : undefined;
}

/**
 * The first frame of a document that has a name.
 * @param {Document} ctxdoc
 * @param {string} name
 * @return {Element|undefined}
 */
function __ostrel__matchFrameByName(ctxdoc, name) {
    var frames = window.top.__ostrel.getAllFrames(ctxdoc),
        i;

    for (i = 0; i < frames.length; i++) {
        if (frames[i].name === name) {
            return frames[i];
        }
    }
    return undefined;
}

/**
 * True for the elements that hold a document of their own.
 * @param {Element} [element]
 * @return {boolean}
 */
function __ostrel__isFrameElement(element) {
    return !!element && (element.tagName === "IFRAME" || element.tagName === "FRAME");
}
