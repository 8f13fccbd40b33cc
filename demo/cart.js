// The cart: quantities, removal, and the three dialogs confirm, prompt and alert.

(function () {
    'use strict';

    const { VOUCHERS, WRAPPINGS, byId, customer, log, make, money, picture, productAddress, showCartCount, totals, unitPrice } = Shop;

    function show() {
        const mine = customer.read();
        byId('empty').hidden = mine.cart.length > 0;
        byId('filled').hidden = mine.cart.length === 0;
        byId('cart').tBodies[0].replaceChildren(...mine.cart.map(row));
        showTotals();
    }

    function row(line, index) {
        const item = Shop.good(line.id);
        const details = [line.colour, line.size].concat(line.wrapping === 'none' ? [] : WRAPPINGS[line.wrapping].name + ' wrapping');
        return make('tr', { id: 'row-' + (index + 1) },
            make('td', {}, make('div', { class: 'cart-good' },
                make('a', { href: productAddress(item.id) }, picture(item.id, item.name)),
                make('div', {}, make('a', { href: productAddress(item.id) }, item.name), make('div', { class: 'soft small' }, details.join(', '))))),
            make('td', { class: 'number' }, money(unitPrice(line))),
            make('td', {}, make('input', { type: 'number', min: 1, max: 99, value: line.quantity, 'aria-label': 'Quantity of ' + item.name,
                change: event => setQuantity(index, event.target) })),
            make('td', { class: 'number', id: 'sum-' + (index + 1) }, money(unitPrice(line) * line.quantity)),
            make('td', { class: 'number' }, make('button', { type: 'button', class: 'link-button', 'aria-label': 'Remove ' + item.name, click: () => remove(index) }, 'Remove')));
    }

    function showTotals() {
        const mine = customer.read();
        const sums = totals(mine);
        const missing = Number(byId('free-progress').max) - sums.subtotal;
        byId('voucher-name').textContent = mine.voucher ? 'Voucher ' + mine.voucher : 'Voucher';
        byId('subtotal').textContent = money(sums.subtotal);
        byId('discount').textContent = money(-sums.discount).replace('−€0.00', '€0.00');
        byId('delivery').textContent = sums.delivery ? money(sums.delivery) : 'free';
        byId('total').textContent = money(sums.total);
        byId('free-progress').value = sums.subtotal;
        byId('free-hint').textContent = missing > 0 ? money(missing) + ' to free delivery' : 'Delivery is free.';
        showCartCount();
    }

    // Only the sums change: a new row would take the focus away from the field.
    function setQuantity(index, input) {
        const quantity = Math.min(99, Math.max(1, Math.round(Number(input.value)) || 1));
        input.value = quantity;
        customer.change(mine => { mine.cart[index].quantity = quantity; });
        const line = customer.read().cart[index];
        log('quantity ' + line.id + ' ' + quantity);
        byId('sum-' + (index + 1)).textContent = money(unitPrice(line) * quantity);
        showTotals();
    }

    function remove(index) {
        log('remove ' + customer.read().cart[index].id);
        customer.change(mine => { mine.cart.splice(index, 1); });
        show();
    }

    byId('empty-cart').onclick = () => {
        if (!confirm('Remove everything from your cart?')) {
            log('empty cart refused');
            return;
        }
        customer.change(mine => { mine.cart = []; mine.voucher = ''; });
        log('empty cart');
        show();
    };
    byId('enter-voucher').addEventListener('click', () => {
        const answer = prompt('Voucher code', '');
        if (answer === null) {
            log('voucher cancelled');
            return;
        }
        const code = answer.trim().toUpperCase();
        if (!Object.prototype.hasOwnProperty.call(VOUCHERS, code)) {
            log('voucher unknown ' + answer);
            alert('The voucher "' + answer + '" is not known.');
            return;
        }
        customer.change(mine => { mine.voucher = code; });
        log('voucher ' + code);
        showTotals();
    });

    show();
}());
