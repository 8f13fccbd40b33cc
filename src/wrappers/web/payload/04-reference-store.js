// 04  Reference store: gives objects a name by which the host reaches them again.
//
// Defines  __ostrel__idForObject, __ostrel__objectOfReference, __ostrel__globalObjectRefStore,
//          __ostrel__scanReferenceStore, __ostrel__referenceIndex, __ostrel__newReferenceIndex,
//          __ostrel__newIdentityMap, __ostrel__identityMapMaker
// Calls    nothing
// At load  empties the store and its index

/** Every object that has a reference, by the number in it. Only grows: references stay good as long as we live. */
top.__ostrel__globalObjectRefStore = [];

/**
 * Reference of an object; the same object always gets the same one.
 * @param {*} obj
 * @return {string} a script expression that yields the object in the top window
 */
function __ostrel__idForObject(obj) {
    var store = top.__ostrel__globalObjectRefStore,
        position = __ostrel__referenceIndex ? __ostrel__referenceIndex.positionOf(obj, store)
            : __ostrel__scanReferenceStore(obj, store);

    if (position === -1) {
        position = store.length;
        store[position] = obj;
    }
    return "top.__ostrel__globalObjectRefStore[" + position + "]";
}

/**
 * The object that a reference names. Ours are looked up, since pages may forbid the evaluation of text.
 * @param {string} reference
 * @return {*}
 */
function __ostrel__objectOfReference(reference) {
    var ours = /^top\.__ostrel__globalObjectRefStore\[(\d+)\]$/.exec(reference);

    return ours ? top.__ostrel__globalObjectRefStore[ours[1]] : eval(reference);
}

/**
 * Position of an object in the store by comparison with each entry, for browsers without an identity map.
 * @param {*} obj
 * @param {Array} store
 * @return {number} -1 when it is not there
 */
function __ostrel__scanReferenceStore(obj, store) {
    var i;

    for (i = 0; i < store.length; i++) {
        try {
            if (store[i] === obj) {
                return i;
            }
        } catch (e) {
            // Old browsers raise when an object of a closed window is compared: it is not the one, then.
        }
    }
    return -1;
}

/** Gives a new map from objects to anything, with get and set; null where the browser has none. */
var __ostrel__newIdentityMap = __ostrel__identityMapMaker();

/**
 * @return {function(): ?Object} what makes such maps, whatever the page does to the browser's own later
 */
function __ostrel__identityMapMaker() {
    var NativeMap = window.Map,
        get = NativeMap && NativeMap.prototype && NativeMap.prototype.get,
        set = NativeMap && NativeMap.prototype && NativeMap.prototype.set;

    return function () {
        var map;

        if (!get || !set) {
            return null;
        }
        map = new NativeMap();
        map.get = get;
        map.set = set;
        return map;
    };
}

/** Finds positions without a scan; null where the browser cannot. */
var __ostrel__referenceIndex = __ostrel__newReferenceIndex();

/**
 * Creates the index from objects to their positions in the store. It answers as a scan would, also when somebody
 * else appends to the store, or replaces it.
 * @return {?{positionOf: function(*, Array): number}} null where the browser has no identity map
 */
function __ostrel__newReferenceIndex() {
    var indexed = __ostrel__newIdentityMap(),
        indexedStore, count;

    if (!indexed) {
        return null;
    }

    function reset(store) {
        indexed = __ostrel__newIdentityMap();
        indexedStore = store;
        count = 0;
    }

    function catchUp(store) {
        if (store !== indexedStore || store.length < count) {
            reset(store);
        }
        for (; count < store.length; count++) {
            // of two equal entries the first counts, as in a scan
            if (indexed.get(store[count]) === undefined) {
                indexed.set(store[count], count);
            }
        }
    }

    return {
        positionOf: function (obj, store) {
            var position;

            catchUp(store);
            position = indexed.get(obj);
            // NaN is in the map but equals nothing, and an entry may have been overwritten since.
            return position !== undefined && store[position] === obj ? position : -1;
        }
    };
}
