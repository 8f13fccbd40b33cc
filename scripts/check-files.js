// Checks the files that git tracks or would track: no path of anybody's machine, no tabs, no trailing blanks. Leaves
// with 77 where there is no git to ask.
"use strict";

const { spawnSync } = require("child_process");
const fs = require("fs");
const os = require("os");
const path = require("path");

const root = path.resolve(process.argv[2] ?? path.join(__dirname, ".."));
// Files that are written by a tool, as that tool has it.
const generated = ["package-lock.json"];
const escaped = (text) => text.replace(/[.*+?^${}()|[\]\\]/g, "\\$&");
// A folder right below the root, such as "/src", has a name that may stand anywhere.
const here = [root, os.homedir()].filter((place) => place.split(path.sep).length > 2)
    .map((place) => `${escaped(place)}(?![\\w.-])`);
const places = [...here, "/(?:home|Users|root)/\\w", "[A-Z]:\\\\Users\\\\\\w"].join("|");
const rules = [
    [new RegExp(`(?<![\\w.])(?:${places})`), "a path of a machine"],
    [/\t/, "a tab"],
    [/[ \r]+$/m, "a blank at the end of a line"],
];

const list = spawnSync("git", ["-C", root, "ls-files", "-z", "--cached", "--others", "--exclude-standard"],
    { encoding: "utf8" });
if (list.status !== 0) {
    console.error(`git knows nothing of ${root}`);
    process.exit(77);
}

let problems = 0;
for (const name of list.stdout.split("\0").filter((file) => file !== "" && !generated.includes(file))) {
    const file = path.join(root, name);
    const text = fs.existsSync(file) ? fs.readFileSync(file, "utf8") : "";
    for (const [pattern, what] of text.includes("\0") ? [] : rules) {
        const found = pattern.exec(text);
        if (found !== null) {
            problems++;
            console.error(`${name}:${text.slice(0, found.index).split("\n").length}: ${what}`);
        }
    }
}
process.exitCode = problems === 0 ? 0 : 1;
