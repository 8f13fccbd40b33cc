// 17h  Last dialogs: what the dialogs said that the page opened last.
//
// Defines  __ostrel__lastAlertText, __ostrel__lastConfirmText, __ostrel__lastPromptText,
//          __ostrel__lastPromptDefault
// Calls    __ostrel__lastAlertMessage, __ostrel__lastConfirmMessage, __ostrel__lastPromptDefaultValue,
//          __ostrel__lastPromptMessage (02f-dialogs)
// At load  nothing runs

/**
 * @return {string} the message of the last alert
 */
function __ostrel__lastAlertText() {
    return window.__ostrel__lastAlertMessage;
}

/**
 * @return {string} the question of the last confirm dialog
 */
function __ostrel__lastConfirmText() {
    return window.__ostrel__lastConfirmMessage;
}

/**
 * @return {string} the question of the last prompt
 */
function __ostrel__lastPromptText() {
    return window.__ostrel__lastPromptMessage;
}

/**
 * @return {string} the value that the last prompt suggested
 */
function __ostrel__lastPromptDefault() {
    return window.__ostrel__lastPromptDefaultValue;
}
