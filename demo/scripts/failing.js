// What a failing statement looks like: the last line does not work, and the command says which one and why.
startBrowser(serverAddress() + "index.html");
const title = activeDocument().getElementById("welcome");

log("the title is: " + title.innerText);
title.title = "Fast things";
