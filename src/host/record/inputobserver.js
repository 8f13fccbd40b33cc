// Tells the host what the user really does in a page. Runs in every frame, in a world of its own: the page can neither
// see it nor speak in its place, and only trusted events count.
(function () {
    "use strict";

    var textTypes = ["text", "email", "number", "url", "tel", "password", "search"],
        toldBySelf = ["select-one", "select-multiple", "file"],
        synthetic = ["mousedown", "click"], // what pages like to dispatch as if a user had done it
        wheelPauseMs = 500,
        longestName = 30,
        kept = burst(window.__pageprobeInput, tellTyped), // on its way to the host
        typed = null, // the keys typed into a field one after the other that are told together
        typedInto = null, // that field
        timeOrigin = performance.timeOrigin,
        values = new WeakMap(), // what holds text held before the key that is down
        marks = new WeakMap(), // the mark of each holder of text that the user had to do with
        markCount = 0,
        documentMark = Math.random(), // keeps the marks of frames apart
        isKeyDown = false, // what a field gets while a key is down, its release tells
        lastWheel = -wheelPauseMs,
        slop = 15, // in pixels: what moves further is no tap and no click
        touched = null, // where and on what the fingers went down
        lifted = null, // the event by which the last one came up, as long as nothing has been told of it
        pointer = "", // where the pointer was last
        isPressWanted = false, // whether the pointer went down and no press has followed yet
        release = null, // the event by which it came up since, as long as none has followed
        pressed = null, // what it went down on
        pressedPath = [], // that, and what holds it
        pressedAt = {}, // where in the window
        hovered = new WeakMap(), // what the pointer was over since the last press, and the page has answered
        endHover = function () {}; // stops looking for an answer of the page to the last hover

    window.__pageprobeFlush = kept.flush;

    function placeOf(event) {
        return event.screenX + " " + event.screenY;
    }

    function targetOf(event) {
        var target = event.target;
        return target && target.shadowRoot ? event.composedPath()[0] : target;
    }

    function isTextField(element) {
        return element.tagName === "TEXTAREA" ||
            (element.tagName === "INPUT" && textTypes.indexOf(element.type) >= 0);
    }

    // The text of a field or of an editable part of the page; null of anything else.
    function textOf(element) {
        if (isTextField(element)) {
            return element.value;
        }
        return element.isContentEditable === true ? element.innerText : null;
    }

    // Tells which holder of text an event is about, as the page's text of one of its events tells the name.
    function markOf(element) {
        return textOf(element) === null ? "" : mark(element);
    }

    function mark(element) {
        if (!marks.has(element)) {
            markCount += 1;
            marks.set(element, documentMark + "/" + markCount);
        }
        return marks.get(element);
    }

    function isControl(element) {
        var tags = ["A", "BUTTON", "INPUT", "LABEL", "OPTION", "SELECT", "SUMMARY", "TEXTAREA"];
        return tags.indexOf(element.tagName) >= 0 || (element.hasAttribute && element.hasAttribute("role"));
    }

    // The marks of what has been hovered over in the control that a press is on. What holds the control may be what
    // has shown it.
    function hoveredIn(path) {
        var end = path.findIndex(isControl),
            over = path.slice(0, end + 1 || 1).filter(function (node) {
                return hovered.has(node);
            });
        hovered = new WeakMap();
        return over.map(mark).join(" ");
    }

    // Whether the browser itself does something with the key, of which a click or a change tells.
    function takesKey(element, key) {
        return ["INPUT", "SELECT", "OPTION"].indexOf(element.tagName) >= 0 ||
            (key === " " && ["BUTTON", "SUMMARY"].indexOf(element.tagName) >= 0);
    }

    // How a person would point at the element in a remark.
    function describe(element) {
        var text, name;
        if (!element || !element.tagName) {
            return "the page";
        }
        if (element.id) {
            return element.tagName + "#" + element.id;
        }
        text = (element.textContent || "").trim().replace(/\s+/g, " ");
        name = element.getAttribute("name") || element.getAttribute("aria-label") ||
            (text.length <= longestName ? text : "");
        return name ? element.tagName + " '" + name + "'" : element.tagName;
    }

    // How far what holds the element is scrolled, the page itself left out. Page texts do not count with that.
    function scrolledBy(element) {
        var by = { scrolledX: 0, scrolledY: 0 }, node;
        for (node = element; node; node = node.parentNode || node.host) {
            if (node.scrollTop !== undefined && node !== document.scrollingElement) {
                by.scrolledX += node === element ? 0 : node.scrollLeft;
                by.scrolledY += node === element ? 0 : node.scrollTop;
            }
        }
        return by;
    }

    function timeOf(event) {
        return timeOrigin + event.timeStamp;
    }

    function tellTyped() {
        var told = typed;
        typed = null;
        typedInto = null;
        if (told) {
            kept.add(JSON.stringify(told), true);
        }
    }

    function tellNow(record) {
        tellTyped();
        kept.add(JSON.stringify(record), false);
    }

    // Whether the browser goes back or forward by it, once the page has let it through.
    function isOfHistory(event) {
        return event.button >= 3 || ["BrowserBack", "BrowserForward"].indexOf(event.key) >= 0 ||
            (event.altKey === true && ["ArrowLeft", "ArrowRight"].indexOf(event.key) >= 0);
    }

    function tell(event, more) {
        var element = targetOf(event),
            told = {
                kind: event.type,
                time: timeOf(event),
                target: describe(element),
                isText: isTextField(element),
                isOfHistory: isOfHistory(event),
                field: markOf(element)
            };
        Object.keys(more || {}).forEach(function (name) {
            told[name] = more[name];
        });
        tellNow(told);
    }

    function isTypedKey(event, element) {
        return event.key.length === 1 && isTextField(element);
    }

    // The page waits while a key is told, so that keys which follow each other fast cost no more than their own data.
    function tellKey(event, element, changed) {
        if (typedInto !== element) {
            tellTyped();
            typed = { kind: "typed", target: describe(element), field: markOf(element), value: "", keys: [] };
            typedInto = element;
        }
        typed.keys.push({ kind: event.type, time: timeOf(event), key: event.key, changed: changed });
        if (event.type === "keydown") {
            typed.value = element.value;
        }
        if (kept.isRunning()) {
            kept.wait();
        } else {
            tellTyped();
        }
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
        isKeyDown = false;
        // A hand can be faster than the timer below.
        if (isPressWanted && release) {
            tellPress(release);
        }
        release = null;
        isPressWanted = event.button === 0 && event.pointerType === "mouse";
        pressed = targetOf(event);
        pressedPath = event.composedPath();
        pressedAt = { x: event.clientX, y: event.clientY };
    });

    // A press of which no event of the page's own tells. What the page calls its element, the host asks there.
    // A page may have replaced it: then what holds it was pressed.
    function tellPress(event) {
        isPressWanted = false;
        window.__pageprobeElement = pressedPath.filter(function (node) {
            return node.nodeType === 1 && node.isConnected && node.contains(document.body) === false;
        })[0];
        tell(event, {
            kind: "pointerup",
            target: describe(pressed),
            x: pressedAt.x,
            y: pressedAt.y,
            over: hoveredIn(pressedPath)
        });
    }

    // Where the page has put something else below the pointer there is no click either, or one of what holds both.
    listen("pointerup", function (event) {
        if (isPressWanted) {
            release = event;
            setTimeout(function () {
                if (isPressWanted && release === event) {
                    tellPress(event);
                }
            }, 0);
        }
    });

    function isNear(point, place) {
        return Math.abs(point.clientX - place.x) < slop && Math.abs(point.clientY - place.y) < slop;
    }

    // Of a drag by the browser's own means no mouseup comes. In fields it marks text, or a change tells of it.
    function isEndOfDrag(event) {
        return event.type === "mouseup" && event.button === 0 && pressed !== null &&
            ["INPUT", "OPTION", "SELECT", "TEXTAREA"].indexOf(pressed.tagName) < 0 &&
            !isNear(event, pressedAt);
    }

    ["mousedown", "mouseup", "click", "dblclick", "contextmenu", "dragstart"].forEach(function (type) {
        listen(type, function (event) {
            var isPress, more;
            if (type === "click" && isPressWanted && targetOf(event) !== pressed) {
                tellPress(event);
            }
            isPress = type === "click" && isPressWanted;
            // By such a press a script presses with the pointer.
            more = isPress || event.button === 1 ? scrolledBy(targetOf(event)) : {};
            more.button = event.button || 0;
            more.isPress = isPress;
            more.over = isPress || type === "mousedown" ? hoveredIn(event.composedPath()) : "";
            tell(event, more);
            if (isEndOfDrag(event)) {
                tell(event, { kind: "drag", target: describe(pressed) });
            }
            isPressWanted = false;
        });
    });

    // The browser makes a press of a tap, unless the page takes it. It makes none of anything else.
    function tellTouch() {
        var event = lifted, touch, isTap;
        if (event === null) {
            return;
        }
        lifted = null;
        touch = event.changedTouches[0];
        isTap = touched.fingers === 1 && isNear(touch, touched);
        tell(event, {
            kind: !isTap ? "swipe" : event.defaultPrevented || touched.event.defaultPrevented ? "tap" : "touchend"
        });
    }

    listen("touchstart", function (event) {
        var touch = event.changedTouches[0];
        // A finger can be faster than the timer below.
        tellTouch();
        if (touched === null || event.touches.length === 1) {
            touched = { event: event, x: touch.clientX, y: touch.clientY, fingers: 0 };
        }
        touched.fingers = Math.max(touched.fingers, event.touches.length);
    });

    listen("touchend", function (event) {
        if (touched !== null && event.touches.length === 0) {
            lifted = event;
            setTimeout(tellTouch, 0);
        }
    });

    window.addEventListener("pagehide", tellTouch, true);

    // Texts are sent of these, too.
    synthetic.forEach(function (type) {
        window.addEventListener(type, function (event) {
            if (!event.isTrusted) {
                tell(event, { isByPage: true });
            }
        }, { capture: true, passive: true });
    });

    listen("focusin", function (event) {
        var element = targetOf(event);
        if (textOf(element) !== null) {
            values.set(element, textOf(element));
        }
    });

    // A text comes by other ways than keys: the menu of the browser, the arrows of a number, a text that is dropped.
    listen("input", function (event) {
        var element = targetOf(event);
        if (!isKeyDown && textOf(element) !== null) {
            tell(event, { isText: true, value: textOf(element) });
            values.set(element, textOf(element));
        }
    });

    listen("keydown", function (event) {
        var element = targetOf(event);
        isKeyDown = true;
        if (isTypedKey(event, element)) {
            tellKey(event, element, false);
        } else {
            tell(event, { key: event.key, value: isTextField(element) ? element.value : "" });
        }
    });

    listen("keyup", function (event) {
        var element = targetOf(event),
            text = textOf(element),
            isEditable = text !== null && !isTextField(element),
            changed = text !== null && values.get(element) !== text;
        isKeyDown = false;
        if (isTypedKey(event, element)) {
            tellKey(event, element, changed);
        } else {
            tell(event, {
                key: event.key,
                value: isEditable ? text : "",
                changed: changed,
                isTaken: takesKey(element, event.key),
                isEditable: isEditable
            });
        }
        if (text !== null) {
            values.set(element, text);
        }
    });

    listen("change", function (event) {
        var element = targetOf(event);
        if (element.type === "file") {
            // The path, which a page does not get to know, the host asks the browser for.
            window.__pageprobeFile = element.files[0];
        }
        tell(event, {
            files: element.type === "file" ? element.files.length : 0,
            isTold: toldBySelf.indexOf(element.type) >= 0,
            isCheck: element.type === "checkbox" || element.type === "radio",
            value: String(element.value)
        });
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
        var element = targetOf(event), target = describe(element), answered = false, changes, timer;
        // Over a frame the pointer's next event is the frame's. A pointer that stays where it was hovers over what
        // the page has moved under it, which is nothing that the user does.
        if (event.buttons !== 0 || element.tagName === "IFRAME" || placeOf(event) === pointer) {
            return;
        }
        changes = new MutationObserver(function () {
            answered = true;
        });
        timer = setTimeout(function () {
            endHover();
        }, 0);
        changes.observe(document, { subtree: true, childList: true, attributes: true, characterData: true });
        endHover = function () {
            endHover = function () {};
            clearTimeout(timer);
            answered = answered || changes.takeRecords().length > 0;
            changes.disconnect();
            if (answered) {
                hovered.set(element, true);
                tellNow({ kind: "hover", target: target, field: mark(element) });
            }
        };
    });
}());
