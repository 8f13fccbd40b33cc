// Does by playwright-core what the benchmarks do by the host. Usage: node playwright-peer.js BROWSER
//
// Says "ready", then answers each line of its input with milliseconds, or with the text of an error:
//     open ADDRESS      opens a page and takes hold of its element "target"
//     read COUNT        reads the element's tagName COUNT times in sequence
//     page ADDRESS      opens a page, whatever is in it
//     properties COUNT  returns the properties that a dump shows of all elements of that page, COUNT at least
//     screenshots COUNT takes a picture of each of the first COUNT elements that are not hidden
//     locate TEXT N     takes hold of the Nth visible button of exactly this text ("_" for blanks); 0: there is none
//     children COUNT    takes hold of all children of the element "list"
//     session           starts a browser of its own, opens an empty page, and ends it
"use strict";

const readline = require("readline");
const { chromium } = require("playwright-core");

const launchOptions = { executablePath: process.argv[2] };
let browser;
let page;
let target;

async function openPage(address) {
    browser ??= await chromium.launch(launchOptions);
    page ??= await browser.newPage();
    await page.goto("about:blank");
    await page.goto(address);
}

async function open(address) {
    await openPage(address);
    target = await page.$("#target");
}

async function read(count) {
    for (let i = 0; i < count; ++i) {
        if (await target.evaluate((element) => element.tagName) !== "P") {
            throw new Error("the element has another tag");
        }
    }
}

// Runs in the page. Each value is had in the cheapest way that a page has for it.
function allProperties() {
    const paths = new Map([[document, "DOCUMENT"]]);
    const positions = new Map();
    const position = (element) => {
        const counts = positions.get(element.parentNode) ?? {};
        positions.set(element.parentNode, counts);
        return counts[element.tagName] = (counts[element.tagName] ?? 0) + 1;
    };
    return [...document.querySelectorAll("*")].map((element) => {
        const rect = element.getBoundingClientRect();
        const text = element.innerText ?? "";
        const path = `${paths.get(element.parentNode)}.${element.tagName}${position(element)}`;
        paths.set(element, path);
        return {
            title: element.title,
            domClassName: element.className,
            id: element.id,
            styleDisplay: element.style.display,
            innerHTML: element.innerHTML,
            numChildren: element.children.length,
            x: rect.x,
            y: rect.y,
            width: rect.width,
            height: rect.height,
            visible: element.checkVisibility({ visibilityProperty: true }),
            innerText: text,
            domPath: path,
            tagName: element.tagName,
            simplifiedInnerText: text.replace(/\s+/g, " ").trim(),
            textContent: element.textContent,
            bounds: { x: rect.x + scrollX, y: rect.y + scrollY, width: rect.width, height: rect.height },
            screenRect: { x: rect.x + screenX, y: rect.y + screenY, width: rect.width, height: rect.height },
        };
    });
}

async function properties(count) {
    const all = await page.evaluate(allProperties);
    if (all.length < count) {
        throw new Error(`the page has ${all.length} elements only`);
    }
}

async function screenshots(count) {
    const elements = (await page.$$("section, .item:not(.hidden), .item:not(.hidden) *")).slice(0, count);
    if (elements.length < count) {
        throw new Error(`the page shows ${elements.length} such elements only`);
    }
    for (const element of elements) {
        await element.screenshot();
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
    page: openPage,
    properties: (count) => properties(Number(count)),
    read: (count) => read(Number(count)),
    screenshots: (count) => screenshots(Number(count)),
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
