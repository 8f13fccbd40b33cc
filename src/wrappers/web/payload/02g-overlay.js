// 02g  Picker and overlay: lets a user point at an element, and shows path and name of an element in a small panel.
//
// Defines  __ostrel__mousemove, __ostrel__eventOfAnyWindow, __ostrel__hoverElement, __ostrel__pickableObject,
//          __ostrel__hookedPickableObject, __ostrel__logPickEvent, __ostrel__mouseElement, __ostrel__hoverTimer,
//          __ostrel__checkForObjectOverlayRelatedEvent, __ostrel__isOverlayKeyComboPressed, __ostrel__isInfoDiv,
//          __ostrel__isMarkedInfoDiv, __ostrel__removeInfoDiv, __ostrel__openObjectInfo,
//          __ostrel__showObjectInfoDiv, __ostrel__fillObjectInfoDiv, __ostrel__appendInfoField,
//          __ostrel__infoElement
// Calls    __ostrel__sendLogEventData, __ostrel__tabIdLogEventParameter (01a-log-event), __ostrel__isHookedWasmCanvas
//          (01b-event-capture), __ostrel__determineEventObject, __ostrel__isFunction, __ostrel__srcElement
//          (01c-event-object), __ostrel__sendXMLHttpRequest (02a-channel), __ostrel__contextList (02c-contexts),
//          __ostrel__findUsableParentElement, __ostrel__isDocumentNode (02d-classification),
//          __ostrel__pickableObjectHooks (02e-hook-lists), __ostrel__nameOf (03a-naming), __ostrel__qualifiedName
//          (03c-hierarchical-names), __ostrel__getObjectAttribute (05-property-read), __ostrel__getScreenRect
//          (09a-screen-rectangle), __ostrel__isVisible (12-visibility), __ostrel__elementPos (17d-mouse-events),
//          __ostrelDOMAPI (19-dom-access)
// At load  no element is hovered and no hover timer runs

/** @type {?Node} The element that waits for the hover timer. */
var __ostrel__mouseElement = null;
/** @type {?number} The running hover timer. */
var __ostrel__hoverTimer = null;

/**
 * Listener for mouse moves: while picking, reports the element on which the mouse rests for 50 ms.
 *
 * @param {Event=} e
 */
function __ostrel__mousemove(e) {
    if (!window.__ostrel__pickObject) {
        return;
    }
    var source = __ostrel__srcElement(__ostrel__determineEventObject(e, window) || __ostrel__eventOfAnyWindow());
    if (!source || __ostrel__isHookedWasmCanvas(source)) {
        return;
    }
    var element = __ostrel__pickableObject(source);
    if (!element || element === window.__ostrel__selectedObject) {
        return;
    }
    window.__ostrel__selectedObject = element;
    if (__ostrel__hoverTimer) {
        clearTimeout(__ostrel__hoverTimer);
    }
    __ostrel__mouseElement = element;
    __ostrel__hoverTimer = setTimeout(__ostrel__hoverElement, 50);
}

/**
 * @return {?Event} the event that a browser of the old model keeps in one of the windows
 */
function __ostrel__eventOfAnyWindow() {
    var windows = __ostrel__contextList();
    for (var i = 0; i < windows.length; ++i) {
        var ev = __ostrel__determineEventObject(null, windows[i]);
        if (ev) {
            return ev;
        }
    }
    return null;
}

/**
 * Tells the host which element to highlight.
 */
function __ostrel__hoverElement() {
    __ostrel__hoverTimer = null;
    try {
        var rect = __ostrel__getScreenRect(__ostrel__mouseElement);
        var name = __ostrel__nameOf(__ostrel__mouseElement, true);
        __ostrel__sendXMLHttpRequest(document,
            'highlighteWidget&info=' + rect + ',' + name + '&' + new Date().getTime(), true);
    } catch (ignored) {
        // An element that went away meanwhile is not highlighted.
    }
}

/**
 * The element that a press would pick. Other than for a recorded event there is no climb to an element with handlers:
 * the cells of a table that handles the clicks by itself stay pickable.
 *
 * @param {?Node} elem the source element
 * @return {?Node}
 */
function __ostrel__pickableObject(elem) {
    var hooked = __ostrel__hookedPickableObject(elem);
    if (hooked) {
        return hooked;
    }
    var betterelem = __ostrel__findUsableParentElement(elem);
    if (betterelem && !__ostrel__isDocumentNode(elem) && __ostrel__isVisible(elem)) {
        return betterelem;
    }
    return elem;
}

/**
 * @param {?Node} elem
 * @return {?Node} the first true answer of the pickable object hooks, a hook that raises giving none
 */
function __ostrel__hookedPickableObject(elem) {
    var hooks = window.top.__ostrel__pickableObjectHooks;
    for (var i = 0; i < hooks.length; ++i) {
        try {
            var answer = __ostrel__isFunction(hooks[i]) && hooks[i](elem);
            if (answer) {
                return answer;
            }
        } catch (ignored) {
            // The next hook may know the element.
        }
    }
    return null;
}

/**
 * Reports a picked element and switches the picker off.
 *
 * @param {Event|Touch} e
 * @param {Node} o the node picked; its nearest element or document is reported
 * @param {string} url the start of the event text
 */
function __ostrel__logPickEvent(e, o, url) {
    var node = o;
    while (node && !__ostrelDOMAPI.isElementNode(node) && node.nodeType !== 9) {
        node = node.parentNode;
    }
    var text = url + 'pickedObject&object=' + __ostrel__nameOf(node) + __ostrel__tabIdLogEventParameter();
    // Not at once, so that the click that follows the press is kept from the page too.
    setTimeout(function () {
        window.__ostrel__pickObject = false;
    }, 50);
    __ostrel__sendLogEventData(e, text, true);
}

/**
 * Lets the overlay take the events that are meant for it.
 *
 * @param {?Node} scr the source element
 * @param {Event} ev
 * @return {boolean|undefined} undefined when the event goes on as usual, else the listener's result
 */
function __ostrel__checkForObjectOverlayRelatedEvent(scr, ev) {
    if (!scr || !scr.getAttribute || !scr.tagName) {
        return undefined;
    }
    if (__ostrel__isInfoDiv(scr)) {
        if (ev.type === 'mousedown' && scr.tagName === 'BUTTON') {
            __ostrel__removeInfoDiv(__ostrel__isMarkedInfoDiv);
        }
        return true;
    }
    if (ev.type === 'mousedown') {
        __ostrel__removeInfoDiv(__ostrel__isInfoDiv);
    }
    // Older Internet Explorer says 1 for the left button, all others 0.
    var isLeftButton = ev.button === 0 || ev.button === 1;
    if (ev.type === 'click' && isLeftButton && __ostrel__isOverlayKeyComboPressed(ev)) {
        __ostrel__openObjectInfo(scr, ev);
        return false;
    }
    return undefined;
}

/**
 * @param {Event} ev
 * @return {boolean} Ctrl and Alt, or Alt and Meta on a Mac, where Ctrl and Alt open the context menu
 */
function __ostrel__isOverlayKeyComboPressed(ev) {
    if (window.top.__ostrel__os === 'MacOSX') {
        return ev.altKey && ev.metaKey;
    }
    return ev.ctrlKey && ev.altKey;
}

/**
 * @param {Node} elem
 * @return {boolean} whether the element is the panel or belongs to it
 */
function __ostrel__isInfoDiv(elem) {
    return __ostrel__isMarkedInfoDiv(elem) || __ostrel__getObjectAttribute(elem, '__ostrel__isinfo') === 'true';
}

/**
 * @param {Node} elem
 * @return {boolean} whether the element is the panel itself
 */
function __ostrel__isMarkedInfoDiv(elem) {
    return !!elem.__ostrel__isinfo;
}

/**
 * Removes the first child of the body that is a panel.
 *
 * @param {function(Node): boolean} isPanel
 */
function __ostrel__removeInfoDiv(isPanel) {
    for (var child = document.body.firstChild; child; child = child.nextSibling) {
        if (isPanel(child)) {
            document.body.removeChild(child);
            return;
        }
    }
}

/**
 * Opens the panel at the mouse and keeps the click from the page.
 *
 * @param {Element} scr the element clicked
 * @param {Event} ev
 */
function __ostrel__openObjectInfo(scr, ev) {
    var xy = __ostrel__elementPos(scr);
    // Kept as is: an offset of 0 counts as one that the browser does not know.
    xy.x += ev.offsetX ? ev.offsetX : ev.clientX;
    xy.y += ev.offsetX ? ev.offsetY : ev.clientY;
    __ostrel__showObjectInfoDiv(scr, xy);
    if (ev.returnValue) {
        ev.returnValue = false;
    }
    if (ev.preventDefault) {
        ev.preventDefault();
    }
}

/**
 * Shows an empty panel, which is filled after it has been painted, since a name can take long.
 *
 * @param {Element} obj the element that the panel is about
 * @param {{x: number, y: number}} xy the mouse position in the document
 */
function __ostrel__showObjectInfoDiv(obj, xy) {
    try {
        var divelem = document.createElement('DIV');
        divelem.id = '__ostrel__web__info__overlay';
        divelem.__ostrel__isinfo = true;
        divelem.style.position = 'absolute';
        divelem.style.top = (xy.y - 15) + 'px';
        divelem.style.left = (xy.x - 15) + 'px';
        divelem.style.backgroundColor = 'inherit';
        divelem.style.zIndex = 1000000;
        divelem.style.borderStyle = 'solid';
        divelem.style.borderWidth = '1px';
        document.body.appendChild(divelem);
        divelem.innerHTML = 'Calculating object name';
        setTimeout(function () {
            __ostrel__fillObjectInfoDiv(obj, divelem);
        }, 500);
    } catch (ignored) {
        // A page without a body has no place for the panel.
    }
}

/**
 * Writes path and name of an element into the panel.
 *
 * @param {Element} obj
 * @param {Element} divelem
 */
function __ostrel__fillObjectInfoDiv(obj, divelem) {
    try {
        var button = __ostrel__infoElement('BUTTON', { 'style': 'text-align:right;margin-bottom:1em;' +
            'background-color:inherit' });
        button.appendChild(document.createTextNode('Close'));
        var form = __ostrel__infoElement('FORM', {});
        __ostrel__appendInfoField(form, 'DOM Path:', '__ostrel__info__domPath', 40, __ostrel__qualifiedName(obj));
        form.appendChild(__ostrel__infoElement('BR', {}));
        __ostrel__appendInfoField(form, 'Real Name:', '__ostrel__info__name', 25, unescape(__ostrel__nameOf(obj)));
        divelem.innerHTML = '';
        divelem.appendChild(button);
        divelem.appendChild(__ostrel__infoElement('BR', {}));
        divelem.appendChild(form);
    } catch (ignored) {
        // The element can be gone by now; the panel keeps its first text.
    }
}

/**
 * Appends a label and its text area of three rows.
 *
 * @param {Element} form
 * @param {string} caption
 * @param {string} name
 * @param {number} columns
 * @param {string} text
 */
function __ostrel__appendInfoField(form, caption, name, columns, text) {
    var label = __ostrel__infoElement('LABEL', { 'for': name });
    label.appendChild(document.createTextNode(caption));
    form.appendChild(label);
    var field = __ostrel__infoElement('TEXTAREA', { 'name': name, 'id': name, 'rows': 3, 'cols': columns });
    field.value = text;
    form.appendChild(field);
}

/**
 * An element of the panel, marked as such so that its events are not recorded.
 *
 * @param {string} tagName
 * @param {Object} attributes values by name
 * @return {Element}
 */
function __ostrel__infoElement(tagName, attributes) {
    var element = document.createElement(tagName);
    element.setAttribute('__ostrel__isinfo', 'true');
    for (var name in attributes) {
        if (Object.prototype.hasOwnProperty.call(attributes, name)) {
            element.setAttribute(name, attributes[name]);
        }
    }
    return element;
}
