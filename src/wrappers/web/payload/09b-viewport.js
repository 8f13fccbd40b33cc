// 09b  Viewport: where on the screen the content of a window begins and how large it is there.
//
// Defines  window.top.__ostrel.getViewportBounds, window.top.__ostrel.getViewPortSize,
//          __ostrel__getViewportScreenPosition, __ostrel__viewportSizeOnScreen,
//          __ostrel__tellsInnerScreen, __ostrel__positionByInnerScreen,
//          __ostrel__isEdgeWindow, __ostrel__positionInEdge,
//          __ostrel__bridgePosition, __ostrel__positionByEventLoggerBridge,
//          __ostrel__isJavaFXOrAndroid, __ostrel__positionInJavaFXOrAndroid, __ostrel__positionInQWebView,
//          __ostrel__positionInJavaSWT, __ostrel__tellsOuterSize, __ostrel__positionByOuterSize,
//          __ostrel__isInternetExplorerWindow, __ostrel__positionInInternetExplorer,
//          __ostrel__isSafariOnMac, __ostrel__addPositions, __ostrel__applyDevicePixelRatio,
//          __ostrel__applyBridgeZoom, __ostrel__scaleRectOrPosition, __ostrel__framePositionInView,
//          __ostrel__borderInPixels, __ostrel__getFrameOffset, __ostrel__offsetOfFrame
// Calls    __ostrel__currentContext (02c-contexts), __ostrel__isAndroidWebViewBrowser,
//          __ostrel__isJavaFXWebViewBrowser, __ostrel__isJavaSWTBrowser, __ostrel__isQWebViewBrowser,
//          __ostrel__needToApplyDevicePixelRatio, __ostrel__usesEventLoggerBridge (07-browser-detection),
//          __ostrel__getClientBoundingRect (09a-screen-rectangle), __ostrel__cssToPx, __ostrel__styleInfo
//          (12-visibility)
// At load  the members of window.top.__ostrel are set

/**
 * The rectangle of the viewport on the screen.
 * @param {Document} elemDoc
 * @param {Window} win
 * @return {{x: number, y: number, width: number, height: number}}
 */
window.top.__ostrel.getViewportBounds = function (elemDoc, win) {
    var corner = __ostrel__getViewportScreenPosition(elemDoc, win);
    var size = __ostrel__viewportSizeOnScreen(elemDoc, win);

    return { x: corner.x, y: corner.y, width: size.x, height: size.y };
};

/**
 * The size of the viewport in CSS pixels. A frame's own size is of no use here: what counts is what the top
 * window shows.
 * @param {Document} elemDoc asked only where the window does not tell
 * @param {Window} win
 * @return {{x: number, y: number}}
 */
window.top.__ostrel.getViewPortSize = function (elemDoc, win) {
    var root;

    if (win.top.innerWidth !== undefined) {
        return { x: win.top.innerWidth, y: win.top.innerHeight };
    }
    root = elemDoc.documentElement;
    if (root && root.clientWidth !== undefined && root.clientWidth !== 0) {
        return { x: root.clientWidth, y: root.clientHeight };
    }
    return { x: elemDoc.body.clientWidth, y: elemDoc.body.clientHeight };
};

/**
 * The screen position of the viewport's top-left corner. Every browser tells it in a way of its own; the
 * first rule that applies gives the answer.
 * @param {Document} doc
 * @param {Window} win
 * @return {{x: number, y: number}}
 */
function __ostrel__getViewportScreenPosition(doc, win) {
    var rules = [
        { applies: __ostrel__tellsInnerScreen, position: __ostrel__positionByInnerScreen },
        { applies: __ostrel__isEdgeWindow, position: __ostrel__positionInEdge },
        { applies: __ostrel__usesEventLoggerBridge, position: __ostrel__positionByEventLoggerBridge },
        { applies: __ostrel__isJavaFXOrAndroid, position: __ostrel__positionInJavaFXOrAndroid },
        { applies: __ostrel__isQWebViewBrowser, position: __ostrel__positionInQWebView },
        { applies: __ostrel__isJavaSWTBrowser, position: __ostrel__positionInJavaSWT },
        { applies: __ostrel__tellsOuterSize, position: __ostrel__positionByOuterSize },
        { applies: __ostrel__isInternetExplorerWindow, position: __ostrel__positionInInternetExplorer }
    ];
    var i;

    for (i = 0; i < rules.length; i++) {
        if (rules[i].applies(win)) {
            return rules[i].position(win);
        }
    }
    return { x: 0, y: 0 };
}

/**
 * @param {Document} elemDoc
 * @param {Window} win
 * @return {{x: number, y: number}} the viewport's size in pixels of the screen
 */
function __ostrel__viewportSizeOnScreen(elemDoc, win) {
    var size = window.top.__ostrel.getViewPortSize(elemDoc, win);

    __ostrel__applyDevicePixelRatio(size, win);
    __ostrel__applyBridgeZoom(size);
    return size;
}

/**
 * Firefox is the one browser that tells where the content of a window, also of a frame's, begins.
 * @param {Window} win
 * @return {boolean}
 */
function __ostrel__tellsInnerScreen(win) {
    return win.mozInnerScreenX !== undefined;
}

/**
 * @param {Window} win
 * @return {{x: number, y: number}}
 */
function __ostrel__positionByInnerScreen(win) {
    var position = { x: win.mozInnerScreenX, y: win.mozInnerScreenY };

    __ostrel__applyDevicePixelRatio(position, win);
    return position;
}

/**
 * @param {Window} win
 * @return {boolean}
 */
function __ostrel__isEdgeWindow(win) {
    return !!win.__ostrel__microsoftedge;
}

/**
 * Edge: a window that fills the screen has no border, and its outer height at times exceeds the screen.
 * @param {Window} win
 * @return {{x: number, y: number}}
 */
function __ostrel__positionInEdge(win) {
    var hasBorder = screen.availWidth - win.innerWidth !== 0;
    var windowBorder = (win.outerWidth - win.innerWidth) / 2 * hasBorder;
    var outerHeight = Math.min(screen.availHeight, win.outerHeight);
    var position = __ostrel__addPositions({
        x: win.screenLeft + windowBorder,
        y: win.screenTop + outerHeight - win.innerHeight - windowBorder
    }, __ostrel__framePositionInView(win));

    __ostrel__applyDevicePixelRatio(position, win);
    return position;
}

/**
 * What a native bridge of an embedding tells about its widget.
 * @param {(Object|undefined)} bridge
 * @return {{x: number, y: number}} 0, 0 where the embedding plants no bridge
 */
function __ostrel__bridgePosition(bridge) {
    return bridge ? { x: bridge.screenX(), y: bridge.screenY() } : { x: 0, y: 0 };
}

/**
 * @return {{x: number, y: number}}
 */
function __ostrel__positionByEventLoggerBridge() {
    return __ostrel__bridgePosition(window.top.__ostrel__eventLoggerBridge);
}

/**
 * @return {boolean}
 */
function __ostrel__isJavaFXOrAndroid() {
    return !!(__ostrel__isJavaFXWebViewBrowser() || __ostrel__isAndroidWebViewBrowser());
}

/**
 * These two views report their own corner in device pixels but frame offsets in CSS pixels.
 * @param {Window} win
 * @return {{x: number, y: number}}
 */
function __ostrel__positionInJavaFXOrAndroid(win) {
    var frameOffset = __ostrel__getFrameOffset(win);

    __ostrel__applyDevicePixelRatio(frameOffset, win);
    return __ostrel__addPositions(
        __ostrel__bridgePosition(window.top.__ostrel__qwebkitEventLoggerBridge), frameOffset);
}

/**
 * @param {Window} win
 * @return {{x: number, y: number}}
 */
function __ostrel__positionInQWebView(win) {
    return __ostrel__addPositions(
        __ostrel__bridgePosition(window.top.__ostrel__qwebkitEventLoggerBridge),
        __ostrel__framePositionInView(win));
}

/**
 * @param {Window} win
 * @return {{x: number, y: number}}
 */
function __ostrel__positionInJavaSWT(win) {
    return __ostrel__addPositions({
        x: window.top.__ostrel__swtfunction("screenX"),
        y: window.top.__ostrel__swtfunction("screenY")
    }, __ostrel__framePositionInView(win));
}

/**
 * @param {Window} win
 * @return {boolean}
 */
function __ostrel__tellsOuterSize(win) {
    return !!win.outerWidth && !window.top.__ostrel__ie;
}

/**
 * Works the corner out from the window's frame, on the assumption that there is no side bar and nothing
 * below the viewport. The sizes are those of the top window, since a frame's lead nowhere here.
 * @param {Window} win
 * @return {{x: number, y: number}}
 */
function __ostrel__positionByOuterSize(win) {
    var t = win.top;
    var position = {};
    var zoomFactor, borderWidth;

    if (__ostrel__isSafariOnMac()) {
        // Its windows have no border, and its inner size shrinks with the page zoom.
        zoomFactor = t.outerWidth / t.innerWidth;
        position.x = t.screenX;
        position.y = t.screenY + t.outerHeight - t.innerHeight * zoomFactor;
    } else {
        borderWidth = (t.outerWidth - t.innerWidth) / 2;
        position.x = t.screenX + borderWidth;
        position.y = t.screenY + t.outerHeight - t.innerHeight - borderWidth;
    }
    position = __ostrel__addPositions(position, __ostrel__framePositionInView(win));
    __ostrel__applyDevicePixelRatio(position, win);
    return position;
}

/**
 * A modal dialog of Internet Explorer is a top window of its own, without our variables; its arguments lead
 * to the page that opened it.
 * @param {Window} win
 * @return {boolean}
 */
function __ostrel__isInternetExplorerWindow(win) {
    var opener = win.dialogArguments && win.dialogArguments.top;

    return !!(window.top.__ostrel__ie || (opener && opener.__ostrel__ie));
}

/**
 * Internet Explorer tells the corner of the page and of each frame itself, unless the browser side planted
 * a better answer for the top window.
 * @param {Window} win
 * @return {{x: number, y: number}}
 */
function __ostrel__positionInInternetExplorer(win) {
    var t = win.top;
    var position = { x: win.screenLeft, y: win.screenTop };

    if (t.ostrelScreenLeft && t.ostrelScreenTop) {
        position = __ostrel__addPositions({ x: t.ostrelScreenLeft, y: t.ostrelScreenTop },
            __ostrel__framePositionInView(win));
    }
    __ostrel__applyDevicePixelRatio(position, win);
    return position;
}

/**
 * @return {boolean}
 */
function __ostrel__isSafariOnMac() {
    return !!window.top.__ostrel__safari && window.top.__ostrel__os === "MacOSX";
}

/**
 * @param {{x: number, y: number}} a
 * @param {{x: number, y: number}} b
 * @return {{x: number, y: number}}
 */
function __ostrel__addPositions(a, b) {
    return { x: a.x + b.x, y: a.y + b.y };
}

/**
 * Turns CSS pixels into device pixels where the browser's screen coordinates are counted in the latter.
 * @param {Object} rectOrPos changed in place
 * @param {Window} win
 */
function __ostrel__applyDevicePixelRatio(rectOrPos, win) {
    if (__ostrel__needToApplyDevicePixelRatio(win) && win.devicePixelRatio) {
        __ostrel__scaleRectOrPosition(rectOrPos, win.devicePixelRatio);
    }
}

/**
 * Applies the zoom of an embedding view, which only its bridge knows.
 * @param {Object} rectOrPos changed in place
 */
function __ostrel__applyBridgeZoom(rectOrPos) {
    var bridge = window.top.__ostrel__eventLoggerBridge;

    if (bridge && bridge.zoomScale) {
        __ostrel__scaleRectOrPosition(rectOrPos, bridge.zoomScale());
    }
}

/**
 * @param {Object} rectOrPos changed in place; a position has no width and height
 * @param {number} factor
 */
function __ostrel__scaleRectOrPosition(rectOrPos, factor) {
    rectOrPos.x *= factor;
    rectOrPos.y *= factor;
    if (rectOrPos.width && rectOrPos.height) {
        rectOrPos.width *= factor;
        rectOrPos.height *= factor;
    }
}

/**
 * Where a frame's content begins, relative to the viewport of the top window and with regard to scrolling.
 * @param {Window} win
 * @return {{x: number, y: number}}
 */
function __ostrel__framePositionInView(win) {
    var position = { x: 0, y: 0 };
    var frame, style;

    while (win.frameElement) {
        frame = win.frameElement;
        style = new __ostrel__styleInfo(frame);
        position = __ostrel__addPositions(position, __ostrel__getClientBoundingRect(frame, false));
        position.x += __ostrel__borderInPixels(style, "borderLeftWidth");
        position.y += __ostrel__borderInPixels(style, "borderTopWidth");
        win = __ostrel__currentContext(frame);
    }
    return position;
}

/**
 * @param {__ostrel__styleInfo} style
 * @param {string} property
 * @return {number} 0 for a width in words, such as "medium"
 */
function __ostrel__borderInPixels(style, property) {
    return Math.round(__ostrel__cssToPx(style.styleProperty(property))) || 0;
}

/**
 * Where a frame's content begins, relative to the document of the top window and without regard to scrolling.
 * @param {Window} win
 * @return {{x: number, y: number}}
 */
function __ostrel__getFrameOffset(win) {
    var offset = { x: 0, y: 0 };

    while (win !== win.parent) {
        offset = __ostrel__addPositions(offset, __ostrel__offsetOfFrame(win));
        win = win.parent;
    }
    return offset;
}

/**
 * @param {Window} win
 * @return {{x: number, y: number}} what could be summed up before a window of another origin refused
 */
function __ostrel__offsetOfFrame(win) {
    var offset = { x: 0, y: 0 };
    var element;

    try {
        for (element = win.frameElement; element; element = element.offsetParent) {
            offset.x += element.offsetLeft;
            offset.y += element.offsetTop;
            if (window.top.__ostrel__ie) {
                // Its offsets leave the borders out.
                offset.x += element.clientLeft;
                offset.y += element.clientTop;
            }
        }
    } catch (otherOrigin) {
        // The windows further up may still be reachable.
    }
    return offset;
}
