// Stands in for the endpoint of the page channel: keeps what the page sends and answers what it asks.
//
// takeSent()   what was sent since the last call, one text a request: method, mode, query and body, with each time
//              written as {M}
// answers      response text by the word that a request begins with
// failing      words of requests that raise instead of being sent

var answers = {};
var failing = [];
var takeSent;

(function () {
    var sent = [];

    takeSent = function () {
        var texts = sent;
        sent = [];
        return texts;
    };

    function wordOf(query) {
        return /^[A-Za-z]*/.exec(query)[0];
    }

    window.XMLHttpRequest = function () {};
    window.XMLHttpRequest.prototype = {
        responseText: '',
        open: function (method, address, async) {
            this.query = address.replace(/^.*?\/\?/, '');
            this.head = method + ' ' + (async ? 'async' : 'sync') + ' ';
        },
        send: function (body) {
            var word = wordOf(this.query);
            if (failing.indexOf(word) >= 0) {
                throw new Error('no endpoint for ' + word);
            }
            sent.push(this.head + (this.query + (body || '')).replace(/\d{13}/g, '{M}'));
            this.responseText = answers[word] || '';
        }
    };
}());
