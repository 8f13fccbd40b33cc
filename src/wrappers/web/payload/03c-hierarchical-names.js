// 03c  Hierarchical names: the way from the document down to a node, as in "DOCUMENT.HTML1.BODY1.DIV2".
//
// Defines  __ostrel__qualifiedName, __ostrel__walkOfReading, __ostrel__uniqueNameInLeaf, __ostrel__positionAmongEquals
// Calls    __ostrel__isShadowRoot (02d-classification), __ostrel__oncePerReading (08-object-tree), __ostrelDOMAPI,
//          __ostrel__memberOfNode (19-dom-access)
// At load  nothing runs

/**
 * The hierarchical name of a node. It leads through shadow roots up to their hosts.
 * @param {Node} [o]
 * @return {string} not escaped; "" for nothing
 */
function __ostrel__qualifiedName(o) {
    var parent, leaf;

    if (!o) {
        return "";
    }
    parent = __ostrel__isShadowRoot(o) ? o.host : __ostrel__memberOfNode(o, "parentNode");
    if (!parent) {
        return __ostrel__uniqueNameInLeaf(o);
    }
    leaf = __ostrel__uniqueNameInLeaf(o, __ostrel__walkOfReading(parent));
    return __ostrel__oncePerReading("name", parent, __ostrel__qualifiedName) + "." + leaf;
}

/**
 * @param {Node} parent
 * @return {Object} the walk along its children, which goes on from one of them to the next while many names are asked
 */
function __ostrel__walkOfReading(parent) {
    return __ostrel__oncePerReading("walk", parent, function () {
        return {};
    });
}

/**
 * The name of a node among its siblings.
 * @param {Node} o
 * @param {Object} [walk] an empty object that a caller who names the children of one parent in order hands to each
 *     call, so that siblings are not counted from the first one again; it is good while the tree does not change
 * @return {string}
 */
function __ostrel__uniqueNameInLeaf(o, walk) {
    if (__ostrel__isShadowRoot(o)) {
        return "SHADOW_ROOT";
    }
    if (!o.parentNode) {
        return "DOCUMENT";
    }
    // Widgets of that toolkit spell the member in lower case; the one of elements is another.
    if (o.classname && String(o.classname).indexOf("qx") !== -1) {
        return "qx_Widget";
    }
    return (__ostrel__memberOfNode(o, "tagName") || "NODE") + __ostrel__positionAmongEquals(o, walk || {});
}

/**
 * The position of a node among the siblings of the same tag name. Text nodes have none, so that they are counted among
 * themselves.
 * @param {Node} o
 * @param {Object} walk where an earlier count among the same siblings has ended
 * @return {number} counted from 1
 */
function __ostrel__positionAmongEquals(o, walk) {
    var parent = __ostrel__memberOfNode(o, "parentNode"),
        tagName = __ostrel__memberOfNode(o, "tagName"),
        resumed = walk.parent === parent,
        node, key;

    if (!resumed) {
        walk.parent = parent;
        walk.counts = {};
    }
    node = resumed ? __ostrelDOMAPI.nextSibling(walk.node) : __ostrelDOMAPI.firstChild(parent);
    for (; node; node = __ostrelDOMAPI.nextSibling(node)) {
        key = "tag " + __ostrel__memberOfNode(node, "tagName");
        walk.counts[key] = (walk.counts[key] || 0) + 1;
        walk.node = node;
        if (node === o) {
            return walk.counts[key];
        }
    }
    walk.parent = null;
    // The walk came from behind the node, or does not pass by it at all, as with text nodes that are left out.
    return resumed ? __ostrel__positionAmongEquals(o, {}) : (walk.counts["tag " + tagName] || 0) + 1;
}
