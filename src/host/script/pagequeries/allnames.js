// Names every element of a page in tree order, frames and shadow trees included: an expression that gives a function
// of (start, limit). Gives JSON: the names from the element number `start` on, as many as came in `limit` milliseconds,
// and whether that was all. The elements are listed anew at each call; a page that changes in between may show one
// twice.
(function (start, limit) {
    var until = Date.now() + limit, names = [], elements = [], i;

    function addTree(node) {
        var child;
        if (node.nodeType === 1) {
            elements.push(node);
        }
        child = node.firstChild;
        while (child) {
            addTree(child);
            child = child.nextSibling;
        }
        if (node.shadowRoot) {
            addTree(node.shadowRoot);
        }
        if (/^I?FRAME$/.test(node.tagName)) {
            addFrame(node);
        }
    }

    function addFrame(frame) {
        try {
            addTree(frame.contentWindow.document);
        } catch (e) {
            // A frame of another origin shows nothing of itself.
        }
    }

    addTree(document);
    for (i = start; i < elements.length && (i === start || Date.now() < until); ++i) {
        names.push(__ostrel__nameOf(elements[i]));
    }
    return JSON.stringify({ names: names, complete: i >= elements.length });
})
