// The page's side of the round trip: lists all elements with their names, and tells why a name leads to another element
// where the rules of naming make two elements one name. Evaluated in a page that has the payload.
window.roundTrip = (function () {
    "use strict";

    // The order of the search: the tree, and behind an element's children its shadow tree.
    function collect(node, found) {
        for (const element of node.children) {
            found.push(element);
            collect(element, found);
            if (element.shadowRoot) {
                collect(element.shadowRoot, found);
            }
            if (element.contentDocument) {
                collect(element.contentDocument, found);
            }
        }
        return found;
    }

    function link(element) {
        return __ostrel__isNamedByItself(element) ? null : __ostrel__enclosingLink(element);
    }

    const rootOf = (element) => element.getRootNode();
    const isInShadow = (element) => __ostrel__isShadowRoot(rootOf(element));
    const isBefore = (a, b) => Boolean(a.compareDocumentPosition(b) & Node.DOCUMENT_POSITION_FOLLOWING);

    // The name before anything makes it unique, without host and frame.
    function plainName(element) {
        return __ostrel__addVisibility(__ostrel__multiPropertyNameOf(element, true), element);
    }

    const haveOneName = (a, b) => a.tagName === b.tagName && plainName(a) === plainName(b);

    // The two elements in one tree by which two shadow trees are told apart; null where there is no such pair.
    function forkOf(a, b) {
        while (a !== b && rootOf(a) !== rootOf(b)) {
            if (!isInShadow(a) || !isInShadow(b) || !haveOneName(a, b)) {
                return null;
            }
            a = rootOf(a).host;
            b = rootOf(b).host;
        }
        return a === b ? null : { a, b };
    }

    // Each rule: why the name of `meant` leads to `found`, or to nothing.
    const rules = [
        {
            // Uniqueness is searched for in documents only, and no search of a document enters a shadow tree: no
            // occurrence tells equals of one shadow tree apart.
            name: "equal in its shadow tree",
            holds: function (meant, found) {
                const fork = found && forkOf(meant, found);
                return Boolean(fork) && isInShadow(fork.a) && isBefore(fork.b, fork.a) && haveOneName(fork.a, fork.b);
            },
        },
        {
            // Elements below the host come before those of its shadow tree, so that names of older scripts keep their
            // occurrence.
            name: "equal below its host",
            holds: function (meant, found) {
                return Boolean(found) && isInShadow(meant) && rootOf(meant).host !== found && rootOf(meant).host.contains(found) &&
                    haveOneName(meant, found);
            },
        },
        {
            // Occurrences are counted with the plain name, before the frame's context is put in front of it. Where
            // another document has as many equals, the search never gets to the frame, and the name stays without
            // occurrence.
            name: "equal in its frame and outside",
            holds: function (meant, found) {
                const doc = meant.ownerDocument;
                if (doc === document || !found || found.ownerDocument !== doc || isInShadow(meant) || !isBefore(found, meant) ||
                    !haveOneName(meant, found)) {
                    return false;
                }
                const equals = (where) => [...where.getElementsByTagName(meant.tagName)]
                    .filter((element) => haveOneName(meant, element));
                const place = equals(doc).indexOf(meant);
                return documents().some((other) => other !== doc && equals(other).length > place);
            },
        },
        {
            // A form in a name limits the search to the first form of that name.
            name: "in a later form of one name",
            holds: function (meant, found) {
                const name = meant.form && (meant.form.id || meant.form.getAttribute("name"));
                const first = name &&
                    [...meant.ownerDocument.forms].find((form) => form.getAttribute("name") === name);
                return Boolean(first) && first !== meant.form &&
                    [...first.elements].some((control) => control.tagName === meant.tagName) &&
                    (!found || found.form === first);
            },
        },
    ];

    function documents() {
        return [...new Set(collect(document, []).map((element) => element.ownerDocument))];
    }

    return {
        /** @return {string} JSON: reference and name, escaped, of every element; the order is that of the tree */
        names: function () {
            // As when a user records: what the searches for equals miss is not reported.
            window.__ostrel__recording = true;
            const named = collect(document, []).map((element) => ({
                reference: __ostrel__idForObject(element),
                name: __ostrel__nameOf(element),
            }));
            window.__ostrel__recording = false;
            return JSON.stringify(named);
        },

        /** @return {string} the rule by which the name of `meant` leads to `found`; "" when there is none */
        rule: function (meant, found) {
            const around = link(meant);
            if (around && around !== meant) {
                if (around === found) {
                    // What lies inside a link is named by the link: that is what a user clicks.
                    return "inside a link";
                }
                meant = around;
            }
            const rule = rules.find((candidate) => candidate.holds(meant, found));
            return rule ? rule.name : "";
        },

        /** @return {boolean} whether all frames have loaded, too */
        hasLoaded: function () {
            const isComplete = (doc) => doc.readyState === "complete" &&
                [...doc.querySelectorAll("iframe")].every((frame) => frame.contentDocument &&
                    frame.contentDocument.URL !== "about:blank" && isComplete(frame.contentDocument));
            return isComplete(document);
        },
    };
}());
