// 08  Object tree: collects whole subtrees and many property values in one go, for the object dump.
//
// Defines  __ostrel.objectTreeInformation, __ostrel.readPropertiesFromObjects
// Calls    __ostrel.childObjectAndInfo (02d-classification), __ostrel__idForObject, __ostrel__objectOfReference
//          (04-reference-store)
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
 * Reads properties of many objects. An error of a getter ends the whole reading and passes to the caller.
 * @param {Array<{object: Object, propertyGetters: Object}>} objectinfolist
 * @return {Object} values by property name, by object reference
 */
window.top.__ostrel.readPropertiesFromObjects = function (objectinfolist) {
    var valuesOfObjects = {},
        values, info, name, i;

    for (i = 0; i < objectinfolist.length; i++) {
        info = objectinfolist[i];
        if (info.object) {
            values = {};
            for (name in info.propertyGetters) {
                // what a page adds to Object.prototype is no getter of ours
                if (Object.prototype.hasOwnProperty.call(info.propertyGetters, name)) {
                    values[name] = info.propertyGetters[name]();
                }
            }
            valuesOfObjects[__ostrel__idForObject(info.object)] = values;
        }
    }
    return valuesOfObjects;
};
