// 21  Script objects: takes a value out of the page as a typed record, and keeps objects for test scripts.
//
// Defines  __ostrel__retrieveJsObjectInfo, __ostrel__evaluate, __ostrel__jsObjectRecord, __ostrel__jsExceptionRecord,
//          __ostrel__memberAsText, __ostrel__jsTypeName, __ostrel__escape__dquote, __ostrel__jsobjects,
//          __ostrel__jsobjects_cnt
// Calls    __ostrel__JSON (24-json2)
// At load  the store of script objects is emptied

/** Objects that test scripts hold, reached by their index. */
top.__ostrel__jsobjects = [];

/** The next free index of the store. */
top.__ostrel__jsobjects_cnt = 0;

/**
 * Evaluates script text and describes its value. It never throws.
 * @param {string} code
 * @return {string} JSON text of an object with the members type and object
 */
function __ostrel__retrieveJsObjectInfo(code) {
    var record;
    try {
        record = __ostrel__jsObjectRecord(__ostrel__evaluate(code));
    } catch (e) {
        record = __ostrel__jsExceptionRecord(e);
    }
    return __ostrel__JSON.stringify(record);
}

/** Runs script text where no variable of ours can be taken for one of the page. */
function __ostrel__evaluate() {
    return eval(arguments[0]);
}

/**
 * @param {*} obj
 * @return {{type: string, object: *}}
 * @throws {Error} for a type that a test script cannot hold
 */
function __ostrel__jsObjectRecord(obj) {
    var typeName, index;
    if (obj === undefined) {
        return { type: 'void', object: 'null' };
    }
    typeName = __ostrel__jsTypeName(obj);
    switch (typeName) {
    case 'Object':
        index = top.__ostrel__jsobjects_cnt++;
        top.__ostrel__jsobjects[index] = obj;
        return { type: 'object', object: String(index) };
    case 'String':
    case 'Number':
    case 'Boolean':
        return { type: typeName.toLowerCase(), object: obj };
    case 'null':
        return { type: 'null', object: 'null' };
    }
    throw new Error('Unsupported Javascript type: ' + typeName + ' for object: ' + obj);
}

/**
 * @param {*} e  what was thrown; the text of anything but an object is its message
 * @return {{type: string, object: Object}}
 */
function __ostrel__jsExceptionRecord(e) {
    var error = typeof e === 'object' && e ? e : { message: String(e) };
    // Kept as is: JSON escapes quotes once more; the reader of the record expects both.
    return {
        type: 'exception',
        object: {
            message: __ostrel__escape__dquote(__ostrel__memberAsText(error, 'message')),
            name: __ostrel__escape__dquote(__ostrel__memberAsText(error, 'name')),
            file: __ostrel__escape__dquote(__ostrel__memberAsText(error, 'fileName')),
            line: __ostrel__memberAsText(error, 'lineNumber'),
            stack: __ostrel__escape__dquote(__ostrel__memberAsText(error, 'stack'))
        }
    };
}

/**
 * @param {Object} object
 * @param {string} member
 * @return {string} empty for a member without a value, and for one that has no text
 */
function __ostrel__memberAsText(object, member) {
    try {
        return String(object[member] || '');
    } catch (e) {
        return '';
    }
}

/**
 * @param {*} obj
 * @return {string|undefined} undefined for what cannot leave the page in any form, as functions and dates
 */
function __ostrel__jsTypeName(obj) {
    var typeName;
    if (obj === null) {
        return 'null';
    }
    switch (typeof obj) {
    case 'string':
        return 'String';
    case 'number':
        return 'Number';
    case 'boolean':
        return 'Boolean';
    case 'undefined':
        return undefined;
    }
    if (obj.nodeType) {
        return 'Object';
    }
    typeName = ({}).toString.call(obj).slice('[object '.length, -1);
    return typeName === 'Object' || typeName === 'Array' || typeName === 'RegExp' ? 'Object' : undefined;
}

/**
 * @param {string} str
 * @return {string} with a backslash before each double quote
 */
function __ostrel__escape__dquote(str) {
    return str.replace(/"/g, '\\"');
}
