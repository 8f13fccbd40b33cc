// Takes the texts of events off the network. Only what nobody waits for: an answer cannot come this way.
(function () {
    "use strict";

    var binding = window.__ostrel__carryEvents,
        sendOverNetwork = __ostrel__sendOverNetwork,
        kept = burst(function (texts) {
            binding(window.__ostrel__port + "\0" + texts);
        });

    __ostrel__sendOverNetwork = function (method, query, body, async) {
        var isAsync = async === undefined ? window.__ostrel__asynclog : async,
            text = body === null ? query : query + body;
        if (!isAsync || query.indexOf("logevent") !== 0) {
            return sendOverNetwork(method, query, body, async);
        }
        kept.add(text, text.indexOf("&event=keyup&") !== -1);
        return { responseText: "" };
    };
}());
