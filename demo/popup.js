// The size guide: reports the choice to the window that opened it and closes itself.

(function () {
    'use strict';

    const { SIZES, byId, make, money } = Shop;
    const GOOD_FOR = { Small: 'One person', Medium: 'Two people', Large: 'A table of friends' };
    const item = Shop.good(new URLSearchParams(location.search).get('id'));

    window.report = function (size) {
        if (window.opener && !window.opener.closed && window.opener.sizeChosen) {
            window.opener.sizeChosen(size);
        }
        window.close();
    };

    byId('for').textContent = item ? 'For ' + item.name + '.' : 'For all goods.';
    byId('sizes').append(...Object.keys(SIZES).map(size => make('tr', {},
        make('th', { scope: 'row' }, size),
        make('td', {}, GOOD_FOR[size]),
        make('td', { class: 'number' }, money(SIZES[size])),
        make('td', { class: 'number' }, make('button', { type: 'button', class: 'button small', 'aria-label': 'Use ' + size, click: () => window.report(size) }, 'Use')))));
}());
