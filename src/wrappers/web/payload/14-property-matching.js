// 14  Property matching: tells whether an element has a property that a name asks for, and reports what did not match.
//
// Defines  PropertyValue_StrictMatch, PropertyValue_RegExp, PropertyValue_Wildcard, __ostrel__PropValue,
//          __ostrel__matchObject, __ostrel__acceptedByMatchHook, __ostrel__propertyRules, __ostrel__propertyRuleFor,
//          __ostrel__matchesId, __ostrel__matchesRawOrCleaned, __ostrel__matchesClassName,
//          __ostrel__matchesVisibility, __ostrel__isCertainlyVisible, __ostrel__nativeCheckVisibility,
//          __ostrel__styleHides, __ostrel__matchesSimplifiedText, __ostrel__canHaveText, __ostrel__bareAsciiText,
//          __ostrel__isLeftOver, __ostrel__matchesBoolean, __ostrel__matchesMemberOrAttribute, __ostrel__matchesText,
//          __ostrel__propMatches, __ostrel__wildcardToRegExp, __ostrel__addUnmatchedProperty, __ostrel__sentPairs,
//          hasSentUnmatchedProperty, __ostrel__indexPair, __ostrel__removeUnmatchedProperties,
//          __ostrel__reportsUnmatchedProperties, __ostrel.sentUnmatchedProperties, __ostrel.StandardPropertyMatcher
// Calls    __ostrel__getLogEventUrl (01a-log-event), __ostrel__sendXMLHttpRequest (02a-channel),
//          __ostrel__matchObject__hooks, __ostrel__propertyMatcherFactories (02e-hook-lists), __ostrel__idHelper
//          (03b-name-properties), __ostrel.getSimplifiedInnerText, __ostrel__clean (11-text-simplification),
//          __ostrel__isVisible (12-visibility), Ostrel (23-extension-interface)
// At load  the list of reported pairs is emptied, and the standard matcher's factory joins the list of factories

/** Kinds of match of a property value: by the operators "=", "~=" and "?=" of a name. */
var PropertyValue_StrictMatch = 0;
var PropertyValue_RegExp = 1;
var PropertyValue_Wildcard = 2;

/**
 * Value that a name demands of one property. It is a class of its own, so that a walk over a property map can tell
 * our entries from what a page's script added to the prototypes of Array and Object.
 * @constructor
 * @param {string|RegExp} value  a RegExp for the two pattern kinds
 * @param {number} modifiers  one of the PropertyValue_ constants
 */
function __ostrel__PropValue(value, modifiers) {
    this.value = value;
    this.modifiers = modifiers;
}

/**
 * Tells whether an object has a property of a name. A failure is reported for that name.
 * @param {Object} o
 * @param {string} prop  name of the property
 * @param {__ostrel__PropValue} value
 * @param {string} name  the whole object name, for hooks and the report
 * @return {*} truthy on a match
 */
function __ostrel__matchObject(o, prop, value, name) {
    var accepted = __ostrel__acceptedByMatchHook(o, prop, value, name), matches;
    if (accepted) {
        return accepted;
    }
    matches = __ostrel__propertyRuleFor(o, prop)(o, value, prop);
    if (!matches) {
        __ostrel__addUnmatchedProperty(name, prop);
    }
    return matches;
}

/**
 * Asks the hooks of toolkits. A hook can only accept: its falsy answer leaves the decision to the next, and to us.
 * @return {*} the first truthy answer, else undefined
 */
function __ostrel__acceptedByMatchHook(o, prop, value, name) {
    var hooks = window.__ostrel__matchObject__hooks, answer, i;
    for (i = 0; i < hooks.length; ++i) {
        answer = hooks[i](o, prop, value, name);
        if (answer) {
            return answer;
        }
    }
    return undefined;
}

/** Properties that are not compared with a member or an attribute of their own name: functions (o, value, prop). */
var __ostrel__propertyRules = {
    id: __ostrel__matchesId,
    img_alt: function (o, value) {
        return __ostrel__matchesRawOrCleaned(value, o.alt);
    },
    img_src: function (o, value) {
        return __ostrel__matchesRawOrCleaned(value, o.src);
    },
    className: __ostrel__matchesClassName,
    visible: __ostrel__matchesVisibility,
    simplifiedInnerText: __ostrel__matchesSimplifiedText
};

/**
 * @param {Object} o
 * @param {string} prop
 * @return {function(Object, __ostrel__PropValue, string): *} the rule by which this property of this object is compared
 */
function __ostrel__propertyRuleFor(o, prop) {
    if (Object.prototype.hasOwnProperty.call(__ostrel__propertyRules, prop)) {
        return __ostrel__propertyRules[prop];
    }
    return typeof o[prop] === 'boolean' ? __ostrel__matchesBoolean : __ostrel__matchesMemberOrAttribute;
}

/**
 * Generated ids are compared by their lasting part, which is all that a generated name holds.
 * @return {boolean}
 */
function __ostrel__matchesId(o, value) {
    return __ostrel__propMatches(value, __ostrel__idHelper(o.id));
}

/**
 * @param {__ostrel__PropValue} value
 * @param {string} text
 * @return {boolean} whether the text matches as it stands or cleaned
 */
function __ostrel__matchesRawOrCleaned(value, text) {
    return __ostrel__propMatches(value, text) || __ostrel__propMatches(value, __ostrel__clean(text));
}

/**
 * One of the element's classes is enough.
 * @return {boolean}
 */
function __ostrel__matchesClassName(o, value) {
    return Ostrel.hasClassName(o, value.value);
}

/**
 * @return {boolean}
 */
function __ostrel__matchesVisibility(o, value) {
    var wanted = value.value.toLowerCase() === 'true';
    if (__ostrel__isCertainlyVisible(o)) {
        return wanted;
    }
    // A value lives as long as one search.
    value.hiddenParents = value.hiddenParents || (typeof Map === 'undefined' ? undefined : new Map());
    return wanted === __ostrel__isVisible(o, value.hiddenParents);
}

/** The browser's own test, taken at load: a page may shadow the name, as a form does with a control of that name. */
var __ostrel__nativeCheckVisibility = window.Element && window.Element.prototype.checkVisibility;

/** Its options. The first browsers with this test know the only one by the first of the two names alone. */
var __ostrel__styleHides = { checkVisibilityCSS: true, visibilityProperty: true };

/**
 * Spares a search the walk over all ancestors of nearly every candidate. Where the browser finds a box that its style
 * does not hide, no ancestor can be without display. Its "no" means less than ours: for an element without a box
 * of its own (display "contents", say) the walk decides.
 * @return {boolean} true only when __ostrel__isVisible says true as well
 */
function __ostrel__isCertainlyVisible(o) {
    if (!__ostrel__nativeCheckVisibility) {
        return false;
    }
    try {
        return __ostrel__nativeCheckVisibility.call(o, __ostrel__styleHides);
    } catch (e) {
        return false; // not an element
    }
}

/**
 * @return {boolean}
 */
function __ostrel__matchesSimplifiedText(o, value) {
    return __ostrel__canHaveText(o, value) &&
        __ostrel__propMatches(value, window.top.__ostrel.getSimplifiedInnerText(o));
}

/**
 * Spares a search the inner text of nearly every candidate, for which the browser has to look at the layout. What is
 * shown of an element is its text without what is hidden, in another case and with other white space perhaps. That
 * holds for ASCII; the rules of languages for the case of other letters are better left to the browser.
 * @param {Object} o
 * @param {__ostrel__PropValue} value
 * @return {boolean} false only when the inner text cannot be the wanted one
 */
function __ostrel__canHaveText(o, value) {
    var content;

    if (value.bareText === undefined) {
        value.bareText = value.modifiers === PropertyValue_StrictMatch ? __ostrel__bareAsciiText(value.value) : '';
    }
    // Elements of toolkits and of other languages may have another inner text, or none.
    if (!value.bareText || o.namespaceURI !== 'http://www.w3.org/1999/xhtml' ||
        o.tagName.indexOf('-') !== -1 || Object.prototype.hasOwnProperty.call(o, 'innerText')) {
        return true;
    }
    content = o.textContent;
    if (content.length < value.bareText.length) {
        return /[^\x20-\x7e\s]/.test(content);
    }
    content = __ostrel__bareAsciiText(content);
    return content === '' || content === value.bareText ||
        (o.firstElementChild !== null && __ostrel__isLeftOver(value.bareText, content));
}

/**
 * @param {string} rest
 * @param {string} text
 * @return {boolean} whether leaving characters out of the text can give the rest
 */
function __ostrel__isLeftOver(rest, text) {
    var at = -1, i;
    for (i = 0; i < rest.length; ++i) {
        at = text.indexOf(rest.charAt(i), at + 1);
        if (at === -1) {
            return false;
        }
    }
    return true;
}

/**
 * @param {string} text
 * @return {string} without white space and in lower case; "" for a text that is not all ASCII
 */
function __ostrel__bareAsciiText(text) {
    return /[^\x20-\x7e\s]/.test(text) ? '' : text.replace(/\s+/g, '').toLowerCase();
}

/**
 * @return {boolean}
 */
function __ostrel__matchesBoolean(o, value, prop) {
    return value.value.toLowerCase() === 'true' ? o[prop] : !o[prop];
}

/**
 * Compares a property without a rule of its own: with the member of that name, then with the attribute, and a
 * property such as "style.color" with the member at the end of that path.
 * @return {boolean}
 */
function __ostrel__matchesMemberOrAttribute(o, value, prop) {
    var member = o[prop], attribute;
    if (__ostrel__matchesText(value, member)) {
        return true;
    }
    attribute = o.getAttribute(prop);
    return (attribute !== member && __ostrel__matchesText(value, attribute)) ||
        (prop.indexOf('.') !== -1 && __ostrel__matchesText(value, eval('o.' + prop)));
}

/**
 * @param {__ostrel__PropValue} value
 * @param {*} text
 * @return {boolean} whether the text matches cleaned, as it stands, or with both sides cleaned
 */
function __ostrel__matchesText(value, text) {
    var cleaned = __ostrel__clean(text);
    return __ostrel__propMatches(value, cleaned) ||
        (cleaned !== text && __ostrel__propMatches(value, text)) ||
        __ostrel__propMatches(value, cleaned, true);
}

/**
 * Compares one text with a property value.
 * @param {__ostrel__PropValue} prop
 * @param {*} s
 * @param {boolean=} clean  clean the value too; patterns are taken as they are in any case
 * @return {boolean|undefined} undefined for an unknown kind of match
 */
function __ostrel__propMatches(prop, s, clean) {
    switch (prop.modifiers) {
    case PropertyValue_StrictMatch:
        // eslint-disable-next-line eqeqeq -- a toolkit's member may be a number where a name can only hold text
        return (clean ? __ostrel__clean(prop.value) : prop.value) == s;
    case PropertyValue_RegExp:
    case PropertyValue_Wildcard:
        return prop.value.test(s);
    }
    return undefined;
}

/**
 * Turns a wildcard text, in which "*" stands for any text and "?" for one character, into an anchored expression.
 * @param {string} s
 * @return {string} source of a regular expression
 */
function __ostrel__wildcardToRegExp(s) {
    var self = __ostrel__wildcardToRegExp;
    if (!self.specials) {
        // Kept as is: the caret is not among the specials; existing names rely on what it does in an expression.
        self.specials = new RegExp('[/.+|()\\[\\]{}\\\\$]', 'g');
    }
    return '^' + s.replace(self.specials, '\\$&').replace(/\*/g, '.*').replace(/\?/g, '.') + '$';
}

/**
 * Tells the host, once in a search, that a property of a name did not match.
 * @param {string} objname
 * @param {string} property
 */
function __ostrel__addUnmatchedProperty(objname, property) {
    if (!__ostrel__reportsUnmatchedProperties() || hasSentUnmatchedProperty(objname, property)) {
        return;
    }
    __ostrel__sendXMLHttpRequest(document, __ostrel__getLogEventUrl('event=addUnmatchedProperty&name=' +
        escape(objname) + '&property=' + escape(property)), true);
}

/** An index of the pairs that were sent, made of the list when that is another one: properties by name. */
var __ostrel__sentPairs = { list: null, length: 0, known: null };

/**
 * Tells whether a pair was sent, and counts it as sent from here on. This is asked for every failing element, and
 * naming many objects makes a long list.
 *
 * Kept as is: it bears its name without the prefix of our other functions.
 * @param {string} name
 * @param {string} prop
 * @return {boolean}
 */
function hasSentUnmatchedProperty(name, prop) {
    var sent = __ostrel.sentUnmatchedProperties,
        pairs = __ostrel__sentPairs,
        i;
    if (pairs.list !== sent || pairs.length !== sent.length) {
        pairs.list = sent;
        pairs.known = Object.create(null);
        for (i = 0; i < sent.length; ++i) {
            __ostrel__indexPair(sent[i].name, sent[i].prop);
        }
        pairs.length = sent.length;
    }
    if (pairs.known[name] && pairs.known[name][prop]) {
        return true;
    }
    pairs.length = sent.push({ name: name, prop: prop });
    __ostrel__indexPair(name, prop);
    return false;
}

/**
 * @param {string} name
 * @param {string} prop
 */
function __ostrel__indexPair(name, prop) {
    var known = __ostrel__sentPairs.known;
    known[name] = known[name] || Object.create(null);
    known[name][prop] = true;
}

/**
 * Tells the host that a name was found after all, so that what was reported of it is void.
 * @param {string} objname
 */
function __ostrel__removeUnmatchedProperties(objname) {
    if (__ostrel__reportsUnmatchedProperties()) {
        __ostrel__sendXMLHttpRequest(document,
            __ostrel__getLogEventUrl('event=removeUnmatchedProperties&name=' + escape(objname)), true);
    }
}

/**
 * While a user records or picks, searches only serve to make names unique, and what they miss is of no interest.
 * @return {boolean}
 */
function __ostrel__reportsUnmatchedProperties() {
    return !window.__ostrel__recording && !window.__ostrel__pickObject;
}

/** What was reported since the last search began: records with the members name and prop. */
__ostrel.sentUnmatchedProperties = [];

/**
 * Matcher of every property that no toolkit claims.
 * @constructor
 * @param {string} propName
 * @param {__ostrel__PropValue} propValue
 * @param {string} objectName
 */
__ostrel.StandardPropertyMatcher = function (propName, propValue, objectName) {
    this.propName = propName;
    this.propValue = propValue;
    this.objectName = objectName;
};

/**
 * @param {Object} o
 * @return {*} truthy on a match
 */
__ostrel.StandardPropertyMatcher.prototype.matchObject = function (o) {
    return __ostrel__matchObject(o, this.propName, this.propValue, this.objectName);
};

// Factories are asked from the front. Toolkits insert theirs before the standard one, which always answers.
window.__ostrel__propertyMatcherFactories.push(function (propName, propValue, objectName) {
    return new __ostrel.StandardPropertyMatcher(propName, propValue, objectName);
});
