// Sends texts to the host. Those that follow each other faster than a person types share a message, since each message
// costs the page as much as a key press itself. Of those that may wait the first one behind a pause goes at once, so
// that the host knows of the burst and can ask for the rest; one that must not wait goes at once with all that do.
// Stands in front of the scripts that send, in one function with them.
function burst(post) {
    "use strict";

    var lengthMs = 30,
        // Pages replace the clock and the timers.
        startTimer = setTimeout.bind(window),
        now = performance.now.bind(performance),
        waiting = "",
        burstAt = -lengthMs, // when the last message of the burst was sent
        isTimed = false;

    function flush() {
        var texts = waiting;
        waiting = "";
        burstAt = -lengthMs;
        if (texts !== "") {
            post(texts);
        }
    }

    function goOn() {
        flush();
        burstAt = now();
    }

    window.addEventListener("beforeunload", flush, true);
    window.addEventListener("pagehide", flush, true);

    function add(text, mayWait) {
        waiting += waiting === "" ? text : "\0" + text;
        if (!mayWait) {
            flush();
        } else if (now() - burstAt >= lengthMs) {
            goOn();
        } else if (!isTimed) {
            isTimed = true;
            startTimer(function () {
                isTimed = false;
                if (waiting !== "") {
                    goOn();
                }
            }, lengthMs);
        }
    }

    return { add: add, flush: flush };
}
