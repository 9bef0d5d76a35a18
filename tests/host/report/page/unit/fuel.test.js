import assert from 'node:assert';
import { test } from 'node:test';
import { fuelSummary, fuelUse } from '../../../../../host/report/page/fuel.js';
import { testLap } from './laps.js';

/**
 * @param {number} index
 * @param {number | null} used
 * @param {number | null} end
 * @param {number | null} time
 */
function fuelLap(index, used, end, time = 60) {
    /** @param {number | null} value */
    const litres = (value) => (value === null ? null : { value, unit: 'l' });
    const fuel = { start: null, end: litres(end) };
    return testLap([], [], { index, time, timed: time !== null, fuelUsed: litres(used), fuel });
}

test('timed laps that used fuel count; what is left is that of the last lap', () => {
    const laps = [fuelLap(0, 9, 10, null), fuelLap(1, 2, 8), fuelLap(2, 0, 8), fuelLap(3, 3, 5.1),
        fuelLap(4, 1, null)];
    const use = fuelUse(laps);
    assert.deepStrictEqual([use?.average, use?.laps, use?.left, use?.last.index, use?.lapsLeft], [2, 3, 5.1, 3, 2]);
    assert.strictEqual(fuelSummary(laps),
        'Average use: 2.000 l per lap, over 3 timed laps. 5.10 l left after lap #4: enough for 2 more laps.');
});

test('the parts of a lap that a stop splits do not count, although they have times', () => {
    const part = { ...fuelLap(0, 0.01, 8), kind: 'partial', timed: false, part: { begin: 0, end: 46 } };
    const filled = { ...fuelLap(1, 0.2, 9), fuelAdded: { value: 2, unit: 'l' } };
    const use = fuelUse([part, filled, fuelLap(2, 0.14, 10), fuelLap(3, 0.15, 9.9)]);
    assert.deepStrictEqual([use?.average.toFixed(3), use?.laps, use?.lapsLeft], ['0.145', 2, 68]);
});

test('one lap is not "laps"', () => {
    assert.strictEqual(fuelSummary([fuelLap(0, 2, 3)]),
        'Average use: 2.000 l per lap, over 1 timed lap. 3.00 l left after lap #1: enough for 1 more lap.');
});

test('nothing is said where nothing is known', () => {
    for (const laps of [[], [fuelLap(0, 2, 3, null)], [fuelLap(0, 2, null)], [fuelLap(0, null, 3)]])
        assert.strictEqual(fuelSummary(laps), '');
});
