// The viewer of a dump: a tree beside the picture of the page.
//
// Rows are made when their parent is opened, so that a page of many thousand elements opens at once. Texts of the
// page only ever enter as text content.
"use strict";

(function () {
    const longestLabel = 60;
    const firstRows = 150;
    const cropWidth = 346;
    const cropHeight = 160;

    const byId = (id) => document.getElementById(id);
    const dump = JSON.parse(byId("dump").textContent);
    const nodes = [];
    let selected = null;
    let showsTexts = false;

    // ---- the nodes

    function oneLine(text) {
        const line = (text || "").replace(/\s+/g, " ").trim();
        return line.length > longestLabel ? line.slice(0, longestLabel) + "…" : line;
    }

    function property(node, name) {
        return node.data.properties[name] || "";
    }

    function lastOfPath(node) {
        return (node.data.name || node.data.class).split(".").pop();
    }

    function tagOf(node) {
        return property(node, "tagName") || lastOfPath(node).replace(/\d+$/, "");
    }

    function isText(node) {
        return tagOf(node) === "NODE";
    }

    function isSeen(node) {
        return Boolean(node.data.bounds) && node.data.bounds[2] > 0 && node.data.bounds[3] > 0;
    }

    function makeNode(data, parent) {
        const node = { data, parent, depth: parent ? parent.depth + 1 : 0, index: nodes.length, item: null };
        nodes.push(node);
        node.children = (data.children || []).map((child) => makeNode(child, node));
        return node;
    }

    function shownChildren(node) {
        return showsTexts ? node.children : node.children.filter((child) => !isText(child));
    }

    // ---- the tree

    function span(className, text) {
        const element = document.createElement("span");
        element.className = className;
        element.textContent = text;
        return element;
    }

    function labelOf(node) {
        if (isText(node)) {
            return [span("text", "text")];
        }
        const parts = [span("tag", tagOf(node).toLowerCase())];
        const id = oneLine(property(node, "id"));
        const classes = oneLine(property(node, "domClassName"));
        const text = oneLine(property(node, "textContent"));
        if (id) {
            parts.push(span("id", "#" + id));
        }
        if (classes) {
            parts.push(span("class", "." + classes.replace(/ /g, ".")));
        }
        if (text) {
            parts.push(span("text", text));
        }
        return parts;
    }

    function makeItem(node) {
        const item = document.createElement("li");
        const row = document.createElement("div");
        const twisty = span("twisty", "");
        node.item = item;
        item.setAttribute("role", "treeitem");
        item.classList.toggle("leaf", !shownChildren(node).length);
        if (shownChildren(node).length) {
            item.setAttribute("aria-expanded", "false");
        }
        row.className = "row";
        row.classList.toggle("unseen", !isSeen(node));
        row.style.paddingLeft = 6 + node.depth * 14 + "px";
        row.append(twisty, ...labelOf(node));
        row.addEventListener("mouseenter", () => outline("hover", node));
        row.addEventListener("mouseleave", () => outline("hover", null));
        row.addEventListener("click", (event) => {
            if (event.target === twisty) {
                setOpen(node, !isOpen(node));
            } else {
                select(node);
            }
        });
        row.addEventListener("dblclick", () => setOpen(node, !isOpen(node)));
        item.append(row);
        return item;
    }

    function rowOf(node) {
        return node.item && node.item.firstChild;
    }

    function isOpen(node) {
        return node.item.getAttribute("aria-expanded") === "true";
    }

    function setOpen(node, open) {
        if (!shownChildren(node).length || isOpen(node) === open) {
            return;
        }
        node.item.setAttribute("aria-expanded", String(open));
        if (open) {
            const list = document.createElement("ul");
            list.setAttribute("role", "group");
            list.append(...shownChildren(node).map(makeItem));
            node.item.append(list);
        } else {
            node.item.lastChild.remove();
            forget(node);
        }
    }

    function forget(node) {
        for (const child of node.children) {
            if (child.item) {
                child.item = null;
                forget(child);
            }
        }
    }

    function reveal(node) {
        if (node.parent) {
            reveal(node.parent);
            setOpen(node.parent, true);
        }
    }

    // Opens level by level as long as there is not too much to see.
    function openFirstRows() {
        let level = [nodes[0]];
        let rows = 1;
        while (level.length && rows + level.reduce((sum, node) => sum + shownChildren(node).length, 0) <= firstRows) {
            level.forEach((node) => setOpen(node, true));
            level = level.flatMap(shownChildren);
            rows += level.length;
        }
    }

    function buildTree() {
        forget(nodes[0]);
        byId("tree").replaceChildren(makeItem(nodes[0]));
        openFirstRows();
        if (selected && (showsTexts || !isText(selected))) {
            select(selected);
        }
    }

    // ---- the picture

    function outline(id, node) {
        const frame = byId(id);
        const picture = byId("picture");
        const seen = node && isSeen(node) && picture.naturalWidth;
        frame.hidden = !seen;
        if (seen) {
            const [x, y, width, height] = node.data.bounds;
            frame.style.left = (x / picture.naturalWidth) * 100 + "%";
            frame.style.top = (y / picture.naturalHeight) * 100 + "%";
            frame.style.width = (width / picture.naturalWidth) * 100 + "%";
            frame.style.height = (height / picture.naturalHeight) * 100 + "%";
        }
    }

    // The smallest element at a point of the picture; of equal ones the innermost.
    function nodeAt(event) {
        const picture = byId("picture");
        const x = (event.offsetX / picture.clientWidth) * picture.naturalWidth;
        const y = (event.offsetY / picture.clientHeight) * picture.naturalHeight;
        let best = null;
        for (const node of nodes) {
            if (!isSeen(node) || isText(node)) {
                continue;
            }
            const [left, top, width, height] = node.data.bounds;
            const hit = x >= left && y >= top && x < left + width && y < top + height;
            if (hit && (!best || width * height <= best.data.bounds[2] * best.data.bounds[3])) {
                best = node;
            }
        }
        return best;
    }

    // ---- the details

    function showCrop(node) {
        const crop = byId("crop");
        const picture = byId("picture");
        crop.hidden = !isSeen(node) || !picture.naturalWidth;
        if (crop.hidden) {
            return;
        }
        const [x, y, width, height] = node.data.bounds;
        const scale = Math.min(1, cropWidth / width, cropHeight / height);
        crop.style.width = width * scale + "px";
        crop.style.height = height * scale + "px";
        crop.style.backgroundImage = "url(" + picture.src + ")";
        crop.style.backgroundSize = picture.naturalWidth * scale + "px";
        crop.style.backgroundPosition = -x * scale + "px " + -y * scale + "px";
    }

    function propertyRow(name, value) {
        const row = document.createElement("tr");
        const head = document.createElement("th");
        const cell = document.createElement("td");
        const content = document.createElement("div");
        head.textContent = name;
        content.textContent = value || "empty";
        content.classList.toggle("empty", !value);
        cell.append(content);
        row.append(head, cell);
        return row;
    }

    function showDetails(node) {
        const bounds = node.data.bounds;
        const names = Object.keys(node.data.properties);
        byId("details").hidden = false;
        byId("kind").textContent = node.data.type + " – " + node.data.class;
        byId("name").textContent = node.data.name || "";
        byId("copy").textContent = "Copy";
        byId("place").textContent = isSeen(node)
            ? bounds[2] + " × " + bounds[3] + " at " + bounds[0] + ", " + bounds[1] : "Not visible in the picture";
        byId("properties").replaceChildren(...names.map((name) => propertyRow(name, node.data.properties[name])));
        showCrop(node);
    }

    function select(node) {
        if (selected && rowOf(selected)) {
            rowOf(selected).removeAttribute("aria-selected");
        }
        selected = node;
        reveal(node);
        rowOf(node).setAttribute("aria-selected", "true");
        rowOf(node).scrollIntoView({ block: "nearest", inline: "nearest" });
        showDetails(node);
        outline("selection", node);
        byId("selection").scrollIntoView({ block: "nearest", inline: "nearest" });
    }

    // A page opened from a file may not reach the clipboard by its interface; copying a selection always works.
    function copyName() {
        const range = document.createRange();
        range.selectNodeContents(byId("name"));
        getSelection().removeAllRanges();
        getSelection().addRange(range);
        byId("copy").textContent = document.execCommand("copy") ? "Copied" : "Press Ctrl+C";
    }

    // ---- the keyboard and the search

    function visibleNodes(node) {
        return node.item ? [node].concat(...shownChildren(node).map(visibleNodes)) : [];
    }

    function moveBy(step) {
        const rows = visibleNodes(nodes[0]);
        select(rows[Math.max(0, Math.min(rows.length - 1, rows.indexOf(selected) + step))]);
    }

    const keys = {
        ArrowDown: () => moveBy(1),
        ArrowUp: () => moveBy(-1),
        ArrowRight: () => (isOpen(selected) ? moveBy(1) : setOpen(selected, true)),
        ArrowLeft: () => (isOpen(selected) ? setOpen(selected, false) : select(selected.parent || selected)),
    };

    function matches(node, wanted) {
        return ["id", "domClassName", "title", "textContent"].map((name) => property(node, name))
            .concat(node.data.name || "", node.data.class)
            .some((text) => text.toLowerCase().includes(wanted));
    }

    function find(forward) {
        const wanted = byId("search").value.trim().toLowerCase();
        const hits = wanted ? nodes.filter((node) => !isText(node) && matches(node, wanted)) : [];
        byId("hits").textContent = wanted ? hits.length + (hits.length === 1 ? " hit" : " hits") : "";
        if (hits.length) {
            const from = selected ? selected.index : -1;
            select(hits.find((node) => (forward ? node.index > from : node.index >= from)) || hits[0]);
        }
    }

    function listen() {
        byId("tree").addEventListener("keydown", (event) => {
            if (keys[event.key]) {
                event.preventDefault();
                selected = selected || nodes[0];
                keys[event.key]();
            }
        });
        byId("picture").addEventListener("mousemove", (event) => outline("hover", nodeAt(event)));
        byId("picture").addEventListener("mouseleave", () => outline("hover", null));
        byId("picture").addEventListener("click", (event) => {
            const node = nodeAt(event);
            if (node) {
                select(node);
            }
        });
        byId("copy").addEventListener("click", copyName);
        byId("search").addEventListener("input", () => find(false));
        byId("search").addEventListener("keydown", (event) => event.key === "Enter" && find(true));
        byId("texts").addEventListener("change", () => {
            showsTexts = byId("texts").checked;
            buildTree();
        });
    }

    byId("title").textContent = dump.title || "Untitled page";
    byId("address").textContent = dump.address;
    if (dump.picture) {
        byId("picture").src = "data:image/png;base64," + dump.picture;
    } else {
        byId("canvas").hidden = true;
    }
    if (dump.root) {
        makeNode(dump.root, null);
        byId("count").textContent = nodes.length + " objects";
        byId("switch").hidden = !nodes.some(isText);
        listen();
        buildTree();
    }
}());
