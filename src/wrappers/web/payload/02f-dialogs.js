// 02f  Dialogs: stand in for alert, confirm and prompt, to record them and to answer them while replaying.
//
// Defines  __ostrel__overrideNativeDialogFunction, __ostrel__alert2, __ostrel__confirm, __ostrel__prompt,
//          __ostrel__doEventHandlerAsync, __ostrel__showRecordedDialog, __ostrel__showsRealDialog,
//          __ostrel__showsNativeDialogInReplay, __ostrel__hasFallbackWindow, __ostrel__logDialogEvent,
//          __ostrel__notifyOfDialog, __ostrel__reportAlertOpened, __ostrel__reportDialogOpened, __ostrel__askHost,
//          __ostrel__promptAnswer, __ostrel__lastAlertMessage, __ostrel__lastConfirmMessage,
//          __ostrel__lastPromptMessage, __ostrel__lastPromptDefaultValue
// Calls    __ostrel__getLogEventUrl (01a-log-event), __ostrel__sendXMLHttpRequest (02a-channel),
//          __ostrel__needToOverrideNativeFunction (02h-window-hookup), __ostrel__isEmbeddedIntoHookableToolkit,
//          __ostrel__isSafariUsingWebDriver (07-browser-detection)
// At load  the texts of the last dialogs are emptied

window.__ostrel__lastAlertMessage = '';
window.__ostrel__lastConfirmMessage = '';
window.__ostrel__lastPromptMessage = '';
window.__ostrel__lastPromptDefaultValue = '';

/**
 * Puts one of our dialog functions in the place of a window's native one.
 *
 * Embedded browsers keep their native dialogs, which can be automated as any other, unless the host asks for the old
 * way. The native function is saved there too, so that callers need not ask.
 *
 * @param {Window} w
 * @param {string} nativeFnName for example "alert"
 * @param {Function} overrideFnRef our function
 * @param {string} origStoreName the member of the window that saves the native function
 * @return {Function} the native function
 */
function __ostrel__overrideNativeDialogFunction(w, nativeFnName, overrideFnRef, origStoreName) {
    if (__ostrel__needToOverrideNativeFunction(w[nativeFnName], overrideFnRef)) {
        w[origStoreName] = w[nativeFnName];
    }
    if (!__ostrel__isEmbeddedIntoHookableToolkit() || window.top.__ostrel__suppress__webdialogs) {
        w[nativeFnName] = overrideFnRef;
    }
    return w[origStoreName];
}

/**
 * Stands in for `alert`. Not strict, so that an unqualified call has its window as `this`.
 *
 * @this {Window}
 * @param {*} msg
 * @return {undefined}
 */
function __ostrel__alert2(msg) {
    var win = this;
    if (__ostrel__showsRealDialog()) {
        __ostrel__showRecordedDialog(function () {
            win.__ostrel__origAlert(msg);
            return 'event=alert';
        });
        return undefined;
    }
    __ostrel__reportAlertOpened();
    if (!__ostrel__showsNativeDialogInReplay()) {
        window.__ostrel__lastAlertMessage = msg;
        return undefined;
    }
    if (window.top.__ostrel__chromiumbased) {
        window.__ostrel__lastAlertMessage = msg;
    }
    return this.__ostrel__origAlert(msg);
}

/**
 * Stands in for `confirm`. Not strict, so that an unqualified call has its window as `this`.
 *
 * @this {Window}
 * @param {*} msg
 * @return {boolean}
 */
function __ostrel__confirm(msg) {
    var win = this;
    if (__ostrel__showsRealDialog()) {
        var ret;
        __ostrel__showRecordedDialog(function () {
            ret = win.__ostrel__origConfirm(msg);
            return 'event=confirm&ret=' + ret;
        });
        return ret;
    }
    __ostrel__reportDialogOpened('ConfirmOpened');
    if (!__ostrel__showsNativeDialogInReplay()) {
        window.__ostrel__lastConfirmMessage = msg;
        return __ostrel__askHost('waitForConfirm') === 'true';
    }
    if (window.top.__ostrel__chromiumbased) {
        window.__ostrel__lastConfirmMessage = msg;
    }
    // Kept as is: the top window's function and not that of `this`, other than in an alert.
    return window.top.__ostrel__origConfirm(msg);
}

/**
 * Stands in for `prompt`. Not strict, so that an unqualified call has its window as `this`.
 *
 * @this {Window}
 * @param {*} msg
 * @param {*=} def
 * @return {?string}
 */
function __ostrel__prompt(msg, def) {
    var win = this;
    var offered = def || '';
    if (__ostrel__showsRealDialog()) {
        var ret;
        __ostrel__showRecordedDialog(function () {
            // Kept as is: a cancelled prompt and an empty input are alike while recording.
            ret = win.__ostrel__origPrompt(msg, offered) || '';
            return 'event=prompt&ret=' + ret; // Kept as is: the result is not escaped.
        });
        return ret;
    }
    __ostrel__reportDialogOpened('PromptOpened');
    var showsNativeDialog = __ostrel__showsNativeDialogInReplay();
    if (!showsNativeDialog || window.top.__ostrel__chromiumbased || __ostrel__isSafariUsingWebDriver()) {
        window.__ostrel__lastPromptMessage = msg;
        window.__ostrel__lastPromptDefaultValue = offered;
    }
    if (!showsNativeDialog) {
        return __ostrel__promptAnswer(__ostrel__askHost('waitForPrompt&'));
    }
    // Kept as is: the top window's function and not that of `this`, other than in an alert.
    return window.top.__ostrel__origPrompt(msg, offered);
}

/**
 * @return {boolean} whether the user, or the person inspecting a test run, has to see the real dialog
 */
function __ostrel__showsRealDialog() {
    return !!(window.__ostrel__recording || window.top.__ostrel.isInspecting);
}

/**
 * Shows the real dialog and, while recording, reports it. The host's own recording of native windows is off meanwhile.
 *
 * @param {function(): string} showDialog shows the dialog and tells the event text of its outcome
 */
function __ostrel__showRecordedDialog(showDialog) {
    var switchesFallback = window.__ostrel__recording && __ostrel__hasFallbackWindow();
    if (switchesFallback) {
        __ostrel__logDialogEvent('event=disableFallbackWrapper');
    }
    var text = showDialog();
    if (window.__ostrel__recording) {
        __ostrel__logDialogEvent(text, true);
    }
    if (switchesFallback) {
        __ostrel__logDialogEvent('event=enableFallbackWrapper');
    }
}

/**
 * @return {boolean} whether dialogs of this browser are native windows that would be recorded on their own
 */
function __ostrel__hasFallbackWindow() {
    return window.top.__ostrel__os === 'Windows' &&
        (!window.top.__ostrel__mozilla || window.top.__ostrel.browsermajorversion < 64);
}

/**
 * @return {boolean} whether the host handles the real dialog natively while replaying
 */
function __ostrel__showsNativeDialogInReplay() {
    return !!(window.top.__ostrel__ie || window.top.__ostrel__microsoftedge || window.top.__ostrel__chromiumbased ||
        __ostrel__isSafariUsingWebDriver());
}

/**
 * Sends an event text of a dialog, always by GET.
 *
 * @param {string} text
 * @param {boolean=} async the channel's default when left out
 */
function __ostrel__logDialogEvent(text, async) {
    __ostrel__notifyOfDialog(__ostrel__getLogEventUrl(text), async);
}

/**
 * Tells the host something about a dialog. A failure never keeps the dialog from working, nor its outcome from the
 * page.
 *
 * @param {string} payload
 * @param {boolean=} async the channel's default when left out
 */
function __ostrel__notifyOfDialog(payload, async) {
    try {
        __ostrel__sendXMLHttpRequest(document, payload, async);
    } catch (ignored) {
        // A host that is not there misses a statement, or asks the page about the dialog.
    }
}

/**
 * Tells the host of an alert while replaying, and shows why when that fails.
 */
function __ostrel__reportAlertOpened() {
    if (window.__ostrel__pageprobe__debug) {
        return;
    }
    try {
        // Kept as is: the "&" behind the word stands in this notification only.
        __ostrel__sendXMLHttpRequest(document, 'eventHandler&' + new Date().getTime() + '&name=AlertOpened', true);
    } catch (e) {
        window.__ostrel__origAlert(e.message);
    }
}

/**
 * Tells the host of a confirm or prompt while replaying.
 *
 * @param {string} name
 */
function __ostrel__reportDialogOpened(name) {
    __ostrel__notifyOfDialog('eventHandler' + new Date().getTime() + '&name=' + name, __ostrel__doEventHandlerAsync());
}

/**
 * @return {boolean} whether the notification of a confirm or prompt is asynchronous: on all browsers
 */
function __ostrel__doEventHandlerAsync() {
    return true;
}

/**
 * Blocks the page until the host has answered.
 *
 * @param {string} request the word of the request
 * @return {string}
 */
function __ostrel__askHost(request) {
    return __ostrel__sendXMLHttpRequest(document, request + new Date().getTime(), false).responseText;
}

/**
 * @param {string} response the host's answer to a prompt
 * @return {?string} what the user would have typed, or null when cancelled
 */
function __ostrel__promptAnswer(response) {
    var prefix = '__ostrel__promptResult: ';
    return response.indexOf(prefix) === 0 ? response.substring(prefix.length) : null;
}
