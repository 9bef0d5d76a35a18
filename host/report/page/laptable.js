// The table of laps: which are drawn, which one the others are compared with, and how fast they were.

import { byId, el } from './dom.js';
import { lapMark } from './marks.js';
import { fixed, formatGap, formatLapTime } from './numbers.js';
import { formatNumber, shownUnitOf } from './units.js';
import { setReference, toggleLap, view } from './view.js';

/** @import { Lap } from './types.js' */

/** @param {Lap} lap */
function lapToggle(lap) {
    const isDrawn = view.drawn.includes(lap);
    const box = el('input', {
        'type': 'checkbox', 'checked': isDrawn, 'aria-label': `Show lap ${lap.label}`,
        'on': { change: () => toggleLap(lap) },
    });
    return el('label', { class: 'toggle' }, box, isDrawn ? lapMark(lap)
        : el('span', { 'class': 'mark empty', 'aria-hidden': 'true' }));
}

/** @param {Lap} lap */
function referenceChoice(lap) {
    return el('input', {
        'type': 'radio', 'name': 'reference', 'checked': lap === view.reference,
        'aria-label': `Compare with lap ${lap.label}`,
        'title': 'Compare the other laps with this one',
        'on': { change: () => setReference(lap) },
    });
}

/** @param {Lap} lap */
function gapText(lap) {
    if (lap.part)
        return 'partial';
    if (lap.best)
        return el('span', { class: 'best-badge' }, 'best');
    return lap.gap === null ? '–' : formatGap(lap.gap);
}

/** @param {Lap} lap */
function lapTimeCells(lap) {
    if (lap.time === null)
        return [el('td', { class: 'reason', colspan: 2 }, lap.noTime)];
    return [el('td', { class: 'time' }, formatLapTime(lap.time)), el('td', { class: 'number' }, gapText(lap))];
}

/** @param {Lap} lap */
function lapRow(lap) {
    const classes = [lap.best ? 'best' : '', lap.bestOfFile ? 'best-of-file' : '',
        lap.part ? 'partial' : '', view.drawn.includes(lap) ? 'drawn' : '',
        lap.time === null ? 'no-time' : ''].filter(Boolean);
    const row = el('tr', { 'class': classes.join(' '), 'data-lap': lap.index },
        el('td', {}, lapToggle(lap)),
        el('th', { scope: 'row' }, lap.label),
        el('td', { class: 'number' }, String(lap.lapInSession)),
        lapTimeCells(lap),
        el('td', { class: 'number' }, formatNumber(lap.topSpeed, view.units, 1)),
        el('td', { class: 'number' }, formatNumber(lap.fuelUsed, view.units, 2)),
        el('td', { class: 'choice' }, referenceChoice(lap)));
    row.addEventListener('click', ({ target }) => {
        if (!(target instanceof Element && target.closest('input, label')))
            toggleLap(lap);
    });
    return row;
}

function lapTableHead() {
    const { laps } = view.model;
    /**
     * @param {HTMLElement | string} title
     * @param {string} [unit]
     * @param {Record<string, string>} [properties]
     */
    const column = (title, unit, properties) => el('th', { scope: 'col', ...properties }, title,
        unit ? el('span', { class: 'unit' }, unit) : null);
    const speedUnit = shownUnitOf(laps.map((lap) => lap.topSpeed), view.units);
    const fuelUnit = shownUnitOf(laps.map((lap) => lap.fuelUsed), view.units);
    return el('thead', {}, el('tr', {},
        column(el('span', { class: 'hidden' }, 'Shown')),
        column('#'),
        column('Lap', '', { class: 'number', title: 'Number of the lap in the session' }),
        column('Time', 'min:s'),
        column('Gap', 's', { class: 'number' }),
        column('Top speed', speedUnit, { class: 'number' }),
        column('Fuel', fuelUnit, { class: 'number', title: 'Fuel used' }),
        column('Ref.', '', { class: 'choice', title: 'The lap that the others are compared with' })));
}

/** The rows under a title for each stint; with several files, for each stint of each file. */
function lapTableBodies() {
    const { sessions, laps } = view.model;
    /** @type {HTMLElement[]} */
    const bodies = [];
    let title = null;
    for (const lap of laps) {
        const file = sessions.length > 1 ? `${sessions[lap.session].file} · ` : '';
        if (title !== `${file}Stint ${lap.stint}`) {
            title = `${file}Stint ${lap.stint}`;
            bodies.push(el('tbody', {}, el('tr', { class: 'stint' },
                el('th', { colspan: 8, scope: 'rowgroup' }, title))));
        }
        if (lap.missingBefore > 0)
            bodies[bodies.length - 1].append(missingRow(lap.missingBefore));
        bodies[bodies.length - 1].append(lapRow(lap));
    }
    return bodies;
}

/**
 * A row for laps that are not in the result.
 * @param {number} count
 */
function missingRow(count) {
    return el('tr', { class: 'left-out' }, el('td', { colspan: 8 },
        `${count === 1 ? '1 lap' : `${count} laps`} left out, because the car entered the pits`));
}

/** What the table cannot say of partial laps; "" without any. */
export function partialNote() {
    const parts = view.model.laps.filter(({ part }) => part).map(({ label, part }) =>
        `${label} from ${fixed(part?.begin ?? 0, 0)} m to ${fixed(part?.end ?? 0, 0)} m`);
    return parts.length === 0 ? '' : `Recorded in part: ${parts.join(', ')}. The times of partial laps are not `
        + 'compared.';
}

export function showLapTable() {
    const container = byId('laps');
    // The table is replaced, so the new one gets the focus that the old one had.
    const focused = document.activeElement;
    const row = container.contains(focused)
        ? focused?.closest('tr')?.getAttribute('data-lap') : null;
    const type = focused?.getAttribute('type');
    container.replaceChildren(el('table', { class: 'laps' },
        el('caption', { class: 'hidden' }, 'Laps; check a lap to show it'),
        lapTableHead(), lapTableBodies()));
    byId('laps-note').textContent = partialNote();
    if (row) {
        const input = container.querySelector(`tr[data-lap="${row}"] input[type="${type}"]`);
        if (input instanceof HTMLInputElement)
            input.focus();
    }
}
