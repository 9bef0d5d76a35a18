// What each chart shows, in numbers and words.

import { decimalsFor, extent, fixed, formatGap, median } from './numbers.js';
import { differenceObstacle, differences, pathOf, resampled } from './overlay.js';
import { shownUnit } from './units.js';
import { listedLaps, view } from './view.js';

/** @import { Channel, ChartContent, Lap, Samples } from './types.js' */

/** The name of the axis with its unit. */
export function axisTitle() {
    return view.axis === 'distance' ? 'Distance (m)' : 'Time (s)';
}

/**
 * A place on the axis as text.
 * @param {number} place
 */
export function formatPlace(place) {
    return view.axis === 'distance' ? `${fixed(place, 1)} m` : `${fixed(place, 2)} s`;
}

/**
 * The numbers along an axis, with as many decimals as `increment` between them needs.
 * @param {(number | null)[]} numbers
 * @param {number} increment
 */
export function axisTexts(numbers, increment) {
    const decimals = Math.max(0, Math.ceil(-Math.log10(increment) - 1e-9));
    return numbers.map((number) => (number === null ? null : fixed(number, decimals)));
}

/**
 * True for a fraction of one, such as a pedal's position. Its chart always shows all of 0 to 1.
 * @param {Channel} channel
 */
function isFraction(channel) {
    return channel.unit === 'pu'
        && channel.laps.every((samples) => samples.every((s) => !(s > 1.001 || s < -0.001)));
}

/**
 * How far the chart of the time difference goes: as far as most of its lines. A lap that is much
 * slower than the others leaves it, so that theirs stay legible.
 * @param {Samples[]} data for each lap but the reference
 */
export function differenceLimit(data) {
    const slowEnough = 5; // times the one in the middle
    const widest = data.map((samples) => {
        const { least, greatest } = extent(samples.filter((sample) => sample !== null));
        return Math.max(0, greatest, -least);
    });
    return Math.max(0.05, slowEnough * median(widest));
}

/**
 * The time difference of `laps` to `reference`.
 * @param {Lap[]} laps
 * @param {Lap} reference
 * @returns {ChartContent}
 */
function differenceChart(laps, reference) {
    const data = laps.map((lap) => differences(lap, reference, view.grid, view.axis));
    const limit = differenceLimit(data.filter((_, i) => laps[i] !== reference));
    const beyond = laps.filter((_, i) => data[i].some((sample) => Math.abs(sample ?? 0) > limit));
    const leaves = `; ${beyond.map(({ label }) => label).join(', ')} `
        + `${beyond.length === 1 ? 'leaves' : 'leave'} the chart`;
    return {
        key: 'difference',
        title: `Time difference to ${reference.label}`,
        unit: 's',
        note: `above zero: slower${beyond.length > 0 ? leaves : ''}`,
        filled: laps.length === 2,
        data,
        format: formatGap,
        ends: (least, most) => {
            const low = Math.max(-limit, least ?? 0);
            const high = Math.min(limit, most ?? 0);
            const margin = Math.max(0.01, (high - low) * 0.1);
            return [Math.min(0, low) - margin, Math.max(0, high) + margin];
        },
        stepped: false,
    };
}

/**
 * What `channel` shows of `laps`.
 * @param {Channel} channel
 * @param {Lap[]} laps
 * @returns {ChartContent}
 */
export function channelChart(channel, laps) {
    const { unit, factor } = shownUnit(channel.unit, view.units);
    const fraction = isFraction(channel);
    const data = laps.map((lap) => resampled(channel.laps[lap.index], pathOf(lap, view.axis),
        view.grid, channel.whole).map((sample) => (sample === null ? null : sample * factor)));
    let greatest = 0;
    for (const sample of data.flat())
        greatest = Math.max(greatest, Math.abs(sample ?? 0));
    const decimals = channel.whole && factor === 1 ? 0
        : Math.min(decimalsFor(greatest), fraction ? 0 : 4);
    return {
        key: channel.name,
        title: channel.title,
        unit,
        filled: false,
        data,
        format: (value) => fixed(value, decimals),
        ends: (least, most) => {
            if (fraction)
                return [-0.04 * factor, 1.04 * factor];
            if (least === null || most === null)
                return [0, 1];
            const margin = Math.max((most - least) * 0.08, channel.whole ? 0.4 : 1e-9,
                Math.abs(most) * 1e-6);
            return [least - margin, most + margin];
        },
        stepped: channel.whole,
    };
}

/**
 * Why there is no chart of the time difference; null if there is one.
 * @param {Lap[]} laps
 * @param {Lap} reference
 */
export function noDifferenceReason(laps, reference) {
    const others = laps.filter((lap) => lap !== reference);
    if (others.length === 0)
        return 'Show a second lap to see the time difference.';
    const obstacles = others.map((lap) => differenceObstacle(lap, reference));
    return obstacles.includes(null) ? null
        : `No time difference: ${[...new Set(obstacles)].join('; ')}.`;
}

/**
 * The charts of the drawn laps, and a note that is empty if there is nothing to say.
 * @returns {{ note: string, charts: ChartContent[] }}
 */
export function chartContents() {
    const laps = listedLaps();
    const { reference } = view;
    if (laps.length > 0 && laps.every((lap) => lap.samples === 0))
        return { note: 'Nothing was recorded of these laps.', charts: [] };
    if (reference === null)
        return { note: 'Choose a lap in the table to show it.', charts: [] };
    if (view.grid.length === 0)
        return { note: `No ${view.axis}s were recorded for these laps.`, charts: [] };
    const charts = view.model.channels.filter((channel) => !view.hidden.has(channel.key))
        .map((channel) => channelChart(channel, laps));
    const reason = noDifferenceReason(laps, reference);
    return {
        note: reason ?? '',
        charts: reason === null ? [differenceChart(laps, reference), ...charts] : charts,
    };
}
