// 01e  Change listeners: set on selects and file fields when they are about to be used while recording.
//
// Defines  __ostrel__install__handler, __ostrel__listenForChange, __ostrel__onChangeHandler
// Calls    __ostrel__handler, __ostrel__lastSelectEvent, __ostrel__lastSelectEventObject (01b-event-capture),
//          __ostrel__srcElement (01c-event-object), __ostrel__getDocumentForNode (02d-classification)
// At load  nothing runs

/**
 * Listens to the changes of the field that an event hits. Also a listener of its own, for keys and focus.
 *
 * @param {?Event} e
 */
function __ostrel__install__handler(e) {
    if (!e || !window.__ostrel__recording) {
        return;
    }
    var el = __ostrel__srcElement(e);
    if (!el || !el.type || el.__ostrel__onchange) {
        return;
    }
    if (String(el.type).indexOf('select') === 0) {
        __ostrel__listenForChange(el, __ostrel__onChangeHandler);
    } else if (el.type === 'file') {
        __ostrel__listenForChange(el, function () {
            __ostrel__handler(undefined, this);
        });
    }
}

/**
 * @param {Element} el the field, which gets the mark that it is listened to
 * @param {function()} oldListener the listener of browsers without `addEventListener`
 */
function __ostrel__listenForChange(el, oldListener) {
    if (el.addEventListener) {
        el.addEventListener('change', function (e) {
            __ostrel__handler(e, this);
        }, true);
    } else {
        el.attachEvent('onchange', oldListener);
    }
    el.__ostrel__onchange = true;
}

/**
 * Change listener of a select in the old event model, where the event does not name its element: the change is
 * reported with the last event on a select.
 */
function __ostrel__onChangeHandler() {
    var doc = __ostrel__lastSelectEventObject && __ostrel__getDocumentForNode(__ostrel__lastSelectEventObject);
    if (!doc || !__ostrel__lastSelectEvent) {
        return;
    }
    // Kept as is: the copy and its misspelled member have no effect, the remembered event is the one that goes on.
    var copy = doc.createEventObject(__ostrel__lastSelectEvent);
    copy.type = 'change';
    copy.secElement = __ostrel__lastSelectEventObject;
    __ostrel__handler(__ostrel__lastSelectEvent, __ostrel__lastSelectEventObject);
    __ostrel__lastSelectEvent = null;
    __ostrel__lastSelectEventObject = null;
}
