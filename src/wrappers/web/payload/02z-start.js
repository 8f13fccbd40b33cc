// 02z  Start: hooks the top window and sets the timers going, once all of the hook core is there.
//
// Defines  __ostrel__startHook, __ostrel__listenInTopDocument, __ostrel__installed__hook, old_onunload (on window)
// Calls    __ostrel__handler (01b-event-capture), __ostrel__install__handler (01e-change-listeners),
//          __ostrel__asyncWaitForPageprobeMsg (02a-channel), __ostrel__topWindow (02c-contexts), __ostrel__mousemove
//          (02g-overlay), __ostrel__hookupWindow, __ostrel__installUnload, __ostrel__setupInnerTextFunctions,
//          __ostrel__topLevelUnloadHandler (02h-window-hookup), __ostrel__hookFramesOfAllWindows (02i-frame-hookup),
//          __ostrel__hookupTouchEvents (16-touch-recording)
// At load  runs __ostrel__startHook

/**
 * Hooks the page that the payload has just been evaluated in.
 */
function __ostrel__startHook() {
    if (window.__ostrel__mozilla) {
        __ostrel__setupInnerTextFunctions(window);
    }
    __ostrel__listenInTopDocument();
    window.old_onunload = window.onunload;
    window.onunload = __ostrel__topLevelUnloadHandler;

    __ostrel__topWindow = window;
    __ostrel__hookupWindow(window);

    setInterval(__ostrel__hookFramesOfAllWindows, 1000);
    setInterval(__ostrel__installUnload, 1000);

    window.__ostrel__installed__hook = true;
    if (window.__ostrel__proxy) {
        __ostrel__asyncWaitForPageprobeMsg();
    }
}

/**
 * Sets our listeners on the top document. A keydown only installs change listeners here; frames differ on purpose.
 */
function __ostrel__listenInTopDocument() {
    var listeners = [
            ["keyup", __ostrel__handler],
            ["mousedown", __ostrel__handler],
            ["click", __ostrel__handler],
            ["dblclick", __ostrel__handler],
            ["keydown", __ostrel__install__handler],
            ["focus", __ostrel__install__handler],
            ["mousemove", __ostrel__mousemove]
        ],
        i;

    if (!document.addEventListener) {
        for (i = 0; i < listeners.length; i++) {
            document.attachEvent("on" + listeners[i][0], listeners[i][1]);
        }
        return;
    }
    for (i = 0; i < listeners.length; i++) {
        document.addEventListener(listeners[i][0], listeners[i][1], true);
    }
    __ostrel__hookupTouchEvents(window);
}

__ostrel__startHook();
