// 20  Item views: lists and names the items of a toolkit's tree, table or list through its extension object.
//
// Defines  __ostrel__fetchItemChildren, __ostrel__fetchItemViewChildren, __ostrel__internalFetchItemViewOrItemChildren,
//          __ostrel__itemList, __ostrel__nextItemReference, __ostrel__keepItemReference, __ostrel__itemColumnCount,
//          __ostrel__itemRowCount, __ostrel__listItemsByCell, __ostrel__listItemsBySibling,
//          __ostrel__listItemsOfOneColumn, __ostrel__hierarchicalItemName, __ostrel__itemNumberByCell,
//          __ostrel__itemNumberByComparison, __ostrel__firstItemOfColumn, __ostrel__siblingItem,
//          __ostrel__itemViewOrItemChildCount
// Calls    __ostrel__typeOf (02d-classification)
// At load  the map of reference counts is emptied

/** For each parent, converted to a string, the count of references made. All parents of one DOM class share a key. */
window.__ostrel__itemViewOrItemChildCount = {};

/**
 * Lists the items below an item.
 * @param {Object} parentItem
 * @param {Object} extensionObj
 * @return {string} records "item_<number>|<reference>~<type>#"; empty for none and on a failure
 */
function __ostrel__fetchItemChildren(parentItem, extensionObj) {
    var itemView;
    if (!parentItem || !extensionObj) {
        return '';
    }
    try {
        itemView = extensionObj.itemView(parentItem);
    } catch (e) {
        // Without its view an item has no children that could be told.
    }
    return __ostrel__internalFetchItemViewOrItemChildren(itemView, parentItem, extensionObj);
}

/**
 * Lists the items at the top level of a view.
 * @param {Object} itemView
 * @param {Object} extensionObj
 * @return {string} as __ostrel__fetchItemChildren gives it
 */
function __ostrel__fetchItemViewChildren(itemView, extensionObj) {
    return __ostrel__internalFetchItemViewOrItemChildren(itemView, undefined, extensionObj);
}

/**
 * Lists items by the best interface that the extension has: by cells, by columns and siblings, or by siblings alone.
 * @param {Object|undefined} itemView
 * @param {Object|undefined} parentItem  undefined for the top level
 * @param {Object} extensionObj
 * @return {string}
 */
function __ostrel__internalFetchItemViewOrItemChildren(itemView, parentItem, extensionObj) {
    var parentObj = parentItem || itemView, list, columnCount, rowCount, text;
    if (!itemView || !extensionObj) {
        return '';
    }
    list = __ostrel__itemList(__ostrel__nextItemReference(parentObj));
    columnCount = __ostrel__itemColumnCount(itemView, extensionObj);
    rowCount = __ostrel__itemRowCount(parentObj, extensionObj);
    try {
        if (rowCount !== -1) {
            // Kept as is: without a column count no cell is asked for, and such a view has no items.
            __ostrel__listItemsByCell(list, parentObj, extensionObj, rowCount, columnCount);
        } else if (columnCount !== -1) {
            __ostrel__listItemsBySibling(list, parentObj, extensionObj, columnCount);
        } else {
            __ostrel__listItemsOfOneColumn(list, parentObj, extensionObj);
        }
        text = list.text;
    } catch (e) {
        text = '';
    }
    __ostrel__keepItemReference(parentObj, list.reference);
    return text;
}

/**
 * @param {number} firstReference
 * @return {{text: string, reference: number, store: function(Object)}} an empty list; store ignores missing items
 */
function __ostrel__itemList(firstReference) {
    var itemNum = 1;
    return {
        text: '',
        reference: firstReference,
        store: function (item) {
            var variable = '__ostrel__objectI__' + this.reference;
            if (!item) {
                return;
            }
            window[variable] = item;
            this.text += 'item_' + itemNum + '|window.' + variable + '~' + __ostrel__typeOf(item) + '#';
            ++itemNum;
            ++this.reference;
        }
    };
}

/**
 * Kept as is: counting goes on behind the number kept, which itself was never used, and counts of different keys
 * name the same variables, so that a later list overwrites the items of an earlier one.
 * @param {Object} parentObj
 * @return {number}
 */
function __ostrel__nextItemReference(parentObj) {
    var next;
    try {
        next = window.__ostrel__itemViewOrItemChildCount[parentObj] + 1;
    } catch (e) {
        return 0; // an object without a conversion to a string
    }
    return isNaN(next) ? 0 : next;
}

/**
 * @param {Object} parentObj
 * @param {number} reference
 */
function __ostrel__keepItemReference(parentObj, reference) {
    try {
        window.__ostrel__itemViewOrItemChildCount[parentObj] = reference;
    } catch (e) {
        // An object that is no key begins at 0 each time.
    }
}

/**
 * @return {number} -1 when the extension does not tell
 */
function __ostrel__itemColumnCount(itemView, extensionObj) {
    try {
        return extensionObj.numColumns(itemView);
    } catch (e) {
        return -1;
    }
}

/**
 * @return {number} -1 when the extension lacks the interface by row and column
 */
function __ostrel__itemRowCount(parentObj, extensionObj) {
    var rowCount;
    try {
        rowCount = extensionObj.numRows(parentObj);
        extensionObj.findItemByRowAndColumn(parentObj, 0, 0);
        return rowCount;
    } catch (e) {
        return -1;
    }
}

/** Stores every cell, row by row. */
function __ostrel__listItemsByCell(list, parentObj, extensionObj, rowCount, columnCount) {
    var row, column;
    for (row = 0; row < rowCount; ++row) {
        for (column = 0; column < columnCount; ++column) {
            list.store(extensionObj.findItemByRowAndColumn(parentObj, row, column));
        }
    }
}

/** Stores the first row, then from the item of its first column row by row what follows. */
function __ostrel__listItemsBySibling(list, parentObj, extensionObj, columnCount) {
    var baseChild, column;
    for (column = 0; column < columnCount; ++column) {
        list.store(extensionObj.childItem(parentObj, column));
    }
    baseChild = extensionObj.childItem(parentObj, 0);
    while (baseChild) {
        for (column = 0; column < columnCount; ++column) {
            list.store(extensionObj.nextSibling(baseChild, column));
        }
        baseChild = extensionObj.nextSibling(baseChild, 0);
    }
}

/** Stores the first item and its siblings. */
function __ostrel__listItemsOfOneColumn(list, parentObj, extensionObj) {
    var baseChild = extensionObj.childItem(parentObj, 0);
    do {
        list.store(baseChild);
        baseChild = extensionObj.nextSibling(baseChild, 0);
    } while (baseChild);
}

/**
 * Names an item by its number within its parent.
 * @param {Object} extObj
 * @param {Object} itemelem
 * @return {string} "item_<number>", or "[err]"
 * @throws what itemView and numColumns of the extension throw
 */
function __ostrel__hierarchicalItemName(extObj, itemelem) {
    var itemView = extObj.itemView(itemelem),
        columnCount = extObj.numColumns(itemView),
        num = __ostrel__itemNumberByCell(extObj, itemelem, columnCount);
    if (num === undefined) {
        num = __ostrel__itemNumberByComparison(extObj, itemelem, itemView, columnCount);
    }
    return num >= 0 ? 'item_' + num : '[err]';
}

/**
 * Kept as is: this number counts from 0, while lists of items and the comparison count from 1.
 * @return {number|undefined} undefined when the extension does not know the row and the column
 */
function __ostrel__itemNumberByCell(extObj, itemelem, columnCount) {
    var row = -1, column = -1;
    try {
        row = extObj.itemRow(itemelem);
        column = extObj.itemColumn(itemelem);
    } catch (e) {
        // Both are optional.
    }
    return row !== -1 && column !== -1 ? row * columnCount + column : undefined;
}

/**
 * Counts the items up to the one given.
 * @return {number} the count reached when the item is not among them; -1 when the walk to the next row fails
 */
function __ostrel__itemNumberByComparison(extObj, itemelem, itemView, columnCount) {
    var num = 1, baseitem, column;
    for (column = 0; column < columnCount; ++column) {
        // Kept as is: the first row is asked for column -1 each time, and not for the column of the loop. The
        // numbers that recorded names hold depend on it.
        if (__ostrel__firstItemOfColumn(extObj, itemelem, itemView, -1) === itemelem) {
            return num;
        }
        ++num;
    }
    baseitem = __ostrel__firstItemOfColumn(extObj, itemelem, itemView, 0);
    while (baseitem) {
        for (column = 0; column < columnCount; ++column) {
            if (__ostrel__siblingItem(extObj, baseitem, column) === itemelem) {
                return num;
            }
            ++num;
        }
        try {
            baseitem = extObj.nextSibling(baseitem, 0);
        } catch (e) {
            return -1;
        }
    }
    return num;
}

/**
 * @return {Object|undefined} the first item of a column below the parent of the item given
 */
function __ostrel__firstItemOfColumn(extObj, itemelem, itemView, column) {
    try {
        return extObj.childItem(extObj.parentItem(itemelem) || itemView, column);
    } catch (e) {
        return undefined;
    }
}

/**
 * @return {Object|undefined} the item of a column in the row behind an item
 */
function __ostrel__siblingItem(extObj, item, column) {
    try {
        return extObj.nextSibling(item, column);
    } catch (e) {
        return undefined;
    }
}
