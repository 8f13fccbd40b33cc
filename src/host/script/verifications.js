// What scripts verify with: verify(condition, message), compare(actual, expected, message), section(title, body).
// Values are compared by what they hold: numbers, texts, lists, plain objects and dates by value, objects of the
// object model by whether they stand for the same thing.
//
// Evaluates to a function that installs them; the host says how to report, and what its own objects are.
(function (global, host) {
    "use strict";

    function isDate(value) {
        return Object.prototype.toString.call(value) === "[object Date]";
    }

    function isPlain(value) {
        return value !== null && typeof value === "object" && !host.isObject(value);
    }

    // `pairs` holds the objects that are being compared further out, so that circles end.
    function equal(a, b, pairs) {
        if (a === b || (a !== a && b !== b)) {
            return true;
        }
        if (!isPlain(a) || !isPlain(b)) {
            return host.isObject(a) && host.isObject(b) && host.same(a, b);
        }
        if (isDate(a) || isDate(b)) {
            return isDate(a) && isDate(b) && a.getTime() === b.getTime();
        }
        if (Array.isArray(a) !== Array.isArray(b)) {
            return false;
        }
        if (pairs.some(pair => pair[0] === a && pair[1] === b)) {
            return true;
        }
        const inner = pairs.concat([[a, b]]);
        const keys = Object.keys(a);
        return keys.length === Object.keys(b).length &&
            keys.every(key => Object.prototype.hasOwnProperty.call(b, key) && equal(a[key], b[key], inner));
    }

    function shown(value, outer) {
        if (typeof value === "string") {
            return outer.length > 0 ? JSON.stringify(value) : value;
        }
        if (!isPlain(value) || isDate(value)) {
            return isDate(value) ? value.toISOString() : String(value);
        }
        if (outer.includes(value)) {
            return "...";
        }
        const inner = outer.concat([value]);
        if (Array.isArray(value)) {
            return "[" + value.map(item => shown(item, inner)).join(", ") + "]";
        }
        return "{" + Object.keys(value).map(key => key + ": " + shown(value[key], inner)).join(", ") + "}";
    }

    // Values that differ in nothing but their type must not look alike.
    function shownApart(value, other) {
        const text = shown(value, []);
        return text === shown(other, []) && typeof value !== typeof other ? text + " (" + typeof value + ")" : text;
    }

    function textOf(message) {
        return message === undefined ? "" : String(message);
    }

    function define(name, body) {
        Object.defineProperty(global, name, { value: body, configurable: true });
    }

    define("verify", function verify(condition, message) {
        const stack = new Error().stack;
        return host.call("reportVerification", [Boolean(condition), textOf(message), "", "", stack]);
    });

    define("compare", function compare(actual, expected, message) {
        const stack = new Error().stack;
        const passed = equal(actual, expected, []);
        const texts = passed ? [shown(actual, []), shown(expected, [])]
            : [shownApart(actual, expected), shownApart(expected, actual)];
        return host.call("reportVerification", [passed, textOf(message), texts[0], texts[1], stack]);
    });

    define("section", function section(title, body) {
        host.call("beginSection", [String(title), new Error().stack]);
        try {
            return body();
        } finally {
            host.call("endSection", []);
        }
    });
})
