// What is shown at the moment. Functions that change it tell those who listen; nothing here draws.

import { commonGrid, elapsedOf, valueAt } from './overlay.js';

/** @import { Axis, Lap, Model, Stretch, UnitSystem } from './types.js' */
/** @typedef {'laps' | 'axis' | 'range' | 'cursor' | 'units' | 'channels' | 'theme'} Aspect */

export const view = {
    /** @type {Model} */
    model: { sessions: [], laps: [], channels: [] },
    /** In the order in which they were chosen. @type {Lap[]} */
    drawn: [],
    /** The lap that others are compared with. @type {Lap | null} */
    reference: null,
    /** @type {Axis} */
    axis: 'distance',
    /** Places on the axis for which every chart has a value, rising. @type {number[]} */
    grid: [],
    /** The stretch of the axis that is shown; null for everything. @type {Stretch | null} */
    range: null,
    /** A place on the axis. @type {number | null} */
    cursor: null,
    /** @type {UnitSystem} */
    units: 'driver',
    /** Keys of the channels without a chart. @type {Set<string>} */
    hidden: new Set(),
};

/** @type {Map<Aspect, (() => void)[]>} */
const listeners = new Map();

/**
 * Calls `listener` whenever one of `aspects` has changed.
 * @param {Aspect[]} aspects
 * @param {() => void} listener
 */
export function onChange(aspects, listener) {
    for (const aspect of aspects)
        listeners.set(aspect, [...listeners.get(aspect) ?? [], listener]);
}

/**
 * Tells the listeners that `aspect` has changed.
 * @param {Aspect} aspect
 */
export function changed(aspect) {
    if (aspect === 'laps' || aspect === 'axis')
        view.grid = commonGrid(view.drawn, view.axis);
    for (const listener of listeners.get(aspect) ?? [])
        listener();
}

/** All of the axis. */
export function fullRange() {
    const { grid } = view;
    return grid.length > 0 ? { min: grid[0], max: grid[grid.length - 1] } : { min: 0, max: 1 };
}

/** The stretch of the axis that is shown. */
export function shownRange() {
    return view.range ?? fullRange();
}

/**
 * Shows `lap`, with the first colour that no other drawn lap has; or hides it.
 * @param {Lap} lap
 */
export function toggleLap(lap) {
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
    changed('laps');
}

/**
 * Compares the other laps with `lap`, which is drawn then.
 * @param {Lap} lap
 */
export function setReference(lap) {
    view.reference = lap;
    if (view.drawn.includes(lap))
        changed('laps');
    else
        toggleLap(lap);
}

/** The drawn laps in the order in which they are listed: the reference first. */
export function listedLaps() {
    return [...view.drawn].sort((a, b) => Number(b === view.reference) - Number(a === view.reference));
}

/** The drawn laps in the order in which they are painted: the reference last, on top of the others. */
export function paintedLaps() {
    return listedLaps().reverse();
}

/**
 * Shows the same stretch and place of the reference lap along the other axis.
 * @param {Axis} axis
 */
export function setAxis(axis) {
    if (axis === view.axis)
        return;
    const { distances, times } = view.reference ? elapsedOf(view.reference)
        : { distances: [], times: [] };
    /** @param {number} place */
    const moved = (place) => (axis === 'time' ? valueAt(distances, times, place)
        : valueAt(times, distances, place));
    const min = view.range && moved(view.range.min);
    const max = view.range && moved(view.range.max);
    view.axis = axis;
    view.range = min !== null && max !== null ? { min, max } : null;
    view.cursor = view.cursor === null ? null : moved(view.cursor);
    changed('axis');
}

/**
 * Shows `range` only, as far as there is something to show; null for everything.
 * @param {Stretch | null} range
 */
export function setRange(range) {
    view.range = null;
    if (range) {
        const { min, max } = fullRange();
        const least = (max - min) / 2000;
        const width = Math.min(max - min, Math.max(least, range.max - range.min));
        const start = Math.min(Math.max(range.min, min), max - width);
        if (width < max - min)
            view.range = { min: start, max: start + width };
    }
    changed('range');
}

/**
 * Shows a stretch that is `factor` times as long; what is at `place` stays where it is.
 * @param {number} factor
 * @param {number} place
 */
export function zoomBy(factor, place) {
    const { min, max } = shownRange();
    setRange({ min: place - (place - min) * factor, max: place + (max - place) * factor });
}

/**
 * Moves the shown stretch by `fraction` of its length.
 * @param {number} fraction
 */
export function panBy(fraction) {
    const { min, max } = shownRange();
    const shift = (max - min) * fraction;
    setRange({ min: min + shift, max: max + shift });
}

/**
 * Moves the cursor to `place`, or to the nearest place on the axis.
 * @param {number} place
 */
export function setCursor(place) {
    const { min, max } = fullRange();
    view.cursor = Math.min(max, Math.max(min, place));
    changed('cursor');
}

/** @param {UnitSystem} units */
export function setUnits(units) {
    view.units = units;
    changed('units');
}

/**
 * Shows or hides the chart of the channel called `key`.
 * @param {string} key
 */
export function toggleChannel(key) {
    if (!view.hidden.delete(key))
        view.hidden.add(key);
    changed('channels');
}
