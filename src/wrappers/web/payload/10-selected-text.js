// 10  Selected text: the part of a text field's value that the user has selected.
//
// Defines  window.top.__ostrel.getSelectedText
// Calls    nothing
// At load  the member of window.top.__ostrel is set

/**
 * The selected part of a field's value, empty when nothing is selected.
 * @param {(HTMLInputElement|HTMLTextAreaElement)} o
 * @return {string}
 * @throws {Error} for a selection direction that no browser is known to have
 */
window.top.__ostrel.getSelectedText = function (o) {
    var direction = o.selectionDirection;

    if (direction === undefined || direction === null || direction === "forward" || direction === "none") {
        return o.value.substring(o.selectionStart, o.selectionEnd);
    }
    if (direction === "backward") {
        return o.value.substring(o.selectionEnd, o.selectionStart);
    }
    throw new Error("Unknown selection direction: " + direction);
};
