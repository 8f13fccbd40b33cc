// 17d  Mouse events: sends one mouse event, by the standard's way or that of old Internet Explorer.
//
// Defines  __ostrel__sendMouseEvent, __ostrel__sendMouseOut, __ostrel__dispatchMouseEvent,
//          __ostrel__createMouseEvent, __ostrel__fireOldMouseEvent, __ostrel__fireOldEvent,
//          __ostrel__buttonForBrowser, __ostrel__elementPos, __ostrel__drawingPos, __ostrel__tableBorder,
//          __ostrel__useIE8AndOlderEventDispatching, __ostrel__isOldDispatchingDemanded,
//          __ostrel__documentForEvents
// Calls    __ostrel__getDocumentForNode (02d-classification), __ostrel__useIE8AndOlderEventDispatchingOverride__hooks
//          (02e-hook-lists), __ostrel__getPageOffsetX, __ostrel__getPageOffsetY (09c-document-geometry)
// At load  nothing runs

/**
 * Sends one mouse event to an element. What goes wrong on the way is dropped: a page's handler may throw, and
 * the test goes on.
 * @param {Element} o
 * @param {string} ev type of the event, such as "mousedown"
 * @param {boolean=} ctrl
 * @param {boolean=} shift
 * @param {boolean=} alt
 * @param {number=} x offset from the element's left edge in CSS pixels, 5 when 0 or missing
 * @param {number=} y offset from the element's top edge in CSS pixels, 5 when 0 or missing
 * @param {number=} button 1 left, 2 right, 4 middle; 1 when 0 or missing
 */
function __ostrel__sendMouseEvent(o, ev, ctrl, shift, alt, x, y, button) {
    var xy, mouse;

    if (!o) {
        return;
    }
    try {
        xy = __ostrel__elementPos(o);
        mouse = {
            clientX: xy.x + (x || 5) - __ostrel__getPageOffsetX(),
            clientY: xy.y + (y || 5) - __ostrel__getPageOffsetY(),
            ctrl: ctrl,
            shift: shift,
            alt: alt,
            button: __ostrel__buttonForBrowser(button || 1)
        };
        if (__ostrel__useIE8AndOlderEventDispatching(o)) {
            __ostrel__fireOldMouseEvent(o, ev, mouse);
        } else {
            __ostrel__dispatchMouseEvent(o, ev, mouse);
        }
    } catch (dropped) {
        // See above.
    }
}

/**
 * The mouse leaves an element, at no particular place.
 * @param {Element} object
 */
function __ostrel__sendMouseOut(object) {
    __ostrel__sendMouseEvent(object, "mouseout", false, false, false, 0, 0, 0);
}

/**
 * @param {Element} o
 * @param {string} ev
 * @param {Object} mouse position, modifiers and button, as __ostrel__sendMouseEvent makes them
 */
function __ostrel__dispatchMouseEvent(o, ev, mouse) {
    var evt = __ostrel__createMouseEvent(o, ev);
    var isCrossing = ev === "mouseout" || ev === "mouseover";

    evt.initMouseEvent(ev, true, true, document.defaultView, 1, 0, 0, mouse.clientX, mouse.clientY,
        mouse.ctrl, mouse.alt, mouse.shift, false, mouse.button, isCrossing ? o.ownerDocument.body : null);
    o.dispatchEvent(evt);
}

/**
 * Only an event made by the constructor can leave a shadow tree.
 * @param {Element} o
 * @param {string} ev
 * @return {MouseEvent}
 */
function __ostrel__createMouseEvent(o, ev) {
    try {
        return new MouseEvent(ev, { composed: true });
    } catch (noConstructor) {
        return __ostrel__documentForEvents(o).createEvent("MouseEvents");
    }
}

/**
 * @param {Element} o
 * @param {string} ev
 * @param {Object} mouse
 */
function __ostrel__fireOldMouseEvent(o, ev, mouse) {
    var members = { clientX: mouse.clientX, clientY: mouse.clientY, button: mouse.button };

    if (mouse.ctrl) {
        members.ctrlKey = true;
    }
    if (mouse.shift) {
        members.shiftKey = true;
    }
    if (mouse.alt) {
        members.altKey = true;
    }
    if (ev === "mouseout") {
        members.toElement = document.body;
        members.fromElement = o;
    } else if (ev === "mouseover") {
        members.toElement = o;
        members.fromElement = document.body;
    }
    __ostrel__fireOldEvent(o, "on" + ev, members);
}

/**
 * Sends an event the way of Internet Explorer 8 and older.
 * @param {Element} o
 * @param {string} name with the "on" in front
 * @param {Object} members what to set on the event
 */
function __ostrel__fireOldEvent(o, name, members) {
    var evt = __ostrel__documentForEvents(o).createEventObject();
    var member;

    for (member in members) {
        if (Object.prototype.hasOwnProperty.call(members, member)) {
            evt[member] = members[member];
        }
    }
    o.fireEvent(name, evt);
}

/**
 * Our button codes are those of old Internet Explorer; every other browser has the standard's.
 * @param {number} button 1 left, 2 right, 4 middle
 * @return {number}
 */
function __ostrel__buttonForBrowser(button) {
    if (window.top.__ostrel__ie && !(window.top.__ostrel__ie__version >= 9)) {
        return button;
    }
    if (button === 1) {
        return 0;
    }
    return button === 4 ? 1 : button;
}

/**
 * Where an element begins in its document, as the browsers' event coordinates count it.
 * @param {Element} o
 * @return {{x: number, y: number}}
 */
function __ostrel__elementPos(o) {
    var pos = { x: 0, y: 0 };
    var border;

    if (o && o.offsetLeft === undefined && o.getBoundingClientRect) {
        return __ostrel__drawingPos(o);
    }
    while (o) {
        pos.x += o.offsetLeft;
        pos.y += o.offsetTop;
        if (window.top.__ostrel__ie) {
            // Its offsets leave the borders out, except those of tables and the body.
            if (o.tagName !== "TABLE" && o.tagName !== "BODY") {
                pos.x += o.clientLeft;
                pos.y += o.clientTop;
            }
        } else if (o.tagName === "TABLE") {
            border = __ostrel__tableBorder(o);
            pos.x += border;
            pos.y += border;
        }
        o = o.offsetParent;
    }
    return pos;
}

/**
 * What SVG draws has no offsets in any browser: its place is that in the element around the drawing.
 * @param {SVGElement} o
 * @return {{x: number, y: number}}
 */
function __ostrel__drawingPos(o) {
    var rect = o.getBoundingClientRect(),
        holder = o.parentNode,
        pos,
        corner;

    while (holder && holder.offsetLeft === undefined) {
        holder = holder.parentNode;
    }
    if (!holder) {
        return { x: Math.round(rect.left), y: Math.round(rect.top) };
    }
    pos = __ostrel__elementPos(holder);
    corner = holder.getBoundingClientRect();
    pos.x += Math.round(rect.left - corner.left);
    pos.y += Math.round(rect.top - corner.top);
    // Offsets are those within what is scrolled.
    if (holder !== document.scrollingElement) {
        pos.x += holder.scrollLeft;
        pos.y += holder.scrollTop;
    }
    return pos;
}

/**
 * The border that the offsets of a table's cells leave out outside Internet Explorer. The attribute "frame"
 * draws one of a pixel when "border" names none.
 * @param {HTMLTableElement} table
 * @return {number}
 */
function __ostrel__tableBorder(table) {
    var border = parseInt(table.border, 10);

    if (isNaN(border)) {
        return table.getAttribute("frame") !== null ? 1 : 0;
    }
    return border > 0 ? border : 0;
}

/**
 * True where events have to be sent the way of Internet Explorer 8 and older: the browser knows no other, or
 * an extension demands it for an object of a toolkit that listens to nothing else.
 * @param {Element} object
 * @return {boolean}
 */
function __ostrel__useIE8AndOlderEventDispatching(object) {
    try {
        if (document.createEvent && document.dispatchEvent) {
            return !!top.window.__ostrel__ie && __ostrel__isOldDispatchingDemanded(object);
        }
    } catch (notReadable) {
        return true;
    }
    return true;
}

/**
 * @param {Element} object
 * @return {boolean}
 */
function __ostrel__isOldDispatchingDemanded(object) {
    var hooks = top.__ostrel__useIE8AndOlderEventDispatchingOverride__hooks;
    var i;

    for (i = 0; i < hooks.length; i++) {
        try {
            if (hooks[i](object)) {
                return true;
            }
        } catch (dropped) {
            // The other hooks are still asked.
        }
    }
    return false;
}

/**
 * Old browsers refuse an event that was made by another document than that of its target.
 * @param {Node} o
 * @return {Document}
 */
function __ostrel__documentForEvents(o) {
    return __ostrel__getDocumentForNode(o) || document;
}
