'use strict';

// What is being looked at. Everybody who changes it says so, and everybody who shows it listens.

const lapColours = 7; // of the style sheet: --lap-0 to --lap-6
const lapDashes = [[], [7, 4], [2, 3]]; // for laps beyond the colours

const view = {
    model: null,
    drawn: [], // laps, in the order in which they were chosen
    reference: null, // the lap that others are compared with, or null
    axis: 'distance', // or 'time'
    range: null, // { min, max } of the axis; null for everything
    cursor: null, // place on the axis, or null
    units: 'driver', // or 'recorded'
    hidden: new Set(), // keys of channels without a chart
};

const viewListeners = {};

/** Calls `listener` when `aspect` has changed: laps, axis, range, cursor, units, channels, theme. */
function onView(aspects, listener) {
    for (const aspect of aspects.split(' '))
        (viewListeners[aspect] ??= []).push(listener);
}

function tellView(aspect) {
    for (const listener of viewListeners[aspect] ?? [])
        listener();
}

/** Lays `lap` over the others, with the first colour that none of them has; or takes it away. */
function toggleLap(lap) {
    if (view.drawn.includes(lap)) {
        view.drawn = view.drawn.filter((drawn) => drawn !== lap);
        if (view.reference === lap)
            view.reference = view.drawn[0] ?? null;
    } else {
        const taken = new Set(view.drawn.map((drawn) => drawn.slot));
        lap.slot = 0;
        while (taken.has(lap.slot))
            ++lap.slot;
        view.drawn = [...view.drawn, lap];
        view.reference ??= lap;
    }
    tellView('laps');
}

/** Compares with `lap`, which is drawn then. */
function setReference(lap) {
    view.reference = lap;
    if (view.drawn.includes(lap))
        tellView('laps');
    else
        toggleLap(lap);
}

/** The drawn laps as they are shown everywhere: the reference first. */
function shownLaps() {
    return [...view.drawn].sort((a, b) => (b === view.reference) - (a === view.reference));
}

/** Name of the style sheet's colour of a drawn `lap`. */
function lapColourName(lap) {
    return lap === view.reference ? '--lap-reference' : `--lap-${lap.slot % lapColours}`;
}

function lapColour(lap) {
    return styleValue(lapColourName(lap));
}

function lapDash(lap) {
    const dash = lap === view.reference ? 0 : Math.floor(lap.slot / lapColours);
    return lapDashes[dash % lapDashes.length];
}

/** A small sign in the colour of `lap`. */
function lapMark(lap) {
    const mark = el('span', { class: 'mark', 'aria-hidden': 'true' });
    mark.style.setProperty('--mark', `var(${lapColourName(lap)})`);
    return mark;
}

/** Shows the same stretch and place of the reference lap over the other axis. */
function setAxis(axis) {
    if (axis === view.axis)
        return;
    const { distances, times } = view.reference ? elapsedOf(view.reference) : { distances: [], times: [] };
    const moved = (place) => (axis === 'time' ? valueAt(distances, times, place)
        : valueAt(times, distances, place));
    const range = view.range && { min: moved(view.range.min), max: moved(view.range.max) };
    view.axis = axis;
    view.range = range && range.min !== null && range.max !== null ? range : null;
    view.cursor = view.cursor === null ? null : moved(view.cursor);
    tellView('axis');
}

/** Shows the stretch from `min` to `max` only; null for everything. */
function setRange(range) {
    const { min, max } = charts.fullRange();
    if (range) {
        const width = Math.min(max - min, Math.max((max - min) / 2000, range.max - range.min));
        const start = Math.min(Math.max(range.min, min), max - width);
        range = width < max - min ? { min: start, max: start + width } : null;
    }
    view.range = range;
    tellView('range');
}

/** Makes the shown stretch `factor` times as long; what is at `place` stays where it is. */
function zoomBy(factor, place) {
    const { min, max } = view.range ?? charts.fullRange();
    setRange({ min: place - (place - min) * factor, max: place + (max - place) * factor });
}

function panBy(fraction) {
    const { min, max } = view.range ?? charts.fullRange();
    const shift = (max - min) * fraction;
    setRange({ min: min + shift, max: max + shift });
}

function setCursor(place) {
    const { min, max } = charts.fullRange();
    view.cursor = Math.min(max, Math.max(min, place));
    tellView('cursor');
}

function setUnits(units) {
    view.units = units;
    tellView('units');
}

function toggleChannel(key) {
    if (!view.hidden.delete(key))
        view.hidden.add(key);
    tellView('channels');
}

/** "light" or "dark". */
function setTheme(theme) {
    document.documentElement.dataset.theme = theme;
    tellView('theme');
}

function theme() {
    return document.documentElement.dataset.theme;
}
