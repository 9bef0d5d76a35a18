import assert from 'node:assert';
import { beforeEach, test } from 'node:test';
import { tyreColumns } from '../../../../../host/report/page/tyres.js';
import { view } from '../../../../../host/report/page/view.js';
import { resetView, testLap, testSession } from './laps.js';

/** @import { Lap, Tyre } from '../../../../../host/report/page/types.js' */

beforeEach(resetView);

/** @param {number} value */
function strips(value) {
    return [value, value, value].map((one) => ({ value: one, unit: 'C' }));
}

/** @param {Partial<Tyre>} known @param {number} session */
function lapWith(known, session = 0) {
    const lap = testLap([], [], { session });
    for (const corner of /** @type {const} */ (['lf', 'rf', 'lr', 'rr']))
        lap.tyres[corner] = { ...lap.tyres[corner], ...known };
    return lap;
}

/** @param {boolean[]} seenAtStops for each session @param {Lap[]} laps */
function columns(seenAtStops, ...laps) {
    view.model.sessions = seenAtStops.map((tyresSeenAtStops) => testSession({ tyresSeenAtStops }));
    return tyreColumns(laps).map(({ title, pick }) => [title, laps.map((lap) => pick(lap, lap.tyres.lf)?.value)]);
}

test('a car without surface temperatures has no column of them', () => {
    assert.deepStrictEqual(columns([false], lapWith({ carcass: strips(60) })), [['Carcass, mean', [60]]]);
});

test('what was seen at stops is no mean over the lap', () => {
    const lap = lapWith({ surface: strips(80), carcass: strips(60), tread: strips(0.9) });
    assert.deepStrictEqual(columns([true], lap), [['Surface, mean', [80]], ['Carcass, as of the last stop', [60]],
        ['Tread, as of the last stop', [0.9]]]);
});

test('two files that recorded tyres differently share no column', () => {
    const laps = [lapWith({ carcass: strips(60) }), lapWith({ carcass: strips(70) }, 1)];
    assert.deepStrictEqual(columns([false, true], ...laps),
        [['Carcass, mean', [60, undefined]], ['Carcass, as of the last stop', [undefined, 70]]]);
});
