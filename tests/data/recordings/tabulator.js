// Recorded by pageprobe. Run it with: pageprobe run FILE
startBrowser("http://127.0.0.1:PORT/tests/e2e/toolkits/tabulator.html");
waitForContextExists("tabulator.html");
mouseClick("{visible='true' tagName='DIV' simplifiedInnerText='Amount' occurrence='4'}", 110, 7);
setFocus("{visible='true' tagName='INPUT' name='find' type='search' id='find' form='tools'}");
typeText("{visible='true' tagName='INPUT' name='find' type='search' id='find' form='tools'}", "Nut");
mouseClick("{visible='true' tagName='DIV' simplifiedInnerText='62'}", 50, 12);
mouseClick("{visible='true' tagName='DIV' simplifiedInnerText='42'}", 50, 12);
clickButton("{visible='true' tagName='BUTTON' type='button' id='drop' form='tools' simplifiedInnerText='Drop the chosen rows'}");
mouseClick("{visible='true' tagName='DIV' simplifiedInnerText='Nut M5'}", 114, 12);
typeText("{visible='true' tagName='INPUT' type='text'}", "Nut of brass");
typeText("{visible='true' tagName='INPUT' type='text'}", "<Return>");
mouseClick("DOCUMENT.HTML1.BODY1.DIV1.DIV2.DIV1.DIV3.DIV6", 116, 12);
clickButton("{visible='true' tagName='BUTTON' type='button' id='add' form='tools' simplifiedInnerText='Add a row'}");
mouseClick("{visible='true' tagName='DIV' simplifiedInnerText='Price' occurrence='4'}", 110, 7);
