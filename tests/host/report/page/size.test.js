import assert from 'node:assert';
import fs from 'node:fs';
import { test } from 'node:test';
import { demoRecording, showAllLaps, withPage, writeReport } from './browser.js';

const file = writeReport([demoRecording('long.ibt', ['--laps', '20', '--stints', '1'])]);

test('twenty laps at 60 Hz need less than 3 MB', (t) => {
    const { size } = fs.statSync(file);
    t.diagnostic(`${size} bytes`);
    assert.ok(size < 3e6, `${size} bytes`);
});

test('opens with all of them', (t) => withPage(file, {}, async (page) => {
    const times = await page.evaluate(() => ({
        ready: Math.round(performance.now()),
        loaded: Math.round(performance.getEntriesByType('navigation')[0].toJSON().domContentLoadedEventEnd),
        laps: report.view.model.laps.length,
        ticks: report.view.model.laps.reduce((sum, lap) => sum + lap.samples, 0),
    }));
    t.diagnostic(JSON.stringify(times));
    assert.ok(times.laps >= 21 && times.ticks > 20 * 2000);
    const start = Date.now();
    await showAllLaps(page, true);
    t.diagnostic(`all ${times.laps} laps drawn one after the other in ${Date.now() - start} ms`);
    assert.strictEqual(await page.locator('#legend > span').count(), times.laps);
}));
