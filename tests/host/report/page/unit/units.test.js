import assert from 'node:assert';
import { test } from 'node:test';
import {
    averageQuantity, formatNumber, formatQuantity, shownUnit, shownUnitOf,
} from '../../../../../host/report/page/units.js';

test('drivers see their own units, or what was recorded', () => {
    const speed = { value: 10, unit: 'm/s' };
    assert.strictEqual(formatQuantity(speed, 'driver', 1), '36.0 km/h');
    assert.strictEqual(formatQuantity(speed, 'recorded', 1), '10.0 m/s');
    assert.strictEqual(formatQuantity({ value: Math.PI, unit: 'rad' }, 'driver', 0), '180 °');
    assert.strictEqual(formatQuantity({ value: 0.5, unit: 'pu' }, 'driver', 0), '50 %');
    assert.strictEqual(formatNumber(speed, 'driver', 2), '36.00');
});

test('a unit that nobody knows is shown as recorded', () => {
    for (const unit of ['furlong', '', 'constructor', '__proto__'])
        assert.deepStrictEqual(shownUnit(unit, 'driver'), { unit, factor: 1 });
    assert.strictEqual(formatQuantity({ value: 3, unit: '' }, 'driver'), '3');
});

test('five digits and no trailing zeros', () => {
    assert.strictEqual(formatQuantity({ value: 1013.256, unit: 'hPa' }, 'driver'), '1013.3 hPa');
    assert.strictEqual(formatQuantity({ value: 40, unit: 'l' }, 'driver'), '40 l');
    assert.strictEqual(formatQuantity({ value: -2.5, unit: 'l' }, 'driver'), '−2.5 l');
});

test('a dash for what is not known', () => {
    for (const nothing of [null, undefined, { value: NaN, unit: 'l' }, { value: Infinity, unit: 'l' }])
        assert.strictEqual(formatQuantity(nothing, 'driver', 1), '–');
    assert.strictEqual(formatNumber(null, 'driver', 1), '–');
});

test('the unit of the first known quantity', () => {
    assert.strictEqual(shownUnitOf([null, { value: 1, unit: 'm/s' }], 'driver'), 'km/h');
    assert.strictEqual(shownUnitOf([null, null], 'driver'), '');
});

test('an average needs all of its quantities', () => {
    const [one, two] = [{ value: 1, unit: 'C' }, { value: 2, unit: 'C' }];
    assert.deepStrictEqual(averageQuantity([one, two]), { value: 1.5, unit: 'C' });
    assert.strictEqual(averageQuantity([one, null]), null);
    assert.strictEqual(averageQuantity([]), null);
});
