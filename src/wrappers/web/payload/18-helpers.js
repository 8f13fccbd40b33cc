// 18  Helpers: functions that each serve a single purpose.
//
// Defines  __ostrel__convertJSDateToDateTimeString, __ostrel__browserHookHandlesWindows, __ostrel__wholeCharacters
// Calls    nothing
// At load  nothing runs

/**
 * A date as the host reads it: year, month counted from 1, day, hours and minutes, with commas between them.
 * @param {*} date
 * @return {string|undefined} nothing for what is no date
 */
function __ostrel__convertJSDateToDateTimeString(date) {
    // Asked by name: a frame's dates are not of our window's class.
    if (Object.prototype.toString.call(date) !== "[object Date]") {
        return undefined;
    }
    return [date.getFullYear(), date.getMonth() + 1, date.getDate(), date.getHours(), date.getMinutes()].join(",");
}

/**
 * True when the host keeps track of new windows by itself, so that the page need not.
 * @return {*} truthy or falsy
 */
function __ostrel__browserHookHandlesWindows() {
    var host = window.top;

    return host.__ostrel__improvedTabAndWindowSupport &&
        (host.__ostrel__mozilla || host.__ostrel__safari || host.__ostrel__ie || host.__ostrel__edge ||
         host.__ostrel__googlechrome || host.__ostrel__chromiumbased);
}

/**
 * A text without half characters, as pages have them that cut a text in the middle of one. The host's texts cannot hold
 * them, and one would make a whole answer unreadable.
 * @param {*} value
 * @return {*} a text with the replacement character in the place of each half; anything else as it is
 */
function __ostrel__wholeCharacters(value) {
    if (typeof value !== "string" || !/[\ud800-\udfff]/.test(value)) {
        return value;
    }
    return value.replace(/[\ud800-\udbff][\udc00-\udfff]|[\ud800-\udfff]/g, function (character) {
        return character.length === 2 ? character : "\ufffd";
    });
}
