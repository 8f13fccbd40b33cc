// Writes down the events that reach the page, one text an event, in the order of their arrival.

var eventLog = [];

/**
 * Logs events of an element and all below it.
 * @param {EventTarget} target
 * @param {Array<string>} types
 * @param {function(Event): string} describe
 */
function logEvents(target, types, describe) {
    types.forEach(function (type) {
        target.addEventListener(type, function (event) {
            eventLog.push(describe(event));
        });
    });
}

/**
 * @param {function()} action
 * @return {Array<string>} the events that it caused
 */
function eventsOf(action) {
    eventLog = [];
    action();
    return eventLog;
}

/**
 * @param {MouseEvent} event
 * @return {string} type, client position, button, and the modifiers that are set
 */
function describeMouseEvent(event) {
    return event.type + " " + event.clientX + "," + event.clientY + " button " + event.button +
        (event.ctrlKey ? " ctrl" : "") + (event.altKey ? " alt" : "") + (event.shiftKey ? " shift" : "") +
        (event.metaKey ? " meta" : "");
}
