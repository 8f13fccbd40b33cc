// Takes the texts of events off the network. Only what nobody waits for: an answer cannot come this way.
(function () {
    "use strict";

    const binding = window.__ostrel__carryEvents;
    const sendOverNetwork = __ostrel__sendOverNetwork;
    const kept = burst(function (texts) {
        binding(window.__ostrel__port + "\0" + texts);
    });

    __ostrel__sendOverNetwork = function (method, query, body, async) {
        const isAsync = async === undefined ? window.__ostrel__asynclog : async;
        if (!isAsync || query.indexOf("logevent") !== 0) {
            return sendOverNetwork(method, query, body, async);
        }
        const text = body === null ? query : query + body;
        kept.add(text, text.indexOf("&event=keyup&") !== -1);
        return { responseText: "" };
    };
}());
