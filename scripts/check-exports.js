// Compares what the libraries export with the reviewed list: the classes, functions and variables that hosts can link.
//
// Usage: node scripts/check-exports.js <list> <library>...            says what differs
//        node scripts/check-exports.js --update <list> <library>...   writes the list anew
"use strict";

const { execFileSync } = require("child_process");
const fs = require("fs");
const path = require("path");

const update = process.argv[2] === "--update";
const [listFile, ...libraries] = process.argv.slice(update ? 3 : 2);

// Everything of ours lies in these; what stands behind one of them is a class or a free name.
const namespaces = ["Ostrel", "Ostrel::ProbeLog", "Ostrel::UIAbstraction", "Ostrel::WebWrapper"];

// Marks that the linker puts into every library.
const linkerMarks = ["__bss_start", "_edata", "_end"];

const title = "# What hosts can link, by library. Written by scripts/check-exports.js --update; review its difference.";
const text = [title, ...libraries.map(section)].join("\n\n") + "\n";
if (update) {
    fs.writeFileSync(listFile, text);
} else {
    compare(fs.readFileSync(listFile, "utf8"), text);
}

function section(library) {
    return [`# ${path.basename(library).replace(/\.so.*$/, "")}`, ...exportedNames(library)].join("\n");
}

/** "class X", "function f" or "variable v" for each thing that a library defines for others, sorted. */
function exportedNames(library) {
    const lines = execFileSync("nm", ["-DC", "--defined-only", library], { encoding: "utf8", maxBuffer: 1 << 28 })
        .split("\n").filter((line) => line !== "");
    return [...new Set(lines.map(exportedName).filter((name) => name !== undefined))].sort();
}

/** What a line of nm is about; nothing for inline code of other libraries, which every user has a copy of. */
function exportedName(line) {
    const [, kind, symbol] = /^[0-9a-f]+ (\w) (.*)$/.exec(line);
    const about = /^(?:vtable|VTT|typeinfo(?: name)?|construction vtable) for (.*)$/.exec(symbol);
    const plain = withoutArguments(about ? about[1] : symbol.replace(/^guard variable for /, ""));
    if (!plain.name.startsWith("Ostrel::")) {
        return "WVu".includes(kind) || linkerMarks.includes(symbol) ? undefined : `foreign ${plain.name}`;
    }
    const parts = plain.name.split("::");
    const depth = parts.findIndex((_, i) => !namespaces.includes(parts.slice(0, i + 1).join("::")));
    const name = parts.slice(0, depth + 1).join("::");
    if (about || parts.length > depth + 1) {
        return `class ${name}`;
    }
    return `${plain.isFunction ? "function" : "variable"} ${name}`;
}

/** A demangled symbol without its template arguments, its parameters and, of a template, its result type. */
function withoutArguments(symbol) {
    let name = "";
    let depth = 0;
    let isFunction = false;
    for (const character of symbol.replace(/operator(?:<<|>>|<=>|<=|>=|->|<|>|\(\))/g, "operator")) {
        if (character === "(" && depth === 0) {
            isFunction = true;
            break;
        }
        depth += "<" === character ? 1 : 0;
        name += depth === 0 ? character : "";
        depth -= ">" === character ? 1 : 0;
    }
    return { name: name.split(" ").pop(), isFunction };
}

/** Says which lines are new and which are gone. */
function compare(expected, actual) {
    const differences = [];
    const collect = (sign, from, other) => {
        const known = new Set(other.split("\n"));
        from.split("\n").filter((line) => !known.has(line)).forEach((line) => differences.push(`${sign} ${line}`));
    };
    collect("-", expected, actual);
    collect("+", actual, expected);
    if (differences.length > 0 || expected !== actual) {
        console.error(`What the libraries export is not what ${path.basename(listFile)} lists:`);
        differences.forEach((line) => console.error(line));
        process.exitCode = 1;
    }
}
