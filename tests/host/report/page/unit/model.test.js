import assert from 'node:assert';
import { test } from 'node:test';
import { deflateSync } from 'node:zlib';
import { fileLetter, firstLaps, lapLabel, readModel } from '../../../../../host/report/page/model.js';
import { SampleReader, unpackedBytes } from '../../../../../host/report/page/samples.js';
import { testLap, testSession } from './laps.js';

/** @import { Lap } from '../../../../../host/report/page/types.js' */

const tenths = { base: 5, step: 0.1, whole: false };

test('numbers are seven bits to a byte, the lowest first', () => {
    const reader = new SampleReader(Uint8Array.of(5, 0x80 | 1, 2, 0xff, 0xff, 0xff, 0xff, 0xff, 0x7f));
    assert.deepStrictEqual([reader.number(), reader.number(), reader.number()],
        [5, 1 + 2 * 128, 2 ** 42 - 1]);
    assert.throws(() => reader.number(), /its samples are incomplete/);
    assert.throws(() => new SampleReader(Uint8Array.of(0x80)).number(), /incomplete/);
});

test('samples are steps from the last one that is there, and start again with each lap', () => {
    // +2 (5), missing (0), -1 (2); then +1 (3), no change (1)
    const reader = new SampleReader(Uint8Array.of(5, 0, 2, 3, 1));
    const laps = [testLap([0, 0, 0], [0, 0, 0]), testLap([0, 0], [0, 0])];
    const [first, second] = reader.laps({ unit: 'm', packings: [tenths] }, laps).map((samples) => [...samples]);
    assert.deepStrictEqual(first, [5.2, NaN, 5.1]);
    assert.deepStrictEqual(second, [5.1, 5.1]);
});

test('each file has its own steps', () => {
    const reader = new SampleReader(Uint8Array.of(3, 3));
    const channel = { unit: 'm', packings: [tenths, { base: 900, step: 2, whole: true }] };
    const laps = [testLap([0], [0]), testLap([0], [0], { session: 1 })];
    assert.deepStrictEqual(reader.laps(channel, laps).map(([sample]) => sample), [5.1, 902]);
});

test('samples are zlib in base64, and nothing at all is an empty text', async () => {
    const packed = deflateSync(Uint8Array.of(1, 2, 3)).toString('base64');
    assert.deepStrictEqual([...await unpackedBytes(packed)], [1, 2, 3]);
    assert.strictEqual((await unpackedBytes('')).length, 0);
    await assert.rejects(unpackedBytes(packed.slice(0, 8)));
});

test('laps are named after their file if there are several', () => {
    const lap = testLap([], [], { number: 3, session: 1 });
    const sessions = [testSession({}), testSession({})];
    assert.strictEqual(lapLabel(lap, sessions.slice(1)), '#3');
    assert.strictEqual(lapLabel(lap, sessions), 'B3');
    assert.strictEqual(lapLabel({ ...lap, session: 25 }, sessions), 'Z3');
    assert.strictEqual(lapLabel({ ...lap, session: 26 }, sessions), '27:3');
    assert.deepStrictEqual([0, 25, 26].map(fileLetter), ['A', 'Z', '27']);
});

test('laps of one track share one length, whatever each file measured', async () => {
    const packing = { ...tenths, base: 0 };
    const place = { unit: 'm', packings: [packing, { ...packing, whole: true }, packing] };
    const lap = { ...testLap([0], [0]), samples: 1 };
    const { laps, channels } = await readModel({
        sessions: [testSession({}), testSession({ trackLength: 101 }), testSession({ track: 'Oval', trackLength: 7 })],
        laps: [0, 1, 2].map((session) => ({ ...lap, session })),
        places: [place, place, place, place],
        channels: [{ ...place, name: 'speed', calculated: false }, { ...place, name: 'fuel', calculated: true }],
        samples: deflateSync(new Uint8Array(6 * 3).fill(3)).toString('base64'),
    });
    assert.deepStrictEqual(laps.map(({ trackLength }) => trackLength), [100, 100, 7]);
    assert.deepStrictEqual(channels.map(({ title, key }) => [title, key]),
        [['Speed', 'speed'], ['fuel', 'calculated fuel']]);
    assert.deepStrictEqual(channels.map(({ whole }) => whole), [false, false]);
    assert.deepStrictEqual([...laps[2].ticks.longitude], [0.1]);
    assert.deepStrictEqual([...channels[1].laps[2]], [0.1]);
});

test('first drawn are the fastest lap and the next one', () => {
    const laps = [11, 10, 12].map((time, index) => testLap([], [], { index, time }));
    assert.deepStrictEqual(firstLaps(laps), [laps[1], laps[0]]);
    const out = testLap([], [], { time: 9, kind: 'partial', timed: false });
    assert.deepStrictEqual(firstLaps([out, laps[2]]), [laps[2]]);
});

test('of several files the best laps of one track are drawn, up to four', () => {
    /** @type {Lap[]} */
    const laps = Array.from({ length: 6 }, (_, session) =>
        testLap([], [], { session, time: 20 - session, bestOfFile: true }));
    laps.push(testLap([], [], { time: 14.5 }), testLap([], [], { time: 14.6, bestOfFile: true, track: 'Oval' }));
    assert.deepStrictEqual(firstLaps(laps).map(({ time }) => time), [14.5, 15, 16, 17]);
});

test('without times the longest lap is drawn', () => {
    const laps = [3, 5, 4].map((samples) => testLap([], [], { samples, time: null, timed: false }));
    assert.deepStrictEqual(firstLaps(laps), [laps[1]]);
});
