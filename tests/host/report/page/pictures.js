// Takes the pictures in docs/images/ again, of a demo recording: scripts/pictures runs it.

import path from 'node:path';
import { test } from 'node:test';
import { fileURLToPath } from 'node:url';
import { demoRecording, withPage, writeReport } from './browser.js';

const file = writeReport([demoRecording('demo.ibt')]);
const folder = fileURLToPath(new URL('../../../../docs/images', import.meta.url));
const devices = {
    desktop: { viewport: { width: 1440, height: 1100 } },
    phone: { viewport: { width: 390, height: 1500 }, hasTouch: true, isMobile: true },
};

for (const [device, options] of Object.entries(devices)) {
    for (const colorScheme of /** @type {const} */ (['light', 'dark'])) {
        test(`${device}, ${colorScheme}`, () => withPage(file, { ...options, colorScheme }, (page) =>
            page.screenshot({ path: path.join(folder, `report-${device}-${colorScheme}.png`) })));
    }
}
