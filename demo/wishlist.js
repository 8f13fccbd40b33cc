// The wishlist board: double-click, context menu, keyboard, hover, drag and the question before leaving.

(function () {
    'use strict';

    const { addToCart, byId, customer, log, make, money, moveInMenu, picture, productAddress } = Shop;
    const board = byId('board');
    let selected = '';
    let dragged = '';
    let menu = null;

    function show() {
        const wishes = customer.read().wishlist;
        board.replaceChildren(...wishes.map(tile));
        board.hidden = wishes.length === 0;
        byId('board-empty').hidden = wishes.length > 0;
        select(wishes.some(entry => entry.id === selected) ? selected : '');
    }

    function tile(entry) {
        const item = Shop.good(entry.id);
        return make('li', { id: 'tile-' + entry.id, class: 'tile', role: 'option', draggable: 'true', 'aria-selected': 'false', 'data-good': entry.id },
            picture(entry.id, ''),
            make('span', { class: 'name' }, entry.label),
            make('span', { class: 'preview', 'aria-hidden': 'true' }, item.category + ', ' + money(item.price)));
    }

    function status(text) {
        byId('board-status').textContent = text;
        log('board ' + text);
    }

    function labelOf(id) {
        const entry = customer.read().wishlist.find(wish => wish.id === id);
        return entry ? entry.label : '';
    }

    function select(id) {
        selected = id;
        board.querySelectorAll('.tile').forEach(element => {
            element.setAttribute('aria-selected', String(element.dataset.good === id));
        });
        if (id) {
            board.setAttribute('aria-activedescendant', 'tile-' + id);
        } else {
            board.removeAttribute('aria-activedescendant');
        }
    }

    // ---- Actions ----

    function open(id) {
        log('board open ' + id);
        location.assign(productAddress(id));
    }

    function moveToCart(id) {
        addToCart({ id });
        remove(id);
    }

    function remove(id) {
        const label = labelOf(id);
        customer.change(mine => { mine.wishlist = mine.wishlist.filter(entry => entry.id !== id); });
        show();
        status('Removed “' + label + '”.');
    }

    function place(id, index) {
        customer.change(mine => {
            const from = mine.wishlist.findIndex(entry => entry.id === id);
            mine.wishlist.splice(index, 0, mine.wishlist.splice(from, 1)[0]);
        });
        show();
        status('Moved “' + labelOf(id) + '” to place ' + (index + 1) + '.');
    }

    function indexOf(id) {
        return customer.read().wishlist.findIndex(entry => entry.id === id);
    }

    // The name becomes a field. Return keeps the new name, Escape the old one; leaving the field keeps the new one, too.
    function rename(id) {
        const name = byId('tile-' + id).querySelector('.name');
        const field = make('input', { type: 'text', value: labelOf(id), 'aria-label': 'New name', maxlength: 40 });
        let done = false;
        function finish(keep) {
            if (done) {
                return;
            }
            done = true;
            const label = field.value.trim();
            if (keep && label) {
                customer.change(mine => { mine.wishlist.find(entry => entry.id === id).label = label; });
            }
            show();
            board.focus();
            status(keep && label ? 'Renamed to “' + label + '”.' : 'Name kept.');
        }
        name.replaceWith(field);
        field.addEventListener('keydown', event => {
            event.stopPropagation();
            if (event.key === 'Enter' || event.key === 'Escape') {
                finish(event.key === 'Enter');
            }
        });
        field.addEventListener('dblclick', event => event.stopPropagation());
        field.addEventListener('blur', () => finish(true));
        field.select();
    }

    // ---- Context menu ----

    function openMenu(id, x, y) {
        closeMenu();
        const entry = (text, action) => make('button', { type: 'button', role: 'menuitem', tabindex: -1, click: () => { closeMenu(); action(id); } }, text);
        menu = make('div', { id: 'context-menu', class: 'menu context-menu', role: 'menu', 'aria-label': 'Actions for ' + labelOf(id) },
            entry('Open', open), entry('Rename', rename), entry('Move to cart', moveToCart), entry('Remove', remove));
        document.body.append(menu);
        menu.style.left = Math.min(x, window.innerWidth - menu.offsetWidth - 8) + 'px';
        menu.style.top = Math.min(y, window.innerHeight - menu.offsetHeight - 8) + 'px';
        menu.firstChild.focus();
        menu.addEventListener('keydown', event => {
            if (event.key === 'Escape') {
                closeMenu();
                board.focus();
            }
            moveInMenu(menu, event);
        });
    }

    function closeMenu() {
        if (menu) {
            menu.remove();
            menu = null;
        }
    }

    // ---- Listeners ----

    function goodAt(event) {
        const element = event.target.closest('.tile');
        return element ? element.dataset.good : '';
    }

    function announce(id) {
        select(id);
        status('“' + labelOf(id) + '” selected.');
    }

    board.addEventListener('click', event => {
        const id = goodAt(event);
        if (id && id !== selected && event.target.tagName !== 'INPUT') {
            announce(id);
        }
    });
    board.addEventListener('dblclick', event => goodAt(event) && rename(goodAt(event)));
    board.addEventListener('contextmenu', event => {
        const id = goodAt(event);
        if (id && event.target.tagName !== 'INPUT') {
            event.preventDefault();
            select(id);
            openMenu(id, event.clientX, event.clientY);
        }
    });
    document.addEventListener('mousedown', event => menu && !menu.contains(event.target) && closeMenu());

    const KEYS = { Enter: open, F2: rename, Delete: remove };
    board.addEventListener('keydown', event => {
        const wishes = customer.read().wishlist;
        const step = { ArrowRight: 1, ArrowLeft: -1 }[event.key];
        const next = step && indexOf(selected) + step;
        if (step && event.ctrlKey && selected && wishes[next]) {
            place(selected, next);
        } else if (step && !event.ctrlKey && wishes.length > 0) {
            announce(wishes[Math.min(wishes.length - 1, Math.max(0, next))].id);
        } else if (KEYS[event.key] && selected) {
            KEYS[event.key](selected);
        } else {
            return;
        }
        event.preventDefault();
    });

    board.addEventListener('dragstart', event => {
        dragged = goodAt(event);
        event.dataTransfer.setData('text/plain', dragged);
        event.dataTransfer.effectAllowed = 'move';
        event.target.classList.add('dragged');
    });
    board.addEventListener('dragover', event => {
        event.preventDefault();
        board.querySelectorAll('.tile').forEach(element => {
            element.classList.toggle('target', element.dataset.good === goodAt(event) && element.dataset.good !== dragged);
        });
    });
    board.addEventListener('drop', event => {
        event.preventDefault();
        const target = goodAt(event);
        if (dragged && target && target !== dragged) {
            place(dragged, indexOf(target));
        }
    });
    board.addEventListener('dragend', () => {
        dragged = '';
        board.querySelectorAll('.tile').forEach(element => element.classList.remove('dragged', 'target'));
    });

    window.onbeforeunload = event => {
        if (byId('warn').checked) {
            event.preventDefault();
            event.returnValue = 'The wishlist waits for you.';
            return event.returnValue;
        }
        return undefined;
    };

    show();
}());
