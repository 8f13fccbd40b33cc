// shadownames  Names in shadow trees: tells equal elements of one shadow tree apart in recordings.
//
// A name is made unique by a search of its document, which enters no shadow tree. A script looks in the host that the
// name gives as its container, so that the elements are counted there.
//
// Defines  __ostrel__shadownamesExtension
// Calls    __ostrel__nameOf, __ostrel__nameWithOccurrence (03a-naming), __ostrel__isShadowRoot, __ostrel__typeOf
//          (02d-classification), __ostrel__findObjectByProps (15a-search-by-properties), Ostrel
//          (23-extension-interface)
// At load  the way of naming is registered

var __ostrel__shadownamesExtension = {

    /**
     * @param {Node} o
     * @return {{name: string, type: string}|undefined} undefined for what needs no other name than its own
     */
    nameAndType: function (o) {
        var root = o.getRootNode ? o.getRootNode() : null;
        var name = root && __ostrel__isShadowRoot(root) ? unescape(__ostrel__nameOf(o)) : '';
        var inHost = __ostrel__shadownamesExtension.withoutContainer(name);
        var place = inHost ? __ostrel__shadownamesExtension.placeIn(root.host, inHost, o) : 0;

        return place > 1 ?
            { name: escape(__ostrel__nameWithOccurrence(name, place)), type: String(__ostrel__typeOf(o)) } :
            undefined;
    },

    /**
     * @param {string} name
     * @return {string} what the name says of the object in its container; empty where it says no container
     */
    withoutContainer: function (name) {
        var start = "{container=";
        var depth = 0;
        var isQuoted = false;
        var i, c;

        if (name.indexOf(start) !== 0) {
            return '';
        }
        for (i = start.length; i < name.length; i++) {
            c = name.charAt(i);
            if (c === "\\") {
                i++;
            } else if (c === "'") {
                isQuoted = !isQuoted;
            } else if (!isQuoted && c === "{") {
                depth++;
            } else if (!isQuoted && c === "}" && --depth === 0) {
                return "{" + name.substring(i + 2);
            }
        }
        return '';
    },

    /**
     * @param {Element} host
     * @param {string} name
     * @param {Node} o
     * @return {number} counted from 1 among the equals in the host; 0 when no search leads to the object
     */
    placeIn: function (host, name, o) {
        var place = 1;
        var found = __ostrel__findObjectByProps(host, name);

        while (found && found !== o) {
            place++;
            found = __ostrel__findObjectByProps(host, __ostrel__nameWithOccurrence(name, place));
        }
        return found ? place : 0;
    }
};

Ostrel.addObjectNameAndTypeHook(__ostrel__shadownamesExtension.nameAndType);
