// A part that is missing or left over fails the build, not the page.

import assert from 'node:assert';
import { spawnSync } from 'node:child_process';
import fs from 'node:fs';
import os from 'node:os';
import path from 'node:path';
import { test } from 'node:test';
import { fileURLToPath } from 'node:url';

const source = fileURLToPath(new URL('../../../../host/report/page', import.meta.url));
const packages = process.env.REPORT_PACKAGES ?? '';

/**
 * Builds the page from a copy of its folder in which `edits` were made.
 * @param {Record<string, (text: string) => string>} edits by file; an edit to '' removes the file
 */
function build(edits) {
    const folder = fs.mkdtempSync(path.join(os.tmpdir(), 'page-'));
    try {
        fs.cpSync(source, folder, { recursive: true });
        for (const [name, edit] of Object.entries(edits)) {
            const file = path.join(folder, name);
            const text = edit(fs.readFileSync(file, 'utf8'));
            if (text === '')
                fs.rmSync(file);
            else
                fs.writeFileSync(file, text);
        }
        const page = path.join(folder, 'built.html');
        const { status, stderr } = spawnSync(process.execPath, [path.join(folder, 'build.js'), packages, page],
            { encoding: 'utf8' });
        return { status, errors: stderr, page: fs.existsSync(page) ? fs.readFileSync(page, 'utf8') : '' };
    } finally {
        fs.rmSync(folder, { recursive: true });
    }
}

test('the page has everything in it but its title and its data', () => {
    const { status, errors, page } = build({});
    assert.deepStrictEqual([status, errors], [0, '']);
    assert.deepStrictEqual(page.match(/@[A-Z]+@/g), ['@TITLE@', '@DATA@']);
    assert.match(page, /Permission is hereby granted/, 'the licence of uPlot');
    assert.match(page, /\.u-over/, 'the style sheet of uPlot');
    assert.deepStrictEqual(page.match(/<(script|style|link)\b[^>]*>/g),
        ['<style>', '<script id="data" type="application/json">', '<script>']);
    assert.match(page, /default-src 'none'; script-src 'sha256-[^ ]{44}'; style-src 'sha256-[^ ]{44}'; base-uri/);
});

test('the page is the same each time', () => {
    assert.strictEqual(build({}).page, build({}).page);
});

/** @param {string} text */
const removed = (text) => text.slice(text.length);

/** @type {Record<string, { edits: Record<string, (text: string) => string>, error: RegExp }>} */
const failures = {
    'a script that is missing': {
        edits: { 'main.js': removed }, error: /Could not resolve "\.\/main\.js"/,
    },
    'a module that is missing': {
        edits: { 'fuel.js': removed }, error: /Could not resolve "\.\/fuel\.js"/,
    },
    'a name that a module does not export': {
        edits: { 'fuel.js': (text) => text.replace('export function showFuel', 'function showFuel') },
        error: /No matching export in "fuel\.js" for import "showFuel"/,
    },
    'a package that is missing': {
        edits: { 'plot.js': (text) => text.replace("'uplot'", "'uplott'") }, error: /Could not resolve "uplott"/,
    },
    'a style sheet that is missing': {
        edits: { 'report.css': removed }, error: /Could not resolve "\.\/report\.css"/,
    },
    'a style sheet with a mistake': {
        edits: { 'report.css': (text) => `${text}\n.card { color: red` }, error: /report\.css: there are warnings/,
    },
    'a picture': {
        edits: { 'report.html': (text) => text.replace('<main>', '<main><img src="logo.png">') },
        error: /<img src="logo\.png"> would be requested/,
    },
    'a script with attributes': {
        edits: { 'report.html': (text) => text.replace('<script src', '<script defer src') },
        error: /<script defer src="main\.js"> would be requested/,
    },
    'a mark that is missing': {
        edits: { 'report.html': (text) => text.replace('@DATA@', '') }, error: /has @DATA@ 0 times, not once/,
    },
    'a mark too many': {
        edits: { 'report.html': (text) => text.replace('<main>', '<main>@TITLE@') }, error: /@TITLE@ 2 times/,
    },
};

for (const [name, { edits, error }] of Object.entries(failures)) {
    test(`${name} fails the build`, () => {
        const { status, errors, page } = build(edits);
        assert.match(errors, error);
        assert.deepStrictEqual([status, page], [1, '']);
    });
}

test('without its packages the build fails', () => {
    const { status, stderr } = spawnSync(process.execPath,
        [path.join(source, 'build.js'), path.join(source, 'none'), path.join(os.tmpdir(), 'none.html')],
        { encoding: 'utf8' });
    assert.match(stderr, /Cannot find module 'esbuild'/);
    assert.strictEqual(status, 1);
});
