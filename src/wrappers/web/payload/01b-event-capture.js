// 01b  Event capture: decides which browser events are recorded or picked, and sends their text.
//
// Defines  __ostrel__handler, __ostrel__logEventByWindow, __ostrel__logEvent, __ostrel__logUnload,
//          __ostrel__isPress, __ostrel__windowForRecording, __ostrel__useContextWindow, __ostrel__swallowEvent,
//          __ostrel__recordedEventText, __ostrel__isNotRecorded, __ostrel__recordingFilters,
//          __ostrel__contextParameter, __ostrel__canSendAsynchronously, __ostrel__isSelectField,
//          __ostrel__isHookedWasmCanvas, __ostrel__rememberSelectEvent, __ostrel__lastSelectEvent,
//          __ostrel__lastSelectEventObject
// Calls    __ostrel__getLogEventUrl, __ostrel__sendLogEventData, __ostrel__tabIdLogEventParameter (01a-log-event),
//          __ostrel__determineEventObject, __ostrel__eventObject, __ostrel__findEvent, __ostrel__rootOf,
//          __ostrel__srcElement (01c-event-object), __ostrel__eventToStr (01d-event-text), __ostrel__install__handler
//          (01e-change-listeners), __ostrel__asyncWaitRequest (02a-channel), __ostrel__contextOfForUrl,
//          __ostrel__ctxwin, __ostrel__findDocument (02c-contexts), __ostrel__getDocumentForNode
//          (02d-classification), __ostrel__checkForObjectOverlayRelatedEvent, __ostrel__logPickEvent,
//          __ostrel__pickableObject (02g-overlay), __ostrel__recordTouchEvents (16-touch-recording),
//          __ostrel__listContains (23-extension-interface)
// At load  the last select event is forgotten and the list of recording filters is created

/** @type {?Event} The last event on a select, for browsers whose change events cannot be captured. */
var __ostrel__lastSelectEvent = null;
/** @type {?Element} The select of that event. */
var __ostrel__lastSelectEventObject = null;

/**
 * Listener of the top document and, through small wrappers, of the documents of frames.
 *
 * It runs while replaying as well, since the unload of a page and the overlay have to be noticed then.
 *
 * @param {Event=} e the event; without it the windows are searched for one, as old Internet Explorer needs
 * @param {Document|Element=} d the frame's document, or the element of a change listener
 * @return {boolean|undefined} the listener's result
 */
function __ostrel__handler(e, d) {
    var contextBefore = window.__ostrel__ctxwin;
    var found = __ostrel__findEvent(e);
    if (!found) {
        return true;
    }
    var ev = found.event;
    if (__ostrel__isPress(ev)) {
        __ostrel__install__handler(ev, contextBefore);
        if (window.top.__ostrel__recordTouchEvents()) {
            return true; // the touch events of the tap are recorded instead
        }
    }
    var source = __ostrel__srcElement(ev);
    if (window.__ostrel__enableObjectInfoOverlay) {
        try {
            var answer = __ostrel__checkForObjectOverlayRelatedEvent(source, ev);
            if (answer !== undefined) {
                return answer;
            }
        } catch (ignored) {
            // Firefox reports odd source objects on unload, and the unload must go out all the same.
        }
    }
    try {
        __ostrel__useContextWindow(found.win, d, source);
        return __ostrel__logEvent(ev, __ostrel__windowForRecording(found.win, source));
    } finally {
        if (contextBefore) {
            window.__ostrel__ctxwin = contextBefore;
        }
    }
}

/**
 * Listener target of the windows that script opened.
 *
 * @param {?Event} e the event, or nothing where the window's own `event` holds it
 * @param {Window} w the window that the listener belongs to
 */
function __ostrel__logEventByWindow(e, w) {
    var ev = __ostrel__determineEventObject(e, w) || __ostrel__determineEventObject(null, window);
    var contextBefore = window.__ostrel__ctxwin;
    try {
        if (w.document) {
            window.__ostrel__ctxwin = w;
        }
        if (ev && __ostrel__isPress(ev)) {
            __ostrel__install__handler(ev, w);
        }
        __ostrel__logEvent(ev, w);
    } finally {
        window.__ostrel__ctxwin = contextBefore;
    }
}

/**
 * Reports one event: the unload of a page always, a press while picking, everything else while recording.
 *
 * On the way of every key and click of the page, so names and texts are made only while recording.
 *
 * @param {Event|string} e the event
 * @param {Window} w the window whose context goes out with the event
 * @return {boolean|undefined} the listener's result; false keeps the event from the page
 */
function __ostrel__logEvent(e, w) {
    if (!e) {
        return undefined;
    }
    if (e.type === 'unload') {
        __ostrel__logUnload(e);
        return undefined;
    }
    var source = __ostrel__srcElement(e);
    var o = window.__ostrel__pickObject ? __ostrel__pickableObject(source) : __ostrel__eventObject(source);
    // Kept as is: "__clear__" has no source element, so this test raises for it. The reload handlers of frames rely
    // on ending here, and the sweep over the frames does their work.
    if (__ostrel__isHookedWasmCanvas(source)) {
        return undefined;
    }
    __ostrel__rememberSelectEvent(e, o);
    if (window.__ostrel__pickObject) {
        __ostrel__swallowEvent(e);
        if (o && __ostrel__isPress(e)) {
            __ostrel__logPickEvent(e, o, 'event=');
        }
        return false;
    }
    var text = 'event=';
    if (e === '__clear__') {
        text += 'clear';
    } else if (window.__ostrel__recording) {
        if (__ostrel__isNotRecorded(e, source, o)) {
            return undefined;
        }
        text += __ostrel__recordedEventText(e, source, o, w);
    }
    if (text !== 'event=') {
        __ostrel__sendLogEventData(e, text, __ostrel__canSendAsynchronously(e));
    }
    return window.__ostrel__ie ? undefined : true;
}

/**
 * Stops the long poll, runs the page's own unload handler and reports the unload.
 *
 * @param {Event} e the unload event
 */
function __ostrel__logUnload(e) {
    try {
        var poll = window.__ostrel__asyncWaitRequest;
        if (poll.request) {
            poll.startAgain = false;
            poll.request.abort();
        }
    } catch (ignored) {
        // A poll that cannot be stopped ends with the page.
    }
    var pageHandler = window.old_onunload;
    if (pageHandler) {
        // Cleared before the call: Internet Explorer overflowed its stack on a handler that led back here.
        window.old_onunload = null;
        pageHandler.call(window, e);
    }
    if (window.__ostrel__no_unload) {
        return;
    }
    // A proxy has to know of the unload before the next page comes, or that page is not injected.
    var async = !window.top.__ostrel__proxy;
    // Kept as is: the sender puts the same prefix in front once more, and the reader accepts the doubled one.
    __ostrel__sendLogEventData(e, __ostrel__getLogEventUrl('event=unload&object=[Window]'), async);
}

/**
 * @param {Event} e
 * @return {boolean} whether the event is a press or its click
 */
function __ostrel__isPress(e) {
    return e.type === 'mousedown' || e.type === 'click';
}

/**
 * The window whose context goes out with an event: that of the frame that holds the source element.
 *
 * @param {Window} win the window in which the event was found
 * @param {?Node} source the source element
 * @return {Window}
 */
function __ostrel__windowForRecording(win, source) {
    if (!source) {
        return win;
    }
    var root = __ostrel__rootOf(source);
    return (root !== win.document && __ostrel__findDocument(win, root)) || win;
}

/**
 * Makes the window of an event the context window, so that names are made for that window.
 *
 * @param {Window} win the window in which the event was found
 * @param {Document|Element=} d the listener's document; an element has no window and so leaves it to the source
 * @param {?Node} source the source element
 */
function __ostrel__useContextWindow(win, d, source) {
    var contextWindow = d && __ostrel__findDocument(win, d);
    try {
        var doc = __ostrel__getDocumentForNode(source);
        contextWindow = contextWindow || (doc && __ostrel__findDocument(win, doc));
    } catch (ignored) {
        // The source of an unload can be an object without a document.
    }
    if (contextWindow) {
        window.__ostrel__ctxwin = contextWindow;
    }
}

/**
 * Keeps an event from the page in every way that browsers know.
 *
 * @param {Event} e
 */
function __ostrel__swallowEvent(e) {
    e.cancelBubble = true;
    if (e.stopPropagation) {
        e.stopPropagation();
    }
    if (e.preventDefault) {
        e.preventDefault();
    }
}

/**
 * @param {Event} e
 * @param {?Element} o the event's object
 */
function __ostrel__rememberSelectEvent(e, o) {
    if (__ostrel__isSelectField(o)) {
        __ostrel__lastSelectEvent = e;
        __ostrel__lastSelectEventObject = o;
    }
}

/**
 * @param {?Node} o
 * @return {boolean} whether the object is a native select, by its `type`
 */
function __ostrel__isSelectField(o) {
    return !!o && !!o.type && String(o.type).indexOf('select') >= 0;
}

/**
 * A canvas on which a WebAssembly application paints; that application records and picks by a hook of its own.
 *
 * @param {Node} elem not tested for being there
 * @return {boolean}
 */
function __ostrel__isHookedWasmCanvas(elem) {
    return elem.tagName === 'CANVAS' && !!elem.classList &&
        elem.classList.contains('ostrel-qt-application-screen');
}

/**
 * What stands behind "event=" for a recorded event.
 *
 * @param {Event} e
 * @param {Node} source the source element
 * @param {?Element} o the event's object
 * @param {Window} w the window of the event
 * @return {string}
 */
function __ostrel__recordedEventText(e, source, o, w) {
    return __ostrel__eventToStr(e, source, o) + __ostrel__tabIdLogEventParameter() +
        __ostrel__contextParameter(o, w);
}

/**
 * @param {?Element} o the event's object
 * @param {Window} w the window of the event
 * @return {string} the context part of an event text, empty without an object
 */
function __ostrel__contextParameter(o, w) {
    if (!o) {
        return '';
    }
    var win = w;
    if (__ostrel__isSelectField(o)) {
        // The change event of a select does not come through the listeners of its frame.
        win = __ostrel__findDocument(window, __ostrel__getDocumentForNode(o)) || w;
    }
    return '&context=' + __ostrel__contextOfForUrl(win);
}

/**
 * Whether an event may be sent without blocking the page.
 *
 * Firefox below 68 drops a request when the page goes away, as it does after a click on a link or a button. Its key
 * events are sent asynchronously all the same, because keys typed during a blocking request are lost.
 *
 * @param {Event|string} e
 * @return {boolean}
 */
function __ostrel__canSendAsynchronously(e) {
    return !window.__ostrel__mozilla || window.top.__ostrel.browsermajorversion >= 68 ||
        e.type === 'keyup' || e.type === 'keydown';
}

/**
 * @param {Event} e
 * @param {Node} source the source element
 * @param {?Element} o the event's object
 * @return {boolean} whether one of the recording filters keeps the event out of the recording
 */
function __ostrel__isNotRecorded(e, source, o) {
    if (!o) {
        return false;
    }
    for (var i = 0; i < __ostrel__recordingFilters.length; ++i) {
        if (__ostrel__recordingFilters[i](e, source, o)) {
            return true;
        }
    }
    return false;
}

/**
 * The filters, asked in order with the event, its source element and its object. The first true answer drops the event.
 *
 * @type {Array<function(Event, Node, Element): boolean>}
 */
var __ostrel__recordingFilters = [
    /** Opening the item menu of a Backbase combo box. */
    function (e, source, o) {
        return o.className === 'b-combobox-button';
    },
    /** Opening the item menu of a Backbase select. */
    function (e, source, o) {
        return !!o.className && (__ostrel__listContains(o.className, 'b-select-button') ||
            __ostrel__listContains(source.className, 'b-select-button'));
    },
    /** A press on a Backbase select that does not hit one of its options. */
    function (e, source, o) {
        return __ostrel__listContains(o.className, 'b-select') &&
            !__ostrel__listContains(source.className, 'b-option');
    },
    /** The arrows of a spinner act on the press already. */
    function (e, source, o) {
        return e.type === 'click' && (__ostrel__listContains(o.className, 'b-spinner-arrowup') ||
            __ostrel__listContains(o.className, 'b-spinner-arrowdown'));
    },
    /** Applets are recorded by the wrapper of their own toolkit. */
    function (e, source, o) {
        return o.tagName === 'APPLET';
    },
    /** WebAssembly applications are recorded by their own hook. */
    function (e, source, o) {
        return __ostrel__isHookedWasmCanvas(o);
    }
];
