// 07  Browser detection: which browser or embedding the page runs in, as the host has told it.
//
// Defines  __ostrel__isProxyOnMobileDevice, __ostrel__isQWebViewBrowser, __ostrel__isCocoaWebViewBrowser,
//          __ostrel__isCocoaTouchWebViewBrowser, __ostrel__isWKWebViewBrowser, __ostrel__isAndroidWebViewBrowser,
//          __ostrel__isJavaFXWebViewBrowser, __ostrel__isJavaSWTBrowser, __ostrel__isEmbeddedAppleWebkitBrowser,
//          __ostrel__usesEventLoggerBridge, __ostrel__isEmbeddedIntoHookableToolkit,
//          __ostrel__isSafariUsingWebDriver, __ostrel__needToApplyDevicePixelRatio,
//          __ostrel__isHooked, __ostrel__topVariable
// Calls    __ostrel__handler (01b-event-capture), __ostrel__installed__hook (02z-start), __ostrel__findObject
//          (15a-search-by-properties)
// At load  nothing runs

/**
 * True when the page came through the proxy to a browser on a mobile device.
 * @return {boolean}
 */
function __ostrel__isProxyOnMobileDevice() {
    return !!(__ostrel__topVariable("__ostrel__proxy") && __ostrel__topVariable("__ostrel__mobiledevice"));
}

/**
 * True in a QWebView.
 * @return {boolean}
 */
function __ostrel__isQWebViewBrowser() {
    return !!__ostrel__topVariable("__ostrel__qwebview");
}

/**
 * True in a Cocoa web view.
 * @return {boolean}
 */
function __ostrel__isCocoaWebViewBrowser() {
    return !!__ostrel__topVariable("__ostrel__cocoawebview");
}

/**
 * True in a Cocoa Touch web view.
 * @return {boolean}
 */
function __ostrel__isCocoaTouchWebViewBrowser() {
    return !!__ostrel__topVariable("__ostrel__cocoatouchwebview");
}

/**
 * True in a WKWebView.
 * @return {boolean}
 */
function __ostrel__isWKWebViewBrowser() {
    return !!__ostrel__topVariable("__ostrel__wkwebview");
}

/**
 * True in an Android web view.
 * @return {boolean}
 */
function __ostrel__isAndroidWebViewBrowser() {
    return !!__ostrel__topVariable("__ostrel__androidwebview");
}

/**
 * True in a JavaFX web view.
 * @return {boolean}
 */
function __ostrel__isJavaFXWebViewBrowser() {
    return !!__ostrel__topVariable("__ostrel__javafxwebview");
}

/**
 * The callable of an SWT browser, which is at the same time the sign that there is one.
 * @return {*} the callable, or a falsy value in every other browser
 */
function __ostrel__isJavaSWTBrowser() {
    return __ostrel__topVariable("__ostrel__swtfunction");
}

/**
 * True in any of the Apple web views.
 * @return {boolean}
 */
function __ostrel__isEmbeddedAppleWebkitBrowser() {
    return __ostrel__isCocoaWebViewBrowser() || __ostrel__isCocoaTouchWebViewBrowser() ||
        __ostrel__isWKWebViewBrowser();
}

/**
 * True where events leave through the bridge object of the Apple web views.
 * @return {boolean}
 */
function __ostrel__usesEventLoggerBridge() {
    return __ostrel__isEmbeddedAppleWebkitBrowser();
}

/**
 * True when the browser is a part of an application whose toolkit can be hooked itself.
 * @return {boolean}
 */
function __ostrel__isEmbeddedIntoHookableToolkit() {
    return __ostrel__isAndroidWebViewBrowser() || __ostrel__isQWebViewBrowser() ||
        __ostrel__isEmbeddedAppleWebkitBrowser() || __ostrel__isJavaFXWebViewBrowser() ||
        !!__ostrel__isJavaSWTBrowser();
}

/**
 * True in a Safari that is driven by its WebDriver, which is so from version 12 on. A version that is not known
 * counts as new.
 * @return {boolean}
 */
function __ostrel__isSafariUsingWebDriver() {
    var version = __ostrel__topVariable("__ostrel__safari__version");

    if (!__ostrel__topVariable("__ostrel__safari") && !window.__ostrel__safari) {
        return false;
    }
    return !version || version >= 12;
}

/**
 * True when screen positions of a window are to be multiplied by its pixel ratio: not on a Mac and not in the web
 * views of iOS, where a screen position is told in points.
 * @param {Window} win
 * @return {boolean}
 */
function __ostrel__needToApplyDevicePixelRatio(win) {
    return win.devicePixelRatio !== undefined && __ostrel__topVariable("__ostrel__os") !== "MacOSX" &&
        !__ostrel__isWKWebViewBrowser() && !__ostrel__isCocoaTouchWebViewBrowser();
}

/**
 * True when the whole payload has been evaluated in the top window.
 * @return {boolean}
 */
function __ostrel__isHooked() {
    try {
        return window.top.__ostrel__handler !== undefined && window.top.__ostrel !== undefined &&
            window.top.__ostrel__findObject !== undefined && window.top.__ostrel__installed__hook === true;
    } catch (e) {
        return false;
    }
}

/**
 * Reads a variable that the host has set in the top window.
 * @param {string} name
 * @return {*} its value, or false when the top window does not let us read it
 */
function __ostrel__topVariable(name) {
    try {
        return window.top[name];
    } catch (e) {
        return false;
    }
}
