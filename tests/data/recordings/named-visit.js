// Recorded by pageprobe. Run it with: pageprobe run FILE
startBrowser("http://127.0.0.1:PORT/index.html");
waitForContextExists("index.html");
setFocus("the search");
typeText("the search", "mug");
clickButton("Search (button)");
clickButton("in-stock (box)");
clickButton("wish-pellow-mug (button)");
clickButton("Add to cart (button)");
mouseClick("Cart 1 (link)");
waitForContextExists("cart.html");
setFocus("field");
typeText("field", "4");
answerPrompt("QUIET10");
clickButton("Enter a voucher (button)");
