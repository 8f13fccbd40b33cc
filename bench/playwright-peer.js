// Does by playwright-core what the benchmarks do by the host. Usage: node playwright-peer.js BROWSER
//
// Says "ready", then answers each line of its input with milliseconds, or with the text of an error:
//     open ADDRESS      opens a page and takes hold of its element "target"
//     read COUNT        reads the element's tagName COUNT times in sequence
//     session           starts a browser of its own, opens an empty page, and ends it
"use strict";

const readline = require("readline");
const { chromium } = require("playwright-core");

const launchOptions = { executablePath: process.argv[2] };
let browser;
let target;

async function open(address) {
    browser = await chromium.launch(launchOptions);
    const page = await browser.newPage();
    await page.goto(address);
    target = await page.$("#target");
}

async function read(count) {
    for (let i = 0; i < count; ++i) {
        if (await target.evaluate((element) => element.tagName) !== "P") {
            throw new Error("the element has another tag");
        }
    }
}

async function session() {
    const own = await chromium.launch(launchOptions);
    await own.newPage();
    await own.close();
}

const commands = { open, read: (count) => read(Number(count)), session };

async function main() {
    console.log("ready");
    for await (const line of readline.createInterface({ input: process.stdin })) {
        const [command, argument] = line.split(" ");
        try {
            const begin = performance.now();
            await commands[command](argument);
            console.log(performance.now() - begin);
        } catch (error) {
            console.log(String(error).split("\n", 1)[0]);
        }
    }
    await browser?.close();
}

main();
