// Takes the texts of events off the network. Only what nobody waits for: an answer cannot come this way.
//
// To name a field and to write its text for each key would slow down a page in which somebody types faster than a
// person can. In a burst only the last key has its text, behind one that says how many keys it follows.
(function () {
    "use strict";

    var binding = window.__ostrel__carryEvents,
        sendOverNetwork = __ostrel__sendOverNetwork,
        logEvent = __ostrel__logEvent,
        lastKey = null, // the key that waits for its text
        followed = 0, // how many keys went before it, of which nothing is told but that
        told = null, // the key whose text is on its way
        kept = burst(function (texts) {
            binding(window.__ostrel__port + "\0" + texts);
        }, tellLastKey);

    function isTypedKey(e, source) {
        return window.__ostrel__recording && !window.__ostrel__pickObject && e && e.type === "keyup" && e.isTrusted &&
            e.key.length === 1 && source && (source.tagName === "INPUT" || source.tagName === "TEXTAREA") &&
            source.type !== "file" && __ostrel__isTextFieldType(source.type);
    }

    // What is told of an event once it has passed, when it knows its source no more.
    function lasting(key) {
        var e = key.event, source = key.source;
        return {
            type: e.type, target: source, srcElement: source, key: e.key, keyCode: e.keyCode, which: e.which,
            altKey: e.altKey, ctrlKey: e.ctrlKey, shiftKey: e.shiftKey, metaKey: e.metaKey,
            composedPath: function () {
                return [source];
            }
        };
    }

    function tellLastKey() {
        var key = lastKey,
            before = followed,
            context = __ostrel__ctxwin;
        lastKey = null;
        followed = 0;
        if (!key) {
            return;
        }
        if (before > 0) {
            kept.add(__ostrel__getLogEventUrl(
                "event=keyup&followed=" + before + __ostrel__tabIdLogEventParameter()), true);
        }
        __ostrel__ctxwin = key.context;
        told = key;
        try {
            logEvent(lasting(key), key.win);
        } finally {
            told = null;
            __ostrel__ctxwin = context;
        }
    }

    // By the time that its text is written, the key behind it may have changed the field.
    function withValueOf(key, text) {
        return text.replace(/&value=[^&]*/, function () {
            return "&value=" + escape(key.value);
        });
    }

    __ostrel__logEvent = function (e, w) {
        var source = e && e.type === "keyup" ? __ostrel__srcElement(e) : null;
        if (!isTypedKey(e, source) || !kept.isRunning()) {
            tellLastKey();
            return logEvent(e, w);
        }
        if (lastKey && lastKey.source !== source) {
            tellLastKey();
        } else if (lastKey) {
            followed += 1;
        }
        lastKey = { event: e, source: source, win: w, context: __ostrel__ctxwin, value: source.value };
        kept.wait();
        return true;
    };

    __ostrel__sendOverNetwork = function (method, query, body, async) {
        var isAsync = async === undefined ? window.__ostrel__asynclog : async,
            text = body === null ? query : query + body,
            isKey = text.indexOf("&event=keyup&") !== -1;
        if (!isAsync || query.indexOf("logevent") !== 0) {
            return sendOverNetwork(method, query, body, async);
        }
        if (!isKey) {
            tellLastKey();
        }
        kept.add(told ? withValueOf(told, text) : text, isKey);
        return { responseText: "" };
    };
}());
