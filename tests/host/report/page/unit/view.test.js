import assert from 'node:assert';
import { beforeEach, test } from 'node:test';
import {
    changed, fullRange, listedLaps, onChange, paintedLaps, panBy, setAxis, setCursor, setRange, setReference,
    setUnits, shownRange, toggleChannel, toggleLap, view, zoomBy,
} from '../../../../../host/report/page/view.js';
import { resetView, steadyLap } from './laps.js';

beforeEach(resetView);

const [a, b, c] = [0, 1, 2].map((index) => steadyLap(20 + index, { index }));

test('the reference is listed first and painted last', () => {
    for (const lap of [a, b, c])
        toggleLap(lap);
    assert.strictEqual(view.reference, a);
    setReference(b);
    assert.deepStrictEqual(listedLaps(), [b, a, c]);
    assert.deepStrictEqual(paintedLaps(), [c, a, b]);
});

test('a lap that is compared with is drawn; when it goes, the next one takes its place', () => {
    toggleLap(a);
    setReference(b);
    assert.deepStrictEqual(view.drawn, [a, b]);
    toggleLap(b);
    assert.strictEqual(view.reference, a);
    toggleLap(a);
    assert.strictEqual(view.reference, null);
    assert.deepStrictEqual(fullRange(), { min: 0, max: 1 });
});

test('a lap gets the first colour that is free', () => {
    for (const lap of [a, b, a, c])
        toggleLap(lap);
    assert.deepStrictEqual([b.slot, c.slot], [1, 0]);
});

test('a stretch stays within the lap, and has a least length', () => {
    toggleLap(a);
    assert.deepStrictEqual(fullRange(), { min: 0, max: 100 });
    setRange({ min: 90, max: 110 });
    assert.deepStrictEqual(view.range, { min: 80, max: 100 });
    setRange({ min: 50, max: 50 });
    assert.deepStrictEqual(view.range, { min: 50, max: 50.05 });
    setRange({ min: -5, max: 105 });
    assert.strictEqual(view.range, null);
    assert.deepStrictEqual(shownRange(), { min: 0, max: 100 });
});

test('zooming keeps a place where it is, and scrolling stops at the ends', () => {
    toggleLap(a);
    zoomBy(0.5, 20);
    assert.deepStrictEqual(view.range, { min: 10, max: 60 });
    panBy(0.5);
    assert.deepStrictEqual(view.range, { min: 35, max: 85 });
    panBy(1);
    assert.deepStrictEqual(view.range, { min: 50, max: 100 });
    zoomBy(2, 50);
    assert.strictEqual(view.range, null);
});

test('the cursor stays on the axis', () => {
    toggleLap(a);
    setCursor(-3);
    assert.strictEqual(view.cursor, 0);
    setCursor(300);
    assert.strictEqual(view.cursor, 100);
});

test('over the other axis the same place and stretch are shown', () => {
    toggleLap(a);
    setCursor(40);
    setRange({ min: 20, max: 60 });
    setAxis('time');
    assert.deepStrictEqual([view.range?.min, view.range?.max, view.cursor].map((x) => x?.toFixed(9)),
        ['1.000000000', '3.000000000', '2.000000000']);
    assert.strictEqual(fullRange().max, 5);
    setAxis('distance');
    assert.strictEqual(view.cursor?.toFixed(9), '40.000000000');
});

test('over an axis that a place is not on, nothing is chosen', () => {
    toggleLap(steadyLap(20, { completed: false, fromLine: false }));
    setCursor(0.5);
    view.cursor = 0.1;
    view.range = { min: 0.1, max: 50 };
    setAxis('time');
    assert.deepStrictEqual([view.cursor, view.range], [null, null]);
});

test('listeners hear of what they asked for', () => {
    /** @type {string[]} */
    const heard = [];
    onChange(['units', 'channels'], () => heard.push('first'));
    onChange(['channels'], () => heard.push('second'));
    setUnits('recorded');
    assert.deepStrictEqual(heard, ['first']);
    toggleChannel('gear');
    assert.deepStrictEqual(heard, ['first', 'first', 'second']);
    assert.deepStrictEqual([...view.hidden], ['gear']);
    toggleChannel('gear');
    assert.strictEqual(view.hidden.size, 0);
    changed('theme');
    assert.strictEqual(heard.length, 5);
});
