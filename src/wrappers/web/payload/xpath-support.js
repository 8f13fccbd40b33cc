// XPath support: the npm package xpath, made to compare names as we promise and set right where it errs.
//
// Defines  __ostrel__xpath__package, __ostrel__xpath__loadPackage, __ostrel__xpath__correctParser,
//          __ostrel__xpath__compareNames, __ostrel__xpath__correctAxes, __ostrel__xpath__correctNodeSets,
//          __ostrel__xpath__inDocumentOrder, __ostrel__xpath__correctValues, __ostrel__xpath__correctFunctions,
//          __ostrel__xpath__correctContexts
// Calls    nothing
// At load  nothing runs: the package is set up with the first expression

/**
 * The package, with our corrections.
 * @return {Object} what the package exports
 */
function __ostrel__xpath__package() {
    var self = __ostrel__xpath__package,
        xpath;

    if (!self.loaded) {
        xpath = __ostrel__xpath__loadPackage();
        __ostrel__xpath__correctParser(xpath);
        __ostrel__xpath__compareNames(xpath);
        __ostrel__xpath__correctAxes(xpath);
        __ostrel__xpath__correctNodeSets(xpath);
        __ostrel__xpath__correctValues(xpath);
        __ostrel__xpath__correctFunctions(xpath);
        __ostrel__xpath__correctContexts(xpath);
        self.loaded = xpath;
    }
    return self.loaded;
}

/**
 * Runs the package where it can touch nothing of the page.
 * @return {Object} what the package exports
 */
function __ostrel__xpath__loadPackage() {
    var exports = {},
        // The package would install itself here in browsers without XPath.
        document; // eslint-disable-line no-unused-vars

    // embed: xpath/xpath.js

    return exports;
}

/**
 * The package takes a mistyped axis for one without nodes, finds a mistyped function only when it is called, and
 * rejects white space in front of "(" and "::".
 * @param {Object} xpath the package
 */
function __ostrel__xpath__correctParser(xpath) {
    var tokenize = xpath.XPathParser.prototype.tokenize,
        functions = new xpath.FunctionResolver().functions,
        axes = xpath.Step.STEPNAMES,
        literalOrSuperfluousSpace = /("[^"]*"|'[^']*')|[ \t\r\n]+(?=\(|::)/g;

    function isAxis(name) {
        var axis;

        for (axis in axes) {
            if (axes[axis] === name) {
                return true;
            }
        }
        return false;
    }

    xpath.XPathParser.prototype.tokenize = function (text) {
        var tokens = tokenize.call(this, text.replace(literalOrSuperfluousSpace, "$1")),
            types = tokens[0],
            values = tokens[1],
            i;

        for (i = 0; i < types.length; i++) {
            if (types[i] === xpath.XPathParser.AXISNAME && !isAxis(values[i])) {
                throw new Error("Unknown axis " + values[i]);
            }
            if (types[i] === xpath.XPathParser.FUNCTIONNAME && !functions["{}" + values[i]]) {
                throw new Error("Unknown function " + values[i]);
            }
        }
        return tokens;
    };
}

/**
 * Name tests go by node name and not by namespace, since HTML elements have a namespace that no expression names.
 * The context's option says whether case counts.
 * @param {Object} xpath the package
 */
function __ostrel__xpath__compareNames(xpath) {
    var anyNode;

    function hasName(node, test, pattern, context) {
        if (node.nodeType !== 1 && node.nodeType !== 2) {
            return false;
        }
        if (!context.caseInsensitive) {
            return pattern.test(node.nodeName);
        }
        test.anyCase = test.anyCase || new RegExp(pattern.source, "i");
        return test.anyCase.test(node.nodeName);
    }

    function quoted(name) {
        return name.replace(/[.\-]/g, "\\$&");
    }

    xpath.NodeTest.NameTestQName.prototype.matches = function (node, context) {
        this.pattern = this.pattern || new RegExp("^" + quoted(this.name) + "$");
        return hasName(node, this, this.pattern, context);
    };
    xpath.NodeTest.NameTestPrefixAny.prototype.matches = function (node, context) {
        this.pattern = this.pattern || new RegExp("^" + quoted(this.prefix) + ":");
        return hasName(node, this, this.pattern, context);
    };

    // a shadow root is a node, too, and so is a document type to every browser
    anyNode = xpath.NodeTest.nodeTest.matches;
    xpath.NodeTest.nodeTest.matches = function (node, context) {
        return node.nodeType === 11 || node.nodeType === 10 || anyNode(node, context);
    };
}

/**
 * The package's "following" begins with the node's own descendants and misses what comes behind them, its
 * "preceding" holds the ancestors, and its names fit attributes on every axis. Its namespace nodes are objects of its
 * own that stand in no document. No browser of today has any: that axis is empty there, and so it is here.
 * @param {Object} xpath the package
 */
function __ostrel__xpath__correctAxes(xpath) {
    var applyStep = xpath.PathExpr.applyStep,
        Step = xpath.Step;

    // the next node of the tree in a direction, behind the whole of this one
    function beyond(node, sibling) {
        while (node && !node[sibling]) {
            node = node.parentNode;
        }
        return node && node[sibling];
    }

    function collectFollowing(step, context, node) {
        var matching = [],
            isAttribute = node.nodeType === 2,
            next = isAttribute ? node.ownerElement : node;

        // an attribute stands before its element's children
        next = isAttribute && next.firstChild || beyond(next, "nextSibling");
        while (next) {
            if (step.nodeTest.matches(next, context)) {
                matching.push(next);
            }
            next = next.firstChild || beyond(next, "nextSibling");
        }
        return matching;
    }

    function collectPreceding(step, context, node) {
        var matching = [];

        function collect(root) {
            var child;

            for (child = root.lastChild; child; child = child.previousSibling) {
                collect(child);
            }
            if (step.nodeTest.matches(root, context)) {
                matching.push(root);
            }
        }

        node = node.nodeType === 2 ? node.ownerElement : node;
        for (; node; node = node.parentNode) {
            for (var sibling = node.previousSibling; sibling; sibling = sibling.previousSibling) {
                collect(sibling);
            }
        }
        return matching;
    }

    // a name means an element on every axis but that of the attributes, also for an attribute's own self
    function applyStepToAttribute(step, context, node) {
        var byName = step.nodeTest.type === xpath.NodeTest.NAMETESTANY ||
            step.nodeTest.type === xpath.NodeTest.NAMETESTPREFIXANY ||
            step.nodeTest.type === xpath.NodeTest.NAMETESTQNAME;

        return applyStep(step, context, node).filter(function (found) {
            return !byName || found !== node;
        });
    }

    xpath.PathExpr.applyStep = function (step, context, node) {
        if (step.axis === Step.NAMESPACE) {
            return [];
        }
        if (node && step.axis === Step.FOLLOWING) {
            return collectFollowing(step, context, node);
        }
        if (node && step.axis === Step.PRECEDING) {
            return collectPreceding(step, context, node);
        }
        return node && node.nodeType === 2 ? applyStepToAttribute(step, context, node) : applyStep(step, context, node);
    };
}

/**
 * Gives node sets their promised operation, and keeps them fast: the package compares each new node with all that
 * it has.
 * @param {Object} xpath the package
 */
function __ostrel__xpath__correctNodeSets(xpath) {
    var prototype = xpath.XNodeSet.prototype,
        NativeSet = window.Set,
        addOne = prototype.add;

    prototype.add = function (node) {
        this.sorted = null;
        addOne.call(this, node);
    };

    if (NativeSet) {
        prototype.addArray = function (nodes) {
            var known = new NativeSet(),
                i;

            for (i = 0; i < this.nodes.length; i++) {
                known.add(this.nodes[i]);
            }
            for (i = 0; i < nodes.length; i++) {
                if (!known.has(nodes[i])) {
                    known.add(nodes[i]);
                    this.nodes.push(nodes[i]);
                }
            }
            this.sorted = null;
            this.size = this.nodes.length;
        };
    }

    prototype.toArray = function () {
        this.sorted = this.sorted || __ostrel__xpath__inDocumentOrder(this.nodes);
        return this.sorted.slice();
    };
    prototype.first = function () {
        this.sorted = this.sorted || __ostrel__xpath__inDocumentOrder(this.nodes);
        return this.sorted.length ? this.sorted[0] : null;
    };
    // the same array at each call, so that reading one item after the other stays cheap
    prototype.nodeSetValue = function () {
        this.sorted = this.sorted || __ostrel__xpath__inDocumentOrder(this.nodes);
        return this.sorted;
    };
}

/**
 * A copy in document order. Steps mostly deliver it, which costs one comparison a node to find out.
 * @param {Array<Node>} nodes
 * @return {Array<Node>}
 */
function __ostrel__xpath__inDocumentOrder(nodes) {
    var PRECEDING = 2,
        FOLLOWING = 4,
        sorted = nodes.slice(),
        i;

    function compare(a, b) {
        var position;

        // nodes of old browsers cannot be compared
        if (a === b || !a.compareDocumentPosition || !b.compareDocumentPosition) {
            return 0;
        }
        position = a.compareDocumentPosition(b);
        if (position & FOLLOWING) {
            return -1;
        }
        return position & PRECEDING ? 1 : 0;
    }

    for (i = 1; i < sorted.length; i++) {
        if (compare(sorted[i - 1], sorted[i]) > 0) {
            return sorted.sort(compare);
        }
    }
    return sorted;
}

/**
 * Conversions and comparisons that the package gets wrong, and the promised operation of plain values.
 * @param {Object} xpath the package
 */
function __ostrel__xpath__correctValues(xpath) {
    function isNodeSet(value) {
        return value instanceof xpath.XNodeSet;
    }

    function throwNoNodeSet() {
        return this.nodeset();
    }

    // "1." and ".5" are numbers; "+1", "0x10" and "1e3" are not
    xpath.XNumber.prototype.numberFormat = /^[ \t\r\n]*-?(?:[0-9]+(?:\.[0-9]*)?|\.[0-9]+)[ \t\r\n]*$/;

    // a node set counts as a number by its text, and an empty text is none
    xpath.XNodeSet.prototype.number = function () {
        return new xpath.XNumber(this.stringValue());
    };
    xpath.XNodeSet.prototype.numberValue = function () {
        return this.number().numberValue();
    };

    // a node set compared in size with a boolean counts as a boolean
    ["lessthan", "greaterthan", "lessthanorequal", "greaterthanorequal"].forEach(function (operation) {
        var compareNumbers = xpath.XBoolean.prototype[operation],
            compareNodes = xpath.XNodeSet.prototype[operation];

        xpath.XBoolean.prototype[operation] = function (other) {
            return compareNumbers.call(this, isNodeSet(other) ? other.bool() : other);
        };
        xpath.XNodeSet.prototype[operation] = function (other) {
            return other instanceof xpath.XBoolean ? this.bool()[operation](other) : compareNodes.call(this, other);
        };
    });

    xpath.XString.prototype.nodeSetValue = throwNoNodeSet;
    xpath.XNumber.prototype.nodeSetValue = throwNoNodeSet;
    xpath.XBoolean.prototype.nodeSetValue = throwNoNodeSet;
}

/**
 * Core functions that the package gets wrong. The table of functions is made once instead of for each step.
 * @param {Object} xpath the package
 */
function __ostrel__xpath__correctFunctions(xpath) {
    var functions = new xpath.FunctionResolver().functions,
        id = functions["{}id"],
        localName = functions["{}local-name"],
        name = functions["{}name"],
        lang = functions["{}lang"];

    // a node set names the elements by each node's text
    functions["{}id"] = function (context, argument) {
        var value, texts;

        if (arguments.length !== 2) {
            return id.apply(this, arguments);
        }
        value = argument.evaluate(context);
        if (!(value instanceof xpath.XNodeSet)) {
            return id.call(this, context, value);
        }
        texts = value.toArray().map(function (node) {
            return value.stringForNode(node);
        });
        return id.call(this, context, new xpath.XString(texts.join(" ")));
    };

    // texts, comments and documents have no name
    functions["{}local-name"] = function (context, argument) {
        var node = argument ? argument.evaluate(context).first() : context.contextNode,
            nameless = node && (node.nodeType === 3 || node.nodeType === 4 || node.nodeType > 7);

        return nameless ? new xpath.XString("") : localName.apply(this, arguments);
    };

    // to a browser the name of an HTML element is its local one, which is not in upper case
    functions["{}name"] = function (context, argument) {
        var node = argument ? argument.evaluate(context).first() : context.contextNode;

        if (arguments.length > 2 || !node || node.nodeType !== 1) {
            return name.apply(this, arguments);
        }
        return new xpath.XString((node.prefix ? node.prefix + ":" : "") + node.localName);
    };

    // JavaScript's substring swaps its limits when they are the wrong way round
    functions["{}substring"] = function (context, text, start, length) {
        var characters, first, end;

        if (arguments.length !== 3 && arguments.length !== 4) {
            throw new Error("Function substring expects (string, number, number?)");
        }
        characters = text.evaluate(context).stringValue();
        first = Math.round(start.evaluate(context).numberValue());
        end = length ? first + Math.round(length.evaluate(context).numberValue()) : Infinity;
        if (!(first < end)) {
            return new xpath.XString("");
        }
        return new xpath.XString(characters.substring(first - 1, end - 1));
    };

    // only elements carry a language
    functions["{}lang"] = function (context) {
        var node = context.contextNode;

        while (node && node.nodeType !== 1) {
            node = node.nodeType === 2 ? node.ownerElement : node.parentNode;
        }
        return lang.apply(this, [context.extend({ contextNode: node })].concat([].slice.call(arguments, 1)));
    };

    xpath.FunctionResolver.prototype.addStandardFunctions = function () {
        this.functions = functions;
    };
}

/**
 * A context is copied for each node of each step: copies share what never changes.
 * @param {Object} xpath the package
 */
function __ostrel__xpath__correctContexts(xpath) {
    function Copy() {
        // the members come with the copying
    }

    Copy.prototype = xpath.XPathContext.prototype;
    xpath.XPathContext.prototype.extend = function (changed) {
        var copy = new Copy(),
            name;

        for (name in this) {
            if (Object.prototype.hasOwnProperty.call(this, name)) {
                copy[name] = this[name];
            }
        }
        for (name in changed) {
            if (Object.prototype.hasOwnProperty.call(changed, name)) {
                copy[name] = changed[name];
            }
        }
        return copy;
    };
}
