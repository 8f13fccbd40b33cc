// 15  Object search, by properties: finds the object that a multi-property name stands for.
//
// Defines  __ostrel__findObject, __ostrel__findObjectByProps, __ostrel__findObjectByProps2,
//          __ostrel__findObjectByProps3, __ostrel__findObjectByProps4, __ostrel__propertiesOfName,
//          __ostrel__propValueOf, __ostrel__matchesToSkip, __ostrel__passesOver, __ostrel__isImageLinkName,
//          __ostrel__searchContainer, __ostrel__searchForm, __ostrel__findFormInContainer,
//          __ostrel__findLinkAroundImage, __ostrel__imageMatches, __ostrel__linkAround, __ostrel__candidatesByTag,
//          __ostrel__controlsOfForm, __ostrel__withShadowCandidates, __ostrel__matchersOfProperties,
//          __ostrel__MatcherChain, __ostrel__matcherOfProperty
// Calls    __ostrel.getAllFrames, __ostrel__contextList, __ostrel__ctxwin, __ostrel__findContext2,
//          __ostrel__hasContext (02c-contexts), __ostrel__propertyMatcherFactories (02e-hook-lists),
//          __ostrel__isFrameAccessible (02i-frame-hookup), __ostrel.parseMultiPropertyName (03d-object-names),
//          __ostrel__clean (11-text-simplification), PropertyValue_RegExp, PropertyValue_StrictMatch,
//          PropertyValue_Wildcard, __ostrel.StandardPropertyMatcher, __ostrel.sentUnmatchedProperties,
//          __ostrel__PropValue, __ostrel__addUnmatchedProperty, __ostrel__propMatches,
//          __ostrel__removeUnmatchedProperties, __ostrel__reportsUnmatchedProperties, __ostrel__wildcardToRegExp
//          (14-property-matching), __ostrel__findObjectByHeuristic4 (15b-search-by-heuristic), Ostrel
//          (23-extension-interface)
// At load  the methods of __ostrel__MatcherChain are set

/**
 * Finds the object of a name, a multi-property name or a plain word, in all windows and frames.
 * @param {string} nm
 * @return {Object|undefined}
 */
function __ostrel__findObject(nm) {
    __ostrel.sentUnmatchedProperties = [];
    if (nm.charAt(0) === '{' && nm.charAt(nm.length - 1) === '}') {
        return __ostrel__findObjectByProps4(nm);
    }
    return __ostrel__findObjectByHeuristic4(nm);
}

/**
 * Searches the search window first, then all windows. The search window moves to where the object was found.
 * @param {string} nm
 * @return {Object|undefined}
 */
function __ostrel__findObjectByProps4(nm) {
    var searched = [], found;
    try {
        found = __ostrel__findObjectByProps(window.__ostrel__ctxwin.document, nm, searched);
    } catch (e) {
        // A name that cannot be searched for counts as not found.
    }
    return found || __ostrel__findObjectByProps3(nm, searched);
}

/**
 * Searches every window that is known, with its frames.
 * @param {string} nm
 * @param {Array=} searched  see __ostrel__findObjectByProps
 * @return {Object|undefined}
 */
function __ostrel__findObjectByProps3(nm, searched) {
    var windows = __ostrel__contextList(), found, i;
    for (i = 0; i < windows.length && !found; ++i) {
        try {
            found = __ostrel__findObjectByProps2(nm, windows[i], searched);
        } catch (e) {
            // The next window may still have it.
        }
    }
    return found;
}

/**
 * Searches a window and its frames, depth first.
 * @param {string} nm
 * @param {Window} w
 * @param {Array=} searched  see __ostrel__findObjectByProps
 * @return {Object|undefined} with an object, the search window stays where it was found
 */
function __ostrel__findObjectByProps2(nm, w, searched) {
    var before = window.__ostrel__ctxwin, found, frames, i;
    window.__ostrel__ctxwin = w;
    try {
        try {
            found = __ostrel__findObjectByProps(w.document, nm, searched);
        } catch (e) {
            // What this document made fail need not fail in its frames.
        }
        frames = found ? [] : window.top.__ostrel.getAllFrames(w.document);
        for (i = 0; i < frames.length && !found; ++i) {
            if (__ostrel__isFrameAccessible(frames[i])) {
                found = __ostrel__findObjectByProps2(nm, frames[i].contentWindow, searched);
            }
        }
    } finally {
        if (!found) {
            window.__ostrel__ctxwin = before;
        }
    }
    return found;
}

/**
 * Searches a document or an element.
 * @param {Document|Element} container
 * @param {string} nm  a multi-property name
 * @param {Array=} searched  documents and elements that the search of this name has been through. Windows and names
 *     with a context lead to one document several times, and what was not in it then is not in it now.
 * @return {Object|undefined}
 * @throws for a bad regular expression and for a name without tagName
 */
function __ostrel__findObjectByProps(container, nm, searched) {
    var props = __ostrel__propertiesOfName(nm), skip, isImageLink, candidates, matchers, link, i;
    if (!props) {
        return undefined;
    }
    skip = { count: __ostrel__matchesToSkip(props.occurrence || props.occurance) };
    isImageLink = __ostrel__isImageLinkName(props);
    container = __ostrel__searchContainer(container, props.context, nm);
    if (!container || (searched && searched.indexOf(container) !== -1)) {
        return undefined;
    }
    if (searched) {
        searched.push(container);
    }
    if (isImageLink) {
        link = __ostrel__findLinkAroundImage(container, props, skip);
        if (link) {
            return link;
        }
        props.name = props.img_name;
        props.id = props.img_id;
        props.tagName.value = 'IMG';
    }
    candidates = __ostrel__candidatesByTag(container, props, isImageLink);
    matchers = __ostrel__matchersOfProperties(props, nm);
    for (i = 0; i < candidates.length; ++i) {
        if (matchers.matches(candidates[i]) && !__ostrel__passesOver(skip)) {
            __ostrel__removeUnmatchedProperties(nm);
            return isImageLink ? __ostrel__linkAround(candidates[i]) : candidates[i];
        }
    }
    if (candidates.length === 0) {
        __ostrel__addUnmatchedProperty(nm, 'tagName');
    }
    return undefined;
}

/**
 * @param {string} nm
 * @return {Array|undefined} map from property name to __ostrel__PropValue; undefined for a name that does not parse
 * @throws for a bad regular expression
 */
function __ostrel__propertiesOfName(nm) {
    var name = window.top.__ostrel.parseMultiPropertyName(nm), props = [], names, i;
    if (!name) {
        return undefined;
    }
    names = name.getPropertyNames();
    for (i = 0; i < names.length; ++i) {
        props[names[i]] = __ostrel__propValueOf(name.getPropertyValue(names[i]));
    }
    return props;
}

/**
 * @param {string|Object} value  as the parser of names gives it
 * @return {__ostrel__PropValue}
 */
function __ostrel__propValueOf(value) {
    if (value instanceof Ostrel.RegExPropertyValue) {
        return new __ostrel__PropValue(new RegExp(value.regex), PropertyValue_RegExp);
    }
    if (value instanceof Ostrel.WildCardPropertyValue) {
        return new __ostrel__PropValue(new RegExp(__ostrel__wildcardToRegExp(value.wildcard)), PropertyValue_Wildcard);
    }
    return new __ostrel__PropValue(String(value), PropertyValue_StrictMatch);
}

/**
 * @param {__ostrel__PropValue=} occurrence
 * @return {number} how many matches precede the one that is meant; NaN or less than 0 skips none
 */
function __ostrel__matchesToSkip(occurrence) {
    if (!occurrence || occurrence.modifiers !== PropertyValue_StrictMatch || occurrence.value === '') {
        return 0;
    }
    return Number(occurrence.value) - 1;
}

/**
 * @param {{count: number}} skip  counted down
 * @return {boolean} whether a match is one of those that precede the one meant
 */
function __ostrel__passesOver(skip) {
    if (skip.count > 0) {
        --skip.count;
        return true;
    }
    return false;
}

/**
 * @param {Array} props
 * @return {boolean} whether the name means a link by the image inside it
 * @throws when there is no tagName, which every name must have
 */
function __ostrel__isImageLinkName(props) {
    return !!(__ostrel__propMatches(props.tagName, 'A') &&
        (props.img_id || props.img_name || props.img_alt || props.img_src));
}

/**
 * @param {Document|Element} container
 * @param {__ostrel__PropValue|undefined} context
 * @param {string} nm
 * @return {Document|Element|undefined} where to search; undefined for an unknown context, if that is an error
 */
function __ostrel__searchContainer(container, context, nm) {
    if (!context || context.value === '') {
        return container;
    }
    if (__ostrel__hasContext(context.value)) {
        return __ostrel__findContext2(context.value).document;
    }
    if (window.top.__ostrel__throwErrorForUnknownContextName) {
        __ostrel__addUnmatchedProperty(nm, 'context');
        return undefined;
    }
    return container;
}

/**
 * @param {Document|Element} container
 * @param {__ostrel__PropValue=} form
 * @return {HTMLFormElement|undefined} the form to which the name limits the search
 */
function __ostrel__searchForm(container, form) {
    if (!form || form.modifiers !== PropertyValue_StrictMatch || form.value === '') {
        return undefined;
    }
    return __ostrel__findFormInContainer(container, form.value);
}

/**
 * Kept as is: ids are not looked at, though a generated name may hold the form's id. Such a name searches the whole
 * container.
 * @param {Document|Element} container
 * @param {string} name
 * @return {HTMLFormElement|undefined} the first form with this attribute "name"; its member may be a control
 */
function __ostrel__findFormInContainer(container, name) {
    var forms = container.getElementsByTagName('FORM'), i;
    for (i = 0; i < forms.length; ++i) {
        if (forms[i].getAttribute('name') === name) {
            return forms[i];
        }
    }
    return undefined;
}

/**
 * @param {Document|Element} container
 * @param {Array} props
 * @param {{count: number}} skip  counted down for each match that is passed over
 * @return {HTMLAnchorElement|undefined} the link whose first image has the image properties of the name
 */
function __ostrel__findLinkAroundImage(container, props, skip) {
    var links = container.getElementsByTagName('A'), image, i;
    for (i = 0; i < links.length; ++i) {
        image = links[i].getElementsByTagName('IMG')[0];
        if (image && __ostrel__imageMatches(image, props) && !__ostrel__passesOver(skip)) {
            return links[i];
        }
    }
    return undefined;
}

/**
 * @param {HTMLImageElement} image
 * @param {Array} props
 * @return {boolean}
 */
function __ostrel__imageMatches(image, props) {
    return (!props.img_id || __ostrel__propMatches(props.img_id, image.id)) &&
        (!props.img_name || __ostrel__propMatches(props.img_name, image.name)) &&
        (!props.img_src || __ostrel__propMatches(props.img_src, image.src)) &&
        (!props.img_alt || __ostrel__propMatches(props.img_alt, image.alt) ||
            __ostrel__propMatches(props.img_alt, __ostrel__clean(image.alt)));
}

/**
 * @param {HTMLImageElement} image
 * @return {Element} the link that the image stands in, or the image itself
 */
function __ostrel__linkAround(image) {
    var elem = image;
    while (elem && elem.tagName !== 'A') {
        elem = elem.parentElement;
    }
    return elem || image;
}

/**
 * Lists the elements that may be meant, in the order in which occurrences count.
 * @param {Document|Element} container
 * @param {Array} props
 * @param {boolean} ignoreForm
 * @return {Array|HTMLCollection}
 */
function __ostrel__candidatesByTag(container, props, ignoreForm) {
    var tagName = props.tagName.value,
        form = ignoreForm ? undefined : __ostrel__searchForm(container, props.form),
        candidates = form ? __ostrel__controlsOfForm(form, tagName) : [];
    if (candidates.length === 0) {
        // A pattern is taken for a tag name here, and so finds nothing.
        candidates = container.getElementsByTagName(tagName);
    }
    return container.shadowRoot ?
        __ostrel__withShadowCandidates(candidates, container.shadowRoot, tagName) : candidates;
}

/**
 * @param {HTMLFormElement} form
 * @param {string} tagName
 * @return {Array}
 */
function __ostrel__controlsOfForm(form, tagName) {
    var controls = [], i;
    for (i = 0; i < form.elements.length; ++i) {
        if (form.elements[i].tagName === tagName) {
            controls.push(form.elements[i]);
        }
    }
    return controls;
}

/**
 * Elements of a shadow tree come last, so that names of older scripts keep their occurrence, and since the shadow
 * root is the last child wherever children are listed.
 * @param {Array|HTMLCollection} candidates
 * @param {ShadowRoot} shadowRoot
 * @param {string} tagName
 * @return {Array}
 */
function __ostrel__withShadowCandidates(candidates, shadowRoot, tagName) {
    var slice = Array.prototype.slice;
    return slice.call(candidates).concat(slice.call(shadowRoot.querySelectorAll(tagName)));
}

/**
 * @param {Array} props
 * @param {string} nm
 * @return {__ostrel__MatcherChain} one matcher for each property that elements are compared by, in the order of the
 *     name
 */
function __ostrel__matchersOfProperties(props, nm) {
    var notCompared = { tagName: true, occurrence: true, occurance: true, form: true, context: true },
        matchers = [], matcher, prop;
    for (prop in props) {
        if (props[prop] instanceof __ostrel__PropValue && notCompared[prop] !== true) {
            matcher = __ostrel__matcherOfProperty(prop, props[prop], nm);
            if (matcher) {
                matchers.push(matcher);
            }
        }
    }
    return new __ostrel__MatcherChain(matchers);
}

/**
 * The matchers of a name, asked one after the other until one fails. The order of the name only matters for what is
 * reported: of each element the first property that fails, and each property once. When there is no more to report,
 * visibility is asked last, since it takes a look at the layout and fails for few elements.
 * @constructor
 * @param {Array} matchers
 */
function __ostrel__MatcherChain(matchers) {
    this.matchers = matchers;
    this.failed = [];
    this.unreported = matchers.length;
    if (!__ostrel__reportsUnmatchedProperties()) {
        this.forgetOrder();
    }
}

/**
 * @param {Element} elem
 * @return {boolean} whether all of them match
 */
__ostrel__MatcherChain.prototype.matches = function (elem) {
    var i;
    for (i = 0; i < this.matchers.length; ++i) {
        if (!this.matchers[i].matchObject(elem)) {
            this.noteFailure(i);
            return false;
        }
    }
    return true;
};

/**
 * @param {number} i  the matcher that has failed, by which its property is reported
 */
__ostrel__MatcherChain.prototype.noteFailure = function (i) {
    if (this.unreported > 0 && !this.failed[i]) {
        this.failed[i] = true;
        --this.unreported;
        if (this.unreported === 0) {
            this.forgetOrder();
        }
    }
};

/** Puts the matcher of visibility behind the others. */
__ostrel__MatcherChain.prototype.forgetOrder = function () {
    function isVisibility(matcher) {
        return matcher instanceof __ostrel.StandardPropertyMatcher && matcher.propName === 'visible';
    }
    function isOther(matcher) {
        return !isVisibility(matcher);
    }

    this.unreported = 0;
    this.matchers = this.matchers.filter(isOther).concat(this.matchers.filter(isVisibility));
};

/**
 * @param {string} prop
 * @param {__ostrel__PropValue} value
 * @param {string} nm
 * @return {Object|undefined} the first matcher that a factory gives
 */
function __ostrel__matcherOfProperty(prop, value, nm) {
    var factories = window.__ostrel__propertyMatcherFactories, matcher, i;
    for (i = 0; i < factories.length && !matcher; ++i) {
        matcher = factories[i](prop, value, nm);
    }
    return matcher;
}
