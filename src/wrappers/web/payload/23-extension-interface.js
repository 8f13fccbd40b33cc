// 23  Extension interface: what scripts for toolkits may call, and the parsed form of object names.
//
// Defines  Ostrel, __ostrel__listContains, __ostrel__blankSeparatedWords
// Calls    __ostrel__srcElement (01c-event-object), __ostrel__click__hooks, __ostrel__eventObject__hooks,
//          __ostrel__eventToStr__hooks, __ostrel__eventType__hooks, __ostrel__itemTextForEvent__hooks,
//          __ostrel__knownWidgets, __ostrel__matchObject__hooks, __ostrel__nameOf__hooks,
//          __ostrel__objectNameAndType__hooks, __ostrel__pickableObjectHooks, __ostrel__propertyMatcherFactories,
//          __ostrel__typeOf__hooks, __ostrel__useIE8AndOlderEventDispatchingOverride__hooks (02e-hook-lists),
//          __ostrel__addVisibility, __ostrel__nameOf, __ostrel__propertyNameOf, __ostrel__uniquifyName (03a-naming),
//          __ostrel__escapeCharactersInPropertyValue, __ostrel__propsToNameStr (03b-name-properties), __ostrel__clean
//          (11-text-simplification), __ostrel__isVisible (12-visibility), __ostrel__addUnmatchedProperty,
//          __ostrel__propMatches (14-property-matching), __ostrel__click, __ostrel__clickButton, __ostrel__dblclick
//          (17a-clicks), __ostrel__createMultiSelectOptionStr, __ostrel__createTextArrayFromMultiOptionString,
//          __ostrel__getSelectedOptionTexts (17f-select-options)
// At load  the object is made, so that extension scripts, which follow, can call it right away

/** The page object of extension scripts. */
var Ostrel = {};

/**
 * Toolkits with support of their own. Each toolkit's script looks here whether it should become active.
 * Kept as is: an array serves as the map, as extension scripts know it.
 */
Ostrel.toolkitExtensions = [];
Ostrel.toolkitExtensions.Backbase = { enabled: false };
Ostrel.toolkitExtensions.Dojo = { enabled: true };
Ostrel.toolkitExtensions.GWC = { enabled: true };
Ostrel.toolkitExtensions.GWT = { enabled: true };
Ostrel.toolkitExtensions.Infragistics = { enabled: true };
Ostrel.toolkitExtensions.ITMILL = { enabled: true };
Ostrel.toolkitExtensions.Kiwi = { enabled: true };
Ostrel.toolkitExtensions.qooxdoo = { enabled: true };
Ostrel.toolkitExtensions.SmartClient = { enabled: true };
Ostrel.toolkitExtensions.Telerik = { enabled: true };
Ostrel.toolkitExtensions.richfaces = { enabled: true };

// ---- registration -------------------------------------------------------------------------------------------------

/**
 * @param {function(Object): (string|undefined)} f  gives the type string of an object that it knows
 */
Ostrel.addTypeOfHook = function (f) {
    Ostrel.addTypeOfHookWithPriority(f, 100);
};

/**
 * @param {function(Object): (string|undefined)} f
 * @param {number} prio  the answer of the highest wins, and of equals the one registered first
 */
Ostrel.addTypeOfHookWithPriority = function (f, prio) {
    window.__ostrel__typeOf__hooks.push({ func: f, prio: prio });
};

/**
 * @param {function(Object): (string|undefined)} f  gives the name of an object, in escaped form
 */
Ostrel.addNameOfHook = function (f) {
    window.__ostrel__nameOf__hooks.push(f);
};

/**
 * @param {function(Object, string, __ostrel__PropValue, string): *} f  (o, prop, value, name), truthy on a match
 */
Ostrel.addMatchObjectHook = function (f) {
    window.__ostrel__matchObject__hooks.push(f);
};

/**
 * @param {function(string, __ostrel__PropValue, string): (Object|undefined)} f  (propName, propValue, objectName),
 *     gives a matcher, an object with matchObject(o), for a property that it knows; the newest factory is asked first
 */
Ostrel.addPropertyMatcherFactory = function (f) {
    window.__ostrel__propertyMatcherFactories.unshift(f);
};

/**
 * @param {function(Object, boolean, boolean, boolean, number, number, number): *} f  (o, ctrl, shift, alt, x, y,
 *     button), truthy when it did the click; of a double click it only gets the object
 */
Ostrel.addClickHook = function (f) {
    window.__ostrel__click__hooks.push(f);
};

/**
 * @param {function(Object): (Object|undefined)} f  gives the object that an event on another counts for
 */
Ostrel.addEventObjectHook = function (f) {
    window.__ostrel__eventObject__hooks.push(f);
};

/**
 * @param {function(string, Object, Event, string): (string|undefined)} f  (type, o, event, name), gives text that is
 *     added to a recorded event
 */
Ostrel.addEventToStringHook = function (f) {
    window.__ostrel__eventToStr__hooks.push(f);
};

/**
 * @param {function(Element): ({name: string, type: string}|undefined)} f  for a toolkit that finds both at once
 */
Ostrel.addObjectNameAndTypeHook = function (f) {
    window.__ostrel__objectNameAndType__hooks.push(f);
};

/**
 * @param {function(Object, Event, string): (string|undefined)} f  (eventObject, event, eventObjectType), gives the
 *     type under which an event is recorded
 */
Ostrel.addEventTypeHook = function (f) {
    window.__ostrel__eventType__hooks.push(f);
};

/**
 * @param {function(Object): (string|undefined)} f  gives the text of the item that an event hit
 */
Ostrel.addItemTextForEventObjectHook = function (f) {
    window.__ostrel__itemTextForEvent__hooks.push(f);
};

/**
 * @param {function(Element): (Object|undefined)} hookFn  gives the object to pick in place of an element
 */
Ostrel.addPickableObjectHook = function (hookFn) {
    window.__ostrel__pickableObjectHooks.push(hookFn);
};

/**
 * @param {function(Object): boolean} hookFn  true for an object that old event dispatching reaches better; a function
 *     that is registered already is not registered again
 */
Ostrel.addOverrideHookForUseIE8EventDispatching = function (hookFn) {
    var hooks = window.__ostrel__useIE8AndOlderEventDispatchingOverride__hooks;
    if (Ostrel.arrayIndexOf(hooks, hookFn) === -1) {
        hooks.push(hookFn);
    }
};

/**
 * @param {{Class: string, Event: string}} args  a class of elements that react to an event
 */
Ostrel.registerWidget = function (args) {
    window.__ostrel__knownWidgets.push(args);
};

// ---- elements and names -------------------------------------------------------------------------------------------

/**
 * @param {Object} o
 * @param {string} cls
 * @return {boolean}
 */
Ostrel.hasClassName = function (o, cls) {
    return !!o && !!o.className && __ostrel__listContains(o.className, cls);
};

/**
 * @param {*} s
 * @return {*} see __ostrel__clean
 */
Ostrel.cleanString = function (s) {
    return __ostrel__clean(s);
};

/**
 * @param {Object} o
 * @param {boolean=} noHooks  name it as if no toolkit knew it, and without its frame
 * @return {string} in escaped form
 */
Ostrel.nameOf = function (o, noHooks) {
    return noHooks ? __ostrel__propertyNameOf(o) : __ostrel__nameOf(o);
};

/**
 * @param {Document|Element} context
 * @param {string} className
 * @param {string} tagName
 * @return {Array} the elements below the context with this tag and class, in document order
 */
Ostrel.getElementsByClassName = function (context, className, tagName) {
    var elems = context.getElementsByTagName(tagName), found = [], i;
    for (i = 0; i < elems.length; ++i) {
        if (Ostrel.hasClassName(elems[i], className)) {
            found.push(elems[i]);
        }
    }
    return found;
};

/**
 * @return {Element|undefined} the first of Ostrel.getElementsByClassName
 */
Ostrel.getElementByClassName = function (context, className, tagName) {
    return Ostrel.getElementsByClassName(context, className, tagName)[0];
};

/**
 * @param {Object} o
 * @param {Array} props  names of properties
 * @return {string} the properties as they stand in a name
 */
Ostrel.propertiesToName = function (o, props) {
    return __ostrel__propsToNameStr(o, props);
};

/**
 * @param {string} n
 * @param {Object} o
 * @param {boolean=} ignore  leave the name as it is
 * @return {string} the name with an occurrence, when another object is found by it first
 */
Ostrel.uniquifyName = function (n, o, ignore) {
    return __ostrel__uniquifyName(n, o, ignore);
};

/** The same by another name. */
Ostrel.unifyName = Ostrel.uniquifyName;

/**
 * @param {string} objNameString
 * @param {Element} element
 * @return {string} the name with the property "visible"
 */
Ostrel.addVisibility = function (objNameString, element) {
    return __ostrel__addVisibility(objNameString, element);
};

/**
 * @param {string} propValue
 * @return {string} as it stands between the quotes of a name
 */
Ostrel.escapePropertyValue = function (propValue) {
    return __ostrel__escapeCharactersInPropertyValue(propValue);
};

/**
 * For use in matchers.
 * @param {__ostrel__PropValue} prop
 * @param {*} value  what the object has
 * @return {boolean}
 */
Ostrel.matchProperty = function (prop, value) {
    return __ostrel__propMatches(prop, value);
};

/**
 * @param {string} objName
 * @param {string} propName
 */
Ostrel.addUnmatchedProperty = function (objName, propName) {
    __ostrel__addUnmatchedProperty(objName, propName);
};

/**
 * @param {Element} element
 * @return {boolean}
 */
Ostrel.isElementVisible = function (element) {
    return __ostrel__isVisible(element);
};

/**
 * Arrays of Internet Explorer's quirks mode have no indexOf.
 * @param {Array} arrayToCheck
 * @param {*} element
 * @return {number} -1 when the element is not there
 */
Ostrel.arrayIndexOf = function (arrayToCheck, element) {
    var i;
    if (arrayToCheck.indexOf) {
        return arrayToCheck.indexOf(element);
    }
    for (i = 0; i < arrayToCheck.length; ++i) {
        if (arrayToCheck[i] === element) {
            return i;
        }
    }
    return -1;
};

// ---- operation ----------------------------------------------------------------------------------------------------

/** Sends the events of a double click; see __ostrel__dblclick. */
Ostrel.doubleClick = function (o, ctrl, shift, alt, x, y) {
    __ostrel__dblclick(o, ctrl, shift, alt, x, y);
};

/** Sends the events of a click; see __ostrel__click. */
Ostrel.mouseClick = function (o, ctrl, shift, alt, x, y, button) {
    __ostrel__click(o, ctrl, shift, alt, x, y, button);
};

/** Sends the events of a click on a button; see __ostrel__clickButton. */
Ostrel.clickButton = function (o) {
    __ostrel__clickButton(o);
};

/**
 * @param {Event} ev
 * @return {Object|undefined} the innermost object that the event reached, also inside a shadow tree
 */
Ostrel.getEventSourceElement = function (ev) {
    return __ostrel__srcElement(ev);
};

/**
 * @param {Array} option_array  texts of options
 * @return {string} the texts in one, as a recorded selection holds them
 */
Ostrel.createMultiOptionString = function (option_array) {
    return __ostrel__createMultiSelectOptionStr(option_array);
};

/**
 * @param {string} optionstring
 * @return {Array} texts of options
 */
Ostrel.splitMultiOptionString = function (optionstring) {
    return __ostrel__createTextArrayFromMultiOptionString(optionstring);
};

/**
 * @param {HTMLSelectElement} select_element
 * @return {Array} texts of the selected options
 */
Ostrel.getSelectedOptionTexts = function (select_element) {
    return __ostrel__getSelectedOptionTexts(select_element);
};

/**
 * Gone. Kept as is: extension scripts of old versions are told by a plain text what to use.
 * @throws {string}
 */
Ostrel.createItemName = function () {
    throw 'Ostrel.createItemName is not supported anymore, ' +
        'use Ostrel.addItemTextForEventObjectHook to setup a hook function for the item text';
};

// ---- texts that an event-to-string hook returns -------------------------------------------------------------------

/**
 * Makes a press the choice of a tab.
 * @param {Object} tabObject  the whole tab widget
 * @param {string} tabTitle
 * @return {string}
 */
Ostrel.createClickTabInformation = function (tabObject, tabTitle) {
    return '&tabTitle=' + escape(tabTitle) + '&tabWidgetName=' + __ostrel__nameOf(tabObject);
};

/**
 * Makes a press the choice of a menu item.
 * @param {Object} menuElem  the menu
 * @param {string} itemText
 * @return {string}
 */
Ostrel.createClickItemInformationForMenuItem = function (menuElem, itemText) {
    return '&menuname=' + __ostrel__nameOf(menuElem) + '&menuitemtext=' + escape(__ostrel__clean(itemText));
};

/**
 * Makes a press the choice of a date.
 * @param {Date} dateObj
 * @return {string} in which January is month 1
 */
Ostrel.createChooseDateInformation = function (dateObj) {
    return '&selectedYear=' + escape(dateObj.getFullYear()) +
        '&selectedMonth=' + escape(dateObj.getMonth() + 1) +
        '&selectedDay=' + escape(dateObj.getDate());
};

// ---- parsed names -------------------------------------------------------------------------------------------------

/**
 * Value of a property that is matched by a wildcard text.
 * @constructor
 * @param {string} wildCardString
 */
Ostrel.WildCardPropertyValue = function (wildCardString) {
    this.wildcard = wildCardString;
};

/**
 * Value of a property that is matched by a regular expression.
 * @constructor
 * @param {string} regexString
 */
Ostrel.RegExPropertyValue = function (regexString) {
    this.regex = regexString;
};

/**
 * A multi-property name in parts.
 * @constructor
 */
Ostrel.ObjectName = function () {
    /** Map from property name to a string, one of the two values above, or a nested Ostrel.ObjectName. */
    this.properties = {};
};

/**
 * @param {string} propName  a property that is there already gets the new value
 * @param {string|Object} propValue
 */
Ostrel.ObjectName.prototype.addProperty = function (propName, propValue) {
    this.properties[propName] = propValue;
};

/**
 * @param {string} propName
 */
Ostrel.ObjectName.prototype.removeProperty = function (propName) {
    delete this.properties[propName];
};

/**
 * @param {string} propName
 * @return {string|Object|undefined}
 */
Ostrel.ObjectName.prototype.getPropertyValue = function (propName) {
    return this.properties[propName];
};

/**
 * @return {Array} names of properties, in the order in which they were added
 */
Ostrel.ObjectName.prototype.getPropertyNames = function () {
    var names = [], name;
    if (Object.keys) {
        return Object.keys(this.properties);
    }
    for (name in this.properties) {
        if (Object.prototype.hasOwnProperty.call(this.properties, name)) {
            names.push(name);
        }
    }
    return names;
};

/**
 * @return {string} the name as text, which parses to an equal one
 */
Ostrel.ObjectName.prototype.toString = function () {
    var names = this.getPropertyNames(), texts = [], value, i;
    for (i = 0; i < names.length; ++i) {
        value = this.properties[names[i]];
        if (value) {
            texts.push(names[i] + this._valueToString(value));
        }
    }
    return '{' + texts.join(' ') + '}';
};

/**
 * @param {string|Object} value
 * @return {string} the operator and the value as they stand in a name
 */
Ostrel.ObjectName.prototype._valueToString = function (value) {
    if (value instanceof Ostrel.ObjectName) {
        return '=' + value.toString();
    }
    if (value instanceof Ostrel.RegExPropertyValue) {
        return "~='" + __ostrel__escapeCharactersInPropertyValue(value.regex) + "'";
    }
    if (value instanceof Ostrel.WildCardPropertyValue) {
        return "?='" + __ostrel__escapeCharactersInPropertyValue(value.wildcard) + "'";
    }
    return "='" + __ostrel__escapeCharactersInPropertyValue(value) + "'";
};

// ---- lists of words -----------------------------------------------------------------------------------------------

/**
 * @param {Object|string} s  words that blanks separate, such as a className
 * @param {string} entry
 * @return {boolean} whether one of the words is this
 */
function __ostrel__listContains(s, entry) {
    var words, i;
    if (!s) {
        return false;
    }
    if (typeof s === 'object' && 'baseVal' in s) {
        s = s.baseVal; // SVG elements hold their class list in an object
    }
    words = s.split ? s.split(' ') : __ostrel__blankSeparatedWords(s);
    for (i = 0; i < words.length; ++i) {
        if (words[i] === entry) {
            return true;
        }
    }
    return false;
}

/**
 * Kept as is: the word behind the last blank is left out, as extensions with class lists of their own expect it.
 * @param {Object} s  a list of characters without the operation split
 * @return {Array}
 */
function __ostrel__blankSeparatedWords(s) {
    var words = [], word = '', i, character;
    for (i = 0; i < s.length; ++i) {
        character = s.charAt ? s.charAt(i) : s[i];
        if (character === ' ') {
            words.push(word);
            word = '';
        } else {
            word += character;
        }
    }
    return words;
}
