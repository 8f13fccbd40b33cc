// 19  DOM access: walks the DOM with or without the nodes that are no elements, as the host has chosen.
//
// Defines  __ostrelDOMAPI, __ostrel__memberOfNode, __ostrel__nodeTypeOf, __ostrel__isForm
// Calls    nothing
// At load  creates the object

/** The names with two underscores always leave out what is no element; the others ask the host's choice first. */
var __ostrelDOMAPI = {
    isElementNode: function (elem) {
        return __ostrel__nodeTypeOf(elem) === 1;
    },

    isNonElementNode: function (elem) {
        return __ostrel__nodeTypeOf(elem) !== 1;
    },

    /**
     * The host's choice.
     * @return {boolean} false where the host has made none
     */
    filterNonElementNodes: function () {
        try {
            return __ostrel__filter__non__element__nodes;
        } catch (e) {
            return false;
        }
    },

    firstChild: function (parent) {
        return __ostrelDOMAPI.filterNonElementNodes() ? __ostrelDOMAPI.__firstChild(parent) : parent.firstChild;
    },

    lastChild: function (parent) {
        return __ostrelDOMAPI.filterNonElementNodes() ? __ostrelDOMAPI.__lastChild(parent) : parent.lastChild;
    },

    nextSibling: function (element) {
        return __ostrelDOMAPI.filterNonElementNodes() ? __ostrelDOMAPI.__nextSibling(element) : element.nextSibling;
    },

    previousSibling: function (element) {
        return __ostrelDOMAPI.filterNonElementNodes() ? __ostrelDOMAPI.__previousSibling(element)
            : element.previousSibling;
    },

    numChildren: function (elem) {
        return __ostrelDOMAPI.filterNonElementNodes() ? __ostrelDOMAPI.__numChildren(elem) : elem.childNodes.length;
    },

    __firstChild: function (parent) {
        var child = parent ? parent.firstChild : undefined;

        while (child && __ostrelDOMAPI.isNonElementNode(child)) {
            child = child.nextSibling;
        }
        return child;
    },

    __lastChild: function (parent) {
        var child = parent ? parent.lastChild : undefined;

        while (child && __ostrelDOMAPI.isNonElementNode(child)) {
            child = child.previousSibling;
        }
        return child;
    },

    __nextSibling: function (element) {
        var sibling = element ? element.nextSibling : undefined;

        while (sibling && __ostrelDOMAPI.isNonElementNode(sibling)) {
            sibling = sibling.nextSibling;
        }
        return sibling;
    },

    __previousSibling: function (element) {
        var sibling = element ? element.previousSibling : undefined;

        while (sibling && __ostrelDOMAPI.isNonElementNode(sibling)) {
            sibling = sibling.previousSibling;
        }
        return sibling;
    },

    __numChildren: function (elem) {
        var count = 0,
            child;

        if (!elem) {
            return undefined;
        }
        child = __ostrelDOMAPI.firstChild(elem);
        while (child) {
            count++;
            child = __ostrelDOMAPI.nextSibling(child);
        }
        return count;
    }
};

/**
 * A member of a node as the browser defines it. In a form each field hides the member that has its name: "id" of a form
 * with such a field is the field, and the way up by "parentNode" may never end.
 * @param {Object} node anything that has members
 * @param {string} name
 * @return {*}
 */
function __ostrel__memberOfNode(node, name) {
    var value = node[name],
        holder, member;

    if (!value || typeof value !== "object" || !__ostrel__isForm(node)) {
        return value;
    }
    for (holder = Object.getPrototypeOf(node); holder; holder = Object.getPrototypeOf(holder)) {
        member = Object.getOwnPropertyDescriptor(holder, name);
        if (member && member.get) {
            return member.get.call(node);
        }
    }
    return value;
}

/**
 * The type of a node, which searches ask of every one.
 * @param {Object} node anything that has members
 * @return {number|undefined}
 */
function __ostrel__nodeTypeOf(node) {
    var type = node.nodeType;

    return typeof type === "object" ? __ostrel__memberOfNode(node, "nodeType") : type;
}

/**
 * @param {Object} object
 * @return {boolean} also for a form of another frame; false in old browsers, which tell it from no other element
 */
function __ostrel__isForm(object) {
    var tag = object.tagName;

    // A field may bear that name, too; of anything but a form it is a text or missing.
    return typeof tag === "string" ? tag.toUpperCase() === "FORM" : Boolean(tag);
}
