// A first tour through the shop: what a test script can see and do with a page.

function heading(text) {
    log("\n== " + text);
}

// The elements below one, as an outline of tag names and ids.
function outline(element, depth, indent) {
    for (let child = element.firstChild(); child !== null; child = child.nextSibling()) {
        log(indent + child.tagName + (child.id ? " #" + child.id : ""));
        if (depth > 1) {
            outline(child, depth - 1, indent + "  ");
        }
    }
}

// The first visible button with this text.
function buttonNamed(text) {
    const buttons = page.getElementsByTagName("button");
    for (let i = 0; i < buttons.length; ++i) {
        if (buttons.at(i).simplifiedInnerText === text && buttons.at(i).visible) {
            return buttons.at(i);
        }
    }
    throw new Error("There is no button '" + text + "'.");
}

heading("Open the shop");
startBrowser(serverAddress() + "index.html");
const page = activeDocument();
log("an element as text: " + page.getElementById("search"));

heading("Walk the tree");
outline(page.getElementsByTagName("body").at(0), 2, "  ");

heading("Reach elements by id and tag name");
const search = page.getElementById("search");
const goods = page.getElementById("goods");
log("by id: " + search.className() + " of type '" + search.type + "'");
log("by tag: " + page.getElementsByTagName("button").length + " buttons");
log("no such id: " + page.getElementById("no-such-id"));

heading("Read properties");
for (const element of [page.getElementById("welcome"), goods]) {
    log("id '" + element.id + "', tagName " + element.tagName + ", numChildren " + element.numChildren);
}
log("innerText: " + page.getElementById("welcome").innerText);
log("where the search field is: " + JSON.stringify(search.boundingClientRect));

heading("Set a property, invoke a method");
search.value = "mug";
log("the field now holds: " + search.value);
page.getElementById("search-form").invoke("requestSubmit");
snooze(0.3);
log("the page answers: " + page.getElementById("goods-title").innerText + ", goods shown: " + goods.numChildren);

heading("Click and see the page change");
const cart = page.getElementById("cart-count");
log("in the cart before: " + (cart.innerText || "nothing"));
buttonNamed("Add to cart").click();
log("in the cart after: " + cart.innerText + ", and the shop says: " + page.getElementById("toast").innerText);

saveScreenshot("shop.png");
log("\nThe picture of the page is shop.png.");
