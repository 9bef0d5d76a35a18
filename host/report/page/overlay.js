// Laps laid over each other: samples by distance or time, and the time between two laps.

/** @import { Axis, Elapsed, Lap, Path, Samples } from './types.js' */

/**
 * The ticks at which `values` rise above all before. Others have no place on the lap.
 * @param {Float64Array} values
 * @returns {Path}
 */
function risingPath(values) {
    /** @type {number[]} */
    const ticks = [];
    let last = -Infinity;
    values.forEach((value, tick) => {
        if (value > last) {
            ticks.push(tick);
            last = value;
        }
    });
    return { ticks, values: ticks.map((tick) => values[tick]) };
}

/**
 * The ticks of `lap` at which it moves on along `axis`.
 * @param {Lap} lap
 * @param {Axis} axis
 */
export function pathOf(lap, axis) {
    return lap.paths[axis] ??= risingPath(lap.ticks[axis]);
}

/**
 * Index of the last of the rising `values` that is at most `value`; -1 if there is none.
 * @param {number[]} values
 * @param {number} value
 */
export function floorIndex(values, value) {
    let low = -1;
    let high = values.length;
    while (high - low > 1) {
        const middle = (low + high) >> 1;
        if (values[middle] <= value)
            low = middle;
        else
            high = middle;
    }
    return low;
}

/**
 * Index of the one of the rising `values` that is nearest to `value`; 0 if there are none.
 * @param {number[]} values
 * @param {number} value
 */
export function nearestIndex(values, value) {
    const i = Math.max(0, floorIndex(values, value));
    return i + 1 < values.length && values[i + 1] - value < value - values[i] ? i + 1 : i;
}

/**
 * `ys` over the rising `xs` at `x`, on a straight line between neighbours; null outside.
 * @param {number[]} xs
 * @param {number[]} ys
 * @param {number} x
 */
export function valueAt(xs, ys, x) {
    const i = floorIndex(xs, x);
    if (i < 0)
        return null;
    if (xs[i] === x)
        return ys[i];
    if (i + 1 >= xs.length)
        return null;
    return ys[i] + (ys[i + 1] - ys[i]) * (x - xs[i]) / (xs[i + 1] - xs[i]);
}

/**
 * Samples of a lap at the places of `grid`. Whole numbers, such as gears, change at their tick.
 * @param {Float64Array} samples
 * @param {Path} path
 * @param {number[]} grid
 * @param {boolean} whole
 */
export function resampled(samples, path, grid, whole) {
    const { ticks, values } = path;
    /** @type {Samples} */
    const result = new Array(grid.length).fill(null);
    let i = 0;
    grid.forEach((x, place) => {
        while (i + 1 < values.length && values[i + 1] <= x)
            ++i;
        if (i >= values.length || values[i] > x || (i + 1 >= values.length && values[i] < x))
            return;
        const here = samples[ticks[i]];
        const part = i + 1 < values.length ? (x - values[i]) / (values[i + 1] - values[i]) : 0;
        const sample = whole || part === 0 ? here : here + part * (samples[ticks[i + 1]] - here);
        if (!Number.isNaN(sample))
            result[place] = sample;
    });
    return result;
}

/**
 * Distances and times of the ticks of `lap` that have both.
 * @param {Lap} lap
 * @returns {Elapsed}
 */
function measuredElapsed(lap) {
    const { ticks, values } = pathOf(lap, 'distance');
    /** @type {Elapsed} */
    const elapsed = { distances: [], times: [] };
    ticks.forEach((tick, i) => {
        if (!Number.isNaN(lap.ticks.time[tick])) {
            elapsed.distances.push(values[i]);
            elapsed.times.push(lap.ticks.time[tick]);
        }
    });
    return elapsed;
}

/**
 * The time since the line by distance, including the line at both ends: a lap starts and ends
 * between two ticks, and the speed there is taken from the nearest ticks.
 * @param {Lap} lap
 */
export function elapsedOf(lap) {
    if (lap.elapsed)
        return lap.elapsed;
    const { distances, times } = measuredElapsed(lap);
    if (distances.length > 1) {
        if (lap.fromLine && distances[0] > 0) {
            distances.unshift(0);
            times.unshift(0);
        }
        const last = distances.length - 1;
        const step = distances[last] - distances[last - 1];
        const end = lap.trackLength ?? 0;
        const left = end - distances[last];
        if (lap.completed && left > 0 && left < 2 * step) {
            times.push(times[last] + (times[last] - times[last - 1]) * left / step);
            distances.push(end);
        }
    }
    lap.elapsed = { distances, times };
    return lap.elapsed;
}

/**
 * Why there is no time difference between `lap` and `reference`; null if there is one.
 * @param {Lap} lap
 * @param {Lap} reference
 */
export function differenceObstacle(lap, reference) {
    if (lap.track !== reference.track)
        return 'the laps are on different tracks';
    for (const one of [lap, reference]) {
        if (elapsedOf(one).distances.length < 2)
            return `${one.label} has no distances or no times`;
        if (!one.fromLine)
            return `${one.label} does not start at the start/finish line`;
    }
    return null;
}

/**
 * Seconds that `lap` is slower than `reference` up to `distance`; null where one of them has no time.
 * @param {Lap} lap
 * @param {Lap} reference
 * @param {number} distance
 */
export function differenceAt(lap, reference, distance) {
    const one = elapsedOf(lap);
    const other = elapsedOf(reference);
    const time = valueAt(one.distances, one.times, distance);
    const referenceTime = valueAt(other.distances, other.times, distance);
    return time === null || referenceTime === null ? null : time - referenceTime;
}

/**
 * differenceAt() at the places of `grid`, which are those of `lap` along `axis`.
 * @param {Lap} lap
 * @param {Lap} reference
 * @param {number[]} grid
 * @param {Axis} axis
 * @returns {Samples}
 */
export function differences(lap, reference, grid, axis) {
    if (differenceObstacle(lap, reference) !== null)
        return grid.map(() => null);
    if (axis === 'distance')
        return grid.map((distance) => differenceAt(lap, reference, distance));
    const { distances, times } = elapsedOf(lap);
    return grid.map((time) => {
        const distance = valueAt(times, distances, time);
        return distance === null ? null : differenceAt(lap, reference, distance);
    });
}

/**
 * The smallest of 1, 2, 5, 10, 20... times a power of ten that is at least `size`.
 * @param {number} size
 */
export function niceStep(size) {
    const power = 10 ** Math.floor(Math.log10(size));
    return power * ([1, 2, 5].find((digit) => digit * power >= size * 0.999999) ?? 10);
}

/**
 * The places at which `laps` are shown: rising, evenly spaced, from the first start to the last end.
 * Distances go from line to line, also for a part of a lap.
 * @param {Lap[]} laps
 * @param {Axis} axis
 */
export function commonGrid(laps, axis) {
    let start = Infinity;
    let end = -Infinity;
    for (const lap of laps) {
        const { values } = pathOf(lap, axis);
        if (values.length === 0)
            continue;
        start = Math.min(start, values[0], lap.fromLine ? 0 : values[0]);
        end = Math.max(end, values[values.length - 1]);
        if (axis === 'distance' && lap.trackLength) {
            start = Math.min(start, 0);
            end = Math.max(end, lap.trackLength);
        }
        const elapsed = axis === 'distance' ? elapsedOf(lap).distances : elapsedOf(lap).times;
        if (elapsed.length > 0)
            end = Math.max(end, elapsed[elapsed.length - 1]);
    }
    if (!(end > start))
        return [];
    const places = 8000; // finer than any screen, and than most recordings
    const step = niceStep((end - start) / places);
    /** @type {number[]} */
    const grid = [];
    for (let i = Math.ceil(start / step); i * step < end; ++i)
        grid.push(i * step);
    grid.push(end);
    return grid;
}
