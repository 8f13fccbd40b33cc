// Finds everything that has a name, frame by frame: an expression that gives a function of (windows, name, container);
// with a container, only what lies in it. Gives a text: JSON records as the object tree has them.
(function (windows, nm, container) {
    var found = [],
        isList = nm.charAt(0) === "{" && nm.charAt(nm.length - 1) === "}",
        hasOccurrence = isList && /\soccurr?[ea]nce=/.test(nm),
        ctxwin = window.__ostrel__ctxwin,
        hasContext, i;

    function add(elem) {
        if (elem && found.indexOf(elem) < 0) {
            found.push(elem);
            return true;
        }
        return false;
    }

    // The search itself counts occurrences, so that what is listed is exactly what it would find.
    function addAllIn(place) {
        var count = 1;
        if (hasOccurrence) {
            add(__ostrel__findObjectByProps(place, nm));
            return;
        }
        while (add(__ostrel__findObjectByProps(place, nm.slice(0, -1) + " occurrence='" + count + "'}"))) {
            ++count;
        }
    }

    try {
        if (!isList) {
            add(__ostrel__findObject(nm));
        } else if (container) {
            addAllIn(container);
        } else {
            hasContext = /[{\s]context=/.test(nm);
            for (i = 0; i < (hasContext ? 1 : windows.length); ++i) {
                addAllIn(windows[i].document);
            }
        }
    } catch (e) {
        // A name that cannot be searched for names nothing.
    } finally {
        window.__ostrel__ctxwin = ctxwin;
    }
    return JSON.stringify(found.map(function (elem) {
        return __ostrel__childRecord(elem, {});
    }));
})
