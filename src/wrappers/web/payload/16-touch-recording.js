// 16  Touch recording: records taps on platforms where a tap is the natural input, and picks by touch everywhere.
//
// Such a platform gives mouse events for a tap too, and these cannot be told from real ones. Hence it records either
// by touch or by mouse, never both.
//
// Defines  __ostrel__emulateViaTouchEvents, __ostrel__recordTouchEvents, __ostrel__hookupTouchEvents,
//          __ostrel__captureAndPrevent, __ostrel__touchstart, __ostrel__touchend, __ostrel__tapTouch,
//          __ostrel__recordTap
// Calls    __ostrel.lastTouches (namespace), __ostrel__sendLogEventData, __ostrel__tabIdLogEventParameter
//          (01a-log-event), __ostrel__isHookedWasmCanvas, __ostrel__swallowEvent (01b-event-capture),
//          __ostrel__eventObject (01c-event-object), __ostrel__eventToStr (01d-event-text),
//          __ostrel__contextOfForUrl, __ostrel__findDocument (02c-contexts), __ostrel__getDocumentForNode
//          (02d-classification), __ostrel__logPickEvent (02g-overlay), __ostrel__isAndroidWebViewBrowser,
//          __ostrel__isCocoaTouchWebViewBrowser, __ostrel__isProxyOnMobileDevice (07-browser-detection)
// At load  nothing runs

/**
 * @return {boolean} whether touches are the natural input on this platform
 */
function __ostrel__emulateViaTouchEvents() {
    return !!(__ostrel__isCocoaTouchWebViewBrowser() || __ostrel__isAndroidWebViewBrowser() ||
        __ostrel__isProxyOnMobileDevice());
}

/**
 * @return {boolean} whether touches are recorded on this platform, in the place of mouse events
 */
function __ostrel__recordTouchEvents() {
    return __ostrel__emulateViaTouchEvents();
}

/**
 * Listens to the touches in a window.
 *
 * @param {Window} win
 */
function __ostrel__hookupTouchEvents(win) {
    try {
        win.document.addEventListener('touchstart', __ostrel__touchstart, __ostrel__captureAndPrevent());
        win.document.addEventListener('touchend', __ostrel__touchend, true);
    } catch (ignored) {
        // A window of another origin is not listened to.
    }
}

/**
 * How to listen to the start of touches. Present browsers take a listener of a whole document for passive and then
 * ignore that it prevents the default, which the picker has to do. Old browsers read any object as "capture".
 *
 * @return {{capture: boolean, passive: boolean}}
 */
function __ostrel__captureAndPrevent() {
    return { capture: true, passive: false };
}

/**
 * Listener that remembers where a tap begins.
 *
 * @param {?TouchEvent} ev
 * @return {boolean} the listener's result
 */
function __ostrel__touchstart(ev) {
    if (!ev) {
        return true;
    }
    if (window.__ostrel__pickObject || window.__ostrel__recording) {
        window.top.__ostrel.lastTouches = ev.targetTouches;
        if (window.__ostrel__pickObject) {
            __ostrel__swallowEvent(ev);
            return false;
        }
    }
    return true;
}

/**
 * Listener that picks or records when a tap ends where it began.
 *
 * @param {?TouchEvent} ev
 * @return {boolean|undefined} the listener's result
 */
function __ostrel__touchend(ev) {
    if (!ev || !(window.top.__ostrel__pickObject || window.top.__ostrel__recording)) {
        return true;
    }
    var touch = __ostrel__tapTouch(ev.changedTouches, window.top.__ostrel.lastTouches);
    if (!touch) {
        return true;
    }
    if (__ostrel__isHookedWasmCanvas(touch.target)) {
        return undefined;
    }
    window.top.__ostrel.lastTouches = null;
    if (window.top.__ostrel__pickObject) {
        __ostrel__swallowEvent(ev);
        __ostrel__logPickEvent(touch, touch.target, 'event=');
        return false;
    }
    if (__ostrel__recordTouchEvents()) {
        __ostrel__recordTap(ev, touch.target);
    }
    return true;
}

/**
 * The touch of a tap: as many fingers lifted as went down, on the same element.
 *
 * @param {?TouchList} ended the touches that ended
 * @param {?TouchList} started those of the last start
 * @return {?Touch} null when the touches are no tap
 */
function __ostrel__tapTouch(ended, started) {
    if (!ended || !started || ended.length === 0 || ended.length !== started.length) {
        return null;
    }
    return ended[0].target === started[0].target ? ended[0] : null;
}

/**
 * @param {TouchEvent} ev
 * @param {Node} target
 */
function __ostrel__recordTap(ev, target) {
    var win = __ostrel__findDocument(window, __ostrel__getDocumentForNode(target)) || window;
    // Kept as is: the context stands before the tab here, other than in the text of a mouse event.
    var text = 'event=' + __ostrel__eventToStr(ev, target, __ostrel__eventObject(target)) +
        '&context=' + __ostrel__contextOfForUrl(win) + __ostrel__tabIdLogEventParameter();
    __ostrel__sendLogEventData(ev, text, true);
}
