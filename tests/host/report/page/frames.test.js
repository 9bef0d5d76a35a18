// What a moving cursor costs: one frame, however many events it takes to get there. And which lap is
// painted on top.

import assert from 'node:assert';
import { test } from 'node:test';
import { demoRecording, drawn, showAllLaps, withPage, writeReport } from './browser.js';

/** @import { Page } from './browser.js' */

const file = writeReport([demoRecording('demo.ibt', ['--laps', '2', '--stints', '1'])]);

/**
 * Sends `count` events of `type` to the first element that matches `selector`, each a pixel on from
 * `start`, all within one frame. Returns how many frames the page asked for until it had drawn them,
 * how often it painted the cursor on the map, and how often it wrote the position.
 * @param {Page} page
 * @param {{ selector: string, type: string, count: number, start: { x: number, y: number } }} moves
 */
async function costOf(page, moves) {
    await drawn(page);
    return page.evaluate(async ({ selector, type, count, start }) => {
        const cost = { frames: 0, maps: 0, positions: 0 };
        const { requestAnimationFrame: frame } = window;
        window.requestAnimationFrame = (draw) => { ++cost.frames; return frame(draw); };
        const { clearRect } = CanvasRenderingContext2D.prototype;
        /** @param {[number, number, number, number]} box */
        CanvasRenderingContext2D.prototype.clearRect = function (...box) {
            cost.maps += this.canvas.id === 'map-cursor' ? 1 : 0;
            clearRect.apply(this, box);
        };
        new MutationObserver((changes) => { cost.positions += changes.length; })
            .observe(document.getElementById('position-text'), { childList: true });
        const target = document.querySelector(selector);
        for (let i = 0; i < count; ++i) {
            target.dispatchEvent(new PointerEvent(type, {
                bubbles: true, clientX: start.x + i, clientY: start.y, movementX: 1,
            }));
        }
        for (let i = 0; i < 3; ++i)
            await new Promise((resolve) => { frame(resolve); });
        return cost;
    }, moves);
}

const once = { frames: 1, maps: 1, positions: 1 };

test('many moves over a chart are drawn once', () => withPage(file, {}, async (page) => {
    const plot = await page.locator('[data-chart="speed"] .u-over').boundingBox();
    const start = { x: plot.x + 100, y: plot.y + 20 };
    const before = await page.evaluate(() => report.view.cursor);
    const selector = '[data-chart="speed"] .u-over';
    assert.deepStrictEqual(await costOf(page, { selector, type: 'mousemove', count: 30, start }), once);
    assert.notStrictEqual(await page.evaluate(() => report.view.cursor), before);
    const line = await page.locator('[data-chart="throttle"] .u-cursor-x').boundingBox();
    assert.ok(Math.abs(line.x - start.x - 29) <= 2, `${line.x} is where the last event was, ${start.x + 29}`);
}));

test('many moves over the map are drawn once', () => withPage(file, {}, async (page) => {
    const box = await page.locator('#map-cursor').boundingBox();
    const { x, y } = await page.evaluate(() => report.trackMap.scale(report.trackMap.points[200]));
    const moves = { selector: '#map-cursor', type: 'pointermove', count: 20,
        start: { x: box.x + x - 10, y: box.y + y } };
    assert.deepStrictEqual(await costOf(page, moves), once);
}));

test('many changes of the zoom are drawn once', () => withPage(file, {}, async (page) => {
    const draws = await page.evaluate(async () => {
        const [{ plot }] = report.charts.list;
        let count = 0;
        plot.hooks.draw = [() => { ++count; }];
        for (let i = 0; i < 10; ++i)
            document.body.dispatchEvent(new KeyboardEvent('keydown', { key: '+', bubbles: true }));
        await new Promise((resolve) => { requestAnimationFrame(resolve); });
        return count;
    });
    assert.strictEqual(draws, 1);
}));

test('the cursor keeps its place when the zoom changes', () => withPage(file, {}, async (page) => {
    await page.keyboard.press('Shift+ArrowRight');
    await page.keyboard.press('+');
    await page.keyboard.press('.');
    await drawn(page);
    const [shown, wanted] = await page.evaluate(() => {
        const [{ plot }] = report.charts.list;
        const { min, max } = report.shownRange();
        return [plot.cursor.left, (report.view.cursor - min) / (max - min) * plot.over.clientWidth];
    });
    assert.ok(Math.abs(shown - wanted) <= 1, `${shown}, not ${wanted}`);
}));

test('the reference lap is painted last in every chart', () => withPage(file, {}, async (page) => {
    await showAllLaps(page, true);
    for (const choice of await page.locator('#laps input[type=radio]').all()) {
        await choice.check();
        await drawn(page);
        const orders = await page.evaluate(() => report.charts.list.map(({ plot, chart }) => ({
            key: chart.key,
            widths: plot.series.slice(1).map(({ width }) => width),
            isLast: plot.data.at(-1) === chart.data[0] && plot.data.length === chart.data.length + 1,
        })));
        assert.ok(orders.length > 5);
        for (const { key, widths, isLast } of orders) {
            assert.ok(isLast, `the lap that ${key} lists first comes last`);
            assert.ok(widths.slice(0, -1).every((width) => width === 1.5), key);
            assert.strictEqual(widths.at(-1), 2, key);
        }
    }
}));

test('the reference lap covers the others', () => withPage(file, {}, async (page) => {
    await showAllLaps(page, true);
    // Where nobody brakes, all lines of the brake chart run along zero. On the map all dots are close
    // together.
    const colours = await page.evaluate(() => {
        /** @param {CanvasRenderingContext2D} context @param {number} x @param {number} y */
        const pixel = (context, x, y) => [...context.getImageData(
            Math.round(x * devicePixelRatio), Math.round(y * devicePixelRatio), 1, 1).data].slice(0, 3);
        const { plot, chart } = report.charts.list.find((one) => one.chart.key === 'brake');
        const places = report.view.grid.filter((_, i) => chart.data.every((samples) => samples[i] === 0));
        const place = places[Math.floor(places.length / 2)];
        const box = plot.over.getBoundingClientRect();
        const canvas = plot.ctx.canvas.getBoundingClientRect();
        const { points, scale } = report.trackMap;
        const dot = scale(points.find((point) => point.place >= report.view.cursor));
        const map = /** @type {HTMLCanvasElement} */ (document.getElementById('map-cursor'));
        return {
            chart: pixel(plot.ctx, box.x - canvas.x + plot.valToPos(place, 'x'),
                box.y - canvas.y + plot.valToPos(0, 'y')),
            map: pixel(map.getContext('2d'), dot.x, dot.y),
        };
    });
    const reference = [0x15, 0x1a, 0x21]; // --lap-reference
    assert.deepStrictEqual(colours, { chart: reference, map: reference });
}));
