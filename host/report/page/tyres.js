// Tyres, lap by lap.

import { byId, el } from './dom.js';
import { averageQuantity, formatNumber, formatQuantity, shownUnitOf } from './units.js';
import { view } from './view.js';

/** @import { Corner, Lap, Quantity, Tyre } from './types.js' */

/** @type {[Corner, string][]} */
const corners = [['lf', 'Left front'], ['rf', 'Right front'], ['lr', 'Left rear'], ['rr', 'Right rear']];

/** @param {(Quantity | null)[]} quantities */
function isAnyKnown(quantities) {
    return quantities.some((quantity) => quantity !== null);
}

/** @param {Lap} lap */
function hasTyres(lap) {
    return Object.values(lap.tyres).some(({ surface, carcass, tread, pressure }) =>
        isAnyKnown([...surface, ...carcass, ...tread, ...pressure]));
}

/**
 * @param {string} title
 * @param {(Quantity | null)[]} quantities
 * @param {number} decimals
 */
function tyreRow(title, quantities, decimals) {
    if (!isAnyKnown(quantities))
        return null;
    return el('tr', {},
        el('th', { scope: 'row' }, title,
            el('span', { class: 'unit' }, shownUnitOf(quantities, view.units))),
        quantities.map((quantity) => el('td', { class: 'number' },
            formatNumber(quantity, view.units, decimals))));
}

/**
 * One tyre of a lap.
 * @param {Tyre} tyre
 * @param {string} name
 */
function tyreCard(tyre, name) {
    const [start, end] = tyre.pressure;
    return el('table', { class: 'tyre' },
        el('caption', {}, name, end
            ? el('span', { class: 'pressure', title: 'Pressure at the start and at the end of the lap' },
                `${formatNumber(start, view.units, 0)} → ${formatQuantity(end, view.units, 0)}`) : null),
        el('thead', {}, el('tr', {}, el('td'),
            ['left', 'middle', 'right'].map((side) => el('th', { scope: 'col' }, side)))),
        el('tbody', {},
            tyreRow('Surface', tyre.surface, 1),
            tyreRow('Carcass', tyre.carcass, 1),
            tyreRow('Tread', tyre.tread, 2)));
}

/**
 * The groups of columns of the table, one column for each tyre; those that nothing is known of are
 * left out.
 * @param {Lap[]} laps
 */
function tyreColumns(laps) {
    /** @type {{ title: string, pick: (tyre: Tyre) => Quantity | null, decimals: number }[]} */
    const groups = [
        { title: 'Average temperature', decimals: 1,
            pick: (tyre) => averageQuantity(tyre.surface) ?? averageQuantity(tyre.carcass) },
        { title: 'Pressure at the end', decimals: 1, pick: (tyre) => tyre.pressure[1] },
        { title: 'Tread at the end', decimals: 2, pick: (tyre) => averageQuantity(tyre.tread) },
    ];
    return groups.map((group) => ({
        ...group,
        unit: shownUnitOf(laps.flatMap((lap) => corners.map(
            ([corner]) => group.pick(lap.tyres[corner]))), view.units),
    })).filter(({ unit }) => unit !== '');
}

/** @param {Lap[]} laps */
function tyreTable(laps) {
    const groups = tyreColumns(laps);
    const groupHeads = groups.map(({ title, unit }) => el('th',
        { colspan: 4, scope: 'colgroup', class: 'group' }, title, el('span', { class: 'unit' }, unit)));
    const heads = groups.flatMap(() => corners.map(([corner, name]) => el('th',
        { scope: 'col', class: 'number', title: name }, corner.toUpperCase())));
    const rows = laps.map((lap) => el('tr', {},
        el('th', { scope: 'row' }, lap.label),
        groups.flatMap(({ pick, decimals }) => corners.map(([corner]) => el('td',
            { class: 'number' }, formatNumber(pick(lap.tyres[corner]), view.units, decimals))))));
    return el('div', { 'class': 'scroll', 'tabindex': 0, 'role': 'region', 'aria-label': 'Tyres by lap' },
        el('table', {},
            el('caption', { class: 'hidden' }, 'Tyres by lap'),
            el('thead', {},
                el('tr', {}, el('td'), groupHeads),
                el('tr', {}, el('th', { scope: 'col' }, 'Lap'), heads)),
            el('tbody', {}, rows)));
}

export function showTyres() {
    const laps = view.model.laps.filter(hasTyres);
    const container = byId('tyres');
    if (laps.length === 0) {
        container.replaceChildren(el('p', { class: 'muted' }, 'No tyre data was recorded.'));
        return;
    }
    const lap = laps.find((one) => one === view.reference) ?? laps[0];
    container.replaceChildren(
        el('p', { class: 'muted' }, `Lap ${lap.label}. Temperatures are averages over the lap; left, `
            + 'middle and right are as seen by the driver. Tread is what remains at the end of the lap.'),
        el('div', { class: 'tyres' }, corners.map(([corner, name]) => tyreCard(lap.tyres[corner], name))),
        tyreTable(laps));
}
