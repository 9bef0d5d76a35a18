'use strict';

// Takes the pictures of docs/images/ anew, from a demo recording: scripts/pictures runs it.

const path = require('node:path');
const { test } = require('node:test');
const { demoRecording, withPage, writeReport } = require('./browser.js');

const report = writeReport([demoRecording('demo.ibt')]);
const folder = path.join(__dirname, '../../../../docs/images');
const devices = {
    desktop: { viewport: { width: 1440, height: 1100 } },
    phone: { viewport: { width: 390, height: 1500 }, hasTouch: true, isMobile: true },
};

for (const [device, options] of Object.entries(devices)) {
    for (const colorScheme of ['light', 'dark']) {
        test(`${device}, ${colorScheme}`, () => withPage(report, { ...options, colorScheme }, (page) =>
            page.screenshot({ path: path.join(folder, `report-${device}-${colorScheme}.png`) })));
    }
}
