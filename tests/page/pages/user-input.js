// Dispatches the events of a user's input, in the order in which a browser does.

/** Where in an element the mouse is, unless a test says otherwise. */
var mouseOffset = { x: 3, y: 4 };

function sendMouse(element, type, options) {
    var view = element.ownerDocument.defaultView;
    var target = element.nodeType === 3 ? element.parentNode : element;
    var rect = target.getBoundingClientRect();
    var init = { bubbles: true, cancelable: true, composed: true, view: view,
        clientX: rect.left + mouseOffset.x, clientY: rect.top + mouseOffset.y };
    for (var name in options || {}) {
        init[name] = options[name];
    }
    return element.dispatchEvent(new view.MouseEvent(type, init));
}

function sendKey(element, type, keyCode) {
    var view = element.ownerDocument.defaultView;
    return element.dispatchEvent(new view.KeyboardEvent(type,
        { bubbles: true, cancelable: true, composed: true, view: view, keyCode: keyCode }));
}

function clickElement(element, options) {
    sendMouse(element, 'mousedown', options);
    sendMouse(element, 'mouseup', options);
    sendMouse(element, 'click', options);
}

function doubleClickElement(element, options) {
    clickElement(element, options);
    clickElement(element, options);
    sendMouse(element, 'dblclick', options);
}

function pressKey(element, keyCode) {
    sendKey(element, 'keydown', keyCode);
    sendKey(element, 'keypress', keyCode);
    sendKey(element, 'keyup', keyCode);
}

function changeSelect(select, index) {
    select.selectedIndex = index;
    select.dispatchEvent(new Event('input', { bubbles: true }));
    select.dispatchEvent(new Event('change', { bubbles: true }));
}

function fingerOn(element, identifier) {
    var rect = element.getBoundingClientRect();
    return new Touch({ identifier: identifier || 0, target: element,
        clientX: rect.left + mouseOffset.x, clientY: rect.top + mouseOffset.y,
        pageX: rect.left + mouseOffset.x + window.pageXOffset, pageY: rect.top + mouseOffset.y + window.pageYOffset });
}

function sendTouch(element, type, fingersDown, fingersChanged, options) {
    var init = { bubbles: true, cancelable: true, composed: true, view: window,
        touches: fingersDown, targetTouches: fingersDown, changedTouches: fingersChanged };
    for (var name in options || {}) {
        init[name] = options[name];
    }
    return element.dispatchEvent(new TouchEvent(type, init));
}

function tapElement(element, options) {
    var finger = fingerOn(element);
    sendTouch(element, 'touchstart', [finger], [finger], options);
    sendTouch(element, 'touchend', [], [finger], options);
    clickElement(element, options);
}
