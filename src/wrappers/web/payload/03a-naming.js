// 03a  Naming: the name by which a recorded test finds an element again.
//
// Inside the payload a name is escaped from the moment that __ostrel__propertyNameOf returns it.
//
// Defines  __ostrel__nameOf, __ostrel__nameOfBySingleProp, __ostrel__propertyNameOf, __ostrel__multiPropertyNameOf,
//          __ostrel__enclosingLink, __ostrel__isNamedByItself, __ostrel__isMenuCell, __ostrel__hasNamingProperty,
//          __ostrel__hasNamingText, __ostrel__addVisibility, __ostrel__nameAddContainerToName, __ostrel__uniquifyName,
//          __ostrel__addOccurrenceToName, __ostrel__nameWithOccurrence, __ostrel__placeAmongMatches,
//          __ostrel__addFrameContextToName
// Calls    __ostrel__contextOfForUrl, __ostrel__ctxwin, __ostrel__currentContext, __ostrel__explicitContext,
//          __ostrel__isSameWindow (02c-contexts), __ostrel__isShadowRoot (02d-classification),
//          __ostrel__nameOf__hooks (02e-hook-lists), __ostrel__nameOfCMenu, __ostrel__nameOfImage,
//          __ostrel__nameOfInput, __ostrel__nameOfLink, __ostrel__nameOfNamedElement, __ostrel__nameOfSpanOrDiv
//          (03b-name-properties), __ostrel__qualifiedName (03c-hierarchical-names), __ostrel__clean
//          (11-text-simplification), __ostrel__isVisible (12-visibility),
//          __ostrel__removeUnmatchedProperties (14-property-matching), __ostrel__candidatesByTag,
//          __ostrel__findObjectByProps4, __ostrel__isImageLinkName, __ostrel__matchersOfProperties,
//          __ostrel__propertiesOfName (15a-search-by-properties), __ostrel__memberOfNode (19-dom-access)
// At load  nothing runs

/**
 * The name of an object in the scheme that the host has set.
 * Kept as is: the schemes are compared loosely, so while the host has set none of the three variables the name is a
 * single property.
 * @param {Node|Window} [o]
 * @param {boolean} [noUnify] leave out the search that makes the name unique
 * @return {string} escaped
 */
function __ostrel__nameOf(o, noUnify) {
    var scheme = window.top.__ostrel__namegen__scheme,
        hooks = window.__ostrel__nameOf__hooks,
        name, i;

    if (!o) {
        return "[Window]";
    }
    // eslint-disable-next-line eqeqeq -- loosely, as said above
    if (scheme == window.top.__ostrel__namegen__singleprop) {
        return escape(__ostrel__nameOfBySingleProp(o));
    }
    // eslint-disable-next-line eqeqeq -- loosely, as said above
    if (scheme == window.top.__ostrel__namegen__hierarchical) {
        return __ostrel__addFrameContextToName(o, escape(__ostrel__qualifiedName(o)));
    }
    for (i = 0; i < hooks.length; i++) {
        name = hooks[i](o);
        if (name) {
            return __ostrel__addFrameContextToName(o, name);
        }
    }
    return __ostrel__addFrameContextToName(o, __ostrel__propertyNameOf(o, noUnify));
}

/**
 * The one property that stands for an object in the single-property scheme.
 * @param {Node} o
 * @return {string}
 */
function __ostrel__nameOfBySingleProp(o) {
    var node;

    if (o.id || o.name) {
        return o.id || o.name;
    }
    if (o.type === "button" && (o.value || o.innerText)) {
        return o.value || o.innerText;
    }
    for (node = o; node; node = node.parentElement) {
        if (node.tagName === "A") {
            return node.id || node.name || node.innerText;
        }
    }
    return "[Window]";
}

/**
 * The name of an object by its properties. What lies inside a link is named by the link, and what has no property to be
 * named by gets its hierarchical name.
 * @param {Node|Window} o
 * @param {boolean} [noUnify]
 * @param {boolean} [forceMultiProp] never fall back on the hierarchical name for want of properties
 * @return {string} escaped
 */
function __ostrel__propertyNameOf(o, noUnify, forceMultiProp) {
    var link = __ostrel__isNamedByItself(o) ? null : __ostrel__enclosingLink(o),
        name = link ? __ostrel__nameOfLink(link) : __ostrel__multiPropertyNameOf(o, forceMultiProp);

    if (!name) {
        return __ostrel__isSameWindow(o, window) ? "[Window]" : escape(__ostrel__qualifiedName(o));
    }
    o = link || o;
    name = __ostrel__addVisibility(name, o);
    name = __ostrel__nameAddContainerToName(name, o);
    return escape(__ostrel__uniquifyName(name, o, noUnify));
}

/**
 * The multi-property name of an object outside of links, without what is added to all names.
 * @param {Node} o
 * @param {boolean} [forceMultiProp]
 * @return {string|undefined}
 */
function __ostrel__multiPropertyNameOf(o, forceMultiProp) {
    switch (o.tagName) {
    case "INPUT":
    case "SELECT":
    case "BUTTON":
        return __ostrel__nameOfInput(o);
    case "IMG":
        return __ostrel__nameOfImage(o);
    }
    if (__ostrel__isMenuCell(o)) {
        return __ostrel__nameOfCMenu(o);
    }
    if (__ostrel__hasNamingProperty(o)) {
        return __ostrel__nameOfNamedElement(o);
    }
    if (__ostrel__hasNamingText(o)) {
        return __ostrel__nameOfSpanOrDiv(o);
    }
    return forceMultiProp ? __ostrel__nameOfNamedElement(o) : undefined;
}

/**
 * True for elements that keep a name of their own inside a link.
 * @param {Node} o
 * @return {boolean}
 */
function __ostrel__isNamedByItself(o) {
    return o.tagName === "INPUT" || o.tagName === "SELECT" || o.tagName === "BUTTON" || o.tagName === "IMG" ||
        __ostrel__isMenuCell(o);
}

/**
 * True for an entry of the popup menus of one toolkit.
 * @param {Node} o
 * @return {boolean}
 */
function __ostrel__isMenuCell(o) {
    return o.tagName === "TD" && o.getAttribute("class") === "cMenuTD";
}

/**
 * The object itself or its nearest ancestor that is a link.
 * @param {Node} o
 * @return {Element|null}
 */
function __ostrel__enclosingLink(o) {
    while (o && o.tagName !== "A") {
        o = __ostrel__memberOfNode(o, "parentNode");
    }
    return o || null;
}

/**
 * True for an element that can be told by its id, name or title.
 * @param {Node} o
 * @return {boolean}
 */
function __ostrel__hasNamingProperty(o) {
    var id = window.top.__ostrel.includeIdPropertyInGeneratedNames && o.id;

    return !!(o.tagName && (id || o.name || o.title));
}

/**
 * True for an element that can be told by its text.
 * @param {Node} o
 * @return {boolean}
 */
function __ostrel__hasNamingText(o) {
    return /^(SPAN|DIV|LI|TD|TR|LABEL)$/i.test(o.tagName) && !!__ostrel__clean(o.innerText);
}

/**
 * Puts the visibility at the front of a multi-property name.
 * @param {string} name not escaped; other names come back as they are
 * @param {Node} obj
 * @return {string}
 */
function __ostrel__addVisibility(name, obj) {
    if (name.charAt(0) !== "{") {
        return name;
    }
    return "{visible='" + (__ostrel__isVisible(obj) ? "true" : "false") + "' " + name.substring(1);
}

/**
 * Puts the host of the shadow tree that holds an object at the front of its multi-property name.
 * @param {string} name not escaped; other names come back as they are
 * @param {Node} o
 * @return {string}
 */
function __ostrel__nameAddContainerToName(name, o) {
    var root = o.getRootNode ? o.getRootNode() : null;

    if (name.charAt(0) !== "{" || !root || !__ostrel__isShadowRoot(root)) {
        return name;
    }
    return "{container=" + unescape(__ostrel__propertyNameOf(root.host, false, true)) + " " + name.substring(1);
}

/**
 * Makes a name lead to one object by adding which of the equal ones it is. Searches move the search window; it is put
 * back, so that naming an object leaves no trace.
 * @param {string} n not escaped; a name in another form comes back as it is
 * @param {Node} o
 * @param {boolean} [ignore] do nothing
 * @return {string}
 */
function __ostrel__uniquifyName(n, o, ignore) {
    var ctxwin = window.__ostrel__ctxwin;

    if (ignore || (n.charAt(0) !== "{" && n.charAt(n.length - 1) !== "}")) {
        return n;
    }
    try {
        return __ostrel__addOccurrenceToName(n, o);
    } finally {
        window.__ostrel__ctxwin = ctxwin;
    }
}

/**
 * Searches for the first, the second, ... object of a name until that is the wanted one. The first needs no number.
 * @param {string} n
 * @param {Node} o
 * @return {string} the plain name when the search does not come by the object
 */
function __ostrel__addOccurrenceToName(n, o) {
    var name = n,
        occurrence = 1,
        place = __ostrel__placeAmongMatches(n, o),
        found, ctxwin;

    // In a long list a search for each element ahead would take seconds.
    if (place && o.ownerDocument === window.__ostrel__ctxwin.document) {
        // Searches begin in this document, and count in it as was counted here.
        __ostrel__removeUnmatchedProperties(n);
        return place > 1 ? __ostrel__nameWithOccurrence(n, place) : n;
    }
    found = __ostrel__findObjectByProps4(n);
    ctxwin = window.__ostrel__ctxwin;
    if (place > 1 && found && found !== o) {
        name = __ostrel__nameWithOccurrence(n, place);
        if (__ostrel__findObjectByProps4(name) === o) {
            return name;
        }
        window.__ostrel__ctxwin = ctxwin;
    }
    while (found && found !== o) {
        occurrence++;
        name = __ostrel__nameWithOccurrence(n, occurrence);
        found = __ostrel__findObjectByProps4(name);
    }
    return found ? name : n;
}

/**
 * @param {string} n
 * @param {number} occurrence
 * @return {string}
 */
function __ostrel__nameWithOccurrence(n, occurrence) {
    return n.substring(0, n.length - 1) + " occurrence='" + occurrence + "'}";
}

/**
 * The occurrence under which a search is to find an object: no other can lead to it, as a search counts the matches of
 * one document.
 * @param {string} n
 * @param {Node} o
 * @return {number} 0 when it cannot be told, as for names by the image in a link, which are searched for in another way
 */
function __ostrel__placeAmongMatches(n, o) {
    var place = 0,
        props, candidates, matchers, i;

    try {
        props = __ostrel__propertiesOfName(n);
        if (__ostrel__isImageLinkName(props)) {
            return 0;
        }
        candidates = __ostrel__candidatesByTag(o.ownerDocument, props, false);
        matchers = __ostrel__matchersOfProperties(props, n);
        for (i = 0; i < candidates.length; i++) {
            if (matchers.matches(candidates[i])) {
                place++;
                if (candidates[i] === o) {
                    return place;
                }
            }
        }
    } catch (e) {
        // The search does without this answer.
    }
    return 0;
}

/**
 * Puts the window or frame of an object into its name, unless that is where searches start anyway.
 * @param {Node} o
 * @param {string} name escaped
 * @return {string} escaped
 */
function __ostrel__addFrameContextToName(o, name) {
    var ctx, context, plain;

    if (name === "[Window]") {
        return name;
    }
    ctx = __ostrel__currentContext(o);
    if (__ostrel__isSameWindow(ctx, window.__ostrel__explicitContext || window)) {
        return name;
    }
    context = __ostrel__contextOfForUrl(ctx);
    plain = unescape(name);
    if (plain.charAt(0) === "{") {
        // Kept as is: the context leaves escaped twice, and the rest is unescaped twice, so that a literal percent
        // sequence in a property value is lost. Recorded names have always read like this.
        return escape("{context='" + context + "' " + unescape(plain.substring(1)));
    }
    if (/^DOCUMENT(\.|$)/.test(plain)) {
        return escape("DOCUMENT[" + context.replace(/\./g, "|") + "]" + plain.substring("DOCUMENT".length));
    }
    return name;
}
