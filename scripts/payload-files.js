// What the checks know about the page script files: their order, their headers and what their code does.
"use strict";

const fs = require("fs");
const path = require("path");
const acorn = require("acorn");

const folder = path.join(__dirname, "..", "src", "wrappers", "web", "payload");

/** The files in load order, as the one list names them. */
function listedFiles() {
    return fs.readFileSync(path.join(folder, "sections.txt"), "utf8").split("\n")
        .map((line) => line.trim())
        .filter((line) => line !== "" && !line.startsWith("#"));
}

/** The files that are there. The namespace code is injected by itself and stands in no list. */
function presentFiles() {
    return fs.readdirSync(folder).filter((name) => name.endsWith(".js") && name !== "namespace.js").sort();
}

/** The text of a header field, its lines joined; undefined where the header has no such field. */
function headerField(text, field) {
    const lines = text.split("\n");
    const start = lines.findIndex((line) => line.startsWith(`// ${field} `));
    if (start === -1) {
        return undefined;
    }
    let end = start + 1;
    while (end < lines.length && lines[end].startsWith("//    ")) {
        end++;
    }
    const content = lines.slice(start, end).map((line) => line.slice("// At load ".length).trim());
    return { start, end, text: content.join(" ") };
}

/** The short form of a name as the headers may spell it: a member of the namespace, or a global. */
function plainName(name) {
    return name.replace(/^(?:window\.top\.|window\.|top\.)/, "");
}

/** The names in a list: globals and members, with commas between them. Other words are for the reader alone. */
function namesIn(text) {
    return text.split(",").map((part) => part.trim()).filter((part) => /^[\w$.]+$/.test(part)).map(plainName);
}

/** The name that a member expression stands for: x, window.x, top.x, window.top.x, and members of the namespace. */
function memberName(node) {
    if (node.type === "Identifier") {
        return node.name;
    }
    if (node.type !== "MemberExpression" || node.computed) {
        return undefined;
    }
    const object = memberName(node.object);
    if (object === undefined) {
        return undefined;
    }
    return plainName(`${object}.${node.property.name}`);
}

/** Calls visit for a node and all that it holds; visit answers false to stay out of that. */
function walk(node, visit) {
    if (!node || typeof node.type !== "string" || visit(node) === false) {
        return;
    }
    for (const value of Object.values(node)) {
        for (const child of Array.isArray(value) ? value : [value]) {
            if (child && typeof child === "object") {
                walk(child, visit);
            }
        }
    }
}

/** The globals and namespace members that a script creates while it loads. */
function definitions(program) {
    const names = new Set();
    const called = new Set();
    walk(program, (node) => {
        if (node.type === "CallExpression") {
            called.add(node.callee);
        }
        if (node.type === "FunctionDeclaration") {
            names.add(node.id.name);
            return false;
        }
        if (node.type === "FunctionExpression" && !called.has(node)) {
            return false;
        }
        if (node.type === "VariableDeclarator") {
            names.add(node.id.name);
        }
        // what is assigned to the page's own objects is no definition
        const target = node.type === "AssignmentExpression" ? memberName(node.left) ?? "" : "";
        if (/^__ostrel(?:\.[\w$]+|[\w$]+)$/.test(target)) {
            names.add(target);
        }
        return true;
    });
    return [...names];
}

/** The names of ours that a script's code uses, wherever it does so. */
function uses(program) {
    const names = new Set();
    walk(program, (node) => {
        const name = node.type === "MemberExpression" || node.type === "Identifier" ? memberName(node) : undefined;
        if (name !== undefined) {
            names.add(name);
        }
        if (node.type === "MemberExpression" && !node.computed) {
            walk(node.object, (inner) => {
                names.add(memberName(inner) ?? "");
                return inner.type === "MemberExpression" || inner.type === "CallExpression";
            });
        }
        return true;
    });
    return names;
}

/** The keys of all object literals, and the members that are assigned. */
function propertyKeys(program) {
    const keys = new Set();
    walk(program, (node) => {
        if (node.type === "Property") {
            keys.add(node.key.name ?? node.key.value);
        }
        if (node.type === "AssignmentExpression" && node.left.type === "MemberExpression") {
            keys.add(node.left.property.name);
        }
        return true;
    });
    return keys;
}

/** Everything about one file. Throws when it is no ES5 script. */
function readFile(name) {
    const text = fs.readFileSync(path.join(folder, name), "utf8");
    const program = acorn.parse(text, { ecmaVersion: 5, sourceType: "script" });
    const defines = headerField(text, "Defines");
    const calls = headerField(text, "Calls");
    return {
        name,
        base: name.replace(/\.js$/, ""),
        text,
        header: { defines, calls, atLoad: headerField(text, "At load") },
        declared: new Set(namesIn(defines?.text ?? "")),
        defined: new Set(definitions(program)),
        used: uses(program),
        created: propertyKeys(program),
    };
}

/** All files in load order, without those that the list names but nobody has written. */
function readFiles() {
    const present = new Set(presentFiles());
    return listedFiles().filter((name) => present.has(name)).map(readFile);
}

module.exports = { folder, listedFiles, presentFiles, readFile, readFiles, namesIn };
