// Namespace: the object that the payload's members live in. Evaluated in the top window before the payload.
//
// Defines  __ostrel, __ostrel.glassPaneIds, __ostrel.lastTouches, __ostrel.glassPaneClassNames,
//          __ostrel.addGlassPaneId, __ostrel.addGlassPaneClassName
// Calls    nothing
// At load  creates the namespace, unless the page has one already

(function () {
    var namespace;

    // What a script registered survives a repeated injection.
    if (window.top.__ostrel !== undefined) {
        return;
    }

    namespace = {
        glassPaneIds: [],
        lastTouches: null,
        glassPaneClassNames: [],

        /**
         * Names an element that covers others without being meant by a click.
         * @param {string} id
         */
        addGlassPaneId: function (id) {
            if (namespace.glassPaneIds.indexOf(id) === -1) {
                namespace.glassPaneIds.push(id);
            }
        },

        /**
         * The same for all elements of a class.
         * @param {string} className
         */
        addGlassPaneClassName: function (className) {
            if (namespace.glassPaneClassNames.indexOf(className) === -1) {
                namespace.glassPaneClassNames.push(className);
            }
        }
    };
    window.top.__ostrel = namespace;
}());
