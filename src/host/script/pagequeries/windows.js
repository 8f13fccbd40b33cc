// Lists the windows of a page and its frames, depth first: an expression that gives a function without arguments.
(function () {
    var all = [];

    function add(w) {
        var frames, i;
        all.push(w);
        frames = window.top.__ostrel.getAllFrames(w.document);
        for (i = 0; i < frames.length; ++i) {
            try {
                if (frames[i].contentWindow.document) {
                    add(frames[i].contentWindow);
                }
            } catch (e) {
                // A frame of another origin shows nothing of itself.
            }
        }
    }

    add(window);
    return all;
})
