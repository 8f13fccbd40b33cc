// shadowoccurrence  Names in shadow trees: tells elements apart that are equal inside one shadow tree.
//
// Defines  __ostrel__shadowoccurrence, __ostrel__shadowoccurrence__place
// Calls    __ostrel__propertyNameOf (03a-naming), __ostrel__findObjectByProps (15a-search-by-properties),
//          Ostrel (23-extension-interface)
// At load  the naming hook is added

/**
 * A name below a container is not searched for while it is made, so that all five stars of a rating have one name.
 * This hook searches inside the host as the later lookup does, and adds the occurrence by which that finds the element.
 * @param {Node} o
 * @return {string|undefined} the escaped name, or nothing where the plain name is good
 */
function __ostrel__shadowoccurrence(o) {
    var root = o.getRootNode ? o.getRootNode() : null,
        name, place;

    // A shadow root is a fragment with a host; a link has a host too, which is a text.
    if (!root || root.nodeType !== 11 || !root.host || o === root) {
        return undefined;
    }
    name = unescape(__ostrel__propertyNameOf(o));
    place = __ostrel__shadowoccurrence__place(name, o, root.host);
    return place > 1 ? escape(name.substr(0, name.length - 1) + " occurrence='" + place + "'}") : undefined;
}

/**
 * @param {string} name  of an element in a shadow tree, with its container
 * @param {Element} o
 * @param {Element} host
 * @return {number} which one of those that the name without its container finds in the host; 0 for none
 */
function __ostrel__shadowoccurrence__place(name, o, host) {
    var parsed = window.top.__ostrel.parseMultiPropertyName(name), place = 0, inside, found;

    if (!parsed) {
        return 0;
    }
    parsed.removeProperty("container");
    inside = parsed.toString();
    inside = inside.substr(0, inside.length - 1);
    do {
        ++place;
        found = __ostrel__findObjectByProps(host, inside + " occurrence='" + place + "'}");
    } while (found && found !== o);
    return found ? place : 0;
}

Ostrel.addNameOfHook(__ostrel__shadowoccurrence);
