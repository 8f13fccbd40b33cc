// 01d  Event text: writes one event and its object as the text that the recorder reads.
//
// Defines  __ostrel__eventToStr, __ostrel__objectNameAndTypeOf, __ostrel__eventType,
//          __ostrel__getPageCoordsFromEvent, __ostrel__positionAndKeys, __ostrel__itemTextForEvent,
//          __ostrel__getInputFieldValue, __ostrel__isTextFieldType, __ostrel__textFieldTypes, __ostrel__isReadOnly,
//          __ostrel__checkForClickHandling, __ostrel__hasEventHandler, __ostrel__isToolkitWidget,
//          __ostrel__isKnownWidgetForEvent
// Calls    __ostrel__firstHookAnswer, __ostrel__hasSmartClientId, __ostrel__isFunction, __ostrel__isKnownWidgetClass
//          (01c-event-object), __ostrel__typeOf (02d-classification), __ostrel__eventToStr__hooks,
//          __ostrel__eventType__hooks, __ostrel__itemTextForEvent__hooks, __ostrel__knownWidgets,
//          __ostrel__objectNameAndType__hooks (02e-hook-lists), __ostrel__isMenuCell, __ostrel__nameOf (03a-naming),
//          __ostrel__getPageOffsetX, __ostrel__getPageOffsetY (09c-document-geometry), __ostrel__elementPos
//          (17d-mouse-events), __ostrel__createMultiSelectOptionStr, __ostrel__getSelectedOptionTexts,
//          __ostrel__selectedOptionText (17f-select-options), Ostrel (23-extension-interface)
// At load  the list of the types with a text value is created

/**
 * The text of an event from its name up to the object's type, without the "event=" in front.
 *
 * @param {?Event} e
 * @param {Node} srcElem the source element
 * @param {Node} eventObj the event's object
 * @return {string|undefined} undefined without an event
 */
function __ostrel__eventToStr(e, srcElem, eventObj) {
    if (!e) {
        return undefined;
    }
    var nameAndType = __ostrel__objectNameAndTypeOf(eventObj);
    var name = nameAndType.name;
    var type = nameAndType.type;
    var text = __ostrel__eventType(eventObj, e, type) + __ostrel__positionAndKeys(e, eventObj) +
        __ostrel__itemTextForEvent(e, eventObj, type);
    var extension = __ostrel__firstHookAnswer(window.__ostrel__eventToStr__hooks, [type, eventObj, e, name]);
    if (extension) {
        text += extension; // the extension decides alone whether a value and a click handler go out
    } else {
        text += __ostrel__getInputFieldValue(type, eventObj) + __ostrel__checkForClickHandling(e.type, eventObj);
    }
    return text + '&object=' + name + '&type=' + type;
}

/**
 * @param {Node} o
 * @return {{name: string, type: string}} from the first hook that knows both, so that a toolkit computes them once
 */
function __ostrel__objectNameAndTypeOf(o) {
    var hooks = window.__ostrel__objectNameAndType__hooks;
    for (var i = 0; i < hooks.length; ++i) {
        var answer = __ostrel__isFunction(hooks[i]) && hooks[i](o);
        if (answer && answer.name && answer.type) {
            return answer;
        }
    }
    return { type: String(__ostrel__typeOf(o)), name: __ostrel__nameOf(o) };
}

/**
 * @param {Node} o the event's object
 * @param {Event} e
 * @param {string} type the object's type
 * @return {string} the event name, from a hook or from the browser
 */
function __ostrel__eventType(o, e, type) {
    return __ostrel__firstHookAnswer(window.top.__ostrel__eventType__hooks, [o, e, type]) || e.type;
}

/**
 * @param {Event} e
 * @param {Node} o the event's object
 * @return {string} the parts from `x` to `keyCode`
 */
function __ostrel__positionAndKeys(e, o) {
    var coords = __ostrel__getPageCoordsFromEvent(e);
    // Keys have no position, wherever their element is, and to ask where that is costs a page in which somebody types.
    var xy = isNaN(coords.x) ? coords : __ostrel__elementPos(o);
    var buttonAndKey = e.type === 'touchend'
        ? '&button=0&keyCode=undefined'
        : '&button=' + e.button + '&keyCode=' + e.keyCode;
    return '&x=' + Math.round(coords.x - xy.x) + '&y=' + Math.round(coords.y - xy.y) +
        '&altKey=' + e.altKey + '&ctrlKey=' + e.ctrlKey + '&shiftKey=' + e.shiftKey + buttonAndKey;
}

/**
 * @param {Event} e
 * @return {{x: number, y: number}} the position in the page; NaN for events without a position, which reads as 0
 */
function __ostrel__getPageCoordsFromEvent(e) {
    if (e.type === 'touchend') {
        var touch = e.changedTouches[0];
        return { x: Math.round(touch.pageX), y: Math.round(touch.pageY) };
    }
    return { x: e.clientX + __ostrel__getPageOffsetX(), y: e.clientY + __ostrel__getPageOffsetY() };
}

/**
 * @param {Event} e
 * @param {Node} o the event's object
 * @param {string} type the object's type
 * @return {string} the text of the item hit, from a hook, or the empty text
 */
function __ostrel__itemTextForEvent(e, o, type) {
    var itemText = __ostrel__firstHookAnswer(window.top.__ostrel__itemTextForEvent__hooks, [o, type]);
    return itemText ? '&itemText=' + escape(itemText) : '';
}

/** @type {Array<string>} Field types with a text value, besides those that begin with "text". */
var __ostrel__textFieldTypes = ['url', 'search', 'number', 'file', 'password', 'email', 'tel'];

/**
 * @param {string} type
 * @return {boolean}
 */
function __ostrel__isTextFieldType(type) {
    return type.indexOf('text') === 0 || Ostrel.arrayIndexOf(__ostrel__textFieldTypes, type) >= 0;
}

/**
 * @param {string} type the object's type
 * @param {Node} o the event's object
 * @return {string} the value of a field or select, or the empty text
 */
function __ostrel__getInputFieldValue(type, o) {
    if (__ostrel__isTextFieldType(type)) {
        var readonly = type !== 'file' && __ostrel__isReadOnly(o);
        return '&value=' + escape(o.value) + '&readonly=' + readonly;
    }
    if (type === 'select-one') {
        return '&value=' + escape(__ostrel__selectedOptionText(o));
    }
    if (type === 'select-multiple') {
        return '&value=' + escape(__ostrel__createMultiSelectOptionStr(__ostrel__getSelectedOptionTexts(o)));
    }
    return '';
}

/**
 * Whether a field is read-only. Internet Explorer below 11 gives the state instead of the attribute's text.
 *
 * @param {Element} o
 * @return {boolean}
 */
function __ostrel__isReadOnly(o) {
    var attribute = o.getAttribute('readonly');
    if (window.top.__ostrel__ie && window.top.__ostrel__ie__version < 11) {
        return attribute == true; // eslint-disable-line eqeqeq -- the state can be a text or a number
    }
    return attribute !== null;
}

/**
 * Tells the recorder whether an element is known to react to clicks.
 *
 * @param {string} eventType the browser's name of the event
 * @param {Node} o the event's object
 * @return {string} "&clickHandler" for each sign that the element reacts, so the part can occur several times
 */
function __ostrel__checkForClickHandling(eventType, o) {
    var isMouseDown = eventType === 'mousedown';
    var text = '';
    if ((isMouseDown || eventType === 'touchend') && __ostrel__hasEventHandler(o)) {
        text += '&clickHandler';
    }
    if (isMouseDown && __ostrel__isMenuCell(o)) {
        text += '&clickHandler';
    }
    if (isMouseDown && __ostrel__isToolkitWidget(o)) {
        text += '&clickHandler';
    }
    if (__ostrel__isKnownWidgetForEvent(eventType, o)) {
        text += '&clickHandler';
    }
    return text;
}

/**
 * @param {Node} o
 * @return {boolean} whether a handler property, or our own mark, says that the element reacts
 */
function __ostrel__hasEventHandler(o) {
    // Kept as is: joined by "or", the test leaves out documents only where they know their node type by name.
    var mayReact = o.nodeType !== o.DOCUMENT_NODE || o.nodeType !== 9;
    return mayReact && !!(o.onclick || o.ondblclick || o.onmousedown || o.onmousepress || o.__ostrel__onclick ||
        o.ontouchend);
}

/**
 * @param {Node} o
 * @return {boolean} whether the element belongs to a toolkit whose every widget takes clicks
 */
function __ostrel__isToolkitWidget(o) {
    return !!o.qx_Widget || __ostrel__hasSmartClientId(o);
}

/**
 * @param {string} eventType the browser's name of the event
 * @param {Node} o
 * @return {boolean} whether a registered widget of the element's class reacts to that event
 */
function __ostrel__isKnownWidgetForEvent(eventType, o) {
    var widgets = window.__ostrel__knownWidgets;
    for (var i = 0; i < widgets.length; ++i) {
        if (widgets[i].Event === eventType && __ostrel__isKnownWidgetClass(widgets[i], o)) {
            return true;
        }
    }
    return false;
}
