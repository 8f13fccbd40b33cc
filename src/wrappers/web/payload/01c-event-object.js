// 01c  Event object: finds the browser's event and the element that the user meant by it.
//
// Defines  __ostrel__findEvent, __ostrel__determineEventObject, __ostrel__isEventObject,
//          __ostrel__findEventInFrameWindowsForOldIE, __ostrel__srcElement, __ostrel__getDocumentForEvent,
//          __ostrel__rootOf, __ostrel__isFunction, __ostrel__firstHookAnswer, __ostrel__eventObject,
//          __ostrel__labelledElement, __ostrel__reactingElement, __ostrel__isReacting,
//          __ostrel__hasClickHandler, __ostrel__hasSmartClientId, __ostrel__isKnownWidget,
//          __ostrel__isKnownWidgetClass, __ostrel__isBackbaseWidget, __ostrel__markAsEventObject,
//          __ostrel__climbingTypes
// Calls    __ostrel.getAllFrames, __ostrel__contextList (02c-contexts), __ostrel__findUsableParentElement,
//          __ostrel__getDocumentForNode, __ostrel__isDocumentNode, __ostrel__typeOf (02d-classification),
//          __ostrel__eventObject__hooks, __ostrel__knownWidgets (02e-hook-lists), __ostrel__enclosingLink,
//          __ostrel__isMenuCell (03a-naming), __ostrel__isVisible (12-visibility), Ostrel, __ostrel__listContains
//          (23-extension-interface)
// At load  the list of types that make the search climb is created

/**
 * The event of a listener call, with the window in which it was found.
 *
 * @param {Event=} e what the browser gave to the listener
 * @return {?{event: Event, win: Window}} null when there is no event
 */
function __ostrel__findEvent(e) {
    var ev = __ostrel__determineEventObject(e, window) || __ostrel__findEventInFrameWindowsForOldIE(window);
    if (ev) {
        return { event: ev, win: window };
    }
    var windows = __ostrel__contextList();
    for (var i = 0; i < windows.length; ++i) {
        if (!__ostrel__isFunction(windows[i])) {
            ev = __ostrel__findEventInFrameWindowsForOldIE(windows[i]);
            if (ev) {
                return { event: ev, win: windows[i] };
            }
        }
    }
    return null;
}

/**
 * @param {*} eventParameter what the browser gave to a listener
 * @param {?Window} win the window whose `event` stands in for it
 * @return {?Event} the first of the two that is an event
 */
function __ostrel__determineEventObject(eventParameter, win) {
    if (__ostrel__isEventObject(eventParameter)) {
        return eventParameter;
    }
    if (win && __ostrel__isEventObject(win.event)) {
        return win.event;
    }
    return null;
}

/**
 * @param {*} ev
 * @return {boolean}
 */
function __ostrel__isEventObject(ev) {
    return !!ev && typeof ev.type === 'string' && __ostrel__srcElement(ev) !== undefined;
}

/**
 * The event of a frame at any depth. Old Internet Explorer keeps it in the window of the frame where it happened and
 * gives none to the listener.
 *
 * @param {Window} w
 * @return {?Event}
 */
function __ostrel__findEventInFrameWindowsForOldIE(w) {
    var frames = [];
    try {
        frames = window.top.__ostrel.getAllFrames(w.document);
    } catch (ignored) {
        // A window of another origin has no frames for us.
    }
    for (var i = 0; i < frames.length; ++i) {
        try {
            var frameWindow = frames[i].contentWindow;
            var ev = __ostrel__determineEventObject(null, frameWindow) ||
                __ostrel__findEventInFrameWindowsForOldIE(frameWindow);
            if (ev) {
                return ev;
            }
        } catch (ignored) {
            // The same for a frame.
        }
    }
    return null;
}

/**
 * The element that an event comes from, looked up through shadow roots.
 *
 * @param {?Event} e
 * @return {Node|undefined}
 */
function __ostrel__srcElement(e) {
    if (!e) {
        return undefined;
    }
    if (e.composedPath) {
        var path = e.composedPath();
        if (path.length > 0) {
            return path[0];
        }
    }
    return e.target || e.srcElement;
}

/**
 * @param {?Event} e
 * @return {?Document} the document of the event's target
 */
function __ostrel__getDocumentForEvent(e) {
    if (e && e.target) {
        return __ostrel__getDocumentForNode(e.target);
    }
    if (e && e.srcElement) {
        return __ostrel__getDocumentForNode(e.srcElement);
    }
    return null;
}

/**
 * @param {Node} node
 * @return {Node} the root of the node's tree: a document, a shadow root or the top of a detached tree
 */
function __ostrel__rootOf(node) {
    var root = node;
    while (root.parentNode) {
        root = root.parentNode;
    }
    return root;
}

/**
 * @param {*} obj
 * @return {boolean} also true for functions for which `typeof` says "object", as with methods of old browsers
 */
function __ostrel__isFunction(obj) {
    return typeof obj === 'function' || {}.toString.call(obj) === '[object Function]';
}

/**
 * Asks the functions of a hook list in order.
 *
 * @param {Array<Function>} hooks entries that are no functions are passed over
 * @param {Array<*>} args the arguments of each call
 * @return {*} the first truthy answer, or undefined
 */
function __ostrel__firstHookAnswer(hooks, args) {
    for (var i = 0; i < hooks.length; ++i) {
        var answer = __ostrel__isFunction(hooks[i]) && hooks[i].apply(null, args);
        if (answer) {
            return answer;
        }
    }
    return undefined;
}

/**
 * The element that the user meant by an event on a source element: one that reacts, not the text or image inside it.
 *
 * @param {?Node} o the source element
 * @return {?Node} the source element itself when nothing around it is known to react
 */
function __ostrel__eventObject(o) {
    if (!o || __ostrel__isMenuCell(o)) {
        return o;
    }
    var hooked = __ostrel__firstHookAnswer(window.__ostrel__eventObject__hooks, [o]);
    if (hooked) {
        return hooked;
    }
    var element = __ostrel__findUsableParentElement(o);
    var labelled = __ostrel__labelledElement(element);
    if (labelled) {
        return labelled;
    }
    var type = __ostrel__typeOf(element);
    if (type === 'A' && element.tagName !== 'A') {
        var anchor = __ostrel__enclosingLink(element);
        if (anchor) {
            return anchor;
        }
    }
    if (Ostrel.arrayIndexOf(__ostrel__climbingTypes, String(type).toUpperCase()) >= 0) {
        var reacting = __ostrel__reactingElement(element);
        if (reacting) {
            return reacting;
        }
    }
    __ostrel__markAsEventObject(o);
    return o;
}

/** @type {Array<string>} Types whose elements seldom react themselves, in upper case. */
var __ostrel__climbingTypes =
    ['SPAN', 'DIV', '[UNKNOWN_TYPE]', 'IMG', 'P', 'B', 'U', 'I', 'TR', 'TD', 'TH', 'LI'];

/**
 * @param {?Node} element
 * @return {?Element} the field that a label stands for
 */
function __ostrel__labelledElement(element) {
    if (!element || element.tagName !== 'LABEL' || !element.htmlFor) {
        return null;
    }
    return __ostrel__getDocumentForNode(element).getElementById(element.htmlFor);
}

/**
 * Climbs from an element to the first one that reacts to the mouse.
 *
 * @param {?Node} element
 * @return {?Node} null when there is none, or when it is the bare document or invisible
 */
function __ostrel__reactingElement(element) {
    for (var node = element; node; node = node.parentNode) {
        var decision = __ostrel__isReacting(node);
        if (decision === 'return') {
            return node;
        }
        if (decision === 'stop') {
            return !__ostrel__isDocumentNode(node) && __ostrel__isVisible(node) ? node : null;
        }
    }
    return null;
}

/**
 * One step of the climb.
 *
 * @param {Node} node
 * @return {string} "stop" when the search ends here if the node is visible, "return" when it ends here in any case,
 *     else the empty text
 */
function __ostrel__isReacting(node) {
    if (__ostrel__hasClickHandler(node)) {
        return 'stop';
    }
    if (node.tagName === 'BUTTON' && node.type === 'submit') {
        return 'stop';
    }
    if (__ostrel__isKnownWidget(node)) {
        return 'return';
    }
    if (__ostrel__hasSmartClientId(node)) {
        return 'stop';
    }
    if (node.tagName === 'A' && node.href) {
        return 'stop';
    }
    return __ostrel__isBackbaseWidget(node) ? 'return' : '';
}

/**
 * @param {Node} node
 * @return {boolean} whether a handler property of the node says that it reacts to presses
 */
function __ostrel__hasClickHandler(node) {
    // Kept as is: "touchstart" without "on", by which elements of existing recordings were chosen.
    return !!(node.onclick || node.onmousedown || node.onmousepress || (node.ontouchend && node.touchstart));
}

/**
 * @param {Node} node
 * @return {boolean} whether the id is one that the SmartClient toolkit gives
 */
function __ostrel__hasSmartClientId(node) {
    return !!node.id && String(node.id).indexOf('isc_') === 0;
}

/**
 * @param {Node} node
 * @return {boolean} whether the node has the class of a registered widget
 */
function __ostrel__isKnownWidget(node) {
    if (!node.className) {
        return false;
    }
    var widgets = window.__ostrel__knownWidgets;
    for (var i = 0; i < widgets.length; ++i) {
        if (__ostrel__isKnownWidgetClass(widgets[i], node)) {
            return true;
        }
    }
    return false;
}

/**
 * @param {{Class: string, Event: string}} widget an entry of the known widgets; functions never match
 * @param {Node} node
 * @return {boolean}
 */
function __ostrel__isKnownWidgetClass(widget, node) {
    return !__ostrel__isFunction(widget) && __ostrel__listContains(node.className, widget.Class);
}

/**
 * @param {Node} node
 * @return {boolean} whether the node has the class of a Backbase widget, where that toolkit's script is present
 */
function __ostrel__isBackbaseWidget(node) {
    var descriptors = window.__ostrel__backbase__descriptors;
    if (!node.className || !descriptors) {
        return false;
    }
    for (var i = 0; i < descriptors.length; ++i) {
        if (__ostrel__listContains(node.className, descriptors[i][window.__ostrel__backbase__className])) {
            return true;
        }
    }
    return false;
}

/**
 * Marks a source element that is recorded for lack of anything better as one that reacts to clicks.
 *
 * @param {Node} node
 */
function __ostrel__markAsEventObject(node) {
    var isOption = node.tagName === 'OPTION' || node.tagName === 'option';
    if (isOption || __ostrel__hasClickHandler(node)) {
        return;
    }
    try {
        node.__ostrel__onclick = true;
    } catch (ignored) {
        // Embedded objects can refuse new members.
    }
}
