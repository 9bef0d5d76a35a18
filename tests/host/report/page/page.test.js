import assert from 'node:assert';
import { test } from 'node:test';
import { demoRecording, lapSheet, lapSheets, withPage, writeReport, zepimport } from './browser.js';

const recording = demoRecording('demo.ibt', ['--laps', '2', '--stints', '2']);
const file = writeReport([recording]);

test('names track, car, driver and weather', () => withPage(file, {}, async (page) => {
    const [info] = JSON.parse(zepimport(['info', '--json', recording]));
    const head = await page.locator('#sessions').innerText();
    for (const name of ['track', 'configuration', 'car', 'driver'])
        assert.ok(head.includes(info.header[name]), `${name} in ${head}`);
    assert.ok(head.includes(info.values.Skies.value));
    assert.ok(head.includes(`${info.values['Air temperature'].value.toFixed(1)} °C`));
    assert.strictEqual(await page.title(),
        `${info.header.track}, ${info.header.configuration}, ${info.header.car}`);
}));

test('the table has the laps that the program shows', () => withPage(file, {}, async (page) => {
    const [{ laps }] = JSON.parse(zepimport(['laps', '--json', recording]));
    const rows = page.locator('#laps tr[data-lap]');
    assert.strictEqual(await rows.count(), laps.length);
    for (const [i, lap] of laps.entries()) {
        const text = await rows.nth(i).innerText();
        assert.ok(text.includes(`#${lap.lap}`), text);
        if (lap.time !== null)
            assert.ok(text.includes(`0:${lap.time.toFixed(3)}`), text);
        assert.strictEqual((await rows.nth(i).getAttribute('class')).includes('best'), lap.best);
        assert.ok(text.includes((lap.topSpeed.value * 3.6).toFixed(1)), text);
    }
    assert.strictEqual(await page.locator('.best-badge').count(), 1);
}));

test('says why a lap has no time', () => withPage(file, {}, async (page) => {
    assert.deepStrictEqual(await page.locator('#laps .reason').allTextContents(), [
        'out-laps are not timed', 'out-laps are not timed',
        'still being driven when the recording ended']);
}));

test('shows tyres and fuel of every lap', () => withPage(file, {}, async (page) => {
    const laps = await page.locator('#laps tr[data-lap]').count();
    assert.strictEqual(await page.locator('#fuel tbody tr').count(), laps);
    assert.strictEqual(await page.locator('#tyres .scroll tbody tr').count(), laps);
    assert.strictEqual(await page.locator('#tyres .tyre').count(), 4);
    assert.match(await page.locator('#fuel p').innerText(), /^Average use: 0\.\d{3} l per lap, over 4 timed laps\. /);
}));

test('folds away what the plug-in says when all is well', () => withPage(file, {}, async (page) => {
    assert.match(await page.locator('#messages').innerText(), /^The import had nothing to complain about\./);
    assert.ok(await page.locator('#messages li').last().isHidden());
    await page.locator('#messages summary').first().click();
    assert.match(await page.locator('#messages li').last().innerText(), /Laps readed/);
}));

test('the laps that a pit stop splits are partial, and count nowhere', async () => {
    const race = demoRecording('race.ibt', ['--session', 'race', '--laps', '3']);
    const [{ timedLaps, lap: best }] = JSON.parse(zepimport(['laps', '--best', '--json', race]));
    await withPage(writeReport([race]), {}, async (page) => {
        const partial = page.locator('#laps tr.partial');
        assert.strictEqual(await partial.count(), 2);
        assert.match(await partial.first().innerText(), /partial/);
        assert.match(await page.locator('#laps-note').innerText(),
            /^Recorded in part: #5 from 0 m to 45 m, #6 from 46 m/);
        assert.match(await page.locator('#laps').innerText(), /1 lap left out, because the car entered the pits/);
        assert.match(await page.locator('#sessions').innerText(), new RegExp(`Timed laps\\s+${timedLaps} of 10`));
        assert.match(await page.locator('#fuel p').innerText(), new RegExp(`over ${timedLaps} timed laps`));
        assert.ok((await page.locator('#laps tr.best th').innerText()).includes(`#${best}`));
        const whole = await page.evaluate(() => report.fullRange());
        await page.locator('#laps tr[data-lap="4"] input[type=radio]').check();
        assert.strictEqual(await page.evaluate(() => report.trackMap.lap.number), 5);
        assert.deepStrictEqual(await page.evaluate(() => report.fullRange()), whole);
        const wide = await page.evaluate(() => report.trackMap.outline.map(report.trackMap.scale).map(({ x }) => x));
        assert.ok(Math.max(...wide) - Math.min(...wide) > 150, 'the whole track is on the map');
    });
});

test('tells files and laps of several recordings apart', async () => {
    const other = demoRecording('other.ibt', ['--laps', '1', '--stints', '1', '--seed', '4']);
    await withPage(writeReport([recording, other]), {}, async (page) => {
        assert.strictEqual(await page.locator('.session').count(), 2);
        const labels = await page.locator('#laps tr[data-lap] th').allInnerTexts();
        assert.ok(labels.includes('A2') && labels.includes('B2'), `${labels}`);
        assert.strictEqual(await page.locator('.best-badge').count(), 1);
        assert.strictEqual(await page.locator('#laps tr.best-of-file').count(), 2);
        const drawn = await page.locator('#laps tr.drawn').evaluateAll(
            (rows) => rows.map((row) => row.classList.contains('best-of-file')));
        assert.deepStrictEqual(drawn, [true, true], 'the best laps of both');
    });
});

test('without laps there is nothing to scrub', async () => {
    const sheet = lapSheet('none.laps', ['lap|-1|0||6|2|0', 'track|Ring']);
    await withPage(writeReport([sheet], [], lapSheets()), {}, async (page) => {
        assert.ok(await page.locator('#position').isHidden());
        assert.ok(await page.getByText('To zoom, drag').isHidden());
        assert.strictEqual(await page.locator('#charts').innerText(), 'Nothing was recorded of these laps.');
    });
});

test('copes with recordings that contain very little', async () => {
    const sheets = {
        'empty.laps': ['lap|-1|0||6|2|0'],
        'gears.laps': ['lap|1|1|60000|1|1|1', 'channel|gear||1 2 3', 'lap|1|1|60000|1|1|1',
            'channel|gear||- - -'],
        'still.laps': ['lap|1|1|60000|1|1|1', 'channel|lapdist|m|5 5 5',
            'channel|sessiontime|s|1 2 3', 'channel|speed|m/s|0 0 0'],
        'one-tick.laps': ['lap|1|1|60000|1|1|1', 'channel|lapdist|m|5', 'channel|sessiontime|s|1',
            'channel|lat|deg|50', 'channel|lon|deg|9'],
        'nowhere.laps': ['lap|1|1|60000|1|1|1', 'channel|lapdist|m|- -', 'channel|lat|deg|- -',
            'channel|lon|deg|- -', 'channel|speed|m/s|- -'],
    };
    for (const [name, lines] of Object.entries(sheets)) {
        await withPage(writeReport([lapSheet(name, lines)], [], lapSheets()), {}, async (page) => {
            assert.ok(await page.locator('#laps tr[data-lap]').count() > 0, name);
            for (const key of ['x', 'x', 'u', 't', '+', '1', 'ArrowRight'])
                await page.keyboard.press(key);
        });
    }
});
