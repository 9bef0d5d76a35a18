import assert from 'node:assert';
import { beforeEach, test } from 'node:test';
import {
    axisTexts, axisTitle, channelChart, chartContents, differenceLimit, formatPlace, noDifferenceReason,
} from '../../../../../host/report/page/chartdata.js';
import { setUnits, toggleChannel, toggleLap, view } from '../../../../../host/report/page/view.js';
import { resetView, steadyLap, testLap } from './laps.js';

/** @import { Channel } from '../../../../../host/report/page/types.js' */

beforeEach(resetView);

/** @param {number[]} samples @param {Partial<Channel>} changes @returns {Channel} */
function testChannel(samples, changes = {}) {
    return {
        name: 'speed', calculated: false, title: 'Speed', key: 'speed', unit: 'm/s', packings: [],
        whole: false, laps: [Float64Array.from(samples)], ...changes,
    };
}

const lap = testLap([0, 50, 100], [0, 1, 2]);

/** @param {Channel} channel */
function shown(channel) {
    return channelChart(channel, [lap]);
}

test('axes name their unit, and places theirs', () => {
    assert.deepStrictEqual([axisTitle(), formatPlace(12.34)], ['Distance (m)', '12.3 m']);
    view.axis = 'time';
    assert.deepStrictEqual([axisTitle(), formatPlace(12.345)], ['Time (s)', '12.35 s']);
});

test('numbers along an axis have the decimals that their distance needs', () => {
    assert.deepStrictEqual(axisTexts([0, 100, null], 100), ['0', '100', null]);
    assert.deepStrictEqual(axisTexts([-0.05, 0], 0.05), ['−0.05', '0.00']);
});

test('a channel is shown in the chosen unit', () => {
    toggleLap(lap);
    const chart = shown(testChannel([10, 20, NaN]));
    assert.deepStrictEqual([chart.unit, chart.data[0][0], chart.format(36)], ['km/h', 36, '36.00']);
    assert.strictEqual(chart.data[0][view.grid.length - 1], null);
    setUnits('recorded');
    assert.deepStrictEqual([shown(testChannel([10, 20, 30])).unit, shown(testChannel([10, 20, 30])).data[0][0]],
        ['m/s', 10]);
});

test('the chart of a fraction shows all of 0 to 1, others what they need', () => {
    toggleLap(lap);
    const pedal = shown(testChannel([0.2, 0.4, NaN], { unit: 'pu' }));
    assert.deepStrictEqual(pedal.ends(20, 40), [-4, 104]);
    assert.strictEqual(pedal.format(20.4), '20');
    const beyond = shown(testChannel([0, 2, 1], { unit: 'pu' }));
    assert.deepStrictEqual(beyond.ends(0, 100), [-8, 108]);
    assert.deepStrictEqual(beyond.ends(null, null), [0, 1]);
    const [low, high] = shown(testChannel([5, 5, 5])).ends(5, 5);
    assert.ok(low < 5 && 5 < high);
});

test('whole numbers have no decimals, and steps', () => {
    toggleLap(lap);
    const gear = shown(testChannel([1, 2, 3], { unit: '', whole: true }));
    assert.deepStrictEqual([gear.stepped, gear.format(2), gear.ends(1, 1)], [true, '2', [0.6, 1.4]]);
});

test('the difference comes first, unless there is a reason for none', () => {
    view.model.channels = [testChannel([]), testChannel([], { key: 'rpm', name: 'rpm' })].map(
        (channel) => ({ ...channel, laps: [new Float64Array(100), new Float64Array(100)] }));
    assert.match(chartContents().note, /^Choose a lap/);
    toggleLap(steadyLap(20));
    assert.match(chartContents().note, /^Show a second lap/);
    toggleLap(steadyLap(10, { index: 1 }));
    const { note, charts } = chartContents();
    assert.deepStrictEqual([note, charts.map(({ key }) => key)], ['', ['difference', 'speed', 'rpm']]);
    assert.deepStrictEqual([charts[0].filled, charts[0].title], [true, 'Time difference to #1']);
    assert.deepStrictEqual(charts[0].data.map((samples) => samples.slice(-1)[0]?.toFixed(6)), ['0.000000', '5.000000']);
    assert.deepStrictEqual(charts[0].ends(1, 2), [-0.1, 2.1]);
    toggleChannel('speed');
    assert.deepStrictEqual(chartContents().charts.map(({ key }) => key), ['difference', 'rpm']);
});

test('a slow lap does not flatten the others, and is said to leave the chart', () => {
    view.model.channels = [];
    for (const [index, speed] of [20, 19.9, 19.8, 0.5].entries())
        toggleLap(steadyLap(speed, { index }));
    const [{ note, ends }] = chartContents().charts;
    assert.strictEqual(note, 'above zero: slower; #4 leaves the chart');
    const [low, high] = ends(0, 195);
    assert.ok(low < 0 && high > 0.05 && high < 1, `${low} to ${high}`);
    assert.strictEqual(differenceLimit([[0, null, 3], [0, -8], [null]]), 15);
    assert.strictEqual(differenceLimit([]), 0.05);
});

test('without anything along the axis there is no chart', () => {
    toggleLap(testLap([NaN, NaN], [1, 2]));
    assert.deepStrictEqual(chartContents(), { note: 'No distances were recorded for these laps.', charts: [] });
});

test('a difference to one lap is enough', () => {
    const [one, other] = [steadyLap(20), steadyLap(10, { track: 'Oval' })];
    assert.match(String(noDifferenceReason([one, other], one)), /^No time difference: the laps are on different/);
    assert.strictEqual(noDifferenceReason([one, other, steadyLap(15)], one), null);
});
