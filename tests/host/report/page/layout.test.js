import assert from 'node:assert';
import { test } from 'node:test';
import { demoRecording, showAllLaps, withPage, writeReport } from './browser.js';

const file = writeReport([demoRecording('demo.ibt', ['--laps', '2', '--stints', '2'])]);
const sizes = { phone: { width: 360, height: 740 }, tablet: { width: 820, height: 1100 },
    desktop: { width: 1440, height: 900 }, wide: { width: 2560, height: 1300 } };

for (const [name, viewport] of Object.entries(sizes)) {
    test(`nothing sticks out at the width of a ${name}`, () => withPage(file, { viewport }, async (page) => {
        await showAllLaps(page, true);
        const width = await page.evaluate(() => document.documentElement.scrollWidth);
        assert.ok(width <= viewport.width, `${width} of ${viewport.width}`);
        const plot = await page.locator('[data-chart="speed"] .uplot').boundingBox();
        assert.ok(plot.x >= 0 && plot.x + plot.width <= viewport.width);
        const map = await page.locator('#map-track').boundingBox();
        assert.ok(map.width > 200 && map.x + map.width <= viewport.width);
    }));
}

test('many files need no more of the screen than a few', async () => {
    const files = Array.from({ length: 12 }, (_, i) => demoRecording(`many${i}.ibt`,
        ['--laps', '1', '--stints', '1', '--seed', String(i + 1), '--rate', '10']));
    const many = writeReport(files);
    await withPage(many, { viewport: sizes.desktop }, async (page) => {
        const { y } = await page.locator('[data-chart="speed"]').boundingBox();
        assert.ok(y < sizes.desktop.height - 200, `the first chart begins at ${y}`);
        assert.strictEqual(await page.locator('.sessions tbody tr').count(), 12);
    });
    await withPage(many, { viewport: sizes.phone }, async (page) => {
        const { height } = await page.locator('#sessions').boundingBox();
        assert.ok(height < 400, `${height}`);
    });
});

test('laps and map stay beside the charts, and beside nothing else', () => withPage(file,
    { viewport: sizes.desktop }, async (page) => {
        const boxes = async () => {
            const [aside, tyres] = await Promise.all([page.locator('aside').boundingBox(),
                page.locator('.card.wide').boundingBox()]);
            return { top: aside.y, bottom: aside.y + aside.height, tyres: tyres.y };
        };
        await page.evaluate(() => scrollTo(0, 200));
        assert.strictEqual((await boxes()).top, 14);
        await page.locator('.card.wide').evaluate((element) => element.scrollIntoView());
        const { bottom, tyres } = await boxes();
        assert.ok(bottom <= tyres, `${bottom} is below ${tyres}`);
    }));

test('charts follow the width of the window', () => withPage(file, {}, async (page) => {
    const width = async () => (await page.locator('[data-chart="speed"] .uplot').boundingBox()).width;
    const before = await width();
    await page.setViewportSize({ width: 700, height: 900 });
    await page.waitForFunction((old) => report.charts.width !== old, before);
    const card = await page.locator('#charts').boundingBox();
    assert.ok(Math.abs(await width() - card.width) <= 1);
}));

/**
 * The contrast of two colours, as WCAG 2 defines it.
 * @param {string} a
 * @param {string} b
 */
function contrast(a, b) {
    const luminance = (colour) => {
        const [red, green, blue] = colour.match(/[\d.]+/g).slice(0, 3).map((channel) => {
            const part = Number(channel) / 255;
            return part <= 0.04045 ? part / 12.92 : ((part + 0.055) / 1.055) ** 2.4;
        });
        return 0.2126 * red + 0.7152 * green + 0.0722 * blue;
    };
    const [dark, light] = [luminance(a), luminance(b)].sort((x, y) => x - y);
    return (light + 0.05) / (dark + 0.05);
}

for (const colorScheme of /** @type {const} */ (['light', 'dark'])) {
    const look = `is ${colorScheme} where the system is, with readable text`;
    test(look, () => withPage(file, { colorScheme }, async (page) => {
        assert.strictEqual(await page.locator('html').getAttribute('data-theme'), colorScheme);
        const card = await page.locator('.card').first().evaluate(
            (element) => getComputedStyle(element).backgroundColor);
        assert.strictEqual(contrast(card, 'rgb(255, 255, 255)') < 2, colorScheme === 'light');
        for (const selector of ['h1', '.subtitle', '.laps .reason', '.laps .time', '.best-badge', '.unit', '.muted']) {
            const colour = await page.locator(selector).first().evaluate((element) => getComputedStyle(element).color);
            assert.ok(contrast(colour, card) >= 4.5, `${selector}: ${contrast(colour, card)}`);
        }
        const marks = await page.evaluate(() => Array.from({ length: report.lapColours }, (_, i) => {
            const probe = document.createElement('span');
            probe.style.setProperty('color', `var(--lap-${i})`);
            document.body.append(probe);
            const { color } = getComputedStyle(probe);
            probe.remove();
            return color;
        }));
        for (const colour of marks)
            assert.ok(contrast(colour, card) >= 3, `${colour}: ${contrast(colour, card)}`);
    }));
}

test('follows the system when it turns dark', () => withPage(file, { colorScheme: 'light' }, async (page) => {
    await page.emulateMedia({ colorScheme: 'dark' });
    await page.waitForSelector('html[data-theme=dark]', { state: 'attached' });
}));

/** @type {import('playwright-core').BrowserContextOptions} */
const dark = { colorScheme: 'dark' };
test('prints in light colours, with whole tables, then shows the theme', () => withPage(file, dark, async (page) => {
    const pdf = await page.pdf({ format: 'A4' });
    assert.strictEqual(pdf.toString('latin1').match(/\/Type\s*\/Page\b/g).length, 3);
    assert.strictEqual(await page.locator('html').getAttribute('data-theme'), 'dark');
    await page.emulateMedia({ media: 'print' });
    await page.evaluate(() => dispatchEvent(new Event('beforeprint')));
    assert.strictEqual(await page.locator('html').getAttribute('data-theme'), 'light');
    assert.ok(await page.locator('.buttons').isHidden());
    assert.ok((await page.locator('[data-chart="speed"] .uplot').boundingBox()).width <= 700);
}));

test('fingers move the cursor and zoom', () => withPage(file,
    { viewport: sizes.phone, hasTouch: true, isMobile: true }, async (page) => {
        const plot = page.locator('[data-chart="speed"] .u-over');
        await plot.scrollIntoViewIfNeeded();
        const box = await plot.boundingBox();
        await page.touchscreen.tap(box.x + box.width * 0.2, box.y + 30);
        const first = await page.evaluate(() => report.view.cursor);
        await page.waitForTimeout(350); // else the two taps are one double tap
        await page.touchscreen.tap(box.x + box.width * 0.8, box.y + 30);
        assert.ok(await page.evaluate(() => report.view.cursor) > first);

        const finger = (type, id, part) => plot.dispatchEvent(type, {
            pointerType: 'touch', pointerId: id, clientX: box.x + box.width * part, clientY: box.y + 30,
        });
        await finger('pointerdown', 1, 0.4);
        await finger('pointerdown', 2, 0.6);
        await finger('pointermove', 1, 0.2);
        await finger('pointermove', 2, 0.8);
        await finger('pointerup', 1, 0.2);
        await finger('pointerup', 2, 0.8);
        const { min, max } = await page.evaluate(() => report.view.range);
        const full = await page.evaluate(() => report.fullRange());
        assert.ok((max - min) < 0.5 * (full.max - full.min));
    }));
