// Tells the host what the user really does in a page. Runs in every frame, in a world of its own: the page can neither
// see it nor speak in its place, and only trusted events count.
(function () {
    "use strict";

    const textTypes = ["text", "email", "number", "url", "tel", "password", "search"];
    const toldBySelf = ["select-one", "select-multiple", "file"];
    const values = new WeakMap(); // what text fields held before the key that is down
    const entered = new WeakMap(); // what they held when the user last put something in, by whatever means
    const synthetic = ["mousedown", "click"]; // what pages like to dispatch as if a user had done it
    const wheelPauseMs = 500;
    const longestName = 30;
    const kept = burst(globalThis.__pageprobeInput);
    globalThis.__pageprobeFlush = kept.flush;
    let lastWheel = -wheelPauseMs;
    let pointer = ""; // where the pointer was last
    let isPressWanted = false; // whether the pointer went down and no press has followed yet
    let pressed = ""; // what it went down on
    let endHover = function () {}; // stops looking for an answer of the page to the last hover

    function placeOf(event) {
        return event.screenX + " " + event.screenY;
    }

    function targetOf(event) {
        return event.composedPath()[0] || event.target;
    }

    function isTextField(element) {
        return element.tagName === "TEXTAREA" ||
            (element.tagName === "INPUT" && textTypes.includes(element.type));
    }

    // Whether the browser itself does something with the key, of which a click or a change tells.
    function takesKey(element, key) {
        return ["INPUT", "SELECT", "OPTION"].includes(element.tagName) ||
            (key === " " && ["BUTTON", "SUMMARY"].includes(element.tagName));
    }

    // How a person would point at the element in a remark.
    function describe(element) {
        if (!element || !element.tagName) {
            return "the page";
        }
        if (element.id) {
            return element.tagName + "#" + element.id;
        }
        const text = (element.textContent || "").trim().replace(/\s+/g, " ");
        const name = element.getAttribute("name") || element.getAttribute("aria-label") ||
            (text.length <= longestName ? text : "");
        return name ? element.tagName + " '" + name + "'" : element.tagName;
    }

    // How far what holds the element is scrolled, the page itself left out. Page texts do not count with that.
    function scrolledBy(element) {
        const by = { scrolledX: 0, scrolledY: 0 };
        for (let node = element; node; node = node.parentNode || node.host) {
            if (node.scrollTop !== undefined && node !== document.scrollingElement) {
                by.scrolledX += node === element ? 0 : node.scrollLeft;
                by.scrolledY += node === element ? 0 : node.scrollTop;
            }
        }
        return by;
    }

    function tell(event, more) {
        const element = targetOf(event);
        const isText = isTextField(element);
        kept.add(JSON.stringify(Object.assign({
            kind: event.type,
            time: performance.timeOrigin + event.timeStamp,
            target: describe(element),
            isText: isText,
        }, more)), isText && event.type.startsWith("key") && event.key.length === 1);
    }

    function listen(type, listener) {
        window.addEventListener(type, function (event) {
            if (event.isTrusted) {
                endHover();
                listener(event);
            }
        }, { capture: true, passive: true });
    }

    // Pages can take the pointer's own event, after which no press follows but a click.
    listen("pointerdown", function (event) {
        isPressWanted = event.button === 0 && event.pointerType === "mouse";
        pressed = describe(targetOf(event));
    });

    // There is no click either where the page has put something else below the pointer.
    listen("pointerup", function (event) {
        if (isPressWanted) {
            setTimeout(function () {
                if (isPressWanted) {
                    isPressWanted = false;
                    tell(event, { target: pressed });
                }
            }, 0);
        }
    });

    for (const type of ["mousedown", "mouseup", "click", "dblclick", "contextmenu", "touchend", "dragstart"]) {
        listen(type, function (event) {
            const isPress = type === "click" && isPressWanted;
            tell(event, Object.assign({ button: event.button || 0, isPress: isPress },
                isPress ? scrolledBy(targetOf(event)) : {}));
            isPressWanted = false;
        });
    }

    // Texts are sent of these, too.
    for (const type of synthetic) {
        window.addEventListener(type, function (event) {
            if (!event.isTrusted) {
                tell(event, { isByPage: true });
            }
        }, { capture: true, passive: true });
    }

    listen("input", function (event) {
        const element = targetOf(event);
        if (isTextField(element)) {
            entered.set(element, element.value);
        }
    });

    listen("focusin", function (event) {
        const element = targetOf(event);
        if (isTextField(element)) {
            values.set(element, element.value);
        }
    });

    listen("keydown", function (event) {
        const element = targetOf(event);
        tell(event, { key: event.key, value: isTextField(element) ? element.value : "" });
    });

    listen("keyup", function (event) {
        const element = targetOf(event);
        const changed = isTextField(element) && values.get(element) !== element.value;
        if (isTextField(element)) {
            values.set(element, element.value);
        }
        tell(event, { key: event.key, changed: changed, isTaken: takesKey(element, event.key) });
    });

    listen("change", function (event) {
        const element = targetOf(event);
        const told = toldBySelf.includes(element.type);
        tell(event, {
            isTold: told,
            isCheck: element.type === "checkbox" || element.type === "radio",
            // A value that the page has put in is none of the user's.
            changed: isTextField(element) && values.get(element) !== element.value &&
                entered.get(element) === element.value,
            value: String(element.value),
        });
        if (isTextField(element)) {
            values.set(element, element.value);
        }
    });

    listen("wheel", function (event) {
        if (event.timeStamp - lastWheel >= wheelPauseMs) {
            tell(event);
        }
        lastWheel = event.timeStamp;
    });

    // Follows each mouseover at once and ends what the page may do about that.
    listen("mousemove", function (event) {
        pointer = placeOf(event);
    });

    // A hover counts when the page answers it: when it changes while it hears of the pointer, before it hears of
    // anything else.
    listen("mouseover", function (event) {
        // Over a frame the pointer's next event is the frame's. A pointer that stays where it was hovers over what
        // the page has moved under it, which is nothing that the user does.
        if (event.buttons !== 0 || targetOf(event).tagName === "IFRAME" || placeOf(event) === pointer) {
            return;
        }
        const target = describe(targetOf(event));
        let answered = false;
        const changes = new MutationObserver(function () {
            answered = true;
        });
        const timer = setTimeout(() => endHover(), 0);
        changes.observe(document, { subtree: true, childList: true, attributes: true, characterData: true });
        endHover = function () {
            endHover = function () {};
            clearTimeout(timer);
            answered = answered || changes.takeRecords().length > 0;
            changes.disconnect();
            if (answered) {
                kept.add(JSON.stringify({ kind: "hover", target: target }), false);
            }
        };
    });
}());
