'use strict';

// Laps laid over each other: samples by distance or time, and the time between two laps.

/** Of a tick without a distance there is no place on the lap; nor of one that does not go on. */
function risingPath(values) {
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

/** The ticks of `lap` that get on over `axis`, "distance" or "time". */
function pathOf(lap, axis) {
    lap.paths ??= {};
    lap.paths[axis] ??= risingPath(lap.ticks[axis]);
    return lap.paths[axis];
}

/** Index of the last of the rising `values` that is at most `value`; -1 if there is none. */
function floorIndex(values, value) {
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

/** `ys` over the rising `xs` at `x`, on the straight line between neighbours; null outside. */
function valueAt(xs, ys, x) {
    const i = floorIndex(xs, x);
    if (i < 0)
        return null;
    if (xs[i] === x)
        return ys[i];
    if (i + 1 >= xs.length)
        return null;
    return ys[i] + (ys[i + 1] - ys[i]) * (x - xs[i]) / (xs[i + 1] - xs[i]);
}

/** Samples of a lap at the places of `grid`; whole numbers, as gears, change at their tick. */
function resampled(samples, path, grid, whole) {
    const { ticks, values } = path;
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
 * The time since the line over the distance, as two arrays that also hold the line at both ends: a
 * lap starts and ends between two ticks, and is taken to go on as at the nearest ones.
 */
function elapsedOf(lap) {
    if (lap.elapsed)
        return lap.elapsed;
    const { ticks, values } = pathOf(lap, 'distance');
    const distances = [];
    const times = [];
    ticks.forEach((tick, i) => {
        if (!Number.isNaN(lap.ticks.time[tick])) {
            distances.push(values[i]);
            times.push(lap.ticks.time[tick]);
        }
    });
    if (distances.length > 1) {
        if (lap.fromLine && distances[0] > 0) {
            distances.unshift(0);
            times.unshift(0);
        }
        const last = distances.length - 1;
        const step = distances[last] - distances[last - 1];
        const left = lap.trackLength - distances[last];
        if (lap.completed && left > 0 && left < 2 * step) {
            times.push(times[last] + (times[last] - times[last - 1]) * left / step);
            distances.push(lap.trackLength);
        }
    }
    lap.elapsed = { distances, times };
    return lap.elapsed;
}

/** Why there is no time difference between `lap` and `reference`; null if there is one. */
function differenceObstacle(lap, reference) {
    if (lap.track !== reference.track)
        return 'another track';
    for (const one of [lap, reference]) {
        if (elapsedOf(one).distances.length < 2)
            return `${one.label} has no distance or no time`;
        if (!one.fromLine)
            return `${one.label} does not start at the line`;
    }
    return null;
}

/** Seconds that `lap` is behind `reference` at `distance`; null where one of them was not. */
function differenceAt(lap, reference, distance) {
    const one = elapsedOf(lap);
    const other = elapsedOf(reference);
    const time = valueAt(one.distances, one.times, distance);
    const referenceTime = valueAt(other.distances, other.times, distance);
    return time === null || referenceTime === null ? null : time - referenceTime;
}

/** differenceAt() at the places of `grid`, which are those of `lap` over `axis`. */
function differences(lap, reference, grid, axis) {
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

/** The least of 1, 2, 5, 10, 20... times a power of ten that is at least `size`. */
function niceStep(size) {
    const power = 10 ** Math.floor(Math.log10(size));
    return [1, 2, 5, 10].map((digit) => digit * power).find((step) => step >= size * 0.999999);
}

/** Places to show `laps` at: rising, evenly spaced, from where any starts to where any ends. */
function commonGrid(laps, axis) {
    let start = Infinity;
    let end = -Infinity;
    for (const lap of laps) {
        const { values } = pathOf(lap, axis);
        if (values.length === 0)
            continue;
        start = Math.min(start, values[0], lap.fromLine ? 0 : values[0]);
        end = Math.max(end, values[values.length - 1]);
        const elapsed = axis === 'distance' ? elapsedOf(lap).distances : elapsedOf(lap).times;
        if (elapsed.length > 0)
            end = Math.max(end, elapsed[elapsed.length - 1]);
    }
    if (!(end > start))
        return [];
    const places = 8000; // finer than any screen, and than most recordings
    const step = niceStep((end - start) / places);
    const grid = [];
    for (let i = Math.ceil(start / step); i * step < end; ++i)
        grid.push(i * step);
    grid.push(end);
    return grid;
}
