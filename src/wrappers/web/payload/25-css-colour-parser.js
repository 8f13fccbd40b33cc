// 25  CSS colours: __ostrel__parseCSSColor, around the npm package csscolorparser.
//
// Defines  __ostrel__parseCSSColor
// Calls    nothing
// At load  nothing runs

/**
 * Reads a CSS colour. The package's table and helpers stay inside.
 * @param {string} colorstring
 * @return {?Array<number>} red, green and blue from 0 to 255, alpha from 0 to 1; null for what is no colour
 */
function __ostrel__parseCSSColor(colorstring) {
    // The package writes its one function here; a page's own global of that name stays untouched.
    var exports = {};

    // embed: csscolorparser/csscolorparser.js

    try {
        return exports.parseCSSColor(colorstring);
    } catch (e) {
        // The package trips over words that every script object knows, such as "constructor".
        return null;
    }
}
