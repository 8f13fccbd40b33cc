// Checks the page script files against their headers and their list. With --fix it writes the "Calls" lists anew.
"use strict";

const fs = require("fs");
const path = require("path");
const { folder, listedFiles, presentFiles, readFiles, readFile, namesIn } = require("./payload-files.js");

const problems = [];
const report = (file, message) => problems.push(`${file}: ${message}`);

checkList();
const files = readFiles();
const owners = checkDefinitions();
files.forEach(checkHeader);
files.forEach(process.argv.includes("--fix") ? fixCalls : checkCalls);

problems.forEach((problem) => console.error(problem));
console.log(`${files.length} page script files, ${owners.size} names, ${problems.length} problems`);
process.exitCode = problems.length === 0 ? 0 : 1;

/** The list and the folder name the same files, each once. */
function checkList() {
    const listed = listedFiles();
    const present = presentFiles();
    listed.filter((name, i) => listed.indexOf(name) !== i)
        .forEach((name) => report("sections.txt", `${name} stands twice`));
    listed.filter((name) => !present.includes(name))
        .forEach((name) => report("sections.txt", `${name} does not exist`));
    present.filter((name) => !listed.includes(name))
        .forEach((name) => report(name, "does not stand in sections.txt"));
}

/** Each name is defined by one file. Gives the file of each name. */
function checkDefinitions() {
    const namespace = readFile("namespace.js");
    const found = new Map([...namespace.declared].map((name) => [name, namespace]));
    [...namespace.declared].filter((name) => !namespace.created.has(name.split(".").pop()))
        .forEach((name) => report(namespace.name, `"Defines" names ${name}, which the file does not define`));
    for (const file of files) {
        for (const name of new Set([...file.defined, ...file.declared])) {
            if (found.has(name)) {
                report(file.name, `${name} is defined by ${found.get(name).name}, too`);
            } else {
                found.set(name, file);
            }
        }
    }
    return found;
}

/** The header is there, and what it says about definitions is true. */
function checkHeader(file) {
    for (const [field, value] of Object.entries({ Defines: file.header.defines, Calls: file.header.calls,
        "At load": file.header.atLoad })) {
        if (value === undefined) {
            report(file.name, `the header says nothing under "${field}"`);
        }
    }
    [...file.defined].filter((name) => !file.declared.has(name))
        .forEach((name) => report(file.name, `"Defines" does not name ${name}`));
    [...file.declared].filter((name) => !file.defined.has(name) && !isSetLater(file, name))
        .forEach((name) => report(file.name, `"Defines" names ${name}, which the file does not define`));
}

/** A name may also be created by a function of the file, when it runs. */
function isSetLater(file, name) {
    return file.used.has(name);
}

/** What a file calls of each other file, in load order. */
function callsByFile(file) {
    const groups = new Map([...owners.values()].map((owner) => [owner, []]));
    for (const name of [...file.used].sort()) {
        const owner = owners.get(name);
        if (owner !== undefined && owner !== file && !file.declared.has(name) && name !== "__ostrel") {
            groups.get(owner).push(name);
        }
    }
    return [...groups].filter(([, names]) => names.length > 0)
        .sort(([a], [b]) => files.indexOf(a) - files.indexOf(b));
}

/** "Calls" names what the file uses of others, each behind its file, and nothing else. */
function checkCalls(file) {
    if (file.header.calls === undefined) {
        return;
    }
    const said = new Map();
    for (const [, names, base] of file.header.calls.text.matchAll(/([^()]+)\(([^()]+)\)/g)) {
        namesIn(names).forEach((name) => said.set(name.replace(/^Ostrel\..*/, "Ostrel"), base));
    }
    for (const [owner, names] of callsByFile(file)) {
        for (const name of names) {
            if (said.get(name) !== owner.base) {
                report(file.name, `"Calls" lacks ${name} (${owner.base})`);
            }
            said.delete(name);
        }
    }
    said.forEach((base, name) => report(file.name, `"Calls" names ${name} (${base}), which is not called from there`));
}

/** Writes "Calls" as the code has it. */
function fixCalls(file) {
    const groups = callsByFile(file).map(([owner, names]) => `${names.join(", ")} (${owner.base})`);
    const words = groups.join(", ").split(" ");
    const lines = [];
    let line = "// Calls   ";
    for (const word of words[0] === "" ? ["nothing"] : words) {
        if (line.length + 1 + word.length > 118) {
            lines.push(line);
            line = "//         ";
        }
        line += ` ${word}`;
    }
    lines.push(line);
    const text = file.text.split("\n");
    text.splice(file.header.calls.start, file.header.calls.end - file.header.calls.start, ...lines);
    if (text.join("\n") !== file.text) {
        fs.writeFileSync(path.join(folder, file.name), text.join("\n"));
    }
}
