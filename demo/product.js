// The page of one product. The size guide opens in a window of its own and reports the chosen size back.

(function () {
    'use strict';

    const { GOODS, SIZES, WRAPPINGS, addToCart, byId, log, make, money, picture, productAddress, toast, unitPrice, visit } = Shop;
    const item = Shop.good(new URLSearchParams(location.search).get('id')) || GOODS[0];
    const form = byId('choice');
    let guide = null;

    function fill() {
        document.title = item.name + ' – Oddlewick';
        byId('crumb-category').textContent = item.category;
        byId('crumb-name').textContent = item.name;
        byId('name').textContent = item.name;
        byId('text').textContent = item.text;
        byId('material').textContent = item.material + '.';
        byId('portrait').src = 'img/' + item.id + '.svg';
        byId('portrait').alt = item.name;
        byId('colour').append(...item.colours.map(name => make('option', { value: name }, name)));
        byId('size').append(...Object.keys(SIZES).map(name => make('option', { value: name }, name + surcharge(SIZES[name]))));
        byId('wrappings').append(...Object.keys(WRAPPINGS).map(wrappingChoice));
        byId('thumbs').append(...GOODS.filter(other => other.category === item.category).map(thumb));
        byId('add').disabled = item.stock === 0;
        byId('stock').setAttribute('good', item.id);
        byId('rating').setAttribute('good', item.id);
        showPrice();
    }

    function surcharge(cents) {
        return cents ? ' (+' + money(cents) + ')' : '';
    }

    function wrappingChoice(key) {
        return make('label', { class: 'choice' },
            make('input', { type: 'radio', name: 'wrapping', value: key, checked: key === 'none' }),
            WRAPPINGS[key].name + surcharge(WRAPPINGS[key].price));
    }

    function thumb(other) {
        return make('li', {}, make('a', { href: productAddress(other.id), 'aria-current': other.id === item.id && 'true' }, picture(other.id, other.name)));
    }

    function choice() {
        return { id: item.id, colour: form.elements.colour.value, size: form.elements.size.value,
            wrapping: form.elements.wrapping.value, quantity: Number(form.elements.quantity.value) };
    }

    function showPrice() {
        byId('together').textContent = money(unitPrice(choice()) * choice().quantity);
    }

    function selectTab(tab) {
        document.querySelectorAll('[role="tab"]').forEach(other => {
            const isSelected = other === tab;
            other.setAttribute('aria-selected', String(isSelected));
            other.tabIndex = isSelected ? 0 : -1;
            byId(other.getAttribute('aria-controls')).hidden = !isSelected;
        });
        log('tab ' + tab.textContent);
    }

    // The size guide calls this before it closes; an empty size means that nothing was chosen.
    window.sizeChosen = function (size) {
        visit.change(tab => { tab.size = size; });
        log('size guide ' + (size || 'closed'));
        if (size) {
            byId('size').value = size;
            showPrice();
            toast('Size ' + size + ' chosen');
        }
    };

    byId('size-guide').onclick = () => {
        if (guide && !guide.closed) {
            guide.focus();
        } else {
            guide = window.open('popup.html?id=' + item.id, 'size-guide', 'width=520,height=600');
        }
        return false;
    };
    form.addEventListener('input', showPrice);
    form.addEventListener('submit', event => {
        event.preventDefault();
        addToCart(choice());
    });
    form.querySelector('button[type="button"]').addEventListener('click', () => {
        if (Shop.toggleWish(item.id)) {
            toast(item.name + ' is on your wishlist');
        } else {
            toast(item.name + ' is off your wishlist');
        }
    });
    document.querySelector('[role="tablist"]').addEventListener('click', event => {
        if (event.target.matches('[role="tab"]')) {
            selectTab(event.target);
        }
    });
    document.querySelector('[role="tablist"]').addEventListener('keydown', event => {
        const tabs = Array.from(document.querySelectorAll('[role="tab"]'));
        const step = { ArrowRight: 1, ArrowLeft: -1 }[event.key];
        if (step) {
            const next = tabs[(tabs.indexOf(event.target) + step + tabs.length) % tabs.length];
            next.focus();
            selectTab(next);
        }
    });
    byId('care-toggle').addEventListener('click', () => {
        byId('care').hidden = !byId('care').hidden;
        byId('care-toggle').setAttribute('aria-expanded', String(!byId('care').hidden));
        log('care ' + (byId('care').hidden ? 'closed' : 'opened'));
    });

    fill();
}());
