// 02i  Frame hook-up: finds the frames of all windows again and again, and listens in those that can be reached.
//
// No event tells when a frame is created, and frames reload at any moment. So hook-up is a sweep that timers repeat,
// and marks on documents and frame elements tell what is done.
//
// Defines  __ostrel__hookFramesOfAllWindows, __ostrel__hookFrames, __ostrel__hookInFrame, __ostrel__isFrameAccessible,
//          __ostrel__frameChanged, __ostrel__rehookFrames__load, __ostrel__rehookFrames__unload,
//          __ostrel__addWindowForLazyHook, __ostrel__lazyHookIE, __ostrel__hookLoadingIE,
//          __ostrel__watchWindowForReload, __ostrel__rehookLastPopup, __ostrel__listenInFrame, __ostrel__frameHandler,
//          __ostrel__frameHandlerOfOldIE, __ostrel__setRehookHandlers, __ostrel__setRehookHandlersOfIE,
//          __ostrel__hookAccessibleFrame, __ostrel__hookWindowWithBody, __ostrel__hasNoSize,
//          __ostrel__callSavedHandler, __ostrel__topmostParent, __ostrel__framewin,
//          __ostrel__popupcnt, __ostrel__popups, __ostrel__lazyHookWindows, __ostrel__lazyHookTimer,
//          __ostrel__rehookLoadLock, __ostrel__rehookUnLoadLock
// Calls    __ostrel__handler, __ostrel__logEvent (01b-event-capture), __ostrel__determineEventObject,
//          __ostrel__srcElement (01c-event-object), __ostrel__install__handler (01e-change-listeners),
//          __ostrel__console (02b-console), __ostrel.getAllFrames, __ostrel__contextList, __ostrel__isSameWindow,
//          __ostrel__topWindow (02c-contexts), __ostrel__hookInFrame__hooks (02e-hook-lists), __ostrel__mousemove
//          (02g-overlay), __ostrel__hookupWindow, __ostrel__rehookWindow, __ostrel__setupInnerTextFunctions,
//          __ostrel__triggerUnloadEventHandler (02h-window-hookup), __ostrel__qualifiedName (03c-hierarchical-names),
//          __ostrel__hookupTouchEvents (16-touch-recording)
// At load  empties the lists of popups and of windows that wait for a body

window.__ostrel__framewin = undefined;
window.__ostrel__popupcnt = 0;
window.__ostrel__popups = [];
var __ostrel__lazyHookWindows = [];
var __ostrel__lazyHookTimer = null;
var __ostrel__rehookLoadLock = false;
var __ostrel__rehookUnLoadLock = false;

/**
 * The sweep: hooks whatever frames there are now.
 */
function __ostrel__hookFramesOfAllWindows() {
    var list = __ostrel__contextList(),
        i;

    for (i = 0; i < list.length; i++) {
        __ostrel__hookFrames(list[i]);
    }
}

/**
 * Hooks all frames of a window, and watches a window that waits for that in __ostrel__framewin.
 * @param {Window} [w] without it, the waiting window, or ours
 */
function __ostrel__hookFrames(w) {
    var frames, i;

    try {
        w = w || window.__ostrel__framewin || window;
        if (window.__ostrel__framewin && !__ostrel__isSameWindow(window.__ostrel__framewin, __ostrel__topWindow)) {
            __ostrel__watchWindowForReload(window.__ostrel__framewin);
        }
        window.__ostrel__framewin = undefined;
        frames = window.top.__ostrel.getAllFrames(w.document);
        for (i = 0; i < frames.length; i++) {
            frames[i].onreadystatechange = __ostrel__frameChanged;
            __ostrel__hookInFrame(frames[i]);
        }
    } catch (e) {
        // A window that went away or to another origin.
    }
}

/**
 * Sees to it that a window which script opened is hooked again after it reloaded.
 * @param {Window} w
 */
function __ostrel__watchWindowForReload(w) {
    window.__ostrel__popupcnt++;
    window.__ostrel__popups[window.__ostrel__popupcnt] = w;
    if (window.__ostrel__ie && !w.document.body) {
        __ostrel__addWindowForLazyHook(w);
        return;
    }
    w.document.body.old_onunload = w.document.body.onunload;
    if (window.__ostrel__ie) {
        w.document.body.onunload = __ostrel__rehookLastPopup;
    } else {
        w.onunload = __ostrel__rehookLastPopup;
    }
}

/**
 * Unload handler of a watched window: hooks the window watched last, once its next document had time to arrive.
 */
function __ostrel__rehookLastPopup() {
    var popup = window.__ostrel__popups[window.__ostrel__popupcnt];

    setTimeout(function () { __ostrel__rehookWindow(popup); }, 1000);
}

/**
 * Hooks one frame. A frame that cannot be read is asked again for a while and then given up for the life of the
 * element.
 * @param {Element} f
 */
function __ostrel__hookInFrame(f) {
    var w = f.contentWindow,
        accessible;

    if (!w || f.__ostrel__unhookable) {
        return;
    }
    accessible = __ostrel__isFrameAccessible(f);
    if (accessible === null) {
        setTimeout(function () { __ostrel__hookInFrame(f); }, 250);
        return;
    }
    if (!accessible) {
        f.__ostrel__unhookable = true;
        return;
    }
    try {
        __ostrel__hookAccessibleFrame(f, w);
    } catch (e) {
        __ostrel__console.log("Could not hook up frame " + __ostrel__qualifiedName(f) + " showing " + f.src + ": " + e);
    }
}

/**
 * Hooks a frame whose document can be read. For a document that is hooked already only its own frames may be new.
 * @param {Element} f
 * @param {Window} w the frame's window
 */
function __ostrel__hookAccessibleFrame(f, w) {
    var hooks, i;

    if (w.document.__ostrel__hooked__events) {
        __ostrel__hookFrames(w);
        return;
    }
    w.document.__ostrel__hooked__events = true;
    __ostrel__listenInFrame(w);
    if (!window.__ostrel__ie) {
        __ostrel__setRehookHandlers(w);
    } else if (!__ostrel__hasNoSize(f)) {
        __ostrel__setRehookHandlersOfIE(w);
    }
    if (window.__ostrel__mozilla) {
        __ostrel__setupInnerTextFunctions(w);
    }
    hooks = window.top.__ostrel__hookInFrame__hooks;
    for (i = 0; i < hooks.length; i++) {
        hooks[i](f);
    }
    __ostrel__hookupWindow(w);
    __ostrel__hookFrames(w);
}

/**
 * Tells whether a frame's document can be read. Each call that finds it cannot uses up one of the frame's retries.
 * @param {Element} frm
 * @return {boolean|null} null when the caller is to ask again
 */
function __ostrel__isFrameAccessible(frm) {
    var MAX_RETRY_COUNT = 5,
        locationError, documentError, text;

    try {
        if (frm.contentWindow.location) {
            try {
                if (frm.contentWindow.document) {
                    return true;
                }
            } catch (e) {
                documentError = String(e);
            }
        }
    } catch (e) {
        locationError = String(e);
    }

    if (!(frm.retryCount <= MAX_RETRY_COUNT && Math.floor(frm.retryCount) === frm.retryCount)) {
        frm.retryCount = MAX_RETRY_COUNT;
    }
    if (frm.retryCount > 0) {
        frm.retryCount--;
        return null;
    }

    // A lookup that is repeated until its object is there asks again and again.
    if (frm.__ostrel__toldInaccessible) {
        return false;
    }
    frm.__ostrel__toldInaccessible = true;
    text = "Not hooking up frame: " + __ostrel__qualifiedName(frm) + " showing " + frm.src;
    if (locationError) {
        text += "\nError accessing location: " + locationError;
    }
    if (documentError) {
        text += "\nError accessing document: " + documentError;
    }
    __ostrel__console.log(text);
    return false;
}

/**
 * Sets our listeners on the document of a frame. Unlike on the top document a keydown goes to the handler, too.
 * @param {Window} w
 */
function __ostrel__listenInFrame(w) {
    var names = ["keyup", "mousedown", "click", "dblclick", "keydown"],
        doc = w.document,
        i;

    if (!doc.addEventListener) {
        for (i = 0; i < names.length; i++) {
            doc.attachEvent("on" + names[i], __ostrel__frameHandlerOfOldIE);
        }
        doc.attachEvent("onfocus", __ostrel__install__handler);
        doc.attachEvent("onmousemove", __ostrel__mousemove);
        return;
    }
    for (i = 0; i < names.length; i++) {
        doc.addEventListener(names[i], __ostrel__frameHandler, true);
    }
    doc.addEventListener("focus", __ostrel__install__handler, true);
    doc.addEventListener("mousemove", __ostrel__mousemove, true);
    __ostrel__hookupTouchEvents(w);
}

/**
 * Listener of frames, with the frame's document as this.
 * @param {Event} e
 */
function __ostrel__frameHandler(e) {
    __ostrel__handler(e, this);
}

/**
 * Listener of frames of an Internet Explorer without addEventListener, where the event is looked for in the windows.
 */
function __ostrel__frameHandlerOfOldIE() {
    __ostrel__handler(undefined, this);
}

/**
 * True for a frame with a height or width attribute that makes it vanish. Internet Explorer then has no use for load
 * and unload handlers.
 * @param {Element} f
 * @return {boolean}
 */
function __ostrel__hasNoSize(f) {
    var height = f.getAttribute("height"),
        width = f.getAttribute("width");

    return !!((height && !(parseFloat(height) > 0)) || (width && !(parseFloat(width) > 0)));
}

/**
 * Puts our load and unload handlers on the window of a frame, or on a body, unless they are there.
 * @param {Window|Element} holder
 */
function __ostrel__setRehookHandlers(holder) {
    if (holder.onunload !== __ostrel__rehookFrames__unload) {
        holder.old_onunload = holder.onunload;
        holder.onunload = __ostrel__rehookFrames__unload;
    }
    if (holder.onload !== __ostrel__rehookFrames__load) {
        holder.old_onload = holder.onload;
        holder.onload = __ostrel__rehookFrames__load;
    }
}

/**
 * The same for Internet Explorer, which wants them on the body.
 * @param {Window} w
 */
function __ostrel__setRehookHandlersOfIE(w) {
    if (w.document.body) {
        __ostrel__setRehookHandlers(w.document.body);
    } else {
        __ostrel__addWindowForLazyHook(w);
    }
}

/**
 * Handler of readystatechange on frame elements.
 * @param {Event} [e]
 */
function __ostrel__frameChanged(e) {
    var f = __ostrel__srcElement(__ostrel__determineEventObject(e, window));

    __ostrel__hookupWindow(f.contentWindow);
    if (f.readyState === "interactive") {
        __ostrel__logEvent("__clear__", f.contentWindow);
    }
}

/**
 * Load handler of frames, with the frame's window as this.
 * Kept as is: the call of __ostrel__logEvent raises, so the lock stays set and later loads end at it. The sweep finds
 * the frame's new content instead.
 */
function __ostrel__rehookFrames__load() {
    var w = __ostrel__topmostParent(this);

    window.__ostrel__framewin = w;
    if (__ostrel__rehookLoadLock) {
        return;
    }
    __ostrel__rehookLoadLock = true;
    __ostrel__callSavedHandler(this, "old_onload");
    __ostrel__logEvent("__clear__");
    setTimeout(function () { __ostrel__hookFrames(w); }, 2000);
    __ostrel__rehookLoadLock = false;
}

/**
 * Unload handler of frames, with the frame's window as this.
 * Kept as is: as in the load handler, what follows the call of __ostrel__logEvent does not run.
 */
function __ostrel__rehookFrames__unload() {
    var w;

    try {
        w = __ostrel__topmostParent(this);
        window.__ostrel__framewin = w;
    } catch (e) {
        // The way up is gone already; the frames of our window are swept anyhow.
    }
    if (__ostrel__rehookUnLoadLock) {
        return;
    }
    __ostrel__rehookUnLoadLock = true;
    __ostrel__callSavedHandler(this, "old_onunload");
    __ostrel__logEvent("__clear__");
    __ostrel__triggerUnloadEventHandler(this);
    setTimeout(function () { __ostrel__hookFrames(w); }, 2000);
    __ostrel__rehookUnLoadLock = false;
}

/**
 * The outermost window above a window.
 * @param {Window} w
 * @return {Window}
 */
function __ostrel__topmostParent(w) {
    while (w.parent && !__ostrel__isSameWindow(w.parent, w)) {
        w = w.parent;
    }
    return w;
}

/**
 * Calls the page's own handlers, for which ours stand in: that of the body, then that of the window.
 * @param {Window} w
 * @param {string} name
 */
function __ostrel__callSavedHandler(w, name) {
    var holders = [function () { return w.document.body; }, function () { return w; }],
        holder, i;

    for (i = 0; i < holders.length; i++) {
        try {
            holder = holders[i]();
            if (holder[name]) {
                holder[name]();
                holder[name] = null;
            }
        } catch (e) {
            // The page's handler failed, which is the page's affair.
        }
    }
}

/**
 * Lets a window without a body wait for one. Only Internet Explorer needs this: its body takes the handlers.
 * @param {Window} w
 */
function __ostrel__addWindowForLazyHook(w) {
    __ostrel__lazyHookWindows.push(w);
    if (__ostrel__lazyHookTimer === null) {
        __ostrel__lazyHookTimer = setInterval(__ostrel__lazyHookIE, 100);
    }
}

/**
 * Hooks the waiting windows that have a body by now. Those without one, or with an error, wait for the next tick.
 */
function __ostrel__lazyHookIE() {
    var waiting = [],
        windows = __ostrel__lazyHookWindows,
        i;

    if (windows.length === 0) {
        clearInterval(__ostrel__lazyHookTimer);
        __ostrel__lazyHookTimer = null;
        return;
    }
    // The calls below may add windows, so they find a new list.
    __ostrel__lazyHookWindows = [];
    for (i = 0; i < windows.length; i++) {
        if (!__ostrel__hookWindowWithBody(windows[i])) {
            waiting.push(windows[i]);
        }
    }
    __ostrel__lazyHookWindows = waiting.concat(__ostrel__lazyHookWindows);
}

/**
 * Hooks a waiting window if it has a body.
 * @param {Window} w
 * @return {boolean} whether it need not wait any longer
 */
function __ostrel__hookWindowWithBody(w) {
    try {
        if (!w.document.body) {
            return false;
        }
        __ostrel__hookLoadingIE(w);
        __ostrel__hookupWindow(w);
        __ostrel__hookFrames(w);
        return true;
    } catch (e) {
        return false;
    }
}

/**
 * Puts our load and unload handlers on the body of a window, unless they are there.
 * @param {Window} w
 */
function __ostrel__hookLoadingIE(w) {
    __ostrel__setRehookHandlers(w.document.body);
}
