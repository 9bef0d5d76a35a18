import assert from 'node:assert';
import { test } from 'node:test';
import {
    commonGrid, differenceAt, differenceObstacle, differences, elapsedOf, floorIndex, nearestIndex, niceStep,
    pathOf, resampled, valueAt,
} from '../../../../../host/report/page/overlay.js';
import { steadyLap, testLap } from './laps.js';

test('a path leaves out ticks without a place, and those that do not move on', () => {
    const lap = testLap([1, NaN, 2, 2, 1.5, 3], [0, 1, 2, 3, 4, 5]);
    assert.deepStrictEqual(pathOf(lap, 'distance'), { ticks: [0, 2, 5], values: [1, 2, 3] });
    assert.strictEqual(pathOf(lap, 'distance'), pathOf(lap, 'distance'), 'found only once');
    assert.deepStrictEqual(pathOf(testLap([], []), 'time'), { ticks: [], values: [] });
});

test('the index below and the nearest index', () => {
    const values = [1, 2, 4];
    assert.deepStrictEqual([0, 1, 1.9, 2, 5].map((value) => floorIndex(values, value)), [-1, 0, 0, 1, 2]);
    assert.deepStrictEqual([0, 1.4, 1.6, 3.1, 9].map((value) => nearestIndex(values, value)), [0, 0, 1, 2, 2]);
    assert.strictEqual(floorIndex([], 1), -1);
    assert.strictEqual(nearestIndex([], 1), 0);
});

test('values lie on straight lines, and nowhere outside', () => {
    const xs = [1, 2, 4];
    const ys = [10, 20, 0];
    assert.deepStrictEqual([0.9, 1, 1.5, 3, 4, 4.1].map((x) => valueAt(xs, ys, x)),
        [null, 10, 15, 10, 0, null]);
});

test('samples between two ticks: a line, a step for whole numbers, none beside a missing one', () => {
    const path = { ticks: [0, 1, 2, 3], values: [0, 10, 20, 30] };
    const grid = [-1, 0, 5, 10, 15, 25, 30, 31];
    assert.deepStrictEqual(resampled(Float64Array.of(1, 2, 4, NaN), path, grid, false),
        [null, 1, 1.5, 2, 3, null, null, null]);
    assert.deepStrictEqual(resampled(Float64Array.of(1, 2, 4, 3), path, grid, true),
        [null, 1, 1, 2, 2, 4, 3, null]);
    assert.deepStrictEqual(resampled(Float64Array.of(), { ticks: [], values: [] }, [1], false), [null]);
});

test('a lap reaches from line to line', () => {
    const { distances, times } = elapsedOf(steadyLap(20));
    assert.deepStrictEqual([distances[0], times[0]], [0, 0]);
    assert.strictEqual(distances[distances.length - 1], 100);
    assert.ok(Math.abs(times[times.length - 1] - 5) < 1e-12);
});

test('a lap without a start or an end has none', () => {
    const { distances } = elapsedOf(steadyLap(20, { fromLine: false, completed: false }));
    assert.deepStrictEqual([distances[0], distances[distances.length - 1]], [0.5, 99.5]);
    const stopped = elapsedOf(testLap([1, 2, 50], [1, 2, 3]));
    assert.strictEqual(stopped.distances[stopped.distances.length - 1], 100, 'one step of 48 m is left');
    const early = elapsedOf(testLap([1, 2, 3], [1, 2, 3]));
    assert.strictEqual(early.distances[early.distances.length - 1], 3, 'the line is 97 steps away');
    assert.deepStrictEqual(elapsedOf(testLap([1], [1])), { distances: [1], times: [1] });
    assert.deepStrictEqual(elapsedOf(testLap([1, 2], [NaN, NaN])), { distances: [], times: [] });
});

test('the difference of two steady laps grows evenly', () => {
    const [fast, slow] = [steadyLap(20), steadyLap(10)];
    for (const distance of [0, 0.25, 33.3, 99.9, 100])
        assert.ok(Math.abs(Number(differenceAt(slow, fast, distance)) - distance / 20) < 1e-12, `${distance}`);
    assert.strictEqual(differenceAt(slow, fast, 100.1), null);
    const overTime = differences(slow, fast, [0, 5, 10, 11], 'time').map((one) => one?.toFixed(9));
    assert.deepStrictEqual(overTime, ['0.000000000', '2.500000000', '5.000000000', undefined]);
});

test('laps that do not compare say why', () => {
    const lap = steadyLap(20);
    assert.strictEqual(differenceObstacle(lap, steadyLap(10)), null);
    assert.match(String(differenceObstacle(lap, steadyLap(10, { track: 'Oval' }))), /different tracks/);
    assert.match(String(differenceObstacle(lap, steadyLap(10, { fromLine: false, label: 'B2' }))),
        /^B2 does not start at/);
    assert.match(String(differenceObstacle(testLap([1], [1], { label: '#9' }), lap)), /^#9 has no distances/);
    assert.deepStrictEqual(differences(lap, steadyLap(10, { track: 'Oval' }), [0, 1], 'distance'), [null, null]);
});

test('steps are 1, 2 or 5 times a power of ten', () => {
    assert.deepStrictEqual([1, 1.1, 2, 3, 5.1, 0.03].map(niceStep), [1, 2, 2, 5, 10, 0.05]);
});

test('the grid reaches from the first start to the last end', () => {
    const grid = commonGrid([steadyLap(20), testLap([5, 120], [1, 9], { completed: false })], 'distance');
    assert.strictEqual(grid[0], 0);
    assert.strictEqual(grid[grid.length - 1], 120);
    assert.ok(grid.length > 2000 && grid.length <= 8001, `${grid.length}`);
    assert.ok(grid.every((place, i) => i === 0 || place > grid[i - 1]));
    assert.strictEqual(commonGrid([steadyLap(10)], 'time').pop()?.toFixed(9), '10.000000000');
    assert.deepStrictEqual(commonGrid([], 'distance'), []);
    assert.deepStrictEqual(commonGrid([testLap([NaN], [NaN])], 'distance'), []);
});

test('distances go from line to line, also for a part of a lap', () => {
    const grid = commonGrid([testLap([46, 60], [1, 9])], 'distance');
    assert.deepStrictEqual([grid[0], grid[grid.length - 1]], [0, 100]);
    const unknown = commonGrid([testLap([46, 60], [1, 9], { fromLine: false, trackLength: null })], 'distance');
    assert.deepStrictEqual([unknown[0], unknown[unknown.length - 1]], [46, 60]);
});
