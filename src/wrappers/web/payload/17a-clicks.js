// 17a  Clicks: what a click on an element, a button or a link sends to the page, and in which order.
//
// Defines  __ostrel__click, __ostrel__clickViaDOM2Events, __ostrel__clickButton,
//          __ostrel__clickButtonViaDOM2Events, __ostrel__clickLink, __ostrel__clickLinkViaDOM2Events,
//          __ostrel__dblclick, __ostrel__openContextMenu, __ostrel__emulateTouchAndClick,
//          __ostrel__hookupWindowOf, __ostrel__isClickedByHook, __ostrel__sendClick,
//          __ostrel__submitsByMethod, __ostrel__submitOrClick
// Calls    __ostrel__click__hooks (02e-hook-lists), __ostrel__hookupWindow (02h-window-hookup),
//          __ostrel__emulateViaTouchEvents (16-touch-recording), __ostrel__clickViaTouchEvents (17c-touch-clicks),
//          __ostrel__fireOldEvent, __ostrel__sendMouseEvent, __ostrel__sendMouseOut,
//          __ostrel__useIE8AndOlderEventDispatching (17d-mouse-events)
// At load  nothing runs
//
// Kept as is: every form sends down, click, up, where a browser sends down, up, click. Recorded tests and the
// pages they were recorded on rely on it.

/**
 * Clicks an element. A hook may do the click in its own way.
 * @param {Element} o
 * @param {boolean=} ctrl
 * @param {boolean=} shift
 * @param {boolean=} alt
 * @param {number=} x offset from the element's left edge in CSS pixels, 5 when missing
 * @param {number=} y offset from the element's top edge in CSS pixels, 5 when missing
 * @param {number=} button 1 left, 2 right, 4 middle; 1 when missing
 */
function __ostrel__click(o, ctrl, shift, alt, x, y, button) {
    __ostrel__emulateTouchAndClick(o, ctrl, shift, alt, x, y, button, __ostrel__clickViaDOM2Events);
}

/**
 * @see __ostrel__click
 */
function __ostrel__clickViaDOM2Events(o, ctrl, shift, alt, x, y, button) {
    __ostrel__hookupWindowOf(o);
    if (__ostrel__isClickedByHook([o, ctrl, shift, alt, x, y, button])) {
        return;
    }
    try {
        if (o.focus) {
            o.focus();
        }
    } catch (notFocusable) {
        // Old Internet Explorer throws for an element that is not shown.
    }
    __ostrel__sendMouseEvent(o, "mouseover", ctrl, shift, alt, x, y, button);
    __ostrel__sendMouseEvent(o, "mousedown", ctrl, shift, alt, x, y, button);
    if (button === 2) {
        __ostrel__openContextMenu(o, ctrl, shift, alt, x, y);
    } else {
        __ostrel__sendClick(o, ctrl, shift, alt, x, y, button);
    }
    __ostrel__sendMouseEvent(o, "mouseup", ctrl, shift, alt, x, y, button);
    __ostrel__sendMouseOut(o);
}

/**
 * Clicks a form button.
 * @param {Element} o
 * @param {boolean=} ctrl
 * @param {boolean=} shift
 * @param {boolean=} alt
 * @param {number=} x
 * @param {number=} y
 * @param {number=} btn as for __ostrel__click
 */
function __ostrel__clickButton(o, ctrl, shift, alt, x, y, btn) {
    __ostrel__emulateTouchAndClick(o, ctrl, shift, alt, x, y, btn, __ostrel__clickButtonViaDOM2Events);
}

/**
 * @see __ostrel__clickButton
 */
function __ostrel__clickButtonViaDOM2Events(o, ctrl, shift, alt, x, y, btn) {
    __ostrel__hookupWindowOf(o);
    try {
        o.focus();
    } catch (notFocusable) {
        // A button that cannot have the focus can be clicked all the same.
    }
    try {
        __ostrel__sendMouseEvent(o, "mousedown", ctrl, shift, alt, x, y, btn);
        if (__ostrel__submitsByMethod()) {
            __ostrel__submitOrClick(o);
        } else {
            __ostrel__sendMouseEvent(o, "click", ctrl, shift, alt, x, y, btn);
        }
        __ostrel__sendMouseEvent(o, "mouseup", ctrl, shift, alt, x, y, btn);
        __ostrel__sendMouseOut(o);
    } catch (thrownByPage) {
        // A page's handler may throw, and the test goes on.
    }
}

/**
 * Clicks a link.
 * @param {HTMLAnchorElement} l
 */
function __ostrel__clickLink(l) {
    __ostrel__emulateTouchAndClick(l, false, false, false, 0, 0, 0, __ostrel__clickLinkViaDOM2Events);
}

/**
 * @param {HTMLAnchorElement} l
 */
function __ostrel__clickLinkViaDOM2Events(l) {
    __ostrel__hookupWindow(l.ownerDocument.defaultView);
    try {
        __ostrel__sendMouseEvent(l, "mouseover");
        __ostrel__sendMouseEvent(l, "mousedown");
        if (window.top.__ostrel__ie) {
            l.click();
        } else {
            __ostrel__sendMouseEvent(l, "click");
        }
        __ostrel__sendMouseEvent(l, "mouseup");
        __ostrel__sendMouseOut(l);
    } catch (thrownByPage) {
        // A page's handler may throw, and the test goes on.
    }
}

/**
 * Double-clicks an element with the left button. Click hooks get the element only.
 * @param {Element} o
 * @param {boolean=} ctrl
 * @param {boolean=} shift
 * @param {boolean=} alt
 * @param {number=} x
 * @param {number=} y
 */
function __ostrel__dblclick(o, ctrl, shift, alt, x, y) {
    __ostrel__hookupWindowOf(o);
    if (__ostrel__isClickedByHook([o])) {
        return;
    }
    __ostrel__sendMouseEvent(o, "mouseover", ctrl, shift, alt, x, y);
    __ostrel__sendMouseEvent(o, "mousedown", ctrl, shift, alt, x, y);
    __ostrel__sendClick(o, ctrl, shift, alt, x, y);
    __ostrel__sendMouseEvent(o, "mouseup", ctrl, shift, alt, x, y);
    __ostrel__sendMouseEvent(o, "mousedown", ctrl, shift, alt, x, y);
    __ostrel__sendClick(o, ctrl, shift, alt, x, y);
    __ostrel__sendMouseEvent(o, "dblclick", ctrl, shift, alt, x, y);
    __ostrel__sendMouseEvent(o, "mouseup", ctrl, shift, alt, x, y);
    __ostrel__sendMouseOut(o);
}

/**
 * Asks the page for its context menu.
 * @param {Element} o
 * @param {boolean=} ctrl
 * @param {boolean=} shift
 * @param {boolean=} alt
 * @param {number=} x
 * @param {number=} y
 */
function __ostrel__openContextMenu(o, ctrl, shift, alt, x, y) {
    if (__ostrel__useIE8AndOlderEventDispatching(o)) {
        __ostrel__fireOldEvent(o, "oncontextmenu", {});
        return;
    }
    __ostrel__sendMouseEvent(o, "contextmenu", ctrl, shift, alt, x, y, 2);
}

/**
 * Clicks the way a finger does where taps are the natural input: touch events first, and the mouse events of
 * a click only when the page did not take the tap for itself.
 * @param {Element} o
 * @param {boolean} ctrl
 * @param {boolean} shift
 * @param {boolean} alt
 * @param {number} x
 * @param {number} y
 * @param {number} btn
 * @param {Function} clickFn sends the mouse events, called with the arguments before it
 */
function __ostrel__emulateTouchAndClick(o, ctrl, shift, alt, x, y, btn, clickFn) {
    if (!window.top.__ostrel__emulateViaTouchEvents() ||
            __ostrel__clickViaTouchEvents(o, ctrl, shift, alt, x, y)) {
        clickFn(o, ctrl, shift, alt, x, y, btn);
    }
}

/**
 * Makes the element's window ready for what the click triggers, in case it was hooked late.
 * @param {Node} o
 */
function __ostrel__hookupWindowOf(o) {
    if (o.ownerDocument && o.ownerDocument.defaultView) {
        __ostrel__hookupWindow(o.ownerDocument.defaultView);
    }
}

/**
 * @param {Array} args what each hook is called with
 * @return {boolean} whether a hook did the click
 */
function __ostrel__isClickedByHook(args) {
    var hooks = window.__ostrel__click__hooks;
    var i;

    for (i = 0; i < hooks.length; i++) {
        if (hooks[i].apply(null, args)) {
            return true;
        }
    }
    return false;
}

/**
 * The click itself. Internet Explorer does what a click does, such as following a link, only for its method.
 * @see __ostrel__click
 */
function __ostrel__sendClick(o, ctrl, shift, alt, x, y, button) {
    if (window.top.__ostrel__ie && o.click) {
        o.click();
        return;
    }
    __ostrel__sendMouseEvent(o, "click", ctrl, shift, alt, x, y, button);
}

/**
 * Internet Explorer and Safari do not submit a form for a click event sent by script.
 * @return {boolean}
 */
function __ostrel__submitsByMethod() {
    return !!(window.top.__ostrel__ie || window.__ostrel__safari || window.top.__ostrel__safariproxy);
}

/**
 * @param {Element} o
 */
function __ostrel__submitOrClick(o) {
    if (o.submit) {
        o.submit();
    } else if (o.click) {
        o.click();
    }
}
