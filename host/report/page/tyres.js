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
 * True if nobody measured carcass and tread on the lap itself.
 * @param {Lap} lap
 */
function isSeenAtStops(lap) {
    return view.model.sessions[lap.session].tyresSeenAtStops;
}

/**
 * One tyre of a lap.
 * @param {Lap} lap
 * @param {Corner} corner
 * @param {string} name
 */
function tyreCard(lap, corner, name) {
    const tyre = lap.tyres[corner];
    const carcass = isSeenAtStops(lap) ? 'Carcass, last stop' : 'Carcass, mean';
    const tread = isSeenAtStops(lap) ? 'Tread, last stop' : 'Tread at the end';
    const [start, end] = tyre.pressure;
    return el('table', { class: 'tyre' },
        el('caption', {}, name, end
            ? el('span', { class: 'pressure', title: 'Pressure at the start and at the end of the lap' },
                `${formatNumber(start, view.units, 0)} → ${formatQuantity(end, view.units, 0)}`) : null),
        el('thead', {}, el('tr', {}, el('td'),
            ['left', 'middle', 'right'].map((side) => el('th', { scope: 'col' }, side)))),
        el('tbody', {},
            tyreRow('Surface, mean', tyre.surface, 1),
            tyreRow(carcass, tyre.carcass, 1),
            tyreRow(tread, tyre.tread, 2)));
}

/**
 * What the table shows of a tyre, in groups of columns. What was measured on a lap and what was seen
 * at a stop are different things, so no column has both.
 * @type {{ title: string, pick: (lap: Lap, tyre: Tyre) => Quantity | null, decimals: number }[]}
 */
const groups = [
    { title: 'Surface, mean', decimals: 1, pick: (_lap, tyre) => averageQuantity(tyre.surface) },
    { title: 'Carcass, mean', decimals: 1,
        pick: (lap, tyre) => (isSeenAtStops(lap) ? null : averageQuantity(tyre.carcass)) },
    { title: 'Carcass, as of the last stop', decimals: 1,
        pick: (lap, tyre) => (isSeenAtStops(lap) ? averageQuantity(tyre.carcass) : null) },
    { title: 'Pressure at the end', decimals: 1, pick: (_lap, tyre) => tyre.pressure[1] },
    { title: 'Tread at the end', decimals: 2,
        pick: (lap, tyre) => (isSeenAtStops(lap) ? null : averageQuantity(tyre.tread)) },
    { title: 'Tread, as of the last stop', decimals: 2,
        pick: (lap, tyre) => (isSeenAtStops(lap) ? averageQuantity(tyre.tread) : null) },
];

/**
 * The groups of columns of the table, one column for each tyre; those that nothing is known of are
 * left out.
 * @param {Lap[]} laps
 */
export function tyreColumns(laps) {
    return groups.map((group) => ({
        ...group,
        unit: shownUnitOf(laps.flatMap((lap) => corners.map(
            ([corner]) => group.pick(lap, lap.tyres[corner]))), view.units),
    })).filter(({ unit }) => unit !== '');
}

/** @param {Lap[]} laps */
function tyreTable(laps) {
    const columns = tyreColumns(laps);
    const groupHeads = columns.map(({ title, unit }) => el('th',
        { colspan: 4, scope: 'colgroup', class: 'group' }, title, el('span', { class: 'unit' }, unit)));
    const heads = columns.flatMap(() => corners.map(([corner, name]) => el('th',
        { scope: 'col', class: 'number' },
        el('span', { 'aria-hidden': 'true' }, corner.toUpperCase()),
        el('span', { class: 'hidden' }, name))));
    const rows = laps.map((lap) => el('tr', {},
        el('th', { scope: 'row' }, lap.label),
        columns.flatMap(({ pick, decimals }) => corners.map(([corner]) => el('td',
            { class: 'number' }, formatNumber(pick(lap, lap.tyres[corner]), view.units, decimals))))));
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
    const legend = 'LF and RF are the left and the right front tyre, LR and RR those at the rear. Left, '
        + 'middle and right are as seen by the driver. Means are those of the lap.';
    const stops = laps.some(isSeenAtStops) ? ' The carcass and the tread of these tyres change only at '
        + 'stops: what is shown was seen at the last one, and says nothing about the lap.' : '';
    container.replaceChildren(
        el('p', { class: 'muted' }, `Lap ${lap.label}. ${legend}${stops}`),
        el('div', { class: 'tyres' }, corners.map(([corner, name]) => tyreCard(lap, corner, name))),
        tyreTable(laps));
}
