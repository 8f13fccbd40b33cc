// The checkout: checks the form, keeps the entered values for the confirmation page and goes there.

(function () {
    'use strict';

    const { byId, customer, log, make, money, totals, toast, unitPrice, visit } = Shop;
    const form = byId('checkout');
    const EXAMPLE = {
        fullName: 'Ilse Marrow', email: 'ilse@example.org', phone: '+00 555 0123', password: 'lantern-42', homepage: 'https://example.org/ilse',
        birthMonth: '1988-04', street: '7 Harbour Lane', country: 'osk', station: 'Old Mill', method: 'bicycle', day: '2031-03-14', hour: '10:30',
        week: '2031-W11', call: '2031-03-13T18:00', note: 'The blue door, please.', boxes: '2', ribbon: '#2f6b57', ribbonLength: '80'
    };
    const BUTTONS = ['submit', 'reset', 'button', 'image', 'fieldset', 'output'];

    function showOrder() {
        const mine = customer.read();
        byId('order-lines').replaceChildren(...mine.cart.map(line => make('li', {},
            make('span', { class: 'grow' }, line.quantity + ' × ' + Shop.good(line.id).name),
            make('span', {}, money(unitPrice(line) * line.quantity)))));
        byId('order-total').textContent = money(totals(mine).total);
    }

    // ---- Checking ----

    function labelOf(field) {
        return (field.labels && field.labels[0] ? field.labels[0].textContent : field.name).trim();
    }

    function problemOf(field) {
        const state = field.validity;
        if (state.valid) {
            return '';
        }
        if (state.valueMissing) {
            return field.type === 'checkbox' ? 'Please tick this box.' : 'Please fill in this field.';
        }
        if (state.tooShort || field.minLength > field.value.length) {
            return 'Please enter at least ' + field.minLength + ' characters.';
        }
        if (state.typeMismatch) {
            return field.type === 'email' ? 'This is not an email address.' : 'This is not a web address.';
        }
        if (state.patternMismatch) {
            return 'Please enter ' + field.dataset.hint + '.';
        }
        if (state.rangeUnderflow || state.rangeOverflow) {
            return 'Please choose a value from ' + (field.min || 'the beginning') + ' to ' + (field.max || 'any later one') + '.';
        }
        return 'This value does not fit.';
    }

    // Marks each field and lists the problems at the top; tells whether there was none.
    function check() {
        const problems = Array.from(form.elements)
            .filter(field => field.willValidate && !BUTTONS.includes(field.type))
            .map(field => ({ field, text: problemOf(field) }));
        problems.forEach(problem => mark(problem.field, problem.text));
        const wrong = problems.filter(problem => problem.text);
        byId('problems').hidden = wrong.length === 0;
        byId('problems').replaceChildren(
            make('strong', {}, wrong.length === 1 ? 'One entry needs a look:' : wrong.length + ' entries need a look:'),
            make('ul', {}, ...wrong.map(problem => make('li', {},
                make('a', { href: '#' + problem.field.id, click: () => problem.field.focus() }, labelOf(problem.field)), ': ' + problem.text))));
        log('check ' + wrong.length);
        return wrong.length === 0;
    }

    function mark(field, text) {
        const id = field.id + '-error';
        if (byId(id)) {
            byId(id).remove();
        }
        field.removeAttribute('aria-describedby');
        field.removeAttribute('aria-invalid');
        if (!text) {
            return;
        }
        field.setAttribute('aria-invalid', 'true');
        field.setAttribute('aria-describedby', id);
        const anchor = field.closest('.choice') || field;
        anchor.after(make('p', { id, class: 'error' }, text));
    }

    function clearMarks() {
        Array.from(form.elements).filter(field => field.id && field.hasAttribute('aria-invalid')).forEach(field => mark(field, ''));
        byId('problems').hidden = true;
    }

    // ---- Values ----

    // Every entry by its name, as a text or, for a multiple choice, a list. A password is kept as dots, a file as its name.
    function values() {
        const result = {};
        Array.from(form.elements).forEach(field => {
            if (!field.name || field.matches(':disabled') || ['submit', 'image', 'reset', 'button'].includes(field.type)) {
                return;
            }
            if (field.type === 'radio') {
                result[field.name] = form.elements[field.name].value;
            } else if (field.type === 'checkbox') {
                result[field.name] = field.checked ? 'yes' : 'no';
            } else if (field.type === 'select-multiple') {
                result[field.name] = Array.from(field.selectedOptions, option => option.value);
            } else if (field.type === 'file') {
                result[field.name] = Array.from(field.files, file => file.name).join(', ');
            } else if (field.type === 'password') {
                result[field.name] = '•'.repeat(field.value.length);
            } else {
                result[field.name] = field.value;
            }
        });
        result.greeting = byId('greeting').innerText.trim();
        return result;
    }

    function order(way) {
        const mine = customer.read();
        const number = 'OD-' + (1001 + mine.orders);
        const placed = { number, way, values: values(), cart: mine.cart, total: totals(mine).total };
        visit.change(tab => { tab.order = placed; });
        customer.change(record => {
            record.orders += 1;
            record.cart = [];
            record.voucher = '';
        });
        log('order ' + number + ' ' + way);
        location.assign(form.action);
    }

    function showProgress() {
        const required = Array.from(form.querySelectorAll('[required]'));
        byId('complete').value = required.filter(field => field.checkValidity()).length;
        byId('length-value').textContent = byId('length').value;
        byId('note-count').textContent = String(byId('note').value.length);
        byId('loyalty').disabled = !byId('has-loyalty').checked;
    }

    form.addEventListener('submit', event => {
        event.preventDefault();
        if (check()) {
            order(event.submitter && event.submitter.id === 'express' ? 'express' : 'standard');
        } else {
            byId('problems').focus();
        }
    });
    // The fields have their old values only after this event.
    form.addEventListener('reset', () => setTimeout(() => {
        byId('greeting').textContent = 'With love';
        clearMarks();
        showProgress();
        log('form reset');
    }, 0));
    form.addEventListener('input', showProgress);
    form.addEventListener('change', event => {
        if (event.target.hasAttribute('aria-invalid')) {
            mark(event.target, problemOf(event.target));
        }
    });
    byId('check').onclick = () => check() && toast('All entries are fine');
    byId('sample').onclick = () => {
        Object.entries(EXAMPLE).forEach(([name, value]) => { form.elements[name].value = value; });
        Array.from(byId('extras').options).forEach(option => { option.selected = ['tea', 'poem'].includes(option.value); });
        byId('terms').checked = true;
        clearMarks();
        showProgress();
        log('form example');
    };

    showOrder();
    showProgress();
}());
