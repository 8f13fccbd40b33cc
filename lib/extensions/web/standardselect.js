// standardselect  Standard select: what the host asks of the select fields of plain HTML.
//
// Defines  __ostrel__standardselectExtension
// Calls    __ostrel__isOneOf, __ostrel__selectOptionText, __ostrel__selectOptionValue (17f-select-options),
//          __ostrel__sendChangeEvent (17e-text-input)
// At load  the object is created

/**
 * An accessor is a function that takes an option and gives what is compared: its text, value or index.
 * Comparison is loose, so that an index may come as a number or as text.
 */
var __ostrel__standardselectExtension = {

    /**
     * @param {HTMLSelectElement} select
     * @param {Array} values
     * @param {function(HTMLOptionElement): *} accessor
     * @return {boolean} whether the field has an option for each of the values
     */
    hasItems: function (select, values, accessor) {
        var existing = __ostrel__standardselectExtension.collect(select, accessor, false);
        var i;

        for (i = 0; i < values.length; i++) {
            if (!__ostrel__isOneOf(values[i], existing)) {
                return false;
            }
        }
        return true;
    },

    /**
     * @param {HTMLOptionElement} option
     * @return {number} its place among all options of the field, counted from 0
     */
    optionIndex: function (option) {
        return option.index;
    },

    /**
     * @param {HTMLOptionElement} option
     * @return {string}
     */
    optionValue: function (option) {
        return __ostrel__selectOptionValue(option);
    },

    /**
     * @param {HTMLOptionElement} option
     * @return {string}
     */
    optionText: function (option) {
        return __ostrel__selectOptionText(option);
    },

    /**
     * @param {HTMLOptionElement} option
     * @return {string} the label; where none is given, or the browser is too old to tell, the text
     */
    optionLabel: function (option) {
        return option.label || option.text;
    },

    /**
     * @param {HTMLSelectElement} select
     * @return {Array<string>}
     */
    selectedValues: function (select) {
        var self = __ostrel__standardselectExtension;

        return self.collect(select, self.optionValue, true);
    },

    /**
     * @param {HTMLSelectElement} select
     * @return {Array<number>}
     */
    selectedIndexes: function (select) {
        var self = __ostrel__standardselectExtension;

        return self.collect(select, self.optionIndex, true);
    },

    /**
     * @param {HTMLSelectElement} select
     * @return {Array<string>}
     */
    selectedTexts: function (select) {
        var self = __ostrel__standardselectExtension;

        return self.collect(select, self.optionText, true);
    },

    /**
     * @param {HTMLSelectElement} select
     * @return {Array<string>}
     */
    selectedLabels: function (select) {
        var self = __ostrel__standardselectExtension;

        return self.collect(select, self.optionLabel, true);
    },

    /**
     * Takes the selection from all options that have one of the values, and tells the page when that changed
     * anything. Values that no option has are passed over: what they name is not selected as it is.
     * @param {HTMLSelectElement} select
     * @param {function(HTMLOptionElement): *} accessor
     * @param {Array} values
     */
    deselect: function (select, accessor, values) {
        var isChanged = false;
        var i, option;

        for (i = 0; i < select.options.length; i++) {
            option = select.options[i];
            if (option.selected && __ostrel__isOneOf(accessor(option), values)) {
                option.selected = false;
                isChanged = true;
            }
        }
        if (isChanged) {
            __ostrel__sendChangeEvent(select);
        }
    },

    /**
     * @param {HTMLSelectElement} select
     * @param {function(HTMLOptionElement): *} accessor
     * @param {boolean} onlySelected
     * @return {Array} what the accessor gives for each option, in page order
     */
    collect: function (select, accessor, onlySelected) {
        var collected = [];
        var i;

        for (i = 0; i < select.options.length; i++) {
            if (!onlySelected || select.options[i].selected) {
                collected.push(accessor(select.options[i]));
            }
        }
        return collected;
    }
};
