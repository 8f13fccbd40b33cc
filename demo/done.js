// The confirmation: shows the order that the checkout left in this tab.

(function () {
    'use strict';

    const { byId, make, money, visit } = Shop;
    const order = visit.read().order;

    // "fullName" is shown as "Full name".
    function title(name) {
        const words = name.replace(/[A-Z]/g, letter => ' ' + letter.toLowerCase());
        return words.charAt(0).toUpperCase() + words.slice(1);
    }

    function row([name, value]) {
        const text = Array.isArray(value) ? value.join(', ') : value;
        return make('tr', {},
            make('th', { scope: 'row' }, title(name)),
            make('td', { id: 'value-' + name }, text || make('span', { class: 'soft' }, 'nothing')));
    }

    if (order) {
        const pieces = order.cart.reduce((sum, line) => sum + line.quantity, 0);
        byId('seal').hidden = false;
        byId('details').hidden = false;
        byId('headline').textContent = 'Thank you, ' + order.values.fullName;
        byId('lead').textContent = 'Order ' + order.number + (order.way === 'express' ? ' goes out today' : ' is on its way') + ': '
            + pieces + (pieces === 1 ? ' thing' : ' things') + ' for ' + money(order.total) + '.';
        byId('values').tBodies[0].append(...Object.entries(order.values).map(row));
    }
}());
