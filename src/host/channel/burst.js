// Sends texts to the host. Those that follow each other faster than a person types share a message, since each message
// costs the page as much as a key press itself. Of those that may wait the first one behind a pause goes at once, so
// that the host knows of the burst; one that must not wait goes at once with all that do. Stands in front of the
// scripts that send, in one function with them.
function burst(post) {
    "use strict";

    const lengthMs = 30;
    // Pages replace the clock and the timers.
    const startTimer = setTimeout.bind(window);
    const now = performance.now.bind(performance);
    let waiting = "";
    let patientAt = -lengthMs; // when texts that may wait were sent last
    let isTimed = false;

    function flush() {
        const texts = waiting;
        waiting = "";
        if (texts !== "") {
            post(texts);
        }
    }

    function flushPatient() {
        patientAt = now();
        flush();
    }

    window.addEventListener("beforeunload", flush, true);
    window.addEventListener("pagehide", flush, true);

    return function add(text, mayWait) {
        waiting += waiting === "" ? text : "\0" + text;
        if (!mayWait) {
            flush();
        } else if (now() - patientAt >= lengthMs) {
            flushPatient();
        } else if (!isTimed) {
            isTimed = true;
            startTimer(function () {
                isTimed = false;
                flushPatient();
            }, lengthMs);
        }
    };
}
