// The catalogue: search, filter, sorting, the cards, the picks with changing ids and the recommendations that come late.

(function () {
    'use strict';

    const { GOODS, addToCart, byId, customer, log, make, money, picture, productAddress, toggleWish } = Shop;
    const CATEGORIES = ['All', 'Kitchen', 'Living', 'Desk', 'Garden'];
    const PICKS = ['linnet-notebook', 'morrow-candle', 'tarn-bowl'];
    const RECOMMENDED = ['vassel-teapot', 'tamsel-blanket', 'dabble-pencils'];
    const RECOMMENDATION_DELAY = 600;
    const ORDERS = {
        'ours': () => 0,
        'name': (a, b) => a.name.localeCompare(b.name),
        'price-up': (a, b) => a.price - b.price,
        'price-down': (a, b) => b.price - a.price
    };
    let category = 'All';
    let wanted = '';

    function show() {
        const fits = item => (category === 'All' || item.category === category)
            && (item.name + ' ' + item.text + ' ' + item.material).toLowerCase().includes(wanted.toLowerCase())
            && (!byId('in-stock').checked || item.stock > 0);
        const found = GOODS.filter(fits).sort(ORDERS[byId('sort').value]);
        byId('goods').replaceChildren(...found.map(item => make('li', {}, card(item))));
        byId('goods-title').textContent = title(found.length);
        byId('nothing').hidden = found.length > 0;
        byId('categories').querySelectorAll('button').forEach(chip => {
            chip.setAttribute('aria-pressed', String(chip.textContent === category));
        });
    }

    function title(count) {
        if (category === 'All' && !wanted && !byId('in-stock').checked) {
            return 'All goods';
        }
        return count + (count === 1 ? ' thing' : ' things') + (wanted ? ' for “' + wanted + '”' : '') + (category === 'All' ? '' : ' in ' + category);
    }

    // The card, the picture link and the heart have stable ids; the "Add to cart" button is known by its text and place only.
    function card(item) {
        const address = productAddress(item.id);
        return make('article', { class: 'card', id: 'card-' + item.id },
            make('a', { href: address, tabindex: -1, id: 'picture-' + item.id }, picture(item.id, item.name)),
            heart(item),
            make('div', { class: 'card-text' },
                make('h3', {}, make('a', { href: address }, item.name)),
                make('p', { class: 'soft small', style: 'margin: 0' }, item.text),
                make('stock-badge', { good: item.id }),
                make('div', { class: 'card-foot' },
                    make('span', { class: 'price' }, money(item.price)),
                    make('button', { type: 'button', class: 'button small', disabled: item.stock === 0, click: () => addToCart({ id: item.id }) }, 'Add to cart'))));
    }

    function heart(item) {
        const wished = customer.read().wishlist.some(entry => entry.id === item.id);
        const button = make('button', { type: 'button', class: 'icon-button', id: 'wish-' + item.id, 'aria-pressed': String(wished), 'aria-label': 'Save ' + item.name,
            click: () => button.setAttribute('aria-pressed', String(toggleWish(item.id))) });
        button.innerHTML = '<svg viewBox="0 0 24 24" aria-hidden="true"><path d="M12 20C5 15 3 12 3 8.5a4.5 4.5 0 0 1 9-1 4.5 4.5 0 0 1 9 1C21 12 19 15 12 20z"/></svg>';
        return button;
    }

    // Ids that differ at each load, as generated pages have them.
    function showPicks() {
        const suffix = Math.random().toString(36).slice(2, 7);
        byId('picks').append(make('ul', { class: 'lines', id: 'picks-' + suffix },
            ...PICKS.map((id, index) => line(id, { id: 'pick-' + (index + 1) + '-' + suffix }))));
    }

    function showRecommendations() {
        byId('more-list').replaceChildren(...RECOMMENDED.map(id => line(id, {})));
        byId('more').setAttribute('aria-busy', 'false');
    }

    function line(id, attributes) {
        const item = Shop.good(id);
        return make('li', attributes,
            make('a', { href: productAddress(id) }, picture(id, item.name)),
            make('a', { href: productAddress(id), class: 'grow' }, item.name),
            make('span', { class: 'price' }, money(item.price)),
            make('button', { type: 'button', class: 'button plain small', click: () => addToCart({ id }) }, 'Add'));
    }

    // Called by the form itself; the form never leaves the page.
    window.searchGoods = function () {
        wanted = byId('search').value.trim();
        log('search ' + wanted);
        show();
        return false;
    };

    byId('categories').append(...CATEGORIES.map(name => make('button', { type: 'button', class: 'chip', 'aria-pressed': 'false' }, name)));
    byId('categories').addEventListener('click', event => {
        const chip = event.target.closest('button');
        if (chip) {
            category = chip.textContent;
            log('category ' + category);
            show();
        }
    });
    byId('sort').addEventListener('change', () => { log('sort ' + byId('sort').value); show(); });
    byId('in-stock').addEventListener('change', show);
    byId('search').addEventListener('search', () => byId('search').value === '' && window.searchGoods());
    byId('show-all').onclick = () => {
        category = 'All';
        byId('search').value = '';
        byId('in-stock').checked = false;
        window.searchGoods();
    };
    // "/" goes to the search field, Escape empties it.
    document.addEventListener('keydown', event => {
        if (event.key === '/' && !/^(INPUT|SELECT|TEXTAREA)$/.test(event.target.tagName)) {
            event.preventDefault();
            byId('search').focus();
        }
    });

    show();
    showPicks();
    setTimeout(showRecommendations, RECOMMENDATION_DELAY);
}());
