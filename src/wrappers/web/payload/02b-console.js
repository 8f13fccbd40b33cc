// 02  Console: debug and log output, by whatever way there is. Logging never breaks a page.
//
// Defines  __ostrel__debug, __ostrel__log, __ostrel__console, __ostrel__closeLog, __ostrel__alert,
//          __ostrel__log__window, __ostrel__logSink, __ostrel__logToPopup
// Calls    __ostrel__sendXMLHttpPost, __ostrel__sendXMLHttpRequest (02a-channel), __ostrel__isJavaSWTBrowser,
//          __ostrel__isQWebViewBrowser, __ostrel__usesEventLoggerBridge (07-browser-detection)
// At load  forgets the log window

/**
 * Writes a line to the host's debug log.
 * @param {string} s sent as it is
 */
function __ostrel__debug(s) {
    var firstLengthInBody = 150,
        bridge;

    try {
        bridge = window.top.__ostrel__qwebkitEventLoggerBridge;
        if (__ostrel__isQWebViewBrowser() && bridge) {
            bridge.logDebug(s);
        } else if (__ostrel__isJavaSWTBrowser()) {
            window.top.__ostrel__swtfunction("debug", s);
        } else if (s.length < firstLengthInBody) {
            __ostrel__sendXMLHttpRequest(null, "debuglog=" + s, true);
        } else {
            __ostrel__sendXMLHttpPost(null, "debuglog", s, true);
        }
    } catch (e) {
        // a line lost is better than a page broken
    }
}

/**
 * Writes a line to the browser's console or what stands for it.
 * @param {string} s
 */
function __ostrel__log(s) {
    __ostrel__console.log(s);
}

/** Stands in for the console in browsers that have none. */
var __ostrel__console = {
    log: function (s) {
        var sink;

        try {
            sink = __ostrel__logSink();
        } catch (e) {
            // no sink, then
        }
        try {
            if (sink) {
                sink.log(s);
            } else {
                __ostrel__logToPopup(s);
            }
        } catch (e2) {
            // a line lost is better than a page broken
        }
    }
};

/** The window that takes log lines where there is no console. */
var __ostrel__log__window = null;

/**
 * The object that takes log lines: a bridge of an embedding, or the browser's console.
 * @return {Object|undefined}
 */
function __ostrel__logSink() {
    if (__ostrel__isQWebViewBrowser()) {
        return window.top.__ostrel__qwebkitEventLoggerBridge;
    }
    if (__ostrel__usesEventLoggerBridge()) {
        return __ostrel__eventLoggerBridge;
    }
    if (__ostrel__isJavaSWTBrowser()) {
        return {
            log: function (s) {
                window.top.__ostrel__swtfunction("log", s);
            }
        };
    }
    return window.console;
}

/**
 * Shows a line in a window of our own, opened with the first line.
 * @param {string} s markup
 */
function __ostrel__logToPopup(s) {
    var address = "javascript:document.write(\"<body></body>\");";

    if (!__ostrel__log__window) {
        try {
            __ostrel__log__window = window.__ostrel__reallyOpen(address);
        } catch (e) {
            __ostrel__log__window = window.open(address);
        }
    }
    __ostrel__log__window.document.body.innerHTML += s + "<br>";
}

/** Closes the log window, if there is one. */
function __ostrel__closeLog() {
    try {
        __ostrel__log__window.close();
        __ostrel__log__window = null;
    } catch (e) {
        // no window, or one that is not ours any more
    }
}

/**
 * Shows a text while the payload is being debugged.
 * @param {string} s
 */
function __ostrel__alert(s) {
    if (window.__ostrel__pageprobe__debug) {
        window.alert(s);
    }
}
