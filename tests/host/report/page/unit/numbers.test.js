import assert from 'node:assert';
import { test } from 'node:test';
import {
    decimalsFor, extent, fixed, formatGap, formatLapTime, median,
} from '../../../../../host/report/page/numbers.js';

test('a number has a real minus, and none when it rounds to zero', () => {
    assert.strictEqual(fixed(-1.25, 1), '−1.3');
    assert.strictEqual(fixed(-0.04, 1), '0.0');
    assert.strictEqual(fixed(0.04, 1), '0.0');
    assert.strictEqual(fixed(12, 0), '12');
});

test('four digits, but not more than six decimals', () => {
    assert.deepStrictEqual([12345, 1000, 999, 10, 9.99, 0.5, 1e-9, 0].map(decimalsFor),
        [0, 0, 1, 2, 3, 4, 6, 0]);
});

test('lap times', () => {
    assert.strictEqual(formatLapTime(null), '–');
    assert.strictEqual(formatLapTime(0), '0:00.000');
    assert.strictEqual(formatLapTime(59.9994), '0:59.999');
    assert.strictEqual(formatLapTime(59.9996), '1:00.000');
    assert.strictEqual(formatLapTime(65.123), '1:05.123');
    assert.strictEqual(formatLapTime(3599.9996), '1:00:00.000');
    assert.strictEqual(formatLapTime(2 * 3600 + 3 * 60 + 4.5), '2:03:04.500');
});

test('gaps have a sign unless they are zero', () => {
    assert.deepStrictEqual([0.156, -0.156, 0, 0.0004, -0.0004].map(formatGap),
        ['+0.156', '−0.156', '0.000', '0.000', '0.000']);
});

test('the extent of many numbers, and of none', () => {
    assert.deepStrictEqual(extent([3, NaN, -1, 2]), { least: -1, greatest: 3 });
    assert.deepStrictEqual(extent([NaN]), { least: Infinity, greatest: -Infinity });
    assert.strictEqual(extent(new Float64Array(1e6).fill(7)).least, 7);
});

test('the number in the middle', () => {
    assert.deepStrictEqual([[5, 1, 9], [4, 2], [3], []].map(median), [5, 2, 3, 0]);
});
