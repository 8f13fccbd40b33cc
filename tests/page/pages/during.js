// Lets a case play another browser: sets globals for the length of one call and puts back what was there.

/**
 * @param {Object} globals names and values, for instance { __ostrel__ie: true, innerWidth: 800 }
 * @param {function(): *} action
 * @return {*} what the action returns
 */
function during(globals, action) {
    var saved = {};

    Object.keys(globals).forEach(function (name) {
        saved[name] = Object.getOwnPropertyDescriptor(window, name);
        Object.defineProperty(window, name, { value: globals[name], writable: true, configurable: true });
    });
    try {
        return action();
    } finally {
        Object.keys(globals).forEach(function (name) {
            delete window[name];
            if (saved[name]) {
                Object.defineProperty(window, name, saved[name]);
            }
        });
    }
}
