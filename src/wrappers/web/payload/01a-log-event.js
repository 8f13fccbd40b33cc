// 01  Log event: puts an event text on its way to the endpoint.
//
// Defines  __ostrel__getLogEventUrl, __ostrel__sendLogEventData, __ostrel__tabIdLogEventParameter
// Calls    __ostrel__getDocumentForEvent (01c-event-object), __ostrel__sendXMLHttpPost, __ostrel__sendXMLHttpRequest
//          (02a-channel)
// At load  nothing runs

/**
 * Sends an event text: short ones in the address of a GET, long ones in the body of a POST.
 * @param {Event} ev the event that the text tells of; may be null
 * @param {string} data event text
 * @param {boolean} [async] default: what the host has set for all requests
 * @return {Object|undefined} what the channel returns
 */
function __ostrel__sendLogEventData(ev, data, async) {
    var longestDataInAddress = 120,
        doc = __ostrel__getDocumentForEvent(ev);

    if (data.length > longestDataInAddress) {
        return __ostrel__sendXMLHttpPost(doc, __ostrel__getLogEventUrl(), data, async);
    }
    return __ostrel__sendXMLHttpRequest(doc, __ostrel__getLogEventUrl(data), async);
}

/**
 * The query of an event request. The time in it keeps each address unique and tells the recorder when it happened.
 * @param {string} [data] event text
 * @return {string}
 */
function __ostrel__getLogEventUrl(data) {
    return "logevent" + new Date().getTime() + "&" + (data === undefined ? "" : data);
}

/**
 * The part of an event text that names the browser tab, for hosts that number their tabs.
 * @return {string} empty where the host has set no number
 */
function __ostrel__tabIdLogEventParameter() {
    var tabId = window.top.__ostrel__browsertabid;

    return tabId ? "&tabId=" + tabId : "";
}
