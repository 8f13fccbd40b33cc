// 02  Classification: tells what a node is, which document it is in and what children it has.
//
// Defines  __ostrel__typeOf, __ostrel__typeByHooks, __ostrel__isShadowRoot, __ostrel__getDocumentForNode,
//          __ostrel__isDocumentNode, __ostrel__findUsableParentElement, __ostrel.childObjectAndInfo,
//          __ostrel__childRecord, __ostrel__xpath__snapshotLength, __ostrel__xpath__snapshotItem
// Calls    __ostrel__typeOf__hooks (02e-hook-lists), __ostrel__uniqueNameInLeaf (03c-hierarchical-names),
//          __ostrel__idForObject (04-reference-store), __ostrelDOMAPI, __ostrel__memberOfNode,
//          __ostrel__nodeTypeOf, __ostrel__isForm (19-dom-access)
// At load  assigns a member of the namespace

/**
 * Type string of an object, which selects the class of its wrapper.
 * @param {Object} o a node, a window or what a toolkit calls an object
 * @return {string}
 */
function __ostrel__typeOf(o) {
    var hooked;

    if (!o) {
        return "[unknown]";
    }
    // A form has a member of that name when it has such a field.
    if (o.alert && __ostrel__nodeTypeOf(o) !== 1) {
        return "window";
    }
    hooked = __ostrel__typeByHooks(o);
    if (hooked) {
        return hooked;
    }
    if (typeof o.type === "string" && o.type !== "") {
        return o.type;
    }
    if (__ostrel__isShadowRoot(o)) {
        return "ShadowRoot";
    }
    if (o.nodeName === "#document") {
        return "DOCUMENT";
    }
    // The lower-case name is SVG's; it must not be taken for a text field.
    if (o.tagName === "text") {
        return "SVG_Text";
    }
    return __ostrel__memberOfNode(o, "tagName") || "[unknown_type]";
}

/**
 * The answer of the type hook with the highest priority, of equal ones that of the first. All hooks are asked.
 * @param {Object} o
 * @return {string|undefined}
 */
function __ostrel__typeByHooks(o) {
    var hooks = window.__ostrel__typeOf__hooks,
        best,
        bestPriority,
        answer,
        i;

    for (i = 0; i < hooks.length; i++) {
        try {
            answer = hooks[i].func(o);
        } catch (e) {
            answer = undefined;
        }
        if (answer && (!best || hooks[i].prio > bestPriority)) {
            best = answer;
            bestPriority = hooks[i].prio;
        }
    }
    return best;
}

/**
 * True for a shadow root, also for one of a frame, whose class is another than ours.
 * @param {Object} o
 * @return {boolean}
 */
function __ostrel__isShadowRoot(o) {
    var view;

    if (typeof ShadowRoot === "undefined") {
        return false;
    }
    if (o instanceof ShadowRoot) {
        return true;
    }
    view = o.nodeType === 11 && o.ownerDocument && o.ownerDocument.defaultView;
    return Boolean(view && view.ShadowRoot) && o instanceof view.ShadowRoot;
}

/**
 * The document of a document or an element. Text nodes have none here, so that whoever asks for the document of an
 * event's target does not take a text for an element.
 * @param {Node} node
 * @return {?Document}
 */
function __ostrel__getDocumentForNode(node) {
    var type = node && __ostrel__nodeTypeOf(node);

    if (type === 9) {
        return node;
    }
    return type === 1 ? __ostrel__memberOfNode(node, "ownerDocument") : null;
}

/**
 * @param {Node} elem
 * @return {boolean}
 */
function __ostrel__isDocumentNode(elem) {
    var type = __ostrel__nodeTypeOf(elem);

    return type === elem.DOCUMENT_NODE || type === 9;
}

/**
 * The node itself or its nearest ancestor that is an element or a document.
 * @param {Node} elem
 * @return {Node|null|undefined} nothing when the tree ends before
 */
function __ostrel__findUsableParentElement(elem) {
    while (elem && !__ostrel__isDocumentNode(elem) &&
            !(elem.tagName && __ostrelDOMAPI.isElementNode(elem))) {
        elem = elem.parentNode;
    }
    return elem;
}

/**
 * What the object tree shows below a node: a toolkit's widget first, the child nodes, the shadow root last.
 * @param {Node} domnode
 * @return {Array<{reference: string, typeString: string, nameInLeaf: string}>}
 */
window.top.__ostrel.childObjectAndInfo = function (domnode) {
    var records = [],
        walk = {},
        child;

    // A mark may stand where there is no widget.
    if (!domnode) {
        return records;
    }
    // Kept as is: the mark and the widget are two members whose names differ by the underscore. In a form a field may
    // have the name of the mark.
    if (domnode.qx_Widget && (domnode.qxWidget || !__ostrel__isForm(domnode))) {
        records[records.length] = {
            reference: __ostrel__idForObject(domnode.qxWidget),
            typeString: "qx_Widget",
            nameInLeaf: "qx_Widget"
        };
    }
    child = __ostrelDOMAPI.firstChild(domnode);
    while (child) {
        records[records.length] = __ostrel__childRecord(child, walk);
        child = __ostrelDOMAPI.nextSibling(child);
    }
    if (domnode.shadowRoot) {
        records[records.length] = __ostrel__childRecord(domnode.shadowRoot, walk);
    }
    return records;
};

/**
 * @param {Node} node
 * @param {Object} walk shared by the children of one parent, so that naming them all counts its siblings once
 * @return {{reference: string, typeString: string, nameInLeaf: string}}
 */
function __ostrel__childRecord(node, walk) {
    return {
        reference: __ostrel__idForObject(node),
        typeString: __ostrel__typeOf(node),
        nameInLeaf: __ostrel__uniqueNameInLeaf(node, walk)
    };
}

/**
 * Number of nodes in the value of an XPath expression.
 * @param {Object} sn value that xpathDomEval has returned
 * @return {number} -1 when the value is no node set
 */
function __ostrel__xpath__snapshotLength(sn) {
    try {
        return sn.nodeSetValue().length;
    } catch (e) {
        return -1;
    }
}

/**
 * A node in the value of an XPath expression.
 * @param {Object} sn value that xpathDomEval has returned
 * @param {number} i
 * @return {Node|undefined} nothing when out of range or when the value is no node set
 */
function __ostrel__xpath__snapshotItem(sn, i) {
    try {
        return sn.nodeSetValue()[i];
    } catch (e) {
        return undefined;
    }
}
