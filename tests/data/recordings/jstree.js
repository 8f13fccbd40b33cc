// Recorded by pageprobe. Run it with: pageprobe run FILE
startBrowser("http://127.0.0.1:PORT/tests/e2e/toolkits/jstree.html");
waitForContextExists("jstree.html");
mouseClick("DOCUMENT.HTML1.BODY1.DIV1.UL1.LI3.I1", 12, 11);
mouseClick("{visible='true' tagName='A' simplifiedInnerText='2023' id='j1_42_anchor'}");
mouseClick("{visible='true' tagName='A' simplifiedInnerText='Autumn' id='j1_22_anchor'}");
mouseClick("DOCUMENT.HTML1.BODY1.DIV1.UL1.LI1.UL1.LI1.I1", 12, 11);
clickButton("{visible='true' tagName='BUTTON' type='button' id='new' form='tools' simplifiedInnerText='New folder'}");
setFocus("{visible='true' tagName='INPUT' name='find' type='search' form='tools'}");
typeText("{visible='true' tagName='INPUT' name='find' type='search' form='tools'}", "Bills of Winter");
