// Tells why nothing has a name: how many elements have its tag, how many of them each of its properties, and which come
// nearest. An expression that gives a function of (windows, name, container); the container may be missing.
(function (windows, nm, container) {
    var nearestCount = 3,
        result = { tag: "", context: true, candidates: 0, properties: [], nearest: [], all: 0 },
        ctxwin = window.__ostrel__ctxwin,
        sent = __ostrel.sentUnmatchedProperties,
        props, matchers, i;

    // What the question itself compares is nobody's news.
    function keepQuiet() {
        __ostrel.sentUnmatchedProperties = matchers.map(function (matcher) {
            return { name: nm, prop: matcher.propName };
        });
    }

    function actual(elem, prop) {
        var rules = {
                simplifiedInnerText: function () { return __ostrel.getSimplifiedInnerText(elem); },
                visible: function () { return __ostrel__isVisible(elem); },
                id: function () { return __ostrel__idHelper(elem.id); }
            },
            value;
        try {
            value = Object.prototype.hasOwnProperty.call(rules, prop) ? rules[prop]() : elem[prop];
            if (value === undefined || value === null || typeof value === "object") {
                value = elem.getAttribute(prop);
            }
        } catch (e) {
            value = null;
        }
        return value === null || value === undefined ? null : String(value);
    }

    function matches(matcher, elem) {
        try {
            return !!matcher.matchObject(elem);
        } catch (e) {
            return false;
        }
    }

    // A text that holds the wanted one, or the reverse, is half a match.
    function isClose(matcher, elem) {
        var wanted = String(matcher.propValue.value).toLowerCase(),
            is = (actual(elem, matcher.propName) || "").toLowerCase();
        return is !== "" && wanted !== "" && (is.indexOf(wanted) >= 0 || wanted.indexOf(is) >= 0);
    }

    // The best ones by the properties that they have, in document order among equals.
    function noteNearest(elem, failed) {
        var distance = failed.reduce(function (sum, matcher) {
                return sum + (isClose(matcher, elem) ? 0.5 : 1);
            }, 0),
            at = result.nearest.length;
        if (distance >= matchers.length) {
            return;
        }
        while (at > 0 && result.nearest[at - 1].distance > distance) {
            --at;
        }
        result.nearest.splice(at, 0, { elem: elem, failed: failed, distance: distance });
        result.nearest.splice(nearestCount);
    }

    function compare(elem) {
        var failed = [];
        ++result.candidates;
        matchers.forEach(function (matcher, index) {
            if (matches(matcher, elem)) {
                ++result.properties[index].having;
            } else {
                failed.push(matcher);
            }
        });
        if (failed.length === 0) {
            ++result.all;
        }
        noteNearest(elem, failed);
    }

    function compareIn(place) {
        var elements = __ostrel__candidatesByTag(place, props, false), index;
        for (index = 0; index < elements.length; ++index) {
            compare(elements[index]);
        }
    }

    try {
        props = __ostrel__propertiesOfName(nm);
    } catch (e) {
        return JSON.stringify({ fault: String(e.message || e) });
    }
    if (!props || !props.tagName) {
        return JSON.stringify({ fault: "the name has no tagName, which every search needs" });
    }
    result.tag = String(props.tagName.value);
    matchers = __ostrel__matchersOfProperties(props, nm).matchers;
    result.properties = matchers.map(function (matcher) {
        return { name: matcher.propName, having: 0 };
    });
    try {
        keepQuiet();
        if (props.context && props.context.value !== "") {
            result.context = __ostrel__hasContext(props.context.value);
            if (result.context) {
                compareIn(__ostrel__findContext2(props.context.value).document);
            }
        } else if (container) {
            compareIn(container);
        } else {
            for (i = 0; i < windows.length; ++i) {
                compareIn(windows[i].document);
            }
        }
        result.nearest = result.nearest.map(function (entry) {
            return {
                name: __ostrel__nameOf(entry.elem),
                failed: entry.failed.map(function (matcher) {
                    return { name: matcher.propName, actual: actual(entry.elem, matcher.propName) };
                })
            };
        });
    } finally {
        window.__ostrel__ctxwin = ctxwin;
        __ostrel.sentUnmatchedProperties = sent;
    }
    return JSON.stringify(result);
})
