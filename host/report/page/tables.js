'use strict';

// Tyres and fuel, lap by lap.

const tyreNames = { lf: 'Left front', rf: 'Right front', lr: 'Left rear', rr: 'Right rear' };

/** The unit of the first of `quantities` that is there, as it is shown; "" without any. */
function shownUnitOf(quantities) {
    const known = quantities.find((quantity) => quantity !== null);
    return known ? shownUnit(known.unit).unit : '';
}

function shownNumber(quantity, decimals) {
    return quantity ? fixed(quantity.value * shownUnit(quantity.unit).factor, decimals) : '–';
}

function isKnown(quantities) {
    return quantities.some((quantity) => quantity !== null);
}

function tyreRow(title, quantities, decimals) {
    if (!isKnown(quantities))
        return null;
    const unit = shownUnitOf(quantities);
    return el('tr', {}, el('th', { scope: 'row' }, title, el('span', { class: 'unit' }, unit)),
        quantities.map((quantity) => el('td', { class: 'number' }, shownNumber(quantity, decimals))));
}

/** One tyre of the lap: left, middle and right as seen from the seat. */
function tyreCard(tyre, corner) {
    const [start, end] = tyre.pressure;
    return el('table', { class: `tyre ${corner}` },
        el('caption', {}, tyreNames[corner], end
            ? el('span', { class: 'pressure', title: 'Pressure at the start and at the end' },
                `${shownNumber(start, 0)} → ${formatQuantity(end, 0)}`) : null),
        el('thead', {}, el('tr', {}, el('td', {}),
            ['left', 'middle', 'right'].map((side) => el('th', { scope: 'col' }, side)))),
        el('tbody', {},
            tyreRow('Surface', tyre.surface, 1),
            tyreRow('Carcass', tyre.carcass, 1),
            tyreRow('Tread', tyre.tread, 2)));
}

function hasTyres(lap) {
    return Object.values(lap.tyres).some(
        ({ surface, carcass, tread, pressure }) => isKnown([...surface, ...carcass, ...tread, ...pressure]));
}

/** The mean of three places of a tyre; null if one is missing. */
function meanQuantity(quantities) {
    if (quantities.includes(null))
        return null;
    const sum = quantities.reduce((total, quantity) => total + quantity.value, 0);
    return { value: sum / quantities.length, unit: quantities[0].unit };
}

function tyreTable(laps) {
    const corners = Object.keys(tyreNames);
    const groups = [
        ['Surface, mean', (tyre) => meanQuantity(tyre.surface) ?? meanQuantity(tyre.carcass), 1],
        ['Pressure, end', (tyre) => tyre.pressure[1], 1],
        ['Tread left, end', (tyre) => meanQuantity(tyre.tread), 2],
    ].map(([title, pick, decimals]) => ({
        title, pick, decimals,
        unit: shownUnitOf(laps.flatMap((lap) => corners.map((corner) => pick(lap.tyres[corner])))),
    })).filter(({ unit }) => unit !== '');
    return el('div', { class: 'scroll', tabindex: 0, role: 'region', 'aria-label': 'Tyres lap by lap' },
        el('table', {},
            el('caption', { class: 'hidden' }, 'Tyres lap by lap'),
            el('thead', {},
                el('tr', {}, el('td', {}), groups.map(({ title, unit }) => el('th',
                    { colspan: 4, scope: 'colgroup', class: 'group' }, title,
                    el('span', { class: 'unit' }, unit)))),
                el('tr', {}, el('th', { scope: 'col' }, 'Lap'), groups.flatMap(() => corners.map(
                    (corner) => el('th', { scope: 'col', class: 'number', title: tyreNames[corner] },
                        corner.toUpperCase()))))),
            el('tbody', {}, laps.map((lap) => el('tr', {},
                el('th', { scope: 'row' }, lap.label),
                groups.flatMap(({ pick, decimals }) => corners.map((corner) => el('td',
                    { class: 'number' }, shownNumber(pick(lap.tyres[corner]), decimals)))))))));
}

function showTyres() {
    const laps = view.model.laps.filter(hasTyres);
    const container = byId('tyres');
    if (laps.length === 0) {
        container.replaceChildren(el('p', { class: 'muted' }, 'Tyres were not recorded.'));
        return;
    }
    const lap = laps.includes(view.reference) ? view.reference : laps[0];
    container.replaceChildren(
        el('p', { class: 'muted' }, `Lap ${lap.label}: temperatures are means over the lap, each left, `
            + 'middle and right as seen from the seat; tread is what is left at the end.'),
        el('div', { class: 'tyres' },
            Object.keys(tyreNames).map((corner) => tyreCard(lap.tyres[corner], corner))),
        tyreTable(laps));
}

/** What a timed lap takes on average, and how many more the tank of the last one allows. */
function fuelSummary(laps) {
    const timed = laps.filter((lap) => lap.time !== null && lap.fuelUsed && lap.fuelUsed.value > 0);
    const last = laps.filter((lap) => lap.fuel.end).pop();
    if (timed.length === 0 || !last)
        return null;
    const mean = timed.reduce((sum, lap) => sum + lap.fuelUsed.value, 0) / timed.length;
    const { value, unit } = last.fuel.end;
    return `A timed lap takes ${formatQuantity({ value: mean, unit }, 3)} on average; the `
        + `${formatQuantity({ value, unit }, 2)} left after ${last.label} `
        + `last for ${Math.floor(value / mean)} more.`;
}

function fuelTable(laps) {
    const unit = shownUnitOf(laps.map((lap) => lap.fuel.end));
    const column = (title) => el('th', { scope: 'col', class: 'number' }, title,
        el('span', { class: 'unit' }, unit));
    return el('div', { class: 'scroll', tabindex: 0, role: 'region', 'aria-label': 'Fuel lap by lap' },
        el('table', {},
            el('caption', { class: 'hidden' }, 'Fuel lap by lap'),
            el('thead', {}, el('tr', {}, el('th', { scope: 'col' }, 'Lap'),
                column('At the start'), column('At the end'), column('Used'))),
            el('tbody', {}, laps.map((lap) => el('tr', {},
                el('th', { scope: 'row' }, lap.label),
                [lap.fuel.start, lap.fuel.end, lap.fuelUsed].map(
                    (quantity) => el('td', { class: 'number' }, shownNumber(quantity, 3))))))));
}

function showFuel() {
    const laps = view.model.laps.filter((lap) => lap.fuel.end);
    const summaries = view.model.sessions.map((session, index) => {
        const text = fuelSummary(laps.filter((lap) => lap.session === index));
        return text ? el('p', {}, view.model.sessions.length > 1 ? `${session.file}: ${text}` : text)
            : null;
    });
    byId('fuel').replaceChildren(...(laps.length === 0
        ? [el('p', { class: 'muted' }, 'Fuel was not recorded.')]
        : [...summaries.filter(Boolean), fuelTable(laps)]));
}
