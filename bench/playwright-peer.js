// Does by playwright-core what the benchmarks do by the host. Usage: node playwright-peer.js BROWSER
//
// Says "ready", then answers each line of its input with milliseconds, or with the text of an error:
//     open ADDRESS      opens a page and takes hold of its element "target"
//     read COUNT        reads the element's tagName COUNT times in sequence
//     locate TEXT N     takes hold of the Nth visible button of exactly this text ("_" for blanks); with 0 there is none
//     children COUNT    takes hold of all children of the element "list"
//     session           starts a browser of its own, opens an empty page, and ends it
"use strict";

const readline = require("readline");
const { chromium } = require("playwright-core");

const launchOptions = { executablePath: process.argv[2] };
let browser;
let page;
let target;

async function open(address) {
    browser = await chromium.launch(launchOptions);
    page = await browser.newPage();
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

async function locate(text, occurrence) {
    const buttons = page.locator("button").filter({ hasText: new RegExp(`^${text.replaceAll("_", " ")}$`) })
        .filter({ visible: true });
    if (occurrence > 0) {
        await buttons.nth(occurrence - 1).elementHandle();
    } else if (await buttons.count() > 0) {
        throw new Error("there is such a button");
    }
}

async function children(count) {
    if ((await page.$$("#list > *")).length !== count) {
        throw new Error("the number of children is another");
    }
}

async function session() {
    const own = await chromium.launch(launchOptions);
    await own.newPage();
    await own.close();
}

const commands = {
    open,
    read: (count) => read(Number(count)),
    locate: (text, occurrence) => locate(text, Number(occurrence)),
    children: (count) => children(Number(count)),
    session,
};

async function main() {
    console.log("ready");
    for await (const line of readline.createInterface({ input: process.stdin })) {
        const [command, ...parameters] = line.split(" ");
        try {
            const begin = performance.now();
            await commands[command](...parameters);
            console.log(performance.now() - begin);
        } catch (error) {
            console.log(String(error).split("\n", 1)[0]);
        }
    }
    await browser?.close();
}

main();
