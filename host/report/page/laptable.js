'use strict';

// The table of laps: which are drawn, which one the others are compared with, and how fast they were.

function lapToggle(lap) {
    const isDrawn = view.drawn.includes(lap);
    const box = el('input', {
        type: 'checkbox', checked: isDrawn, 'aria-label': `Draw lap ${lap.label}`,
        on: { change: () => toggleLap(lap) },
    });
    return el('label', { class: 'toggle' }, box, isDrawn ? lapMark(lap)
        : el('span', { class: 'mark empty', 'aria-hidden': 'true' }));
}

function referenceChoice(lap) {
    return el('input', {
        type: 'radio', name: 'reference', checked: lap === view.reference,
        'aria-label': `Compare with lap ${lap.label}`,
        title: 'Compare the other laps with this one',
        on: { change: () => setReference(lap) },
    });
}

function lapTimeCells(lap) {
    if (lap.time === null)
        return [el('td', { class: 'reason', colspan: 2 }, lap.noTime)];
    return [
        el('td', { class: 'time' }, formatLapTime(lap.time)),
        el('td', { class: 'number' }, lap.best
            ? el('span', { class: 'best-badge' }, 'best')
            : lap.gap === null ? '–' : formatGap(lap.gap)),
    ];
}

function lapRow(lap) {
    const row = el('tr', {
        class: [lap.best ? 'best' : '', view.drawn.includes(lap) ? 'drawn' : '',
            lap.time === null ? 'no-time' : ''].join(' ').trim(),
        'data-lap': lap.index,
    },
    el('td', {}, lapToggle(lap)),
    el('th', { scope: 'row' }, lap.label),
    el('td', { class: 'number' }, String(lap.lapInSession)),
    ...lapTimeCells(lap),
    el('td', { class: 'number' }, lap.topSpeed ? fixed(lap.topSpeed.value
        * shownUnit(lap.topSpeed.unit).factor, 1) : '–'),
    el('td', { class: 'number' }, lap.fuelUsed ? fixed(lap.fuelUsed.value, 2) : '–'),
    el('td', { class: 'choice' }, referenceChoice(lap)));
    row.addEventListener('click', (event) => {
        if (!event.target.closest('input, label'))
            toggleLap(lap);
    });
    return row;
}

/** The unit of the first lap that has such a quantity. */
function unitOfLaps(quantity) {
    return view.model.laps.find((lap) => lap[quantity])?.[quantity].unit ?? '';
}

function lapTableHead() {
    const column = (title, unit, properties) => el('th', { scope: 'col', ...properties }, title,
        unit ? el('span', { class: 'unit' }, unit) : null);
    return el('thead', {}, el('tr', {},
        column(el('span', { class: 'hidden' }, 'Drawn')),
        column('#'),
        column('Lap', null, { class: 'number', title: 'Number of the lap in the session' }),
        column('Time', 'min:s'),
        column('Gap', 's', { class: 'number' }),
        column('Top speed', shownUnit(unitOfLaps('topSpeed')).unit, { class: 'number' }),
        column('Fuel', unitOfLaps('fuelUsed'), { class: 'number', title: 'Fuel used' }),
        column('Ref.', null, { class: 'choice', title: 'The lap that the others are compared with' })));
}

/** Rows of laps under a title for each stint, and with several files for each of those. */
function lapTableBodies() {
    const { sessions, laps } = view.model;
    const bodies = [];
    let title = null;
    for (const lap of laps) {
        const file = sessions.length > 1 ? `${sessions[lap.session].file} · ` : '';
        if (title !== `${file}Stint ${lap.stint}`) {
            title = `${file}Stint ${lap.stint}`;
            bodies.push(el('tbody', {}, el('tr', { class: 'stint' },
                el('th', { colspan: 8, scope: 'rowgroup' }, title))));
        }
        bodies[bodies.length - 1].append(lapRow(lap));
    }
    return bodies;
}

function showLapTable() {
    const container = byId('laps');
    // The table is made anew, so what had the focus gets it again.
    const focused = document.activeElement;
    const row = container.contains(focused) ? focused.closest('tr')?.dataset.lap : undefined;
    const type = focused?.type;
    container.replaceChildren(el('table', { class: 'laps' },
        el('caption', { class: 'hidden' }, 'Laps; check one to draw it'),
        lapTableHead(), lapTableBodies()));
    if (row !== undefined)
        container.querySelector(`tr[data-lap="${row}"] input[type="${type}"]`)?.focus();
}
