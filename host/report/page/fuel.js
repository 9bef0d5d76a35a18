// Fuel, lap by lap.

import { byId, el } from './dom.js';
import { formatNumber, formatQuantity, shownUnitOf } from './units.js';
import { view } from './view.js';

/** @import { Lap } from './types.js' */

/**
 * What timed laps use on average, and how many more laps the fuel left at the end is enough for;
 * null where that is not known. Other laps are longer or shorter than one round, or slower.
 * @param {Lap[]} laps of one session
 */
export function fuelUse(laps) {
    const used = laps.filter((lap) => lap.timed && !lap.fuelAdded)
        .map((lap) => lap.fuelUsed?.value ?? 0).filter((value) => value > 0);
    const last = laps.filter((lap) => lap.fuel.end).pop();
    if (used.length === 0 || !last?.fuel.end)
        return null;
    const average = used.reduce((sum, value) => sum + value, 0) / used.length;
    const { value: left, unit } = last.fuel.end;
    return { average, left, unit, laps: used.length, last, lapsLeft: Math.floor(left / average) };
}

/**
 * @param {number} count
 * @param {string} [adjective]
 */
function lapCount(count, adjective = '') {
    return `${count} ${adjective}${count === 1 ? 'lap' : 'laps'}`;
}

/**
 * fuelUse() in words; "" where nothing is known.
 * @param {Lap[]} laps of one session
 */
export function fuelSummary(laps) {
    const use = fuelUse(laps);
    if (!use)
        return '';
    const { unit } = use;
    return `Average use: ${formatQuantity({ value: use.average, unit }, view.units, 3)} per lap, `
        + `over ${lapCount(use.laps, 'timed ')}. ${formatQuantity({ value: use.left, unit }, view.units, 2)} left `
        + `after lap ${use.last.label}: enough for ${lapCount(use.lapsLeft, 'more ')}.`;
}

/** @param {Lap[]} laps */
function fuelTable(laps) {
    const unit = shownUnitOf(laps.map((lap) => lap.fuel.end), view.units);
    const isAdded = laps.some((lap) => lap.fuelAdded);
    /** @param {string} title */
    const column = (title) => el('th', { scope: 'col', class: 'number' }, title,
        el('span', { class: 'unit' }, unit));
    return el('div', { 'class': 'scroll', 'tabindex': 0, 'role': 'region', 'aria-label': 'Fuel by lap' },
        el('table', {},
            el('caption', { class: 'hidden' }, 'Fuel by lap'),
            el('thead', {}, el('tr', {}, el('th', { scope: 'col' }, 'Lap'),
                column('At the start'), column('At the end'), column('Used'),
                isAdded ? column('Added') : null)),
            el('tbody', {}, laps.map((lap) => el('tr', {},
                el('th', { scope: 'row' }, lap.label),
                [lap.fuel.start, lap.fuel.end, lap.fuelUsed, ...isAdded ? [lap.fuelAdded] : []].map(
                    (quantity) => el('td', { class: 'number' },
                        formatNumber(quantity, view.units, 3))))))));
}

export function showFuel() {
    const { model } = view;
    const laps = model.laps.filter((lap) => lap.fuel.end);
    if (laps.length === 0) {
        byId('fuel').replaceChildren(el('p', { class: 'muted' }, 'No fuel levels were recorded.'));
        return;
    }
    const summaries = model.sessions.map((session, index) => {
        const text = fuelSummary(laps.filter((lap) => lap.session === index));
        return text && model.sessions.length > 1 ? `${session.file}: ${text}` : text;
    }).filter((text) => text !== '');
    byId('fuel').replaceChildren(...summaries.map((text) => el('p', {}, text)), fuelTable(laps));
}
