// Lint rules: the page script must run in old browsers, and every name that it uses must be somebody's.
"use strict";

const { readFiles } = require("./scripts/payload-files.js");

const named = (names, access) => Object.fromEntries(names.map((name) => [name, access]));

// What the page script uses of a browser. A name that is missing here is asked for by its first user.
const browser = named([
    "window", "top", "document", "location", "navigator", "console", "sessionStorage", "XMLHttpRequest",
    "ActiveXObject", "ShadowRoot", "setTimeout", "clearTimeout", "setInterval", "clearInterval", "alert", "Event",
    "MouseEvent", "KeyboardEvent", "HTMLElement", "Node", "screen",
    "Touch", "TouchEvent", "Components", "Map",
], "readonly");

// Variables that a host sets in the page and that the page script reads without a window in front.
const host = named([
    "__ostrel__filter__non__element__nodes", "__ostrel__eventLoggerBridge", "__ostrel__qwebkitEventLoggerBridge",
], "readonly");

const payload = named(readFiles().flatMap((file) => [...file.declared]).filter((name) => !name.includes(".")),
    "writable");

const rules = {
    "no-undef": "error",
    "no-redeclare": ["error", { builtinGlobals: false }],
    "no-unused-vars": ["error", { vars: "local", args: "none", caughtErrors: "none" }],
    "no-dupe-keys": "error",
    "no-dupe-args": "error",
    "no-duplicate-case": "error",
    "no-unreachable": "error",
    "no-fallthrough": "error",
    "no-cond-assign": "error",
    "no-self-assign": "error",
    "no-shadow-restricted-names": "error",
    "no-sparse-arrays": "error",
    "no-unsafe-finally": "error",
    "no-func-assign": "error",
    "no-empty": "error",
    "eqeqeq": ["error", "smart"],
    "use-isnan": "error",
    "valid-typeof": "error",
    "max-len": ["error", { code: 120, ignoreUrls: true }],
};

module.exports = [
    {
        files: ["src/wrappers/web/payload/*.js", "lib/extensions/web/**/*.js"],
        languageOptions: {
            ecmaVersion: 5,
            sourceType: "script",
            globals: { ...browser, ...host, __ostrel: "readonly", ...payload },
        },
        linterOptions: { reportUnusedDisableDirectives: "error" },
        rules,
    },
    {
        files: ["lib/extensions/web/**/*.js"],
        rules: { "no-unused-vars": "off" },
    },
    {
        files: ["scripts/*.js", "bench/*.js", "eslint.config.js"],
        languageOptions: {
            ecmaVersion: 2022,
            sourceType: "commonjs",
            globals: named(["require", "module", "process", "console", "performance", "__dirname"], "readonly"),
        },
        rules: { ...rules, "no-unused-vars": "error" },
    },
    {
        // Some of its functions run in a page.
        files: ["bench/playwright-peer.js"],
        languageOptions: {
            globals: named(["document", "scrollX", "scrollY", "screenX", "screenY"], "readonly"),
        },
    },
    {
        // Page script of the host's own, in the words of the page script where it calls that.
        files: ["src/host/channel/*.js", "src/host/record/*.js", "src/host/script/pagequeries/*.js"],
        languageOptions: {
            ecmaVersion: 5,
            sourceType: "script",
            globals: {
                ...browser, ...named(["WeakMap", "MutationObserver", "performance", "burst"], "readonly"),
                __ostrel: "readonly", ...payload,
            },
        },
        linterOptions: { reportUnusedDisableDirectives: "error" },
        rules: { ...rules, "no-unused-vars": ["error", { vars: "local", caughtErrors: "none" }] },
    },
    {
        // What the engine of test scripts runs.
        files: ["src/host/script/*.js"],
        languageOptions: { ecmaVersion: 2016, sourceType: "script" },
        rules: { ...rules, "no-unused-vars": "error" },
    },
    {
        // What people open in a browser of today.
        files: ["src/host/dump/*.js"],
        languageOptions: {
            ecmaVersion: 2022,
            sourceType: "script",
            globals: named(["document", "getSelection"], "readonly"),
        },
        rules: { ...rules, "no-unused-vars": "error" },
    },
];
