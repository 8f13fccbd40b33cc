// 24  JSON: for browsers that have none of their own, from the npm package json-js.
//
// Defines  __ostrel__JSON
// Calls    nothing
// At load  defines JSON where the browser does not have it, and keeps its two functions

// embed: json-js/json2.js

/** The two functions as they are now: pages have been seen to replace them. */
var __ostrel__JSON = { stringify: JSON.stringify, parse: JSON.parse };
