// Sends texts to the host. Those that follow each other faster than a person types share a message, since each message
// costs the page as much as a key press itself. Of those that may wait the first one behind a pause goes at once, so
// that the host knows of the burst and can ask for the rest; one that must not wait goes at once with all that do. The
// longer a burst lasts, the longer its messages wait for each other.
// Stands in front of the scripts that send, in one function with them. `complete` runs before a message goes and may
// add to it.
function burst(post, complete) {
    "use strict";

    var shortestMs = 30,
        longestMs = 240,
        lengthMs = shortestMs, // how long the texts of the burst wait
        // Pages replace the clock and the timers.
        startTimer = setTimeout.bind(window),
        now = performance.now.bind(performance),
        waiting = "",
        burstAt = -longestMs, // when the last message of the burst was sent
        isTimed = false,
        isLate = false; // whether anything waits for the timer

    function flush() {
        var texts;
        if (complete) {
            complete();
        }
        texts = waiting;
        waiting = "";
        burstAt = -longestMs;
        isLate = false;
        if (texts !== "") {
            post(texts);
        }
    }

    function goOn() {
        lengthMs = isLate ? Math.min(2 * lengthMs, longestMs) : shortestMs;
        flush();
        burstAt = now();
    }

    window.addEventListener("beforeunload", flush, true);
    window.addEventListener("pagehide", flush, true);

    function isRunning() {
        return now() - burstAt < lengthMs;
    }

    // Has a message go within the length of a burst.
    function wait() {
        isLate = true;
        if (!isTimed) {
            isTimed = true;
            startTimer(function () {
                isTimed = false;
                if (isLate) {
                    goOn();
                }
            }, burstAt + lengthMs - now());
        }
    }

    function add(text, mayWait) {
        waiting += waiting === "" ? text : "\0" + text;
        if (!mayWait) {
            flush();
        } else if (!isRunning()) {
            goOn();
        } else {
            wait();
        }
    }

    return { add: add, flush: flush, isRunning: isRunning, wait: wait };
}
