// Checks that includes and links go one way: app -> host -> wrappers/web -> ostrelhook -> probelog, wrappers/web ->
// shared. Usage: node scripts/check-layers.js [source folder]
"use strict";

const fs = require("fs");
const path = require("path");

// Each room with those right below it. It may use these and all below them.
const below = {
    app: ["host"],
    host: ["wrappers/web"],
    "wrappers/web": ["ostrelhook", "shared"],
    ostrelhook: ["probelog"],
    shared: [],
    probelog: [],
};
const root = path.resolve(process.argv[2] ?? path.join(__dirname, "..", "src"));
const reach = (room) => new Set([room, ...below[room].flatMap((next) => [...reach(next)])]);
const roomOf = (file) => Object.keys(below).find((room) => file.startsWith(`${room}/`));
const matches = (text, pattern) => [...text.matchAll(pattern)].map((match) => match.slice(1));

const files = fs.readdirSync(root, { recursive: true })
    .filter((name) => /\.(h|cpp)$|CMakeLists\.txt$/.test(name))
    .map((name) => ({ name, room: roomOf(name), text: fs.readFileSync(path.join(root, name), "utf8") }))
    .filter((file) => file.room !== undefined);
const buildFiles = files.filter((file) => file.name.endsWith("CMakeLists.txt"));
const owners = new Map(buildFiles.flatMap((file) => matches(file.text, /add_(?:library|executable)\((\w+)/g)
    .map(([target]) => [target, file.room])));
const linked = Object.fromEntries(Object.keys(below).map((room) => [room, new Set([room])]));
const problems = [];

for (const file of buildFiles) {
    for (const [target, names] of matches(file.text, /target_link_libraries\((\w+)([^)]*)\)/g)) {
        for (const name of names.match(/\w+/g).filter((word) => owners.has(word))) {
            linked[file.room].add(owners.get(name));
            if (!reach(file.room).has(owners.get(name))) {
                problems.push(`${file.name}: ${target} links ${name}, which is not below ${file.room}`);
            }
        }
    }
}
const reachLinked = (room) => [...linked[room]].flatMap((next) => next === room ? [room] : [...reach(next)]);
for (const file of files.filter((each) => !buildFiles.includes(each))) {
    for (const [header] of matches(file.text, /^#include "([^"]+)"/gm).filter(([name]) => !name.endsWith(".moc"))) {
        const room = roomOf(header);
        if (room === undefined) {
            problems.push(`${file.name}: the path of "${header}" does not begin with a room`);
        } else if (!reach(file.room).has(room)) {
            problems.push(`${file.name}: includes "${header}", which is not below ${file.room}`);
        } else if (!reachLinked(file.room).includes(room)) {
            problems.push(`${file.name}: includes "${header}", but no target of ${file.room} links ${room}`);
        }
    }
}
problems.forEach((problem) => console.error(problem));
process.exitCode = problems.length === 0 ? 0 : 1;
