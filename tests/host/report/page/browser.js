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

before(async () => {
    if (!hasBrowser)
        return;
    browser = await chromium.launch({
        executablePath: process.env.CHROMIUM ?? '/usr/bin/chromium',
        args: process.getuid?.() === 0 ? ['--no-sandbox'] : [],
    });
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
    const context = await browser.newContext({ viewport: { width: 1280, height: 900 }, ...options });
    const url = pathToFileURL(file).href;
    /** @type {string[]} */
    const requests = [];
    /** @type {(string | undefined)[]} */
    const complaints = [];
    await context.route('**', (route) => {
        requests.push(route.request().url());
        return route.request().url() === url ? route.continue() : route.abort();
    });
    const page = await context.newPage();
    page.on('console', (message) => complaints.push(message.text()));
    page.on('pageerror', (error) => complaints.push(error.stack));
    page.on('dialog', (dialog) => complaints.push(dialog.message()));
    try {
        await page.goto(url);
        await page.waitForSelector('html[data-ready]', { state: 'attached', timeout: 20000 })
            .catch((error) => assert.fail(`${error.message}\n${complaints.join('\n')}`));
        await use(page);
        assert.deepStrictEqual(complaints, []);
        assert.deepStrictEqual(requests, [url]);
    } finally {
        await context.close();
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
    demoRecording, drawn, hasBrowser, lapSheet, lapSheets, numberOf, positionText, readings, withPage,
    writeReport, zepimport,
};
