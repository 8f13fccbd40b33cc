// 02h  Window hook-up: takes windows that script opens under our control, and notices when they go.
//
// Defines  __ostrel__hookInWindow, __ostrel__hookupWindow, __ostrel__rehookWindow, __ostrel__open,
//          __ostrel__needToOverrideNativeFunction, __ostrel__overrideNativeFunction,
//          __ostrel__triggerUnloadEventHandler, __ostrel__topLevelUnloadHandler, __ostrel__installUnload,
//          __ostrel__setupInnerTextFunctions, __ostrel__innerText, __ostrel__isWindowOfOtherDomain,
//          __ostrel__isWindowHooked, __ostrel__isWindowReadyForHook, __ostrel__listenInWindow,
//          __ostrel__listenInWindowOfOldIE, __ostrel__logEventOfLastWindow, __ostrel__becomeContextWindowAgain,
//          __ostrel__callReallyOpen
// Calls    __ostrel__handler, __ostrel__logEventByWindow (01b-event-capture), __ostrel__sendXMLHttpRequest
//          (02a-channel), __ostrel__console (02b-console), __ostrel__contextOf, __ostrel__contextOfForUrl,
//          __ostrel__ctxwin, __ostrel__ctxwin_str, __ostrel__isPageLoaded, __ostrel__isSameWindow, __ostrel__wcnt,
//          __ostrel__windows (02c-contexts), __ostrel__alert2, __ostrel__confirm,
//          __ostrel__overrideNativeDialogFunction, __ostrel__prompt (02f-dialogs), __ostrel__mousemove (02g-overlay),
//          __ostrel__framewin, __ostrel__hookFrames (02i-frame-hookup), __ostrel__isEmbeddedIntoHookableToolkit
//          (07-browser-detection), __ostrel__browserHookHandlesWindows (18-helpers)
// At load  defines where innerText comes from

/**
 * The text of an element where the browser has no innerText of its own; extensions may replace it.
 * @param {Element} e
 * @return {string}
 */
window.__ostrel__innerText = function (e) {
    return e.textContent;
};

/**
 * Hooks a window that script opened or that was found anew. A window that shows nothing yet is asked again every second
 * for as long as that takes; one of another domain is left alone for good.
 * @param {Window} w
 */
function __ostrel__hookInWindow(w) {
    if (__ostrel__isWindowOfOtherDomain(w) || __ostrel__isWindowHooked(w)) {
        return;
    }
    if (!__ostrel__isWindowReadyForHook(w)) {
        setTimeout(function () { __ostrel__hookInWindow(w); }, 1000);
        return;
    }
    window.__ostrel__wcnt++;
    window.__ostrel__windows[window.__ostrel__wcnt] = w;
    if (w.document && w.document.addEventListener) {
        __ostrel__listenInWindow(w);
    } else if (w.document) {
        __ostrel__listenInWindowOfOldIE(w);
    }
    __ostrel__hookupWindow(w);
}

/**
 * True when the location of a window cannot be read.
 * @param {Window} w
 * @return {boolean}
 */
function __ostrel__isWindowOfOtherDomain(w) {
    try {
        String(w.location);
        return false;
    } catch (e) {
        return true;
    }
}

/**
 * True when a window stands in our list already.
 * @param {Window} w
 * @return {boolean}
 */
function __ostrel__isWindowHooked(w) {
    var i;

    for (i = 0; i < window.__ostrel__windows.length; i++) {
        if (__ostrel__isSameWindow(window.__ostrel__windows[i], w)) {
            return true;
        }
    }
    return false;
}

/**
 * True when a window has the document that it was opened for. Most browsers show a blank one first, which takes our
 * listeners and is then thrown away; Internet Explorer does not.
 * @param {Window} w
 * @return {boolean}
 */
function __ostrel__isWindowReadyForHook(w) {
    var startsBlank = window.__ostrel__mozilla || window.__ostrel__safari || window.__ostrel__googlechrome ||
            window.__ostrel__chromiumbased,
        accessible;

    try {
        accessible = w.document.attachEvent || w.document.addEventListener;
    } catch (e) {
        accessible = false;
    }
    if (!accessible) {
        return false;
    }
    return !startsBlank || (__ostrel__contextOf(w) !== "" && String(w.location).indexOf("about:blank") === -1);
}

/**
 * Sets the handlers of a hooked window.
 * Kept as is: these are properties, not listeners, so a page that sets the same ones replaces ours.
 * @param {Window} w
 */
function __ostrel__listenInWindow(w) {
    var names = ["onkeyup", "onmousedown", "ondblclick", "onclick"],
        i;

    function logEvent(e) {
        __ostrel__logEventByWindow(e, w);
    }

    for (i = 0; i < names.length; i++) {
        w.document[names[i]] = logEvent;
    }
    // Kept as is: this replaces the innerText of browsers that have one of their own, too.
    __ostrel__setupInnerTextFunctions(w);
}

/**
 * Sets the handlers of a hooked window in an Internet Explorer that has no addEventListener.
 * @param {Window} w
 */
function __ostrel__listenInWindowOfOldIE(w) {
    var names = ["onkeyup", "onmousedown", "ondblclick", "onclick"],
        i;

    for (i = 0; i < names.length; i++) {
        w.document[names[i]] = __ostrel__logEventOfLastWindow;
    }
    w.onunload = function () {
        __ostrel__triggerUnloadEventHandler(w);
        __ostrel__logEventOfLastWindow();
    };
    w.document.attachEvent("onmousemove", __ostrel__mousemove);
}

/**
 * Logs the event of the window that was hooked last.
 * Kept as is: the index is read when the handler runs, so the handlers of all windows address the last one.
 */
function __ostrel__logEventOfLastWindow() {
    __ostrel__logEventByWindow(null, window.__ostrel__windows[window.__ostrel__wcnt]);
}

/**
 * Puts our functions in the place of a window's open and dialog functions.
 * @param {Window} w
 */
function __ostrel__hookupWindow(w) {
    try {
        __ostrel__becomeContextWindowAgain(w);
        if (window.top.__ostrel__newwindowhook === undefined) {
            if (w.__ostrel__hooked__alertAndCo) {
                return;
            }
            w.__ostrel__hooked__alertAndCo = true;
        }
        if (!window.top.__ostrel__newwindowhook && !__ostrel__browserHookHandlesWindows()) {
            __ostrel__overrideNativeFunction(w, "open", __ostrel__open, "__ostrel__reallyOpen");
        }
        __ostrel__overrideNativeDialogFunction(w, "alert", __ostrel__alert2, "__ostrel__origAlert");
        __ostrel__overrideNativeDialogFunction(w, "prompt", __ostrel__prompt, "__ostrel__origPrompt");
        __ostrel__overrideNativeDialogFunction(w, "confirm", __ostrel__confirm, "__ostrel__origConfirm");
    } catch (e) {
        // A window of another origin, which the page may well hold.
    }
}

/**
 * Keeps a chosen context current when its window comes back under the same name. A window without a name never does.
 * @param {Window} w
 */
function __ostrel__becomeContextWindowAgain(w) {
    var name;

    try {
        name = __ostrel__contextOf(w);
        if (window.__ostrel__ctxwin && name !== "" && name === window.__ostrel__ctxwin_str) {
            window.__ostrel__ctxwin = w;
        }
    } catch (e) {
        // The window cannot be named, so it is not the one.
    }
}

/**
 * True when a function is not ours yet. The texts are compared and not the functions, so that one which an earlier hook
 * from another window or page has set is recognised.
 * @param {Function} nativeFunRef the function that stands in the window now
 * @param {Function|string} overrideName our function or its text
 * @return {boolean}
 */
function __ostrel__needToOverrideNativeFunction(nativeFunRef, overrideName) {
    return String(nativeFunRef).indexOf(String(overrideName)) === -1;
}

/**
 * Replaces a function of a window unless that is done.
 * @param {Window} w
 * @param {string} nativeFnName
 * @param {Function} overrideFnRef
 * @param {string} origStoreName member of the window that keeps the original
 */
function __ostrel__overrideNativeFunction(w, nativeFnName, overrideFnRef, origStoreName) {
    if (__ostrel__needToOverrideNativeFunction(w[nativeFnName], overrideFnRef)) {
        w[origStoreName] = w[nativeFnName];
        w[nativeFnName] = overrideFnRef;
    }
}

/**
 * Stands in for window.open, with the opening window as this: tells the host of the new window and hooks it.
 * @param {string} [a1] address
 * @param {string} [a2] name
 * @param {string} [a3] features
 * @param {boolean} [a4] replace the history entry
 * @return {Window|null} what the browser's own function returned, also when a popup blocker refused
 */
function __ostrel__open(a1, a2, a3, a4) {
    var w = __ostrel__callReallyOpen(this, a1, a2, a3, a4),
        ctxwin = window.__ostrel__ctxwin;

    if (!w) {
        return w;
    }
    window.__ostrel__ctxwin = w;
    try {
        __ostrel__sendXMLHttpRequest(document, "eventHandler" + new Date().getTime() + "&name=WindowOpened", true);
    } catch (e) {
        // The page gets its window whether the host hears of it or not.
    }
    window.__ostrel__ctxwin = ctxwin;

    __ostrel__hookInWindow(w);
    window.__ostrel__framewin = w;
    setTimeout(function () { __ostrel__hookFrames(w); }, 2000);
    return w;
}

/**
 * Calls the browser's own open with as many arguments as are needed: it takes one that is left out for something else
 * than one that is undefined.
 * @param {Window} opener
 * @param {string} [a1]
 * @param {string} [a2]
 * @param {string} [a3]
 * @param {boolean} [a4]
 * @return {Window|null}
 */
function __ostrel__callReallyOpen(opener, a1, a2, a3, a4) {
    if (a4) {
        return opener.__ostrel__reallyOpen(a1, a2, a3, a4);
    }
    if (a3) {
        return opener.__ostrel__reallyOpen(a1, a2, a3);
    }
    if (a2) {
        return opener.__ostrel__reallyOpen(a1, a2);
    }
    return opener.__ostrel__reallyOpen(a1);
}

/**
 * Hooks a window again after it was loaded anew.
 * @param {Window} w
 */
function __ostrel__rehookWindow(w) {
    try {
        __ostrel__hookInWindow(w);
        window.__ostrel__framewin = w;
        setTimeout(function () { __ostrel__hookFrames(w); }, 2000);
    } catch (e) {
        // It went to another domain or was closed.
    }
}

/**
 * Tells the host that the document of a window goes. The request is asynchronous on all browsers: a synchronous one
 * would deadlock with a host that waits for an object on the next page.
 * @param {Window} win
 * @return {string|undefined} the text of the answer as far as it is there
 */
function __ostrel__triggerUnloadEventHandler(win) {
    if (__ostrel__isEmbeddedIntoHookableToolkit()) {
        return undefined;
    }
    try {
        return __ostrel__sendXMLHttpRequest(
            document,
            "eventHandler" + new Date().getTime() + "&name=BodyUnloaded&location=" + escape(win.location.href) +
                "&context=" + __ostrel__contextOfForUrl(win),
            true
        ).responseText;
    } catch (e) {
        __ostrel__console.log("Ooops: " + e.message);
        return undefined;
    }
}

/**
 * The unload handler of the top window.
 * @param {Event} event
 * @param {Document} [d]
 */
function __ostrel__topLevelUnloadHandler(event, d) {
    __ostrel__triggerUnloadEventHandler(window.top);
    __ostrel__handler(event, d);
}

/**
 * Puts our unload handler back when the page has set one of its own.
 * Kept as is: that of the page is lost, not chained.
 */
function __ostrel__installUnload() {
    if (__ostrel__isPageLoaded() && window.onunload !== __ostrel__topLevelUnloadHandler) {
        window.onunload = __ostrel__topLevelUnloadHandler;
    }
}

/**
 * Gives the elements of a window an innerText, which old Firefox lacks.
 * @param {Window} w
 */
function __ostrel__setupInnerTextFunctions(w) {
    try {
        Object.defineProperty(w.HTMLElement.prototype, "innerText", {
            configurable: true,
            enumerable: true,
            get: function () {
                return window.__ostrel__innerText(this);
            },
            set: function (text) {
                this.textContent = text;
            }
        });
    } catch (e) {
        // A window of another origin, or a browser that does not let us.
    }
}
