import assert from 'node:assert';
import { beforeEach, test } from 'node:test';
import { partialNote } from '../../../../../host/report/page/laptable.js';
import { sessionColumns, sessionLaps } from '../../../../../host/report/page/session.js';
import { view } from '../../../../../host/report/page/view.js';
import { resetView, testLap, testSession } from './laps.js';

beforeEach(resetView);

test('timed laps are those that count', () => {
    view.model.laps = [testLap([], [], { bestOfFile: true }), testLap([], [], { timed: false, time: 9 }),
        testLap([], [], { session: 1 })];
    const { count, timed, best } = sessionLaps(0, view.model);
    assert.deepStrictEqual([count, timed, best], [2, 1, view.model.laps[0]]);
    assert.strictEqual(sessionLaps(1, view.model).best, null);
});

test('the table of sessions leaves out what is the same in all, and what is not known', () => {
    view.model.sessions = [testSession({ car: 'Fox' }), testSession({ file: 'b.ibt', car: 'Hare' })];
    view.model.laps = [testLap([], [], { bestOfFile: true, time: 61.5 })];
    assert.deepStrictEqual(sessionColumns(view.model).map(({ title, texts }) => [title, texts]), [
        ['File', ['a.ibt', 'b.ibt']], ['Car', ['Fox', 'Hare']], ['Best lap', ['1:01.500', null]],
        ['Timed laps', ['1 of 1', '0 of 0']]]);
});

test('partial laps are named below the table', () => {
    view.model.laps = [testLap([], [])];
    assert.strictEqual(partialNote(), '');
    view.model.laps.push(testLap([], [], { index: 1, part: { begin: 0.1, end: 45.2 } }));
    assert.strictEqual(partialNote(),
        'Recorded in part: #2 from 0 m to 45 m. The times of partial laps are not compared.');
});
