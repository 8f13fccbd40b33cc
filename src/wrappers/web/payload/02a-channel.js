// 02  Channel: carries texts from the page to the endpoint by the first route that the browser offers.
//
// Defines  __ostrel__sendXMLHttpRequest, __ostrel__sendXMLHttpPost, __ostrel__XMLHttpRequestDestination,
//          __ostrel__sendOverNetwork, __ostrel__useIEPostMessage, __ostrel__postIEMessage,
//          __ostrel__addObjectToEventStorage, __ostrel__getSessionStorageEvents, __ostrel__storedEvents,
//          __ostrel__asyncWaitForPageprobeMsg, __ostrel__asyncWaitStateChanged, __ostrel__processPageprobeMsg,
//          __ostrel__asyncWaitRequest
// Calls    __ostrel__isJavaSWTBrowser, __ostrel__isQWebViewBrowser, __ostrel__usesEventLoggerBridge
//          (07-browser-detection), __ostrel__JSON (24-json2)
// At load  resets the state of the long poll; the poll itself is started by 02z-start

/**
 * Sends a payload in the address of a request.
 * @param {Document} doc ignored; kept for the callers' sake
 * @param {string} payload printable ASCII
 * @param {boolean} [async] default: what the host has set for all requests
 * @return {XMLHttpRequest|Object|undefined} the request; an object with an empty response where nothing can
 *     answer; nothing on the bridge routes
 */
function __ostrel__sendXMLHttpRequest(doc, payload, async) {
    var bridge;

    if (window.top.__ostrel.useSessionStorageForEvents) {
        __ostrel__addObjectToEventStorage({ payload: payload });
        return { responseText: "" };
    }
    if (__ostrel__isQWebViewBrowser()) {
        bridge = window.top.__ostrel__qwebkitEventLoggerBridge;
        if (bridge) {
            bridge.doLogEvent(payload);
        }
        return undefined;
    }
    if (__ostrel__usesEventLoggerBridge()) {
        __ostrel__eventLoggerBridge.handleXMLHttpPayload(unescape(payload));
        return undefined;
    }
    if (__ostrel__isJavaSWTBrowser()) {
        window.top.__ostrel__swtfunction("logEvent", payload);
        return undefined;
    }
    if (__ostrel__useIEPostMessage(payload)) {
        __ostrel__postIEMessage(payload);
        return { responseText: "" };
    }
    return __ostrel__sendOverNetwork("GET", payload, null, async);
}

/**
 * Sends a payload in the body of a request.
 * @param {Document} doc ignored; kept for the callers' sake
 * @param {string} url the query
 * @param {string} payload the body
 * @param {boolean} [async] default: what the host has set for all requests
 * @return {XMLHttpRequest|Object|undefined} as for __ostrel__sendXMLHttpRequest
 */
function __ostrel__sendXMLHttpPost(doc, url, payload, async) {
    var bridge, separator;

    if (window.top.__ostrel.useSessionStorageForEvents) {
        __ostrel__addObjectToEventStorage({ url: url, payload: payload });
        return { responseText: "" };
    }
    if (__ostrel__isQWebViewBrowser()) {
        bridge = window.top.__ostrel__qwebkitEventLoggerBridge;
        if (bridge && url.indexOf("logevent") !== -1) {
            bridge.doLogEvent(url + payload);
        }
        return undefined;
    }
    if (__ostrel__usesEventLoggerBridge()) {
        separator = url.indexOf("debuglog") !== -1 ? "=" : "";
        __ostrel__eventLoggerBridge.handleXMLHttpPayload(url + separator + payload);
        return undefined;
    }
    // Kept as is: this route does not end here, so that a long event also takes the next one and may arrive
    // twice. Hosts of such browsers count on it.
    if (__ostrel__isJavaSWTBrowser() && url.indexOf("logevent") !== -1) {
        window.top.__ostrel__swtfunction("logEvent", url + payload);
    }
    if (__ostrel__useIEPostMessage(url)) {
        __ostrel__postIEMessage(url + payload);
        return { responseText: "" };
    }
    return __ostrel__sendOverNetwork("POST", url, payload, async);
}

/**
 * The last route: a request to the endpoint's address.
 * @param {string} method
 * @param {string} query
 * @param {?string} body
 * @param {boolean} [async]
 * @return {XMLHttpRequest|undefined} nothing where the browser has no way to make a request
 */
function __ostrel__sendOverNetwork(method, query, body, async) {
    var address = __ostrel__XMLHttpRequestDestination() + "/?" + query,
        request;

    if (async === undefined) {
        async = window.__ostrel__asynclog;
    }
    if (!window.__ostrel__ie && window.XMLHttpRequest) {
        request = new XMLHttpRequest();
        request.open(method, address, async);
        request.send(body);
    } else if (window.ActiveXObject != null) {
        request = new ActiveXObject("MSXML2.XMLHTTP.3.0");
        if (request) {
            request.open(method, address, async);
            if (body === null) {
                request.send();
            } else {
                request.send(body);
            }
        }
    }
    return request;
}

/**
 * Base address of the endpoint. Behind a proxy the page's own origin carries the request, and the proxy unpacks
 * the target from the path.
 * @return {string} without a slash at its end
 */
function __ostrel__XMLHttpRequestDestination() {
    var endpoint = "127.0.0.1:" + window.__ostrel__port;

    if (window.__ostrel__proxy) {
        return location.protocol + "//" + location.host + "/__ostrel_pageprobe__/" + escape(endpoint);
    }
    return "http" + "://" + endpoint;
}

/**
 * True when a text goes out as a message. The two requests that wait for the host's answer cannot: a message has
 * none.
 * @param {string} payload
 * @return {boolean}
 */
function __ostrel__useIEPostMessage(payload) {
    return Boolean(window.top.__ostrel__ie) &&
        payload.indexOf("waitForConfirm") !== 0 && payload.indexOf("waitForPrompt") !== 0;
}

/**
 * Posts a text to the script that the host has placed beside the page.
 * @param {string} data
 */
function __ostrel__postIEMessage(data) {
    window.top.postMessage("__ostrel__message: " + data, "*");
}

/**
 * Appends a record to the queue in session storage, which outlives page loads.
 * @param {Object} obj
 */
function __ostrel__addObjectToEventStorage(obj) {
    var events = __ostrel__storedEvents();

    events[events.length] = obj;
    sessionStorage.setItem("eventStorage", __ostrel__JSON.stringify(events));
}

/**
 * Drains the queue in session storage; called by the host.
 * @return {Array<Object>} records in sending order
 */
function __ostrel__getSessionStorageEvents() {
    var events;

    if (sessionStorage.getItem("eventStorage") === null) {
        return [];
    }
    events = __ostrel__storedEvents();
    sessionStorage.setItem("eventStorage", "[]");
    return events;
}

/**
 * The queue as it stands. The key belongs to the page's origin, so what lies there may not be ours: what is no
 * array counts as an empty queue.
 * @return {Array<Object>}
 */
function __ostrel__storedEvents() {
    var events;

    try {
        events = __ostrel__JSON.parse(sessionStorage.getItem("eventStorage"));
    } catch (e) {
        return [];
    }
    return Object.prototype.toString.call(events) === "[object Array]" ? events : [];
}

/** The long poll of proxy mode: its request in flight, and whether an answer starts the next one. */
window.__ostrel__asyncWaitRequest = { request: null, startAgain: true };

/** Asks the proxy for script to run. The answer may take as long as the page lives. */
function __ostrel__asyncWaitForPageprobeMsg() {
    var request = new XMLHttpRequest();

    window.__ostrel__asyncWaitRequest.request = request;
    request.onreadystatechange = __ostrel__asyncWaitStateChanged;
    request.open("GET", location.protocol + "//" + location.host + "/__ostrel__waitForEval__/", true);
    request.send(null);
}

/**
 * Follows a poll. The next one starts before the script of this one runs, so that a script that fails or takes
 * long does not stop the polling.
 * @param {Event} [e] tells the request apart from another that overlaps with it
 */
function __ostrel__asyncWaitStateChanged(e) {
    var state = window.__ostrel__asyncWaitRequest,
        event = e || window.event,
        request = event && event.target || state.request;

    if (!request || request.readyState !== 4) {
        return;
    }
    if (state.startAgain) {
        __ostrel__asyncWaitForPageprobeMsg();
    } else {
        state.request = null;
    }
    if (request.status === 200) {
        __ostrel__processPageprobeMsg(request);
    }
}

/**
 * Runs the script that the proxy has sent.
 * @param {XMLHttpRequest} req
 */
function __ostrel__processPageprobeMsg(req) {
    eval(req.responseText);
}
