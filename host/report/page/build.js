// Makes the page of reports, with two marks left in it for what zepimport puts in:
//   node build.js PACKAGES PAGE
// PACKAGES is the folder of npm's packages. Anything that is missing or left over is an error.

import { createHash } from 'node:crypto';
import { readFileSync, writeFileSync } from 'node:fs';
import { createRequire } from 'node:module';
import path from 'node:path';
import { fileURLToPath } from 'node:url';

const folder = path.dirname(fileURLToPath(import.meta.url));
const [packages, output] = process.argv.slice(2).map((name) => path.resolve(name));
/** @type {import('esbuild')} */
const esbuild = createRequire(path.join(packages, 'build.js'))('esbuild');

/**
 * The script or style sheet called `name`, with everything that it imports.
 * @param {string} name
 */
function bundled(name) {
    const { outputFiles, warnings } = esbuild.buildSync({
        absWorkingDir: folder,
        entryPoints: [`./${name}`],
        bundle: true,
        minify: true, // each report contains it
        charset: 'utf8',
        format: 'iife',
        globalName: 'report',
        target: 'es2022', // what browsers of 2023 know
        nodePaths: [packages],
        write: false,
    });
    if (warnings.length > 0)
        throw new Error(`${name}: there are warnings`);
    return outputFiles[0].text.trim();
}

/**
 * `html` with the bundle of each file that `reference` names in place of it, in an element `tag`;
 * and the hashes of those bundles, as a content security policy names them.
 * @param {string} html
 * @param {RegExp} reference
 * @param {'script' | 'style'} tag
 */
function inlined(html, reference, tag) {
    /** @type {string[]} */
    const hashes = [];
    const page = html.replace(reference, (_, name) => {
        const text = bundled(name);
        if (text.includes(`</${tag}`))
            throw new Error(`${name}: contains the end of its own element`);
        hashes.push(`'sha256-${createHash('sha256').update(text).digest('base64')}'`);
        return `<${tag}>${text}</${tag}>`;
    });
    return { page, hashes: hashes.join(' ') };
}

/**
 * `page` with `text` in place of the only `mark`.
 * @param {string} page
 * @param {string} mark
 * @param {string} text
 */
function filled(page, mark, text) {
    const parts = page.split(mark);
    if (parts.length !== 2)
        throw new Error(`report.html: has ${mark} ${parts.length - 1} times, not once`);
    return parts.join(text);
}

/** @param {string} text */
function escaped(text) {
    return text.replace(/&/g, '&amp;').replace(/</g, '&lt;').replace(/>/g, '&gt;');
}

const html = readFileSync(path.join(folder, 'report.html'), 'utf8');
const styled = inlined(html, /<link rel="stylesheet" href="([^"]+)">/g, 'style');
const scripted = inlined(styled.page, /<script src="([^"]+)"><\/script>/g, 'script');
const [left] = scripted.page.match(/<link\b[^>]*>|<[^>]*\bsrc=[^>]*>/) ?? [];
if (left)
    throw new Error(`report.html: ${left} would be requested when the page is opened`);

const licence = readFileSync(path.join(packages, 'uplot', 'LICENSE'), 'utf8');
const policy = `default-src 'none'; script-src ${scripted.hashes}; style-src ${styled.hashes}; `
    + "base-uri 'none'; form-action 'none'";
const page = filled(filled(scripted.page, '@POLICY@', policy), '@LICENCE@', escaped(licence));
for (const mark of ['@TITLE@', '@DATA@'])
    filled(page, mark, '');
writeFileSync(output, page);
