// Numbers: what the page contains and shows is what was recorded.

import assert from 'node:assert';
import { test } from 'node:test';
import {
    demoRecording, lapSheet, lapSheets, numberOf, readings, withPage, writeReport, zepimport,
} from './browser.js';

/**
 * Laps at constant speeds over a track of 100 m, four ticks a second, from `first` metres after the
 * line to before `last`.
 * @param {{ speed: number, first?: number, last?: number, time?: number }[]} speeds
 */
function steadyLaps(speeds) {
    return speeds.flatMap(({ speed, first = 0.5, last = 99.9, time = 100 / speed }, i) => {
        const ticks = [];
        for (let distance = first; distance < last; distance += speed / 4)
            ticks.push(distance);
        return [
            `lap|1|1|${Math.round(time * 1000)}|${i + 1}|1|${i + 1}`, 'track|Straight',
            `channel|lapdist|m|${ticks.join(' ')}`,
            `channel|lapdistpct|pu|${ticks.map((distance) => distance / 100).join(' ')}`,
            `channel|sessiontime|s|${ticks.map((_, tick) => 1000 * i + tick / 4).join(' ')}`,
            `channel|speed|m/s|${ticks.map(() => speed).join(' ')}`,
        ];
    });
}

test('the time difference of two steady laps grows evenly', async () => {
    const sheet = lapSheet('steady.laps', steadyLaps([{ speed: 20 }, { speed: 10, first: 0.75 }]));
    await withPage(writeReport([sheet], [], lapSheets()), {}, async (page) => {
        const at = async (distance) => {
            await page.evaluate((place) => report.setCursor(place), distance);
            return numberOf((await readings(page, 'difference'))[1]);
        };
        for (const distance of [0, 0.3, 10, 33.3, 50, 99, 100])
            assert.ok(Math.abs(await at(distance) - distance * (1 / 10 - 1 / 20)) < 0.0011, `${distance}`);
    });
});

test('the time difference is that of zepimport compare', async () => {
    const recording = demoRecording('compared.ibt', ['--laps', '3', '--stints', '1']);
    const [{ laps }] = JSON.parse(zepimport(['laps', '--json', recording]));
    const [first, second] = laps.filter((lap) => lap.kind === 'timed').map(({ lap }) => lap);
    const { points } = JSON.parse(zepimport(['compare', '--json', '--grid', '20',
        `${recording}:${first}`, `${recording}:${second}`]));
    await withPage(writeReport([recording]), {}, async (page) => {
        const shown = await page.evaluate(({ numbers, places }) => {
            const [reference, lap] = numbers.map((number) => report.view.model.laps[number - 1]);
            return places.map((distance) => report.differenceAt(lap, reference, distance));
        }, { numbers: [first, second], places: points.slice(0, -1).map(({ distance }) => distance) });
        assert.ok(shown.length > 40);
        shown.forEach((difference, i) => assert.ok(Math.abs(difference - points[i].difference) < 0.001,
            `${difference}, not ${points[i].difference} s at ${points[i].distance} m`));
    });
});

test('there is no time difference where laps do not compare', async () => {
    const fromThePits = lapSheet('pits.laps', steadyLaps([{ speed: 20 }, { speed: 10, first: 40 }]));
    await withPage(writeReport([fromThePits], [], lapSheets()), {}, async (page) => {
        await page.locator('#laps tr[data-lap="1"] input[type=checkbox]').check({ force: true });
        assert.match(await page.locator('#charts').innerText(), /#2 does not start at the start\/finish line/);
    });
    const elsewhere = lapSheet('elsewhere.laps', [...steadyLaps([{ speed: 20 }, { speed: 10 }]), 'track|Ring']);
    await withPage(writeReport([elsewhere, fromThePits], [], lapSheets()), {}, async (page) => {
        await page.locator('#laps tr[data-lap="3"] input[type=checkbox]').check({ force: true });
        assert.match(await page.locator('#legend').innerText(), /B2/);
    });
});

test('laps of two files on one track compare', async () => {
    const slow = lapSheet('slow.laps', steadyLaps([{ speed: 10 }]));
    const fast = lapSheet('fast.laps', steadyLaps([{ speed: 20 }]));
    await withPage(writeReport([slow, fast], [], lapSheets()), {}, async (page) => {
        await page.keyboard.press('>');
        assert.deepStrictEqual((await readings(page, 'difference')).map(numberOf), [0, 5]);
    });
});

test('a place without a sample shows none', async () => {
    const [head, ...rest] = steadyLaps([{ speed: 20 }]);
    const sheet = lapSheet('holes.laps', [head, ...rest.filter((line) => !line.includes('speed')),
        `channel|speed|m/s|${Array.from({ length: 20 }, (_, i) => (i > 5 && i < 12 ? '-' : 20)).join(' ')}`]);
    await withPage(writeReport([sheet], [], lapSheets()), {}, async (page) => {
        for (const { place, shown } of [
            { place: 10, shown: '72.00' }, { place: 50, shown: '–' }, { place: 90, shown: '72.00' },
        ]) {
            await page.evaluate((distance) => report.setCursor(distance), place);
            assert.deepStrictEqual(await readings(page, 'speed'), [shown]);
        }
    });
});

test('a ring stands in for a track whose positions were not recorded', async () => {
    const sheet = lapSheet('ring.laps', steadyLaps([{ speed: 20 }]));
    await withPage(writeReport([sheet], [], lapSheets()), {}, async (page) => {
        assert.match(await page.locator('#map-note').innerText(), /Positions were not recorded/);
        assert.ok(await page.locator('#map').isVisible());
    });
});

test('samples are exact to the step that is promised', async () => {
    const recording = demoRecording('demo.ibt', ['--laps', '1', '--stints', '1']);
    const wanted = ['speed', 'throttle', 'brake', 'gear', 'rpm', 'steeringwheelangle', 'lfpressure'];
    const laps = [1, 2, 3].map((lap) => {
        const [{ channels }] = JSON.parse(zepimport(['channels', '--json', '--lap', `${lap}`, recording]));
        return wanted.map((name) => channels.find((channel) => channel.name === name));
    });
    await withPage(writeReport([recording], ['--channels', 'lfpressure']), {}, async (page) => {
        const shown = await page.evaluate(() => report.view.model.channels.map((channel) => ({
            name: channel.name, step: channel.packings[0].step, whole: channel.whole,
            laps: channel.laps.map((all) => {
                const samples = [...all].filter((sample) => !Number.isNaN(sample));
                return {
                    valid: samples.length, minimum: Math.min(...samples), maximum: Math.max(...samples),
                    mean: samples.reduce((a, b) => a + b, 0) / samples.length,
                };
            }),
        })));
        assert.deepStrictEqual(shown.map(({ name }) => name), wanted);
        shown.forEach(({ name, step, whole, laps: shownLaps }, channel) => {
            const range = Math.max(...laps.map((lap) => lap[channel].maximum))
                - Math.min(...laps.map((lap) => lap[channel].minimum));
            assert.ok(whole ? step === 1 : step <= range / 20000, `${name}: a step of ${step}`);
            shownLaps.forEach((samples, lap) => {
                assert.strictEqual(samples.valid, laps[lap][channel].valid);
                for (const number of ['minimum', 'mean', 'maximum'])
                    assert.ok(Math.abs(samples[number] - laps[lap][channel][number]) <= (whole ? 1e-9 : step * 0.501),
                        `${number} of ${name}`);
            });
        });
    });
});
