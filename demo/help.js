// Help: a frame with a frame in it, one that reloads and one that arrives late.

(function () {
    'use strict';

    const { byId, log, make } = Shop;
    const TALK_DELAY = 800;

    // "help.html#returns" opens that topic in the frame.
    function showTopic() {
        const topic = location.hash.slice(1);
        if (['delivery', 'returns', 'care'].includes(topic)) {
            byId('topics').src = 'help-topics.html?topic=' + topic;
        }
    }

    byId('reload-status').addEventListener('click', () => {
        log('status refreshed');
        byId('status').contentWindow.location.reload();
    });
    window.addEventListener('hashchange', showTopic);
    showTopic();
    setTimeout(() => {
        byId('talk-place').replaceChildren(make('iframe', { id: 'talk', name: 'talk', title: 'Conversation', src: 'help-talk.html', height: 278 }));
    }, TALK_DELAY);
}());
