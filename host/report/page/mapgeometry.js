// Where the track and the laps lie on the map. Map units are metres, or the radius of a ring; y points
// down, as on the screen.

import { extent } from './numbers.js';
import { floorIndex, pathOf } from './overlay.js';

/** @import { Axis, Lap, MapPoint, Point } from './types.js' */
/** @typedef {(lap: Lap, tick: number) => Point} Projection */

/** From slow to fast; readable in black and white, and by the colour-blind. */
const speedColours = ['#46327e', '#365c8d', '#277f8e', '#1fa187', '#4ac16d', '#a0da39', '#fde725'];

/**
 * The colour for `part` of the way from slow to fast.
 * @param {number} part
 */
export function speedColour(part) {
    const place = Math.min(1, Math.max(0, part)) * (speedColours.length - 1);
    const i = Math.min(speedColours.length - 2, Math.floor(place));
    /**
     * @param {string} colour
     * @param {number} at
     */
    const channel = (colour, at) => parseInt(colour.slice(at, at + 2), 16);
    const mixed = [1, 3, 5].map((at) => Math.round(channel(speedColours[i], at)
        + (channel(speedColours[i + 1], at) - channel(speedColours[i], at)) * (place - i)));
    return `rgb(${mixed.join(',')})`;
}

/**
 * The first tick of `lap` with a position; -1 if there is none.
 * @param {Lap} lap
 */
function firstPosition({ ticks: { latitude, longitude } }) {
    return latitude.findIndex((sample, tick) => !Number.isNaN(sample)
        && !Number.isNaN(longitude[tick]));
}

/** @param {Lap} lap */
export function hasPosition(lap) {
    return firstPosition(lap) >= 0;
}

/**
 * A ring once around the track, clockwise from the top.
 * @param {number} length of the track
 * @returns {Projection}
 */
function ringProjection(length) {
    return (lap, tick) => {
        const angle = 2 * Math.PI * lap.ticks.distance[tick] / length;
        return { x: Math.sin(angle), y: -Math.cos(angle) };
    };
}

/**
 * Metres east and south of the first position of `lap`; without positions, a ring of its distance.
 * @param {Lap} lap
 * @returns {Projection}
 */
export function projection(lap) {
    const first = firstPosition(lap);
    if (first < 0)
        return ringProjection(lap.trackLength ?? extent(pathOf(lap, 'distance').values).greatest);
    const { latitude, longitude } = lap.ticks;
    const metresPerDegree = 111320;
    const narrowing = Math.cos(latitude[first] * Math.PI / 180); // of degrees of longitude
    return ({ ticks }, tick) => ({
        x: (ticks.longitude[tick] - longitude[first]) * narrowing * metresPerDegree,
        y: (latitude[first] - ticks.latitude[tick]) * metresPerDegree,
    });
}

/**
 * The places of `lap` along `axis`, with the `speeds` of its ticks. A tick that has no distance although
 * others do is not on the way of the lap: the car was put there.
 * @param {Lap} lap
 * @param {Axis} axis
 * @param {Projection} project
 * @param {Float64Array | undefined} speeds
 * @returns {MapPoint[]}
 */
export function mapPoints(lap, axis, project, speeds) {
    const { ticks, values } = pathOf(lap, axis);
    const { distance } = lap.ticks;
    const isAnyKnown = distance.some((place) => !Number.isNaN(place));
    return ticks.map((tick, i) => ({
        ...project(lap, tick), speed: speeds?.[tick] ?? NaN, place: values[i], tick,
    })).filter(({ x, y, tick }) => !Number.isNaN(x) && !Number.isNaN(y)
        && !(isAnyKnown && Number.isNaN(distance[tick])));
}

/**
 * The lap whose way stands for the whole track on a map of `reference`, which may be a part of a lap:
 * of those that can be drawn there, the one that goes farthest.
 * @param {Lap} reference
 * @param {Lap[]} laps
 */
export function outlineLap(reference, laps) {
    /** @param {Lap} lap */
    const way = (lap) => {
        const { values } = pathOf(lap, 'distance');
        return values.length > 0 ? values[values.length - 1] - values[0] : 0;
    };
    return laps.filter((lap) => lap.track === reference.track && hasPosition(lap) === hasPosition(reference))
        .reduce((longest, lap) => (way(lap) > way(longest) ? lap : longest), reference);
}

/**
 * Where `lap` is on the map at `place` of `axis`; null where that is not known.
 * @param {Lap} lap
 * @param {Axis} axis
 * @param {Projection} project
 * @param {number} place
 * @returns {Point | null}
 */
export function mapPlace(lap, axis, project, place) {
    const { ticks, values } = pathOf(lap, axis);
    const i = floorIndex(values, place);
    if (i < 0)
        return null;
    const here = project(lap, ticks[i]);
    if (i + 1 >= values.length)
        return place - values[i] < (values[i] - values[0]) * 0.01 ? here : null;
    const next = project(lap, ticks[i + 1]);
    const part = (place - values[i]) / (values[i + 1] - values[i]);
    const at = { x: here.x + part * (next.x - here.x), y: here.y + part * (next.y - here.y) };
    return Number.isNaN(at.x) || Number.isNaN(at.y) ? null : at;
}

/**
 * The height of a map of `points` that is `width` pixels wide, and how its units become pixels.
 * @param {Point[]} points
 * @param {number} width
 */
export function fittedMap(points, width) {
    const { least: left, greatest: right } = extent(points.map(({ x }) => x));
    const { least: top, greatest: bottom } = extent(points.map(({ y }) => y));
    const wide = Math.max(1e-9, right - left);
    const high = Math.max(1e-9, bottom - top);
    const margin = 22;
    const height = Math.min(360, Math.max(180, (width - 2 * margin) * high / wide + 2 * margin));
    const factor = Math.min((width - 2 * margin) / wide, (height - 2 * margin) / high);
    return {
        height,
        /** @param {Point} point */
        scale: ({ x, y }) => ({
            x: (width - wide * factor) / 2 + (x - left) * factor,
            y: (height - high * factor) / 2 + (y - top) * factor,
        }),
    };
}

/**
 * The lowest and the highest speed of `points`; not finite if none has a speed.
 * @param {MapPoint[]} points
 */
export function speedLimits(points) {
    const { least: slowest, greatest: fastest } = extent(points.map(({ speed }) => speed));
    return { slowest, fastest };
}

/**
 * Stretches of `items` that have the same colour: each from its first item to the first one of the
 * next stretch, so that lines join. Items whose colour is null are in none.
 * @template Item
 * @param {Item[]} items
 * @param {(item: Item) => string | null} colourOf
 * @returns {{ colour: string, from: number, to: number }[]} `to` is the last index that belongs to it
 */
export function colourRuns(items, colourOf) {
    const runs = [];
    const colours = items.map(colourOf);
    for (let from = 0, to; from < items.length; from = to) {
        const colour = colours[from];
        for (to = from + 1; to < items.length && colours[to] === colour;)
            ++to;
        if (colour !== null)
            runs.push({ colour, from, to: Math.min(to, items.length - 1) });
    }
    return runs;
}

/**
 * The one of `points` that is nearest to `target`; null if none is within `reach`.
 * @template {Point} P
 * @param {P[]} points
 * @param {Point} target
 * @param {number} reach
 * @param {(point: P) => Point} scale
 * @returns {P | null}
 */
export function nearestPoint(points, target, reach, scale) {
    let nearest = null;
    let least = reach;
    for (const point of points) {
        const { x, y } = scale(point);
        const distance = Math.hypot(x - target.x, y - target.y);
        if (distance < least) {
            least = distance;
            nearest = point;
        }
    }
    return nearest;
}
