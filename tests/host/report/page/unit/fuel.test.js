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
    return testLap([], [], { index, time, fuelUsed: litres(used), fuel: { start: null, end: litres(end) } });
}

test('timed laps that used fuel count; what is left is that of the last lap', () => {
    const laps = [fuelLap(0, 9, 10, null), fuelLap(1, 2, 8), fuelLap(2, 0, 8), fuelLap(3, 3, 5.1),
        fuelLap(4, 1, null)];
    const use = fuelUse(laps);
    assert.deepStrictEqual([use?.average, use?.laps, use?.left, use?.last.index, use?.lapsLeft], [2, 3, 5.1, 3, 2]);
    assert.strictEqual(fuelSummary(laps),
        'Average use: 2.000 l per lap (3 laps). 5.10 l left after lap #4: enough for 2 more laps.');
});

test('one lap is not "laps"', () => {
    assert.strictEqual(fuelSummary([fuelLap(0, 2, 3)]),
        'Average use: 2.000 l per lap (1 lap). 3.00 l left after lap #1: enough for 1 more lap.');
});

test('nothing is said where nothing is known', () => {
    for (const laps of [[], [fuelLap(0, 2, 3, null)], [fuelLap(0, 2, null)], [fuelLap(0, null, 3)]])
        assert.strictEqual(fuelSummary(laps), '');
});
