// What all pages of the demo shop share: the goods, the stored state, header and footer, the two custom elements.
// Each page adds a script of its own, named like the page. All of them are classic scripts and use the one global `Shop`.

(function () {
    'use strict';

    const GOODS = [
        { id: 'pellow-mug', name: 'Pellow Mug', category: 'Kitchen', price: 1800, stock: 24, colours: ['Moss', 'Clay', 'Fog'],
            text: 'Holds exactly as much tea as a letter takes to write.', material: 'Stoneware, glazed by hand' },
        { id: 'vassel-teapot', name: 'Vassel Teapot', category: 'Kitchen', price: 4600, stock: 6, colours: ['Clay', 'Fog'],
            text: 'Pours without a drip, even when nobody is looking.', material: 'Stoneware with a cork rest' },
        { id: 'tarn-bowl', name: 'Tarn Bowl', category: 'Kitchen', price: 2400, stock: 15, colours: ['Lake', 'Fog', 'Ink'],
            text: 'Deep and quiet, for soup, fruit or keys.', material: 'Porcelain, fired twice' },
        { id: 'orrin-lamp', name: 'Orrin Lamp', category: 'Living', price: 8900, stock: 3, colours: ['Honey', 'Linen'],
            text: 'A warm circle of light for one chair and one book.', material: 'Oak, cotton shade' },
        { id: 'tamsel-blanket', name: 'Tamsel Blanket', category: 'Living', price: 7400, stock: 9, colours: ['Rose', 'Moss', 'Fog'],
            text: 'Heavy enough to end a long day early.', material: 'Lambswool, woven in one piece' },
        { id: 'quill-vase', name: 'Quill Vase', category: 'Living', price: 3800, stock: 11, colours: ['Plum', 'Lake'],
            text: 'Makes three stems look like a bunch.', material: 'Blown glass' },
        { id: 'morrow-candle', name: 'Morrow Candle', category: 'Living', price: 1600, stock: 40, colours: ['Cedar', 'Fig'],
            text: 'Burns for forty evenings and smells of rain on wood.', material: 'Rapeseed wax, cotton wick' },
        { id: 'linnet-notebook', name: 'Linnet Notebook', category: 'Desk', price: 1200, stock: 60, colours: ['Moss', 'Ink', 'Rose'],
            text: 'Opens flat and stays there. 160 pages, no lines to obey.', material: 'Recycled paper, cloth cover' },
        { id: 'hinkle-clock', name: 'Hinkle Clock', category: 'Desk', price: 5400, stock: 0, colours: ['Walnut'],
            text: 'Rings once, politely, and then trusts you.', material: 'Walnut and brass' },
        { id: 'dabble-pencils', name: 'Dabble Pencils', category: 'Desk', price: 950, stock: 33, colours: ['Mixed', 'Graphite'],
            text: 'Twelve soft pencils in a pot of their own.', material: 'Cedar, pot of stoneware' },
        { id: 'brook-can', name: 'Brook Watering Can', category: 'Garden', price: 4200, stock: 8, colours: ['Lake', 'Moss'],
            text: 'A long neck and a gentle rose for the smallest seedling.', material: 'Zinc-coated steel' },
        { id: 'skerry-basket', name: 'Skerry Basket', category: 'Garden', price: 3600, stock: 2, colours: ['Willow', 'Honey'],
            text: 'Carries the harvest in and the washing out.', material: 'Willow, leather handle' }
    ];
    const SIZES = { Small: 0, Medium: 400, Large: 900 };
    const WRAPPINGS = { none: { name: 'No wrapping', price: 0 }, paper: { name: 'Paper', price: 250 }, cloth: { name: 'Cloth', price: 600 } };
    const VOUCHERS = { QUIET10: { name: '10% off', percent: 10 }, WELCOME5: { name: '€5.00 off', amount: 500 } };
    const DELIVERY = 490;
    const FREE_DELIVERY_FROM = 6000;
    const LOG_LENGTH = 200;

    // ---- State ----
    // What belongs to the customer stands in localStorage, what belongs to this tab in sessionStorage. Nothing is kept
    // in variables: frames, tabs and the pop-up window write too, and each write must see what the others wrote.

    const customer = storedRecord(localStorage, 'oddlewick.customer', {
        cart: [],
        voucher: '',
        wishlist: [
            { id: 'orrin-lamp', label: 'Orrin Lamp' },
            { id: 'quill-vase', label: 'Quill Vase' },
            { id: 'brook-can', label: 'Brook Watering Can' }
        ],
        ratings: {},
        notify: [],
        theme: 'light',
        orders: 0
    });
    const visit = storedRecord(sessionStorage, 'oddlewick.visit', { order: null, size: '', looks: 0, leftFrom: '', log: [] });

    function storedRecord(storage, key, initial) {
        function read() {
            const text = storage.getItem(key);
            return Object.assign(JSON.parse(JSON.stringify(initial)), text ? JSON.parse(text) : {});
        }
        function change(edit) {
            const record = read();
            edit(record);
            storage.setItem(key, JSON.stringify(record));
        }
        return { read, change, clear: () => storage.removeItem(key) };
    }

    // The whole state as one plain object, always with the same members in the same order.
    function shopState() {
        const mine = customer.read();
        const tab = visit.read();
        return {
            cart: mine.cart,
            voucher: mine.voucher,
            totals: totals(mine),
            wishlist: mine.wishlist,
            ratings: mine.ratings,
            notify: mine.notify,
            theme: mine.theme,
            orders: mine.orders,
            order: tab.order,
            size: tab.size,
            looks: tab.looks,
            leftFrom: tab.leftFrom,
            log: tab.log
        };
    }

    // Only our own keys go: other parties keep entries in the same storage.
    function shopReset() {
        customer.clear();
        visit.clear();
    }

    // The log has no times in it, so that two equal runs leave equal logs.
    function log(entry) {
        visit.change(tab => {
            tab.log.push(entry);
            tab.log = tab.log.slice(-LOG_LENGTH);
        });
    }

    // ---- Cart ----

    function good(id) {
        return GOODS.find(item => item.id === id);
    }

    function unitPrice(line) {
        return good(line.id).price + SIZES[line.size] + WRAPPINGS[line.wrapping].price;
    }

    function totals(mine) {
        const subtotal = mine.cart.reduce((sum, line) => sum + unitPrice(line) * line.quantity, 0);
        const voucher = VOUCHERS[mine.voucher];
        const discount = voucher ? Math.min(subtotal, voucher.amount || Math.round(subtotal * voucher.percent / 100)) : 0;
        const delivery = subtotal === 0 || subtotal >= FREE_DELIVERY_FROM ? 0 : DELIVERY;
        return { subtotal, discount, delivery, total: subtotal - discount + delivery };
    }

    function addToCart(choice) {
        const wanted = Object.assign({ id: '', colour: good(choice.id).colours[0], size: 'Small', wrapping: 'none', quantity: 1 }, choice);
        const isSame = line => ['id', 'colour', 'size', 'wrapping'].every(key => line[key] === wanted[key]);
        customer.change(mine => {
            const present = mine.cart.find(isSame);
            if (present) {
                present.quantity += wanted.quantity;
            } else {
                mine.cart.push(wanted);
            }
        });
        log('add ' + wanted.id + ' x' + wanted.quantity);
        showCartCount();
        toast(good(wanted.id).name + ' is in your cart');
    }

    function toggleWish(id) {
        const wished = !customer.read().wishlist.some(entry => entry.id === id);
        customer.change(mine => {
            if (wished) {
                mine.wishlist.push({ id, label: good(id).name });
            } else {
                mine.wishlist = mine.wishlist.filter(entry => entry.id !== id);
            }
        });
        log((wished ? 'wish ' : 'unwish ') + id);
        return wished;
    }

    // ---- Small tools ----

    function money(cents) {
        return (cents < 0 ? '−€' : '€') + (Math.abs(cents) / 100).toFixed(2);
    }

    // Makes an element. Attributes that are functions become listeners, `true` an empty attribute, `false` none;
    // children are nodes or texts.
    function make(tag, attributes, ...children) {
        const element = document.createElement(tag);
        Object.entries(attributes || {}).forEach(([name, value]) => {
            if (typeof value === 'function') {
                element.addEventListener(name, value);
            } else if (value !== false) {
                element.setAttribute(name, value === true ? '' : value);
            }
        });
        element.append(...children);
        return element;
    }

    function byId(id) {
        return document.getElementById(id);
    }

    function productAddress(id) {
        return 'product.html?id=' + id;
    }

    function picture(id, alt) {
        return make('img', { src: 'img/' + id + '.svg', alt, width: 400, height: 300 });
    }

    let toastTimer = 0;

    function toast(text) {
        const box = byId('toast');
        if (!box) {
            return;
        }
        box.textContent = text;
        box.classList.add('shown');
        clearTimeout(toastTimer);
        toastTimer = setTimeout(() => box.classList.remove('shown'), 3000);
    }

    // ---- Header, footer, theme ----

    function fillHeader(header) {
        const page = document.body.dataset.page;
        const link = (name, address, text) => make('a', { href: address, 'aria-current': page === name && 'page' }, text);
        header.className = 'site-header';
        header.append(make('div', { class: 'wide' },
            make('a', { class: 'brand', href: 'index.html' }, make('img', { src: 'img/logo.svg', alt: '', width: 40, height: 40 }), 'Oddlewick'),
            make('nav', { class: 'site-nav', 'aria-label': 'Main' },
                link('catalogue', 'index.html', 'Shop'), link('wishlist', 'wishlist.html', 'Wishlist'), link('help', 'help.html', 'Help')),
            make('button', { id: 'theme', class: 'icon-button', type: 'button', title: 'Light or dark', 'aria-label': 'Dark theme', click: toggleTheme }, '◐'),
            accountMenu(),
            make('a', { id: 'cart-link', class: 'cart-link', href: 'cart.html' }, 'Cart ', make('span', { id: 'cart-count', class: 'badge' }))));
        showTheme();
        showCartCount();
    }

    function fillFooter(footer) {
        footer.className = 'site-footer';
        footer.append(make('div', { class: 'wide' },
            make('span', {}, 'Oddlewick. Slow things for quick days.'),
            make('nav', { 'aria-label': 'Footer' },
                make('a', { href: 'help.html', target: '_blank' }, 'Help in a new tab'),
                make('a', { href: 'help.html#delivery' }, 'Delivery'),
                make('a', { href: '#top' }, 'Back to top'))));
    }

    function accountMenu() {
        const item = (text, action) => make('button', { type: 'button', role: 'menuitem', tabindex: -1, click: () => { close(); action(); } }, text);
        const menu = make('div', { id: 'account-menu', class: 'menu', role: 'menu', 'aria-label': 'Account', hidden: true },
            item('Last order', () => location.assign('done.html')),
            item('My wishlist', () => location.assign('wishlist.html')),
            item('Forget everything', forget));
        const opener = make('button', { id: 'account', class: 'button plain small', type: 'button',
            'aria-haspopup': 'menu', 'aria-expanded': 'false', 'aria-controls': 'account-menu' }, 'Account');
        const anchor = make('div', { class: 'menu-anchor' }, opener, menu);

        function close() {
            menu.hidden = true;
            opener.setAttribute('aria-expanded', 'false');
        }
        function forget() {
            if (confirm('Forget the cart, the wishlist and all orders?')) {
                shopReset();
                location.reload();
            }
        }
        opener.addEventListener('click', () => {
            menu.hidden = !menu.hidden;
            opener.setAttribute('aria-expanded', String(!menu.hidden));
            if (!menu.hidden) {
                menu.firstChild.focus();
            }
        });
        anchor.addEventListener('keydown', event => {
            if (event.key === 'Escape' && !menu.hidden) {
                close();
                opener.focus();
            }
            moveInMenu(menu, event);
        });
        document.addEventListener('mousedown', event => {
            if (!anchor.contains(event.target)) {
                close();
            }
        });
        return anchor;
    }

    function moveInMenu(menu, event) {
        const step = { ArrowDown: 1, ArrowUp: -1 }[event.key];
        if (!step || menu.hidden) {
            return;
        }
        const items = Array.from(menu.querySelectorAll('[role="menuitem"]'));
        const next = (items.indexOf(document.activeElement) + step + items.length) % items.length;
        items[next].focus();
        event.preventDefault();
    }

    function toggleTheme() {
        customer.change(mine => { mine.theme = mine.theme === 'dark' ? 'light' : 'dark'; });
        log('theme ' + customer.read().theme);
        showTheme();
    }

    function showTheme() {
        const theme = customer.read().theme;
        document.documentElement.dataset.theme = theme;
        if (byId('theme')) {
            byId('theme').setAttribute('aria-pressed', String(theme === 'dark'));
        }
    }

    function showCartCount() {
        const badge = byId('cart-count');
        if (!badge) {
            return;
        }
        const count = customer.read().cart.reduce((sum, line) => sum + line.quantity, 0);
        badge.textContent = String(count);
        badge.dataset.count = String(count);
        byId('cart-link').setAttribute('aria-label', 'Cart, ' + count + (count === 1 ? ' item' : ' items'));
    }

    // ---- Custom elements ----

    // Shows how many are left. When none is, a button inside asks for a message.
    class StockBadge extends HTMLElement {
        static get observedAttributes() {
            return ['good'];
        }

        attributeChangedCallback() {
            const root = this.shadowRoot || this.attachShadow({ mode: 'open' });
            const item = good(this.getAttribute('good'));
            const label = item.stock === 0 ? 'Sold out' : item.stock < 5 ? 'Only ' + item.stock + ' left' : 'In stock';
            const kind = item.stock === 0 ? 'none' : item.stock < 5 ? 'few' : 'many';
            root.replaceChildren(make('style', {}, `
                :host { display: flex; flex-wrap: wrap; gap: 8px 12px; align-items: center; min-height: 28px; font-size: .85rem; font-weight: 600; }
                span { display: inline-flex; align-items: center; gap: 7px; color: var(--soft); }
                span::before { content: ""; width: 9px; height: 9px; border-radius: 50%; background: var(--moss); }
                .few::before { background: var(--sun); }
                .none::before { background: var(--alarm); }
                button { border: 1px solid var(--line); border-radius: 999px; background: var(--card); color: var(--ink); font: inherit; padding: 3px 12px; cursor: pointer; }
                button[aria-pressed="true"] { background: var(--good-tint); }`),
            make('span', { class: kind }, label));
            if (item.stock === 0) {
                root.append(this.notifyButton(item.id));
            }
        }

        notifyButton(id) {
            const button = make('button', { type: 'button', click: () => {
                customer.change(mine => {
                    mine.notify = mine.notify.includes(id) ? mine.notify.filter(entry => entry !== id) : mine.notify.concat(id);
                });
                log('notify ' + id);
                show();
            } });
            function show() {
                const asked = customer.read().notify.includes(id);
                button.setAttribute('aria-pressed', String(asked));
                button.textContent = asked ? 'We will write' : 'Notify me';
            }
            show();
            return button;
        }
    }

    // Five star buttons; dispatches "rated" with the number of stars.
    class RatingWidget extends HTMLElement {
        static get observedAttributes() {
            return ['good'];
        }

        attributeChangedCallback() {
            const root = this.shadowRoot || this.attachShadow({ mode: 'open' });
            const id = this.getAttribute('good');
            const stars = [1, 2, 3, 4, 5].map(count => make('button', { type: 'button', part: 'star', 'data-stars': count,
                'aria-label': count + (count === 1 ? ' star' : ' stars'), click: () => this.rate(id, count) }, '★'));
            root.replaceChildren(make('style', {}, `
                :host { display: inline-flex; align-items: center; gap: 10px; font-size: .9rem; color: var(--soft); }
                div { display: inline-flex; }
                button { border: 0; background: none; padding: 0 2px; font-size: 1.45rem; line-height: 1; cursor: pointer; color: var(--line); }
                button.on { color: var(--sun); }
                button:hover { transform: scale(1.15); }
                button:focus-visible { outline: 3px solid var(--sun); border-radius: 6px; }`),
            make('div', { role: 'group', 'aria-label': 'Your rating' }, ...stars),
            make('output', {}, ''));
            this.show(id);
        }

        rate(id, count) {
            customer.change(mine => { mine.ratings[id] = count; });
            log('rate ' + id + ' ' + count);
            this.show(id);
            this.dispatchEvent(new CustomEvent('rated', { bubbles: true, detail: count }));
        }

        show(id) {
            const rating = customer.read().ratings[id] || 0;
            this.shadowRoot.querySelectorAll('button').forEach(star => {
                const isOn = Number(star.dataset.stars) <= rating;
                star.classList.toggle('on', isOn);
                star.setAttribute('aria-pressed', String(isOn));
            });
            this.shadowRoot.querySelector('output').textContent = rating ? 'You gave ' + rating + ' of 5' : 'Not rated yet';
        }
    }

    // ---- Start ----

    window.shopState = shopState;
    window.shopReset = shopReset;
    window.Shop = { GOODS, SIZES, WRAPPINGS, VOUCHERS, customer, visit, log, good, unitPrice, totals, addToCart, toggleWish,
        money, make, byId, productAddress, picture, toast, showCartCount, moveInMenu };

    customElements.define('stock-badge', StockBadge);
    customElements.define('rating-widget', RatingWidget);
    showTheme();
    if (byId('site-header')) {
        fillHeader(byId('site-header'));
        fillFooter(byId('site-footer'));
        document.body.append(make('div', { id: 'toast', class: 'toast', role: 'status' }));
    }
    window.addEventListener('storage', () => {
        showTheme();
        showCartCount();
    });
    window.addEventListener('pagehide', () => {
        if (window === window.top && !window.opener) {
            visit.change(tab => { tab.leftFrom = location.pathname.split('/').pop() || 'index.html'; });
        }
    });
}());
