// The script's view of the reflection classes: a prototype for each class, a function for each global method.
// It knows no class by name; all it builds comes from the descriptions that the host hands in.
//
// Evaluates to a function that installs everything and returns what the host and the further parts of the script
// side call.
(function (bridge, global, classes, functions) {
    "use strict";

    // Where a script object keeps the host's value. (A WeakMap would be neater; the engine's one is not safe
    // under garbage collection.)
    const handleKey = Symbol("handle");
    const prototypes = {};

    // Names that the language itself asks for on any object.
    const languageNames = ["then", "toJSON", "length", "nodeType"];

    // The end of every prototype chain: a misspelt member is an error instead of undefined.
    const guard = new Proxy(Object.prototype, {
        get(target, name, receiver) {
            if (name in target || typeof name === "symbol" || languageNames.includes(name)) {
                return Reflect.get(target, name, receiver);
            }
            throw new Error(bridge.unknownMember(receiver[handleKey], name));
        },
        set(target, name, value, receiver) {
            throw new Error(bridge.unknownMember(receiver[handleKey], String(name)));
        }
    });

    function wrap(className, handle) {
        const object = Object.create(prototypes[className] || guard);
        Object.defineProperty(object, handleKey, { value: handle });
        return object;
    }

    function unwrap(value) {
        if (Array.isArray(value)) {
            return value.map(unwrap);
        }
        if (value !== null && typeof value === "object" && value[handleKey] !== undefined) {
            return value[handleKey];
        }
        return value;
    }

    function defineMethod(holder, name, body) {
        Object.defineProperty(holder, name, { value: body, configurable: true });
    }

    function defineProperty(prototype, name) {
        Object.defineProperty(prototype, name, {
            get() { return bridge.read(this[handleKey], name); },
            set(value) { bridge.write(this[handleKey], name, unwrap(value), new Error().stack); },
            enumerable: true,
            configurable: true
        });
    }

    function defineClass(description) {
        const prototype = Object.create(prototypes[description.base] || guard);
        prototypes[description.name] = prototype;
        // A property hides the method of the same name: both read the same value. The method must not be defined at
        // all: the engine crashes when many members change from value to accessor.
        const reachable = description.methods.filter(name => !description.properties.includes(name));
        const isAction = name => description.actions.includes(name);
        reachable.forEach(name => defineMethod(prototype, name, isAction(name) ? function (...args) {
            return bridge.invoke(this[handleKey], name, args.map(unwrap), new Error().stack);
        } : function (...args) {
            return bridge.invoke(this[handleKey], name, args.map(unwrap), "");
        }));
        description.properties.forEach(name => defineProperty(prototype, name));
        defineMethod(prototype, "toString", function () { return bridge.text(this[handleKey]); });
        // A class of nothing but properties is a value, such as a rectangle: it shows as its members.
        if (description.methods.length === 0 && !description.base) {
            defineMethod(prototype, "toJSON", function () {
                return description.properties.reduce((members, name) => {
                    members[name] = this[name];
                    return members;
                }, {});
            });
        }

        const constructor = function () {
            throw new Error(description.name + " objects come from the page and cannot be made by a script.");
        };
        constructor.prototype = prototype;
        defineMethod(prototype, "constructor", constructor);
        description.statics.forEach(name => defineMethod(constructor, name, function (...args) {
            return bridge.invokeStatic(description.name, name, args.map(unwrap));
        }));
        description.enums.forEach(entry => {
            constructor[entry.name] = Object.freeze(entry.items);
            Object.assign(constructor, entry.items);
        });
        Object.defineProperty(global, description.name, { value: constructor, configurable: true });
    }

    classes.forEach(defineClass);
    functions.forEach(name => defineMethod(global, name, function (...args) {
        return bridge.callStatement(name, args.map(unwrap), new Error().stack);
    }));

    // Reaches a method that a property of the same name hides, or one whose name is only known at run time.
    defineMethod(global, "callMethod", function (object, name, ...args) {
        return bridge.invoke(unwrap(object), name, args.map(unwrap), new Error().stack);
    });
    // Two script objects may stand for one thing, which == cannot see.
    defineMethod(global, "sameObject", function (a, b) {
        return bridge.same(unwrap(a), unwrap(b));
    });

    // What the other parts of the script side build on.
    const host = {
        call(name, args) { return bridge.callGlobal(name, args.map(unwrap)); },
        isObject(value) { return value !== null && typeof value === "object" && value[handleKey] !== undefined; },
        same(a, b) { return bridge.same(unwrap(a), unwrap(b)); }
    };

    // Calls a function of the script for the host, which cannot tell a thrown value from a returned one.
    function call(f, args) {
        try {
            return { value: unwrap(f(...args)) };
        } catch (error) {
            return { error: error instanceof Error ? error.message : String(error) };
        }
    }

    return { wrap, call, host };
})
