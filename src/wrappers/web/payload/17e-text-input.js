// 17e  Text input: types, assigns and selects the text of fields, and tells the page that it changed.
//
// Defines  __ostrel__typeText, __ostrel__sendTextEvent, __ostrel__sendKeyEvent, __ostrel__createKeyEvent,
//          __ostrel__setTextFieldValue, __ostrel__sendChangeEvent, window.top.__ostrel.selectAll
// Calls    __ostrel__isEmbeddedAppleWebkitBrowser (07-browser-detection), __ostrel__documentForEvents,
//          __ostrel__fireOldEvent, __ostrel__useIE8AndOlderEventDispatching (17d-mouse-events)
// At load  the member of window.top.__ostrel is set

/**
 * Sends the key events of typing a text. They do not change a field's value by themselves.
 * @param {Element} o
 * @param {string} txt
 */
function __ostrel__typeText(o, txt) {
    var i, c;

    for (i = 0; i < txt.length; i++) {
        c = txt.charAt(i);
        __ostrel__sendKeyEvent(o, "keydown", c);
        __ostrel__sendKeyEvent(o, "keypress", c);
        if (__ostrel__isEmbeddedAppleWebkitBrowser()) {
            __ostrel__sendTextEvent(o, c);
        }
        __ostrel__sendKeyEvent(o, "keyup", c);
    }
}

/**
 * Embedded Apple WebKit views enter the character of a text event, not that of a key event.
 * @param {Element} o
 * @param {string} c
 */
function __ostrel__sendTextEvent(o, c) {
    var evt;

    try {
        evt = __ostrel__documentForEvents(o).createEvent("TextEvent");
        evt.initTextEvent("textInput", true, true, null, c);
        o.dispatchEvent(evt);
    } catch (noTextEvents) {
        // The key events have to do.
    }
}

/**
 * Sends one key event. Unlike with the mouse, errors of dispatching pass.
 * Kept as is: the arguments are those of WebKit's old form of the call, with the character code last. The
 * present form reads them differently: key stays empty, and metaKey is set.
 * @param {Element} o
 * @param {string} ev "keydown", "keypress" or "keyup"
 * @param {string} ch the character
 */
function __ostrel__sendKeyEvent(o, ev, ch) {
    var keycode, evt;

    if (!o) {
        return;
    }
    keycode = ch.charCodeAt(0);
    if (__ostrel__useIE8AndOlderEventDispatching(o)) {
        __ostrel__fireOldEvent(o, "on" + ev, { keyCode: keycode });
        return;
    }
    evt = __ostrel__createKeyEvent(o, ev);
    evt.initKeyboardEvent(ev, true, true, document.defaultView, false, false, false, false, 0, keycode);
    o.dispatchEvent(evt);
}

/**
 * Only an event made by the constructor can leave a shadow tree.
 * @param {Element} o
 * @param {string} ev
 * @return {KeyboardEvent}
 */
function __ostrel__createKeyEvent(o, ev) {
    try {
        return new KeyboardEvent(ev, { composed: true });
    } catch (noConstructor) {
        return __ostrel__documentForEvents(o).createEvent("KeyboardEvent");
    }
}

/**
 * @param {(HTMLInputElement|HTMLTextAreaElement)} obj
 * @param {string} value
 */
function __ostrel__setTextFieldValue(obj, value) {
    obj.value = value;
    __ostrel__sendChangeEvent(obj);
}

/**
 * Tells the page that a field changed. Errors are dropped: a page's handler may throw, and the test goes on.
 * @param {Element} e
 */
function __ostrel__sendChangeEvent(e) {
    var ev;

    try {
        if (__ostrel__useIE8AndOlderEventDispatching(e)) {
            __ostrel__fireOldEvent(e, "onchange", { type: "change" });
            return;
        }
        ev = __ostrel__documentForEvents(e).createEvent("HTMLEvents");
        ev.initEvent("change", true, false);
        e.dispatchEvent(ev);
    } catch (dropped) {
        // See above.
    }
}

/**
 * Selects the whole text of a field.
 * @param {(HTMLInputElement|HTMLTextAreaElement)} inputElement
 * @throws {Error} for an object without a text to select
 */
window.top.__ostrel.selectAll = function (inputElement) {
    if (inputElement.select) {
        inputElement.select();
    } else if (inputElement.setSelectionRange) {
        inputElement.setSelectionRange(0, inputElement.value.length);
    } else {
        throw new Error("Object does not support select or setSelectionRange function, cannot select content.");
    }
};
