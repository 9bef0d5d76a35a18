import assert from 'node:assert';
import { test } from 'node:test';
import {
    colourRuns, fittedMap, hasPosition, mapPlace, mapPoints, nearestPoint, outlineLap,
    projection, speedColour, speedLimits,
} from '../../../../../host/report/page/mapgeometry.js';
import { steadyLap, testLap } from './laps.js';

/** @param {number[]} latitudes @param {number[]} longitudes */
function placedLap(latitudes, longitudes) {
    const lap = testLap(latitudes.map((_, i) => i), latitudes.map((_, i) => i));
    lap.ticks.latitude = Float64Array.from(latitudes);
    lap.ticks.longitude = Float64Array.from(longitudes);
    return lap;
}

/** @param {{ x: number, y: number }} point */
function rounded({ x, y }) {
    return [Math.round(x * 1000) / 1000, Math.round(y * 1000) / 1000].map((number) => number + 0);
}

test('positions become metres east and south of the first one', () => {
    const lap = placedLap([NaN, 60, 60.001, 60], [9, 9, 9, 9.001]);
    assert.ok(hasPosition(lap));
    const project = projection(lap);
    assert.deepStrictEqual([1, 2, 3].map((tick) => rounded(project(lap, tick))),
        [[0, 0], [0, -111.32], [55.66, 0]]);
});

test('without positions the map is a ring, clockwise from the top', () => {
    const lap = testLap([0, 25, 50, 75], [0, 1, 2, 3]);
    assert.ok(!hasPosition(lap));
    const project = projection(lap);
    assert.deepStrictEqual([0, 1, 2, 3].map((tick) => rounded(project(lap, tick))),
        [[0, -1], [1, 0], [0, 1], [-1, 0]]);
    const shorter = projection(testLap([0, 50], [0, 1], { trackLength: null }));
    assert.deepStrictEqual(rounded(shorter(lap, 1)), [0, 1], 'a track as long as the lap');
});

test('points without a position are left out, and without a speed have none', () => {
    const lap = placedLap([50, NaN, 50], [9, 9, 9]);
    const points = mapPoints(lap, 'distance', projection(lap), Float64Array.of(1, 2, 3));
    assert.deepStrictEqual(points.map(({ speed, place }) => [speed, place]), [[1, 0], [3, 2]]);
    assert.ok(mapPoints(lap, 'time', projection(lap), undefined).every(({ speed }) => Number.isNaN(speed)));
});

test('where the car was put after a reset is not on the way of the lap', () => {
    const lap = placedLap([50, 50.1, 50.2, 50.9], [9, 9, 9, 9]);
    lap.ticks.distance = Float64Array.of(0, 10, 20, NaN);
    for (const axis of /** @type {const} */ (['distance', 'time']))
        assert.deepStrictEqual(mapPoints(lap, axis, projection(lap), undefined).map(({ place }) => place).length, 3);
});

test('the lap that goes farthest stands for the track', () => {
    const part = steadyLap(20);
    const reference = testLap([0, 20, 46], [0, 1, 2], { index: 1 });
    const elsewhere = testLap([0, 500], [0, 1], { track: 'Oval' });
    const placed = placedLap([50, 50.1], [9, 9]);
    assert.strictEqual(outlineLap(reference, [elsewhere, placed, part, reference]), part);
    assert.strictEqual(outlineLap(placed, [part, placed]), placed);
});

test('laps of hours fit, too', () => {
    const points = Array.from({ length: 400000 }, (_, i) => ({ x: i, y: -i, speed: i, place: i }));
    assert.strictEqual(speedLimits(points).fastest, 399999);
    assert.ok(Number.isFinite(fittedMap(points, 444).scale(points[7]).x));
    const distances = points.map(({ x }) => x);
    const long = testLap(distances, distances, { trackLength: null });
    assert.ok(Number.isFinite(projection(long)(long, 5).x));
});

test('a lap is between two ticks, and just after the last one', () => {
    const lap = testLap([0, 25, 50], [0, 1, 2]);
    /** @param {unknown} _lap @param {number} tick */
    const project = (_lap, tick) => ({ x: tick * 10, y: 0 });
    assert.deepStrictEqual(mapPlace(lap, 'distance', project, 12.5), { x: 5, y: 0 });
    assert.deepStrictEqual(mapPlace(lap, 'time', project, 1.5), { x: 15, y: 0 });
    assert.deepStrictEqual(mapPlace(lap, 'distance', project, 50.4), { x: 20, y: 0 });
    assert.strictEqual(mapPlace(lap, 'distance', project, 51), null);
    assert.strictEqual(mapPlace(lap, 'distance', project, -1), null);
    assert.strictEqual(mapPlace(lap, 'distance', () => ({ x: NaN, y: 0 }), 12.5), null);
});

test('a map fits into its width, with a margin, in the middle', () => {
    const corners = [{ x: 0, y: 0 }, { x: 100, y: 50 }];
    const { height, scale } = fittedMap(corners, 444);
    assert.strictEqual(height, 244);
    assert.deepStrictEqual(corners.map(scale), [{ x: 22, y: 22 }, { x: 422, y: 222 }]);
    const tall = fittedMap([{ x: 0, y: 0 }, { x: 1, y: 100 }], 444);
    assert.strictEqual(tall.height, 360);
    assert.strictEqual(tall.scale({ x: 0.5, y: 50 }).x, 222);
    const still = fittedMap([{ x: 3, y: 3 }, { x: 3, y: 3 }], 444);
    assert.strictEqual(still.height, 360);
    assert.ok(Number.isFinite(still.scale({ x: 3, y: 3 }).x));
});

test('colours run from dark to light', () => {
    assert.strictEqual(speedColour(0), 'rgb(70,50,126)');
    assert.strictEqual(speedColour(1), 'rgb(253,231,37)');
    assert.strictEqual(speedColour(-1), speedColour(0));
    assert.strictEqual(speedColour(2), speedColour(1));
    assert.strictEqual(speedColour(0.5), 'rgb(31,161,135)');
});

test('neighbours of one colour are one run, which reaches to the next', () => {
    const colours = ['red', 'red', null, 'blue', 'red'];
    assert.deepStrictEqual(colourRuns(colours, (colour) => colour), [
        { colour: 'red', from: 0, to: 2 }, { colour: 'blue', from: 3, to: 4 }, { colour: 'red', from: 4, to: 4 },
    ]);
    assert.deepStrictEqual(colourRuns([], () => 'red'), []);
});

test('speeds that are missing do not count', () => {
    const point = { x: 0, y: 0, place: 0 };
    assert.deepStrictEqual(speedLimits([NaN, 3, 1].map((speed) => ({ ...point, speed }))), { slowest: 1, fastest: 3 });
    assert.ok(!Number.isFinite(speedLimits([{ ...point, speed: NaN }]).slowest));
});

test('the nearest point within reach', () => {
    const points = [{ x: 0, y: 0 }, { x: 10, y: 0 }];
    /** @param {{ x: number, y: number }} point */
    const same = (point) => point;
    assert.strictEqual(nearestPoint(points, { x: 6, y: 0 }, 30, same), points[1]);
    assert.strictEqual(nearestPoint(points, { x: 0, y: 31 }, 30, same), null);
    assert.strictEqual(nearestPoint(points, { x: 10, y: 0 }, 30, ({ x, y }) => ({ x: x + 10, y })), points[0]);
    assert.strictEqual(mapPoints(steadyLap(20), 'distance', projection(steadyLap(20)), undefined).length, 100);
});
