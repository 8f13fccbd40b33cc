// 15  Object search, by a plain word: finds the object that a user means by a text, an id or a name alone.
//
// Defines  __ostrel__findObjectByHeuristic, __ostrel__findObjectByHeuristic2, __ostrel__findObjectByHeuristic3,
//          __ostrel__findObjectByHeuristic4, __ostrel__hasCleanedText, __ostrel__firstWithCleanedText,
//          __ostrel__findLabelledOrButton, __ostrel__isButtonSaying
// Calls    __ostrel.getAllFrames, __ostrel__contextList, __ostrel__ctxwin (02c-contexts), __ostrel__clean
//          (11-text-simplification)
// At load  nothing runs

/**
 * Searches the search window first, then all windows. The search window moves to where the object was found.
 * @param {string} nm
 * @return {Object|undefined}
 */
function __ostrel__findObjectByHeuristic4(nm) {
    var found;
    try {
        found = __ostrel__findObjectByHeuristic(nm);
    } catch (e) {
        // A search window that has gone counts as one without the object.
    }
    return found || __ostrel__findObjectByHeuristic3(nm);
}

/**
 * Searches every window that is known, with its frames.
 * @param {string} nm
 * @return {Object|undefined}
 */
function __ostrel__findObjectByHeuristic3(nm) {
    var windows = __ostrel__contextList(), found, i;
    for (i = 0; i < windows.length && !found; ++i) {
        try {
            found = __ostrel__findObjectByHeuristic2(nm, windows[i]);
        } catch (e) {
            // The next window may still have it.
        }
    }
    return found;
}

/**
 * Searches a window and its frames, depth first.
 * Kept as is: frames are not tested for access, as they are for multi-property names; the first frame that cannot be
 * entered ends the loop over its siblings.
 * @param {string} nm
 * @param {Window} w
 * @return {Object|undefined} with an object, the search window stays where it was found
 * @throws for a window that cannot be entered
 */
function __ostrel__findObjectByHeuristic2(nm, w) {
    var before = window.__ostrel__ctxwin, found, frames, i;
    window.__ostrel__ctxwin = w;
    try {
        found = __ostrel__findObjectByHeuristic(nm);
        frames = found ? [] : window.top.__ostrel.getAllFrames(w.document);
        try {
            for (i = 0; i < frames.length && !found; ++i) {
                found = __ostrel__findObjectByHeuristic2(nm, frames[i].contentWindow);
            }
        } catch (e) {
            // An inaccessible frame.
        }
    } finally {
        if (!found) {
            window.__ostrel__ctxwin = before;
        }
    }
    return found;
}

/**
 * Searches the document of the search window. The rules are asked in order, and the first that finds something wins.
 * @param {string} nm
 * @return {Element|undefined}
 */
function __ostrel__findObjectByHeuristic(nm) {
    var doc = window.__ostrel__ctxwin.document;
    return __ostrel__firstWithCleanedText(doc.links, nm) ||
        doc.getElementById(nm) ||
        doc.getElementsByName(nm)[0] ||
        __ostrel__findLabelledOrButton(doc, nm) ||
        __ostrel__firstWithCleanedText(doc.getElementsByTagName('DIV'), nm);
}

/**
 * @param {Element} elem
 * @param {string} text
 * @return {boolean}
 */
function __ostrel__hasCleanedText(elem, text) {
    return __ostrel__clean(elem.innerText) === text;
}

/**
 * @param {HTMLCollection} elems
 * @param {string} text
 * @return {Element|undefined}
 */
function __ostrel__firstWithCleanedText(elems, text) {
    var i;
    for (i = 0; i < elems.length; ++i) {
        if (__ostrel__hasCleanedText(elems[i], text)) {
            return elems[i];
        }
    }
    return undefined;
}

/**
 * Scans all elements for what a label or a button says.
 * @param {Document} doc
 * @param {string} text
 * @return {Element|null|undefined} null for a label whose control does not exist: it ends the scan all the same
 */
function __ostrel__findLabelledOrButton(doc, text) {
    // Old Internet Explorer does not know "*" as a tag name, but has document.all.
    var elems = document.all ? doc.all : doc.getElementsByTagName('*'), i;
    for (i = 0; i < elems.length; ++i) {
        if (elems[i].tagName === 'LABEL' && __ostrel__hasCleanedText(elems[i], text)) {
            return doc.getElementById(elems[i].htmlFor);
        }
        if (__ostrel__isButtonSaying(elems[i], text)) {
            return elems[i];
        }
    }
    return undefined;
}

/**
 * @param {Element} elem
 * @param {string} text
 * @return {boolean}
 */
function __ostrel__isButtonSaying(elem, text) {
    return elem.type === 'button' &&
        (__ostrel__hasCleanedText(elem, text) || __ostrel__clean(elem.value) === text);
}
