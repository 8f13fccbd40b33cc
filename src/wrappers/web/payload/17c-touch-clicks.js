// 17c  Touch clicks: a tap on an element, for platforms whose pages listen to fingers.
//
// Defines  __ostrel__clickViaTouchEvents, __ostrel__touchOn, __ostrel__sendTouchEvent,
//          __ostrel__createTouchEvent, __ostrel__initTouchEvent, __ostrel__wantsScaleAndRotation
// Calls    __ostrel__isCocoaTouchWebViewBrowser, __ostrel__isProxyOnMobileDevice (07-browser-detection),
//          __ostrel__getClientBoundingRect, __ostrel__getScreenRectAsObject (09a-screen-rectangle),
//          __ostrel__getPageOffsetX, __ostrel__getPageOffsetY (09c-document-geometry)
// At load  nothing runs

/**
 * Taps an element.
 * @param {Element} o
 * @param {boolean=} ctrl
 * @param {boolean=} shift
 * @param {boolean=} alt
 * @param {number=} x offset from the element's left edge in CSS pixels, 0 when missing
 * @param {number=} y offset from the element's top edge in CSS pixels, 0 when missing
 * @return {boolean} false when the page prevented the default of a touch event: no click must follow
 */
function __ostrel__clickViaTouchEvents(o, ctrl, shift, alt, x, y) {
    var touches = [__ostrel__touchOn(o, x || 0, y || 0)];
    var startGoesOn = __ostrel__sendTouchEvent(o, "touchstart", ctrl, shift, alt, touches);
    var endGoesOn = __ostrel__sendTouchEvent(o, "touchend", ctrl, shift, alt, touches);

    return startGoesOn && endGoesOn;
}

/**
 * Kept as is: the page position is the place in the viewport, and the client position that less the scroll
 * position. The two agree with their names on pages that are not scrolled.
 * @param {Element} o
 * @param {number} x
 * @param {number} y
 * @return {Touch}
 */
function __ostrel__touchOn(o, x, y) {
    var boundingRect = __ostrel__getClientBoundingRect(o);
    var screenRect = __ostrel__getScreenRectAsObject(o);
    var pageX = boundingRect.x + x;
    var pageY = boundingRect.y + y;

    return new Touch({
        identifier: 0,
        target: o,
        clientX: pageX - __ostrel__getPageOffsetX(),
        clientY: pageY - __ostrel__getPageOffsetY(),
        pageX: pageX,
        pageY: pageY,
        screenX: (screenRect.x === -1 ? 0 : screenRect.x) + x,
        screenY: (screenRect.y === -1 ? 0 : screenRect.y) + y
    });
}

/**
 * @param {Element} o
 * @param {string} type
 * @param {boolean} ctrl
 * @param {boolean} shift
 * @param {boolean} alt
 * @param {Array<Touch>} touches
 * @return {boolean} false when a listener prevented the default
 */
function __ostrel__sendTouchEvent(o, type, ctrl, shift, alt, touches) {
    var event = __ostrel__createTouchEvent(o, type, ctrl, shift, alt, touches);
    var preventDefault = event.preventDefault;
    var isPrevented = false;

    // The browsers that need touch events do not tell in defaultPrevented what happened to one of ours.
    event.preventDefault = function () {
        isPrevented = true;
        preventDefault.call(event);
    };
    o.dispatchEvent(event);
    return !isPrevented;
}

/**
 * Old browsers fill in an empty event, newer ones only know the constructor.
 * @see __ostrel__sendTouchEvent
 * @return {TouchEvent}
 */
function __ostrel__createTouchEvent(o, type, ctrl, shift, alt, touches) {
    var event;

    try {
        event = o.ownerDocument.createEvent("TouchEvent");
        __ostrel__initTouchEvent(event, type, o.ownerDocument.defaultView, ctrl, shift, alt, touches);
        return event;
    } catch (onlyConstructor) {
        return new TouchEvent(type, {
            cancelable: true,
            bubbles: true,
            composed: true,
            touches: [touches[0]],
            targetTouches: [touches[0]],
            changedTouches: [touches[0]]
        });
    }
}

/**
 * @param {TouchEvent} event
 * @param {string} type
 * @param {Window} view
 * @param {boolean} ctrl
 * @param {boolean} shift
 * @param {boolean} alt
 * @param {Array<Touch>} touches
 */
function __ostrel__initTouchEvent(event, type, view, ctrl, shift, alt, touches) {
    if (__ostrel__wantsScaleAndRotation()) {
        event.initTouchEvent(type, true, true, view, 1, 0, 0, 0, 0, ctrl, alt, shift, false,
            touches, touches, touches, 1.0, 0.0);
        return;
    }
    event.initTouchEvent(type, true, true, view, 1, 0, 0, 0, 0, ctrl, alt, shift, false,
        touches, touches, touches);
}

/**
 * Mobile WebKit takes two more arguments and refuses a call without them.
 * @return {boolean}
 */
function __ostrel__wantsScaleAndRotation() {
    return __ostrel__isCocoaTouchWebViewBrowser() || __ostrel__isProxyOnMobileDevice();
}
