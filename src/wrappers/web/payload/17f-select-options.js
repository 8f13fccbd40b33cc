// 17f  Select options: selects options of select fields, and writes and reads lists of option texts.
//
// Defines  __ostrel__seps, __ostrel__selectSingleOption, __ostrel__selectMultiOption, __ostrel__selectOption,
//          __ostrel__isSelectedByHook, __ostrel__selectFirstMatch, __ostrel__selectOptions,
//          __ostrel__isOneOf, __ostrel__selectOptionText, __ostrel__selectOptionValue,
//          __ostrel__createTextArrayFromMultiOptionString, __ostrel__createMultiSelectOptionStr,
//          __ostrel__getSelectedOptionTexts, __ostrel__selectedOptionText
// Calls    __ostrel__selectSingleOption__hooks (02e-hook-lists), __ostrel__sendChangeEvent, __ostrel__typeText
//          (17e-text-input)
// At load  the separators are set

/**
 * What separates the options of a multi-option text, in order of preference. The comma stands first and last:
 * the last one serves when the options contain all of them.
 */
var __ostrel__seps = ",;|-+*!/,";

/**
 * @param {HTMLSelectElement} e
 * @param {string} text the text of the option to select
 */
function __ostrel__selectSingleOption(e, text) {
    __ostrel__selectOption(e, text, __ostrel__selectOptionText);
}

/**
 * @param {HTMLSelectElement} e
 * @param {string} text the texts of all options to select, as __ostrel__createMultiSelectOptionStr writes them
 */
function __ostrel__selectMultiOption(e, text) {
    __ostrel__selectOptions(e, __ostrel__createTextArrayFromMultiOptionString(text), __ostrel__selectOptionText);
}

/**
 * Selects one option of a field. A hook may do it in its own way.
 * @param {HTMLSelectElement} e
 * @param {(string|number)} value
 * @param {function(HTMLOptionElement): *} getValueFromOptionFunc what of an option is compared with the value
 */
function __ostrel__selectOption(e, value, getValueFromOptionFunc) {
    var index;

    if (__ostrel__isSelectedByHook(e, value)) {
        return;
    }
    index = __ostrel__selectFirstMatch(e.options, value, getValueFromOptionFunc);
    if (index === -1) {
        return;
    }
    e.selectedIndex = index;
    __ostrel__sendChangeEvent(e);
    if (e.size) {
        // Pages with list boxes often watch the keyboard rather than the change.
        try {
            __ostrel__typeText(e, " ");
        } catch (dropped) {
            // The selection is done.
        }
    }
}

/**
 * @param {HTMLSelectElement} e
 * @param {(string|number)} value
 * @return {boolean} whether a hook did the selection
 */
function __ostrel__isSelectedByHook(e, value) {
    var hooks = window.__ostrel__selectSingleOption__hooks;
    var i;

    for (i = 0; i < hooks.length; i++) {
        if (hooks[i](e, value)) {
            return true;
        }
    }
    return false;
}

/**
 * Unselects option by option up to the first that has the value, which is selected. Options behind it keep
 * their state.
 * Kept as is: without a match all options have lost their selection.
 * @param {HTMLOptionsCollection} options
 * @param {(string|number)} value
 * @param {function(HTMLOptionElement): *} getValueFromOptionFunc
 * @return {number} the index of the match, or -1
 */
function __ostrel__selectFirstMatch(options, value, getValueFromOptionFunc) {
    var i;

    for (i = 0; i < options.length; i++) {
        options[i].selected = false;
        // eslint-disable-next-line eqeqeq -- an index may come as text
        if (getValueFromOptionFunc(options[i]) == value) {
            options[i].selected = true;
            return i;
        }
    }
    return -1;
}

/**
 * Selects exactly the options that have one of the values.
 * @param {HTMLSelectElement} e
 * @param {Array} values
 * @param {function(HTMLOptionElement): *} getValueFromOptionFunc
 */
function __ostrel__selectOptions(e, values, getValueFromOptionFunc) {
    var i;

    for (i = 0; i < e.options.length; i++) {
        e.options[i].selected = __ostrel__isOneOf(getValueFromOptionFunc(e.options[i]), values);
    }
    __ostrel__sendChangeEvent(e);
}

/**
 * @param {*} value
 * @param {Array} values
 * @return {boolean} whether the value equals one of them; numbers may stand as text
 */
function __ostrel__isOneOf(value, values) {
    var i;

    for (i = 0; i < values.length; i++) {
        // eslint-disable-next-line eqeqeq -- an index may come as text
        if (values[i] == value) {
            return true;
        }
    }
    return false;
}

/**
 * @param {HTMLOptionElement} opt
 * @return {string}
 */
function __ostrel__selectOptionText(opt) {
    return opt.text;
}

/**
 * @param {HTMLOptionElement} opt
 * @return {string}
 */
function __ostrel__selectOptionValue(opt) {
    return opt.value;
}

/**
 * @param {string} text options with a separator behind each; a text that ends in no known separator is
 *     taken apart at its commas
 * @return {Array<string>}
 */
function __ostrel__createTextArrayFromMultiOptionString(text) {
    var separator = text.charAt(text.length - 1);

    if (separator !== "" && __ostrel__seps.indexOf(separator) !== -1) {
        return text.slice(0, -1).split(separator);
    }
    return text.split(",");
}

/**
 * @param {Array<string>} options
 * @return {string} the options with a separator behind each that none of them contains, where there is one
 */
function __ostrel__createMultiSelectOptionStr(options) {
    var all = options.join("");
    var separator, i;

    for (i = 0; i < __ostrel__seps.length; i++) {
        separator = __ostrel__seps.charAt(i);
        if (all.indexOf(separator) === -1) {
            break;
        }
    }
    return options.join(separator) + separator;
}

/**
 * @param {HTMLSelectElement} selectelem
 * @return {Array<string>} the texts of the selected options
 */
function __ostrel__getSelectedOptionTexts(selectelem) {
    var texts = [];
    var i;

    for (i = 0; i < selectelem.options.length; i++) {
        if (selectelem.options[i].selected) {
            texts.push(selectelem.options[i].text);
        }
    }
    return texts;
}

/**
 * @param {HTMLSelectElement} o
 * @return {string} the text of the selected option, empty when none is
 */
function __ostrel__selectedOptionText(o) {
    if (o.selectedIndex !== -1) {
        return o.options[o.selectedIndex].text;
    }
    return __ostrel__getSelectedOptionTexts(o)[0] || "";
}
