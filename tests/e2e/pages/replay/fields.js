// Notes every event that the fields of a page see, in order. ids are those of the elements.
"use strict";

const watched = ["focus", "blur", "mouseover", "mousedown", "mouseup", "mouseout", "click", "dblclick", "contextmenu",
    "keydown", "keypress", "keyup", "input", "change", "submit", "reset"];

function watch(root, log, types = watched) {
    types.forEach(type => {
        root.addEventListener(type, event => {
            const target = event.composedPath()[0];
            if (target.id) {
                log.push(type + (event.key ? ":" + event.key : "") + (event.isTrusted ? "" : "*") + " " + target.id);
            }
        }, true);
    });
}

window.seen = [];
watch(document, window.seen);

// What happened since the last question.
function happened() {
    return window.top.seen.splice(0).join(", ");
}
