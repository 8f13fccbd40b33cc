// The info overlay: Ctrl+Alt and a click open a panel that tells what an element is called. The option
// EnableObjectInfoOverlay must be on.
startBrowser(serverAddress() + "index.html");
const field = waitForObject("{tagName='INPUT' id='search'}");
mouseClick(field, HTML_Event.ControlAlt, 60, 20);

const panel = (name) => waitForObject("{tagName='TEXTAREA' name='__ostrel__info__" + name + "'}").value;
log("DOM path: " + panel("domPath"));
log("real name: " + panel("name"));
saveScreenshot("overlay.png");
log("The picture of the page is overlay.png.");
