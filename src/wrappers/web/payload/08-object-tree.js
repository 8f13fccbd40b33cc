// 08  Object tree: collects whole subtrees and many property values in one go, for the object dump.
//
// Defines  __ostrel.objectTreeInformation, __ostrel.readPropertiesFromObjects, __ostrel__readAllProperties,
//          __ostrel__callGetter, __ostrel__compileSharedGetter, __ostrel__oncePerReading, __ostrel__knownInReading,
//          __ostrel__readingMemory
// Calls    __ostrel.childObjectAndInfo (02d-classification), __ostrel__idForObject, __ostrel__objectOfReference,
//          __ostrel__newIdentityMap (04-reference-store), __ostrel__wholeCharacters (18-helpers)
// At load  assigns members of the namespace

/**
 * What the object tree shows below a node, with the children's children to the last.
 * @param {Node} domNode
 * @return {Array<Object>} child information records, each with its own in `children`
 */
window.top.__ostrel.objectTreeInformation = function (domNode) {
    var records = window.top.__ostrel.childObjectAndInfo(domNode),
        i;

    for (i = 0; i < records.length; i++) {
        records[i].children =
            window.top.__ostrel.objectTreeInformation(__ostrel__objectOfReference(records[i].reference));
    }
    return records;
};

/**
 * What was worked out while many properties are read in one go, by kind; null at all other times. The page cannot
 * change meanwhile, so that what holds for a window or a parent need not be worked out again for each element.
 */
var __ostrel__readingMemory = null;

/**
 * What is known of a kind while many properties are read in one go, by object.
 * @param {string} kind
 * @return {?Map} null at all other times
 */
function __ostrel__knownInReading(kind) {
    var memory = __ostrel__readingMemory;

    if (memory && !memory[kind]) {
        memory[kind] = __ostrel__newIdentityMap();
    }
    return memory && memory[kind];
}

/**
 * Works something out, but only once for each object while many properties are read in one go.
 * @param {string} kind what is worked out
 * @param {Object} subject
 * @param {function(Object): *} workOut
 * @return {*} a result that the caller does not change
 */
function __ostrel__oncePerReading(kind, subject, workOut) {
    var known = __ostrel__knownInReading(kind),
        result = known ? known.get(subject) : undefined;

    if (result === undefined) {
        result = workOut(subject);
        if (known) {
            known.set(subject, result);
        }
    }
    return result;
}

/**
 * Reads properties of many objects. An error of a getter ends the whole reading and passes to the caller.
 * @param {Array<{object: Object, propertyGetters: Object}>} objectinfolist
 * @return {Object} values by property name, by object reference
 */
window.top.__ostrel.readPropertiesFromObjects = function (objectinfolist) {
    // Old browsers have no map by identity; they do without a memory.
    __ostrel__readingMemory = __ostrel__newIdentityMap() ? {} : null;
    try {
        return __ostrel__readAllProperties(objectinfolist);
    } finally {
        __ostrel__readingMemory = null;
    }
};

/**
 * @param {Array<{object: Object, propertyGetters: Object}>} objectinfolist
 * @return {Object} values by property name, by object reference
 */
function __ostrel__readAllProperties(objectinfolist) {
    var valuesOfObjects = {},
        sharedGetters = {},
        values, info, reference, name, i;

    for (i = 0; i < objectinfolist.length; i++) {
        info = objectinfolist[i];
        if (info.object) {
            values = {};
            reference = __ostrel__idForObject(info.object);
            for (name in info.propertyGetters) {
                // what a page adds to Object.prototype is no getter of ours
                if (Object.prototype.hasOwnProperty.call(info.propertyGetters, name)) {
                    values[name] = __ostrel__wholeCharacters(__ostrel__callGetter(
                        info.propertyGetters[name], info.object, reference, sharedGetters));
                }
            }
            valuesOfObjects[reference] = values;
        }
    }
    return valuesOfObjects;
}

/**
 * Calls a getter. A dump has one for each property of each object, and a browser compiles each for its only call, which
 * takes longer than the reading itself. Those of one property differ by nothing but the reference of their object: one
 * function that is given the object does for all of them.
 * @param {function(): *} getter
 * @param {Object} object
 * @param {string} reference of the object
 * @param {Object} sharedGetters those that there are already, by their source
 * @return {*}
 */
function __ostrel__callGetter(getter, object, reference, sharedGetters) {
    var source = Function.prototype.toString.call(getter),
        shared = source.replace(reference, "object");

    if (shared === source) {
        return getter();
    }
    if (!Object.prototype.hasOwnProperty.call(sharedGetters, shared)) {
        sharedGetters[shared] = __ostrel__compileSharedGetter(shared);
    }
    return sharedGetters[shared] ? sharedGetters[shared](object) : getter();
}

/**
 * @param {string} source of a getter of the object `object`
 * @return {?function(Object): *} null in a page that forbids the evaluation of text
 */
function __ostrel__compileSharedGetter(source) {
    try {
        return (0, eval)("(function (object) { return (" + source + ")(); })");
    } catch (e) {
        return null;
    }
}
