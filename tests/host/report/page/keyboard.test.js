import assert from 'node:assert';
import { test } from 'node:test';
import { demoRecording, positionText, withPage, writeReport } from './browser.js';

const file = writeReport([demoRecording('demo.ibt', ['--laps', '2', '--stints', '1'])]);

async function position(page) {
    return parseFloat(await positionText(page));
}

test('arrows move the cursor, ten times as far with Shift', () => withPage(file, {}, async (page) => {
    const start = await position(page);
    await page.keyboard.press('ArrowRight');
    const step = await position(page) - start;
    assert.ok(step > 0);
    await page.keyboard.press('Shift+ArrowRight');
    assert.ok(Math.abs(await position(page) - start - 11 * step) < 0.5);
    await page.keyboard.press('<');
    assert.ok(await position(page) <= 0.1);
    await page.keyboard.press('ArrowLeft');
    assert.ok(await position(page) <= 0.1);
}));

test('plus and minus zoom at the cursor, comma and point scroll, 0 resets', () => withPage(file, {}, async (page) => {
    const range = () => page.evaluate(() => report.view.range);
    const cursor = await position(page);
    await page.keyboard.press('+');
    await page.keyboard.press('+');
    const zoomed = await range();
    assert.ok(zoomed.min < cursor && cursor < zoomed.max);
    await page.keyboard.press('.');
    const moved = await range();
    assert.ok(moved.min > zoomed.min && Math.abs(moved.max - moved.min - zoomed.max + zoomed.min) < 1e-6);
    await page.keyboard.press('-');
    assert.ok((await range()).max - (await range()).min > moved.max - moved.min);
    await page.keyboard.press('0');
    assert.strictEqual(await range(), null);
}));

test('letters change axis, units and theme, digits show laps', () => withPage(file, {}, async (page) => {
    await page.keyboard.press('x');
    assert.match(await positionText(page), /^–|s$/);
    assert.strictEqual(await page.locator('#axis-title').innerText(), 'Time (s)');
    await page.keyboard.press('u');
    assert.match(await page.locator('#units').innerText(), /as recorded/);
    await page.keyboard.press('t');
    assert.strictEqual(await page.locator('html').getAttribute('data-theme'), 'dark');
    const drawn = () => page.locator('#laps input[type=checkbox]').first().isChecked();
    assert.strictEqual(await drawn(), false);
    await page.keyboard.press('1');
    assert.strictEqual(await drawn(), true);
    await page.keyboard.press('1');
    assert.strictEqual(await drawn(), false);
}));

test('a question mark lists the keys, Escape closes the list', () => withPage(file, {}, async (page) => {
    await page.keyboard.press('?');
    assert.ok(await page.locator('#help').isVisible());
    assert.match(await page.locator('#help').innerText(), /move the cursor/);
    await page.keyboard.press('Escape');
    assert.ok(await page.locator('#help').isHidden());
}));

test('the shortcuts can be switched off', () => withPage(file, {}, async (page) => {
    await page.keyboard.press('?');
    await page.locator('#keys-on').uncheck();
    await page.keyboard.press('Escape');
    await page.keyboard.press('t');
    await page.keyboard.press('1');
    assert.strictEqual(await page.locator('html').getAttribute('data-theme'), 'light');
    assert.strictEqual(await page.locator('#laps input[type=checkbox]').first().isChecked(), false);
    await page.keyboard.press('ArrowRight');
    assert.ok(await position(page) > 0);
}));

test('digits choose the # that the table shows', async () => {
    const some = writeReport([demoRecording('some.ibt', ['--laps', '2', '--stints', '2'])], ['--lap', '3,5,6']);
    await withPage(some, {}, async (page) => {
        const shown = () => page.locator('#legend').innerText();
        assert.doesNotMatch(await shown(), /#6/);
        await page.keyboard.press('6');
        assert.match(await shown(), /#6/);
        const before = await shown();
        await page.keyboard.press('1');
        assert.strictEqual(await shown(), before);
    });
});

test('the values at the cursor are told once it rests', () => withPage(file, {}, async (page) => {
    await page.keyboard.press('ArrowRight');
    const place = await positionText(page);
    await page.waitForFunction((text) => document.getElementById('cursor-values').textContent.startsWith(text), place);
    assert.match(await page.locator('#cursor-values').textContent(), /\. Speed: #\d [\d.]+ km\/h/);
}));

test('Tab reaches everything that can be used, and each has a name', () => withPage(file, {}, async (page) => {
    const reached = new Set();
    for (let i = 0; i < 60; ++i) {
        await page.keyboard.press('Tab');
        const found = await page.evaluate(() => {
            const element = document.activeElement;
            if (element === document.body)
                return null;
            const input = element instanceof HTMLInputElement ? element : null;
            const label = input?.labels[0]?.textContent.trim();
            return {
                what: element.id || element.getAttribute('type') || element.tagName,
                name: element.ariaLabel || label || element.textContent.trim(),
            };
        });
        if (!found)
            break;
        assert.ok(found.name, `${found.what} has a name`);
        reached.add(found.what);
    }
    for (const what of ['units', 'theme', 'help-button', 'checkbox', 'radio', 'button', 'position', 'SUMMARY'])
        assert.ok(reached.has(what), `${what} among ${[...reached]}`);
}));

test('a lap keeps the focus when it is shown', () => withPage(file, {}, async (page) => {
    await page.locator('#laps tr[data-lap="1"] input[type=checkbox]').focus();
    await page.keyboard.press('Space');
    assert.strictEqual(await page.evaluate(() => document.activeElement.closest('tr')?.dataset.lap), '1');
    await page.keyboard.press('Space');
    assert.strictEqual(await page.evaluate(() => document.activeElement.closest('tr')?.dataset.lap), '1');
}));

test('the slider moves the cursor and says where it is', () => withPage(file, {}, async (page) => {
    const slider = page.getByRole('slider');
    await slider.focus();
    const before = await position(page);
    await page.keyboard.press('ArrowRight');
    assert.ok(await position(page) > before);
    assert.match(await slider.getAttribute('aria-valuetext'), /^[\d.]+ m$/);
}));
