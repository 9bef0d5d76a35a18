import assert from 'node:assert';
import { test } from 'node:test';
import {
    demoRecording, drawn, numberOf, positionText, readings, showAllLaps, withPage, writeReport, zepimport,
} from './browser.js';

const recording = demoRecording('demo.ibt', ['--laps', '3', '--stints', '2']);
const file = writeReport([recording], ['--channels', 'lfpressure']);
const [{ laps }] = JSON.parse(zepimport(['laps', '--json', recording]));
const timed = laps.filter((lap) => lap.time !== null);
const best = laps.find((lap) => lap.best);

const tall = { viewport: { width: 1280, height: 2400 } }; // pictures do not scroll it

/** The colours of the laps in the chart of speed, in the order in which they are painted. */
async function drawnSeries(page) {
    return page.evaluate(() => {
        const { plot } = report.charts.list.find(({ chart }) => chart.key === 'speed');
        return plot.series.slice(1).map(
            ({ stroke }, i) => String(typeof stroke === 'function' ? stroke(plot, i) : stroke));
    });
}

function lapRow(page, lap) {
    return page.locator('#laps tr[data-lap]').nth(lap.lap - 1);
}

test('starts with the best lap and the one next to it', () => withPage(file, {}, async (page) => {
    const next = [...timed].sort((a, b) => a.time - b.time)[1];
    const legend = await page.locator('#legend').innerText();
    assert.ok(legend.includes(`#${best.lap} `) && legend.includes(`#${next.lap} `), legend);
    assert.ok(legend.includes('(reference)'));
    assert.deepStrictEqual(await page.locator('.chart').evaluateAll(
        (charts) => charts.map((chart) => chart.dataset.chart)),
    ['difference', 'speed', 'throttle', 'brake', 'gear', 'rpm', 'steeringwheelangle', 'lfpressure']);
}));

test('a click on a lap shows it, and another click hides it', () => withPage(file, {}, async (page) => {
    const hidden = [...timed].sort((a, b) => b.time - a.time)[0];
    const before = await drawnSeries(page);
    const pixels = () => page.locator('[data-chart="speed"] canvas').screenshot();
    const picture = await pixels();
    await lapRow(page, hidden).locator('td').nth(2).click();
    const series = await drawnSeries(page);
    assert.strictEqual(series.length, before.length + 1);
    assert.strictEqual(new Set(series).size, series.length, 'every lap has a colour of its own');
    assert.ok(await lapRow(page, hidden).locator('input[type=checkbox]').isChecked());
    assert.notDeepStrictEqual(await pixels(), picture);
    await lapRow(page, hidden).locator('td').nth(2).click();
    assert.deepStrictEqual(await drawnSeries(page), before);
}));

test('every lap can be drawn at once, or none', () => withPage(file, {}, async (page) => {
    await showAllLaps(page, true);
    assert.strictEqual((await drawnSeries(page)).length, laps.length);
    await showAllLaps(page, false);
    assert.match(await page.locator('#charts').innerText(), /Choose a lap/);
}));

test('the time difference at the finish line is that of the lap times', () => withPage(file, {}, async (page) => {
    for (const lap of timed.filter((one) => !one.best)) {
        if (!await lapRow(page, lap).locator('input[type=checkbox]').isChecked())
            await lapRow(page, lap).locator('td').nth(2).click();
    }
    await page.keyboard.press('>');
    const shown = (await readings(page, 'difference')).map(numberOf);
    const order = await page.evaluate(() => report.listedLaps().map((lap) => lap.number));
    assert.strictEqual(shown.length, timed.length);
    order.forEach((number, i) => {
        const lap = laps.find((one) => one.lap === number);
        assert.ok(Math.abs(shown[i] - (lap.time - best.time)) < 1 / 60,
            `${shown[i]} at the line, ${lap.time - best.time} by the lap times`);
    });
    await page.keyboard.press('x'); // over time it ends as it does over distance
    await page.keyboard.press('>');
    const last = order.findIndex((number) => laps.find((one) => one.lap === number).time
        === Math.max(...timed.map((one) => one.time)));
    assert.ok(Math.abs(numberOf((await readings(page, 'difference'))[last]) - shown[last]) < 1 / 60);
}));

test('another reference turns the difference around', () => withPage(file, {}, async (page) => {
    await page.keyboard.press('>');
    const [, before] = (await readings(page, 'difference')).map(numberOf);
    const number = await page.evaluate(() => report.listedLaps()[1].number);
    await lapRow(page, { lap: number }).locator('input[type=radio]').check();
    const [reference, after] = (await readings(page, 'difference')).map(numberOf);
    assert.strictEqual(reference, 0);
    assert.ok(before > 0 && Math.abs(after + before) < 0.0011, `${before} becomes ${after}`);
}));

test('the cursor is the same in all charts and on the map', () => withPage(file, tall, async (page) => {
    const plot = await page.locator('[data-chart="throttle"] .u-over').boundingBox();
    const map = () => page.locator('#map-cursor').screenshot();
    const at = async (part) => {
        await page.mouse.move(plot.x + plot.width * part, plot.y + plot.height / 2);
        await drawn(page);
        const lines = await page.locator('.u-cursor-x').evaluateAll(
            (elements) => elements.map((line) => line.getBoundingClientRect().left));
        assert.ok(Math.max(...lines) - Math.min(...lines) <= 1, `${lines}`);
        const wanted = plot.x + plot.width * part;
        assert.ok(Math.abs(lines[0] - wanted) <= 1.5, `${lines[0]}, not ${wanted}`);
        return {
            text: await positionText(page), speed: await readings(page, 'speed'), map: await map(),
        };
    };
    const first = await at(0.25);
    const second = await at(0.75);
    assert.notStrictEqual(first.text, second.text);
    assert.notDeepStrictEqual(first.speed, second.speed);
    assert.notDeepStrictEqual(first.map, second.map);
}));

test('the map moves the cursor', () => withPage(file, {}, async (page) => {
    const box = await page.locator('#map-cursor').boundingBox();
    const point = await page.evaluate(() => {
        const one = report.trackMap.points[Math.floor(report.trackMap.points.length / 3)];
        return { ...report.trackMap.scale(one), place: one.place };
    });
    await page.mouse.move(box.x + point.x, box.y + point.y);
    const text = await positionText(page);
    assert.ok(Math.abs(parseFloat(text) - point.place) < 5, `${text}, not ${point.place} m`);
}));

test('dragging zooms in, a double-click shows everything', () => withPage(file, {}, async (page) => {
    const plot = await page.locator('[data-chart="speed"] .u-over').boundingBox();
    const ranges = async () => {
        await drawn(page);
        return page.evaluate(() => report.charts.list.map(
            ({ plot: { scales } }) => [scales.x.min, scales.x.max]));
    };
    const [[least, most]] = await ranges();
    await page.mouse.move(plot.x + plot.width * 0.25, plot.y + 20);
    await page.mouse.down();
    await page.mouse.move(plot.x + plot.width * 0.5, plot.y + 30, { steps: 4 });
    await page.mouse.up();
    const zoomed = await ranges();
    for (const [min, max] of zoomed) {
        assert.ok(Math.abs(min - (least + (most - least) * 0.25)) < (most - least) / 100, `${min}`);
        assert.ok(Math.abs(max - (least + (most - least) * 0.5)) < (most - least) / 100, `${max}`);
    }
    assert.ok(await page.locator('#reset').isVisible());
    await page.mouse.dblclick(plot.x + 50, plot.y + 40);
    assert.deepStrictEqual((await ranges())[3], [least, most]);
    assert.ok(await page.locator('#reset').isHidden());
}));

test('Ctrl and the wheel zoom, the wheel alone scrolls', () => withPage(file, {}, async (page) => {
    const plot = await page.locator('[data-chart="speed"] .u-over').boundingBox();
    await page.mouse.move(plot.x + plot.width / 2, plot.y + 20);
    await page.mouse.wheel(0, 100);
    await page.waitForFunction(() => scrollY > 0);
    assert.strictEqual(await page.evaluate(() => report.view.range), null);
    await page.keyboard.down('Control');
    await page.mouse.wheel(0, -200);
    await page.keyboard.up('Control');
    await page.waitForFunction(() => report.view.range !== null);
}));

test('over time the same place and stretch are shown', () => withPage(file, {}, async (page) => {
    await page.keyboard.press('+');
    const [speed] = await readings(page, 'speed');
    const { min, max } = await page.evaluate(() => report.view.range);
    await page.locator('#axis button', { hasText: 'Time' }).click();
    assert.match(await positionText(page), /^[\d.]+ s$/);
    assert.strictEqual((await readings(page, 'speed'))[0], speed);
    const [from, to] = await page.evaluate(() => {
        const { distances, times } = report.elapsedOf(report.view.reference);
        return [report.view.range.min, report.view.range.max].map((time) => report.valueAt(times, distances, time));
    });
    assert.ok(Math.abs(from - min) < 0.01 && Math.abs(to - max) < 0.01, `${from} to ${to} m`);
}));

test('charts can be hidden and shown again', () => withPage(file, {}, async (page) => {
    await page.locator('#channels button', { hasText: 'Brake' }).click();
    assert.strictEqual(await page.locator('[data-chart="brake"]').count(), 0);
    await page.locator('#channels button', { hasText: 'Brake' }).click();
    assert.strictEqual(await page.locator('[data-chart="brake"]').count(), 1);
}));

test('every number names its unit, as drivers know it or as recorded', () => withPage(file, {}, async (page) => {
    const unit = () => page.locator('[data-chart="speed"] h3').innerText();
    assert.match(await unit(), /km\/h/);
    const shown = numberOf((await readings(page, 'speed'))[0]);
    await page.locator('#units').click();
    assert.match(await unit(), /m\/s/);
    assert.ok(Math.abs(numberOf((await readings(page, 'speed'))[0]) * 3.6 - shown) < 0.1);
    assert.match(await page.locator('#laps thead').innerText(), /m\/s/);
}));
