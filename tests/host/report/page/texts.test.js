// Texts come from recordings: the page shows them, whatever they say, and does nothing else.

import assert from 'node:assert';
import { test } from 'node:test';
import { hasBrowser, lapSheet, lapSheets, withPage, writeReport } from './browser.js';

const script = '<script>window.broken = true</script>';
const image = '<img src=x onerror="window.broken = true">';
const end = `</script>${script}<!--`;

const sheet = lapSheet("<b>'hostile'&amp;.laps", [
    `message|0|${script}`, `message|-1|${image}`,
    'lap|1|1|60000|1|1|1',
    `track|${end}`, `configuration|"><svg onload="window.broken = true">`, `car|${image}`, `driver|${script}`,
    `text|Skies|${image}`, `text|${image}|${script}`, `number|Maximum fuel level|50|${script}`,
    `channel|speed|${script}|1 2 3`, `channel|fuellevel|${image}|3 2 1`, 'channel|lapdist|m|1 2 3',
    `channel|${image}|</style>${script}|1 2 3`, `channel|lfpressure|${script}|1 2 3`,
]);
const file = writeReport([sheet], ['--channels', '*'], lapSheets());

test('shows markup as it was written', () => withPage(file, {}, async (page) => {
    const head = await page.locator('#sessions').innerText();
    for (const text of [end, image, script, '"><svg onload="window.broken = true">'])
        assert.ok(head.includes(text), text);
    assert.deepStrictEqual(await page.locator('#messages li').evaluateAll(
        (items) => items.map((item) => item.textContent.replace('[Lap sheets plugin] ', ''))), [image, script],
    'the error first');
    assert.ok((await page.locator('#channels').innerText()).includes(image));
    assert.ok((await page.locator('[data-chart="speed"] h3').textContent()).includes(script));
    assert.ok((await page.locator('#messages summary').last().innerText()).includes("<b>'hostile'&amp;.laps"));
}));

test('runs nothing of it', () => withPage(file, {}, async (page) => {
    for (const key of ['x', 'u', 't', '1', '1', 'ArrowRight', '?'])
        await page.keyboard.press(key);
    await page.locator('details').evaluateAll((all) => all.forEach((details) => details.setAttribute('open', '')));
    assert.strictEqual(await page.evaluate(() => 'broken' in window), false);
    assert.strictEqual(await page.locator('img, svg, b, iframe').count(), 0);
    assert.strictEqual(await page.locator('script').count(),
        await page.evaluate(() => document.querySelectorAll('body > script').length));
}));

test('would not run a script that got in anyway', { skip: !hasBrowser && 'it takes a browser' }, async () => {
    await assert.rejects(withPage(file, {}, async (page) => {
        await page.evaluate((markup) => document.body.insertAdjacentHTML('beforeend', markup), image);
        await page.waitForTimeout(100);
        assert.strictEqual(await page.evaluate(() => 'broken' in window), false);
    }), (error) => String(error).includes('Content Security Policy'));
});

test('shows names of every script', async () => {
    const names = lapSheet('names.laps', ['lap|1|1|60000|1|1|1', 'driver|Zoë Ångström 日本 🏁',
        'track|Нюрбург', 'channel|gear||1 2']);
    await withPage(writeReport([names], [], lapSheets()), {}, async (page) => {
        const head = await page.locator('#sessions').innerText();
        assert.ok(head.includes('Zoë Ångström 日本 🏁') && head.includes('Нюрбург'), head);
        assert.strictEqual(await page.title(), 'Нюрбург');
    });
});
