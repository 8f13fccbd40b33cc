// 02c  Contexts: the text names of windows and frames, and the windows that stand behind them.
//
// A context name such as "index.html<2>.FRAME2.FRAME1" is stored in object names, in events and in scripts and has to
// survive a reload, so it is built from what the page shows and never from an object. Locations change under a test:
// every name is computed anew at each use.
//
// Defines  __ostrel__contextOf, __ostrel__contextOfForUrl, __ostrel__contextList, __ostrel__currentContext,
//          __ostrel__windowOfDocument,
//          __ostrel__findContext, __ostrel__findContext2, __ostrel__findContextWindow, __ostrel__findDocument,
//          __ostrel__hasContext, __ostrel__setContext, __ostrel__documentOfContext, __ostrel__isPageLoaded,
//          __ostrel__frameInWindow, __ostrel__topmostReachableWindow, __ostrel__fileNameOfLocation,
//          __ostrel__isSameWindow, window.top.__ostrel.getAllFrames,
//          __ostrel__windows, __ostrel__wcnt, __ostrel__ctxwin, __ostrel__ctxwin_str, __ostrel__explicitContext,
//          __ostrel__topWindow
// Calls    __ostrel__getDocumentForNode (02d-classification), __ostrel__oncePerReading (08-object-tree)
// At load  empties the list of windows and makes the payload's window the search window

window.__ostrel__windows = [];
window.__ostrel__wcnt = -1;
window.__ostrel__ctxwin = window;
window.__ostrel__ctxwin_str = "";
window.__ostrel__explicitContext = undefined;
var __ostrel__topWindow = null;

/**
 * The context name of a window or frame. It is not escaped, because lookups compare unescaped names.
 * @param {Window} w
 * @param {boolean} [noUnify] leave out the mark that tells windows of one name apart
 * @return {string} "" for a window that is missing, closed or of another origin
 */
function __ostrel__contextOf(w, noUnify) {
    var place, name, count;

    try {
        if (!w || w.closed) {
            return "";
        }
        place = __ostrel__topmostReachableWindow(w);
        name = __ostrel__fileNameOfLocation(String(place.window.location));
        if (!noUnify) {
            count = __ostrel__findContext(name, place.window);
            if (count > 1) {
                name += "<" + count + ">";
            }
        }
        return name + place.framePath;
    } catch (e) {
        return "";
    }
}

/**
 * Climbs from a frame to the outermost window that may be read. A parent of another origin ends the climb.
 * @param {Window} w
 * @return {{window: Window, framePath: string}} the window reached and the way down from it, as ".FRAME2.FRAME1"
 */
function __ostrel__topmostReachableWindow(w) {
    var framePath = "";

    try {
        while (w.parent && !__ostrel__isSameWindow(w.parent, w)) {
            framePath = ".FRAME" + __ostrel__frameInWindow(w.frameElement, w.parent) + framePath;
            w = w.parent;
        }
    } catch (e) {
        // What was reached so far stands for the top.
    }
    return { window: w, framePath: framePath };
}

/**
 * The last path segment of an address, without query, fragment and parameters.
 * @param {string} address
 * @return {string} "top" for a data address, "index.html" for one that ends in a slash
 */
function __ostrel__fileNameOfLocation(address) {
    var query;

    if (address.indexOf("data:") === 0) {
        address = "/top";
    }
    if (address.charAt(address.length - 1) === "/") {
        address += "index.html";
    }
    query = address.indexOf("?");
    address = address.substring(address.lastIndexOf("/", query === -1 ? address.length - 1 : query) + 1);
    return address.split("?")[0].split("#")[0].split(";")[0];
}

/**
 * Compares two windows. Old Internet Explorer hands out several proxies of one window, which it calls different when
 * compared strictly and equal when not.
 * @param {Window} a
 * @param {Window} b
 * @return {boolean}
 */
function __ostrel__isSameWindow(a, b) {
    return a == b; // eslint-disable-line eqeqeq -- see above
}

/**
 * The context name in the form in which it goes into an address or an object name.
 * @param {Window} w
 * @return {string}
 */
function __ostrel__contextOfForUrl(w) {
    return escape(__ostrel__contextOf(w));
}

/**
 * The windows that a search goes through: ours, then the hooked ones that are open and can be named.
 * @return {Array.<Window>}
 */
function __ostrel__contextList() {
    var list = [window],
        i;

    for (i = 0; i < window.__ostrel__windows.length; i++) {
        if (__ostrel__contextOf(window.__ostrel__windows[i]) !== "") {
            list.push(window.__ostrel__windows[i]);
        }
    }
    return list;
}

/**
 * The window or frame that holds a node.
 * @param {Node} [o]
 * @return {Window} the payload's window also when no window is found, as for text nodes, which have no document here
 */
function __ostrel__currentContext(o) {
    var doc = o ? __ostrel__getDocumentForNode(o) : null;

    return doc ? __ostrel__oncePerReading("window", doc, __ostrel__windowOfDocument) : window;
}

/**
 * @param {Document} doc
 * @return {Window} the payload's own for a document that no window shows
 */
function __ostrel__windowOfDocument(doc) {
    var list, found, i;

    list = __ostrel__contextList();
    for (i = 0; i < list.length; i++) {
        found = __ostrel__findDocument(list[i], doc);
        if (found) {
            return found;
        }
    }
    return window;
}

/**
 * Finds the window of a document, in a window and its frames, depth first.
 * @param {Window} w
 * @param {Document} doc
 * @return {Window|undefined}
 */
function __ostrel__findDocument(w, doc) {
    var frames, found, i;

    if (w.document === doc) {
        return w;
    }
    frames = window.top.__ostrel.getAllFrames(w.document);
    for (i = 0; i < frames.length; i++) {
        try {
            found = __ostrel__findDocument(frames[i].contentWindow, doc);
            if (found) {
                return found;
            }
        } catch (e) {
            // A frame of another origin: what we look for cannot be in it.
        }
    }
    return undefined;
}

/**
 * The number of windows, up to and including a given one, that share a name. It reflects the order in which windows
 * were hooked.
 * @param {string} ctx name without uniqueness mark
 * @param {Window} w
 * @return {number}
 */
function __ostrel__findContext(ctx, w) {
    var windows = [window].concat(window.__ostrel__windows),
        count = 0,
        i;

    for (i = 0; i < windows.length; i++) {
        if (__ostrel__contextOf(windows[i], true) === ctx) {
            count++;
            if (__ostrel__isSameWindow(windows[i], w)) {
                break;
            }
        }
    }
    return count;
}

/**
 * The window or frame of a context name.
 * @param {string} ctx
 * @return {Window|undefined} nothing for an empty name: windows that have no name of their own do not answer to it
 */
function __ostrel__findContext2(ctx) {
    var windows = [window].concat(window.__ostrel__windows),
        list, found, i;

    if (!ctx) {
        return undefined;
    }
    for (i = 0; i < windows.length; i++) {
        if (__ostrel__contextOf(windows[i]) === ctx) {
            return windows[i];
        }
    }
    list = __ostrel__contextList();
    for (i = 0; i < list.length; i++) {
        found = __ostrel__findContextWindow(list[i], ctx);
        if (found) {
            return found;
        }
    }
    return undefined;
}

/**
 * The frame of a context name below a window, depth first.
 * @param {Window} w
 * @param {string} ctx
 * @return {Window|undefined}
 */
function __ostrel__findContextWindow(w, ctx) {
    var frames = window.top.__ostrel.getAllFrames(w.document),
        frame, found, i;

    for (i = 0; i < frames.length; i++) {
        try {
            frame = frames[i].contentWindow;
            found = __ostrel__contextOf(frame) === ctx ? frame : __ostrel__findContextWindow(frame, ctx);
            if (found) {
                return found;
            }
        } catch (e) {
            // A frame of another origin has no context of ours.
        }
    }
    return undefined;
}

/**
 * Tells whether a window or frame of this name is there.
 * @param {string} ctx
 * @return {boolean}
 */
function __ostrel__hasContext(ctx) {
    try {
        return !!__ostrel__findContext2(ctx);
    } catch (e) {
        return false;
    }
}

/**
 * Chooses the window in which searches start and to which names are relative. The text is kept also when no window has
 * it, so that a window that appears later under this name becomes the search window.
 * @param {string} ctx
 * @return {boolean} whether there is such a window
 */
function __ostrel__setContext(ctx) {
    var found;

    window.__ostrel__ctxwin_str = ctx;
    found = __ostrel__findContext2(ctx);
    if (!found) {
        return false;
    }
    window.__ostrel__ctxwin = found;
    window.__ostrel__explicitContext = found;
    return true;
}

/**
 * The document of a context.
 * @param {string} context name as it stands in a hierarchical name, with "|" for "."; "" means the search window
 * @return {Document|undefined} nothing for an unknown name when the host wants that to be an error
 */
function __ostrel__documentOfContext(context) {
    var name = context.replace(/\|/g, "."),
        found = window.__ostrel__ctxwin;

    if (name !== "") {
        if (__ostrel__hasContext(name)) {
            found = __ostrel__findContext2(name);
        } else if (window.top.__ostrel__throwErrorForUnknownContextName) {
            return undefined;
        }
    }
    return found.document;
}

/**
 * True when the payload's own document has been loaded with everything in it.
 * @return {boolean}
 */
function __ostrel__isPageLoaded() {
    return document.readyState === "complete";
}

/**
 * The position of a frame element in a window.
 * @param {Element} frm
 * @param {Window} w
 * @return {number} counted from 1; 0 when the frame is not among those of the window's document
 */
function __ostrel__frameInWindow(frm, w) {
    var frames = window.top.__ostrel.getAllFrames(w.document),
        i;

    for (i = 0; i < frames.length; i++) {
        if (frames[i] === frm) {
            return i + 1;
        }
    }
    return 0;
}

/**
 * The frame elements of a document, in document order. Everything that reaches into frames gets them from here.
 * @param {Document} ctxdoc
 * @return {Array.<Element>}
 */
window.top.__ostrel.getAllFrames = function (ctxdoc) {
    var found = ctxdoc.querySelectorAll("iframe,frame"),
        frames = [],
        i;

    for (i = 0; i < found.length; i++) {
        frames.push(found[i]);
    }
    return frames;
};
