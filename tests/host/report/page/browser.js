// Pages of `zepimport report`, written by the real program and opened in a real browser.

import assert from 'node:assert';
import { execFileSync } from 'node:child_process';
import fs from 'node:fs';
import { createRequire } from 'node:module';
import os from 'node:os';
import path from 'node:path';
import { after, before } from 'node:test';
import { pathToFileURL } from 'node:url';

/** Found through NODE_PATH, which import does not look at. @type {import('playwright-core')} */
const { chromium } = createRequire(import.meta.url)('playwright-core');

const folder = fs.mkdtempSync(path.join(os.tmpdir(), 'report-'));
process.on('exit', () => fs.rmSync(folder, { recursive: true }));

/** @typedef {import('playwright-core').Page} Page */

/** False where only the program that writes pages is to be tested: a page does not know how it was compiled. */
const hasBrowser = process.env.REPORT_BROWSER !== 'OFF';

/** @type {import('playwright-core').Browser} */
let browser;

/** @typedef {{ page: Page, requests: string[], complaints: (string | undefined)[] }} Tab */

/**
 * The tab that most tests use one after the other: a page opens in a third of the time where one was open
 * before.
 * @type {Tab}
 */
let sharedTab;

before(async () => {
    if (!hasBrowser)
        return;
    browser = await chromium.launch({
        executablePath: process.env.CHROMIUM ?? '/usr/bin/chromium',
        args: process.getuid?.() === 0 ? ['--no-sandbox'] : [],
    });
    sharedTab = await newTab({});
});
after(() => browser?.close());

/**
 * The path that ctest passes in the environment variable `name`.
 * @param {string} name
 */
function given(name) {
    const value = process.env[name];
    assert.ok(value, `${name} is not set; run the tests with ctest`);
    return value;
}

/** The plug-in that reads lap sheets. */
function lapSheets() {
    return given('LAPSHEET');
}

/**
 * Runs `zepimport` with `plugin`, and returns what it prints.
 * @param {string[]} args
 */
function zepimport(args, plugin = given('NAPAMMUL')) {
    return execFileSync(given('ZEPIMPORT'), args, {
        cwd: folder, encoding: 'utf8', env: { ...process.env, ZEP_PLUGIN_PATH: plugin },
    });
}

/**
 * A demo recording called `name`, written by `ibtgen` with `args`.
 * @param {string} name
 * @param {string[]} args
 */
function demoRecording(name, args = []) {
    execFileSync(given('IBTGEN'), [...args, name], { cwd: folder });
    return name;
}

/**
 * A lap sheet called `name` that contains `lines`; tests/fakeplugin/ says what they mean.
 * @param {string} name
 * @param {string[]} lines
 */
function lapSheet(name, lines) {
    fs.writeFileSync(path.join(folder, name), `${lines.join('\n')}\n`);
    return name;
}

/**
 * The page that `zepimport report` makes of `recordings`.
 * @param {string[]} recordings
 * @param {string[]} args
 * @param {string} [plugin]
 */
function writeReport(recordings, args = [], plugin) {
    const name = `${path.basename(recordings[0])}-${fs.readdirSync(folder).length}.html`;
    zepimport(['report', ...recordings, ...args, '-o', name], plugin);
    return path.join(folder, name);
}

/**
 * A tab in a context of its own, made with `options`. It reports what its pages ask for and complain about.
 * @param {import('playwright-core').BrowserContextOptions} options
 * @return {Promise<Tab>}
 */
async function newTab(options) {
    const context = await browser.newContext(options);
    /** @type {string[]} */
    const requests = [];
    await context.route('**', (route) => {
        const url = route.request().url();
        requests.push(url);
        return url === requests[0] ? route.continue() : route.abort();
    });
    /** @type {(string | undefined)[]} */
    const complaints = [];
    const page = await context.newPage();
    page.on('console', (message) => complaints.push(message.text()));
    page.on('pageerror', (error) => complaints.push(error.stack));
    page.on('dialog', (dialog) => complaints.push(dialog.message()));
    return { page, requests, complaints };
}

/**
 * A tab with `options`: the shared one where a size and a colour scheme are all that is asked for.
 * @param {import('playwright-core').BrowserContextOptions} options
 */
async function openTab({ viewport = { width: 1280, height: 900 }, colorScheme = 'light', ...others }) {
    if (Object.keys(others).length)
        return newTab({ viewport, colorScheme, ...others });
    const { page, requests, complaints } = sharedTab;
    requests.length = 0;
    complaints.length = 0;
    await page.setViewportSize(viewport ?? { width: 1280, height: 900 });
    await page.emulateMedia({ media: null, colorScheme });
    return sharedTab;
}

/**
 * Opens `file` with `options` of a browser context, has `use` do something with the page, and fails
 * if the page asked for anything, said anything on the console, or ran into an error. Without a browser
 * it is enough that the page was written.
 * @param {string} file
 * @param {import('playwright-core').BrowserContextOptions} options
 * @param {(page: Page) => Promise<unknown>} use
 */
async function withPage(file, options, use) {
    if (!hasBrowser) {
        assert.match(fs.readFileSync(file, 'utf8'), /<\/html>\s*$/);
        return;
    }
    const url = pathToFileURL(file).href;
    const tab = await openTab(options);
    const { page, requests, complaints } = tab;
    try {
        await page.goto(url);
        await page.waitForSelector('html[data-ready]', { state: 'attached', timeout: 20000 })
            .catch((error) => assert.fail(`${error.message}\n${complaints.join('\n')}`));
        await use(page);
        assert.deepStrictEqual(complaints, []);
        assert.deepStrictEqual(requests, [url]);
    } finally {
        if (tab !== sharedTab)
            await page.context().close();
    }
}

/**
 * Waits until the page has drawn what changed: that happens once a frame.
 * @param {Page} page
 */
async function drawn(page) {
    await page.evaluate(() => new Promise((resolve) => { requestAnimationFrame(resolve); }));
}

/**
 * Shows all laps, or hides them. The boxes are clicked within the page: the mouse would need a second for each.
 * @param {Page} page
 * @param {boolean} show
 */
async function showAllLaps(page, show) {
    await page.evaluate((checked) => {
        /** @type {() => HTMLInputElement | null} */
        const next = () => document.querySelector(
            `#laps input[type=checkbox]${checked ? ':not(:checked)' : ':checked'}`);
        for (let box = next(); box; box = next()) // each click makes a new table
            box.click();
    }, show);
    await drawn(page);
}

/**
 * The values above the chart called `key` at the cursor, the reference lap first.
 * @param {Page} page
 * @param {string} key
 */
async function readings(page, key) {
    await drawn(page);
    return page.locator(`[data-chart="${key}"] .reading`).allTextContents();
}

/**
 * Where the page says that the cursor is.
 * @param {Page} page
 */
async function positionText(page) {
    await drawn(page);
    return page.locator('#position-text').innerText();
}

/**
 * The number that a text of the page shows.
 * @param {string} text
 */
function numberOf(text) {
    return Number(text.replace('−', '-').replace('+', ''));
}

export {
    demoRecording, drawn, hasBrowser, lapSheet, lapSheets, numberOf, positionText, readings, showAllLaps, withPage,
    writeReport, zepimport,
};
