// Puts the page together. What it exports is `report` in the browser's console, and to the tests.

import { announceCursor, charts, drawCursor, drawRange, resizeCharts, showCharts } from './charts.js';
import { byId } from './dom.js';
import { inNextFrame } from './frames.js';
import { showFuel } from './fuel.js';
import { addKeys } from './keys.js';
import { showLapTable } from './laptable.js';
import { firstLaps, readModel } from './model.js';
import { showMessages, showSessions } from './session.js';
import { followSystemTheme, setTheme, theme } from './theme.js';
import {
    connectToolbar, drawPosition, hasAxis, hideUseless, showAxisTitle, showChoices, showLegend,
} from './toolbar.js';
import { drawMapCursor, drawTrack, pointAtMap, showMap } from './trackmap.js';
import { showTyres } from './tyres.js';
import { fullRange, onChange, setCursor, toggleLap, view } from './view.js';

export { charts } from './charts.js';
export { lapColours } from './marks.js';
export { differenceAt, elapsedOf, valueAt } from './overlay.js';
export { trackMap } from './trackmap.js';
export { fullRange, listedLaps, setCursor, shownRange, view } from './view.js';

/** Each thing that can change, and everything that shows it. */
function connectView() {
    onChange(['laps'], showLapTable);
    onChange(['laps', 'axis', 'units', 'channels', 'theme'], () => {
        showCharts();
        showMap();
        showLegend();
    });
    onChange(['range'], () => {
        inNextFrame(drawRange);
        inNextFrame(drawTrack);
    });
    onChange(['range', 'cursor'], () => {
        inNextFrame(drawCursor);
        inNextFrame(drawMapCursor);
    });
    onChange(['cursor'], announceCursor);
    onChange(['laps', 'axis', 'range', 'cursor'], () => inNextFrame(drawPosition));
    onChange(['axis', 'units', 'channels', 'theme'], showChoices);
    onChange(['laps', 'axis'], showAxisTitle);
    onChange(['laps', 'units'], showTyres);
    onChange(['units'], () => {
        showSessions();
        showLapTable();
        showFuel();
        showMessages();
    });
}

function connectWindow() {
    const cursor = byId('map-cursor');
    cursor.addEventListener('pointermove', pointAtMap);
    cursor.addEventListener('pointerdown', pointAtMap);
    const isPrinted = matchMedia('print');
    new ResizeObserver(() => {
        if (!isPrinted.matches)
            resizeCharts(byId('charts').clientWidth);
    }).observe(byId('charts'));
    addEventListener('resize', () => {
        if (!isPrinted.matches)
            showMap();
    });
}

/** Paper is white and narrow, whatever the screen is. */
function connectPrinter() {
    const paperWidth = 680;
    let shownTheme = theme();
    addEventListener('beforeprint', () => {
        shownTheme = theme();
        charts.squeeze = 0.72; // all usual charts on one sheet of A4
        setTheme('light');
        resizeCharts(paperWidth);
    });
    addEventListener('afterprint', () => {
        charts.squeeze = 1;
        setTheme(shownTheme);
        resizeCharts(byId('charts').clientWidth);
    });
}

/** @param {unknown} error */
function showTrouble(error) {
    const reason = error instanceof Error ? error.message : String(error);
    byId('trouble').textContent = `This report cannot be shown: ${reason}. `
        + 'It needs a browser from 2023 or later.';
    byId('trouble').hidden = false;
}

/** Nothing may go wrong unnoticed, also after the page has been put together. */
function watchErrors() {
    addEventListener('error', ({ error, message }) => showTrouble(error ?? message));
    addEventListener('unhandledrejection', ({ reason }) => showTrouble(reason));
}

async function main() {
    watchErrors();
    followSystemTheme();
    view.model = await readModel(JSON.parse(byId('data').textContent ?? ''));
    if (!hasAxis('distance'))
        view.axis = 'time';
    connectView();
    connectToolbar();
    connectWindow();
    addKeys();
    byId('page').hidden = false;
    showSessions();
    showFuel();
    showMessages();
    showChoices();
    hideUseless();
    for (const lap of firstLaps(view.model.laps))
        toggleLap(lap);
    const { min, max } = fullRange();
    setCursor((min + max) / 2);
    connectPrinter();
    inNextFrame(() => { document.documentElement.dataset.ready = 'true'; });
}

main().catch(showTrouble);
