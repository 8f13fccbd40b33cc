// Buys a mug by name, as a recorded script would, and verifies what the shop says of it.

const mug = "{tagName='A' id='picture-pellow-mug'}";
const add = "{tagName='BUTTON' type='submit' simplifiedInnerText='Add to cart' visible='true'}";

section("Find the mug", () => {
    startBrowser(serverAddress() + "index.html");
    typeText("{tagName='INPUT' type='search'}", "mug");
    clickButton("{tagName='BUTTON' type='submit' simplifiedInnerText='Search'}");
    waitForObject("{tagName='H2' simplifiedInnerText?='1 thing for*'}");
    mouseClick(mug);
    waitForContextExists("product.html");
});

section("Choose and buy", () => {
    clickButton("{tagName='INPUT' type='radio' value='paper'}");
    typeText("{tagName='INPUT' name='quantity'}", "3");
    clickButton(add);
    compare(waitForObject("{tagName='SPAN' id='cart-count' simplifiedInnerText='3'}").innerText, "3",
        "three mugs are in the cart");
    verify(!objectExists("{tagName='BUTTON' simplifiedInnerText='Sold out' visible='true'}"), "there are mugs left");
});

// The error of a failed lookup says which property is to blame, and what comes near.
try {
    findObject("{tagName='BUTTON' simplifiedInnerText='add to cart' type='submit'}");
} catch (error) {
    log(error.message);
}
