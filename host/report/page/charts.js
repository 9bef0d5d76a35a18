// Charts one above the other, along one axis: the time difference, then a chart for each channel.

import { chartContents, formatPlace } from './chartdata.js';
import { byId, el } from './dom.js';
import { inNextFrame } from './frames.js';
import { addGestures } from './gestures.js';
import { lapMark } from './marks.js';
import { nearestIndex } from './overlay.js';
import { newPlot } from './plot.js';
import { listedLaps, shownRange, view } from './view.js';

/** @import uPlot from 'uplot' */
/** @import { ChartContent, Lap } from './types.js' */

/** @typedef {{ plot: uPlot, texts: HTMLElement[], chart: ChartContent }} Chart */

export const charts = {
    /** The `texts` of each show the values of the laps at the cursor. @type {Chart[]} */
    list: [],
    width: 0,
    /** A factor of their heights. */
    squeeze: 1,
};

/**
 * The head of a chart: what it shows, and the value of each lap at the cursor.
 * @param {ChartContent} chart
 * @param {Lap[]} laps
 * @param {HTMLElement[]} texts one for each lap
 */
function chartHead(chart, laps, texts) {
    return el('header', {},
        el('h3', {}, chart.title, chart.unit ? el('span', { class: 'unit' }, chart.unit) : null,
            chart.note ? el('span', { class: 'note' }, chart.note) : null),
        el('div', { class: 'readings' }, laps.map(
            (lap, i) => el('span', { title: `Lap ${lap.label}` }, lapMark(lap), texts[i]))));
}

/**
 * @param {HTMLElement} container
 * @param {ChartContent} chart
 * @param {Lap[]} laps
 * @param {boolean} hasLabels whether the axis is labelled below the chart
 */
function addChart(container, chart, laps, hasLabels) {
    const texts = laps.map(() => el('span', { class: 'reading' }, '–'));
    const place = el('div', { class: 'plot' });
    container.append(el('section', { 'class': 'chart', 'data-chart': chart.key,
        'aria-label': `${chart.title}${chart.unit ? `, ${chart.unit}` : ''}` },
    chartHead(chart, laps, texts), place));
    const { width, squeeze } = charts;
    const plot = newPlot(place, chart, { laps, width, squeeze, hasLabels });
    addGestures(plot);
    charts.list.push({ plot, texts, chart });
}

export function showCharts() {
    for (const { plot } of charts.list)
        plot.destroy();
    charts.list = [];
    const container = byId('charts');
    charts.width = container.clientWidth;
    const { note, charts: contents } = chartContents();
    container.replaceChildren();
    if (note !== '')
        container.append(el('p', { class: 'muted empty-note' }, note));
    // The axis is labelled below the tallest chart and below the last one, which is often out of sight.
    contents.forEach((chart, i) => addChart(container, chart, listedLaps(),
        chart.key === 'speed' || i === contents.length - 1));
    inNextFrame(drawCursor); // when the plots know their size
}

/** Shows another stretch of the axis; the cursor has to be drawn after that. */
export function drawRange() {
    for (const { plot } of charts.list)
        plot.batch(() => plot.setScale('x', shownRange()));
}

/** Shows the cursor in every chart, and the values there. */
export function drawCursor() {
    const { cursor } = view;
    const index = cursor === null ? null : nearestIndex(view.grid, cursor);
    for (const { plot, texts, chart } of charts.list) {
        if (cursor !== null) {
            const left = plot.valToPos(cursor, 'x');
            const inside = left >= 0 && left <= plot.bbox.width / devicePixelRatio;
            plot.setCursor({ left: inside ? left : -10, top: inside ? 10 : -10 }, false);
        }
        texts.forEach((text, lap) => {
            const value = index === null ? null : chart.data[lap][index];
            text.textContent = value === null ? '–' : chart.format(value);
        });
    }
}

/** The place of the cursor, and the value of each lap there, as a screen reader says it. */
function spokenValues() {
    const { cursor, grid } = view;
    if (cursor === null)
        return '';
    const index = nearestIndex(grid, cursor);
    const laps = listedLaps();
    const values = charts.list.map(({ chart }) => `${chart.title}: ${laps.map((lap, i) => {
        const value = chart.data[i][index];
        return `${lap.label} ${value === null ? 'none' : `${chart.format(value)} ${chart.unit}`}`;
    }).join(', ')}`);
    return [formatPlace(cursor), ...values].join('. ');
}

/** @type {ReturnType<typeof setTimeout> | undefined} */
let announcement;

/** Has the values at the cursor said once it rests. */
export function announceCursor() {
    const rest = 500; // ms
    clearTimeout(announcement);
    announcement = setTimeout(() => { byId('cursor-values').textContent = spokenValues(); }, rest);
}

/**
 * Fits the charts into `width` pixels.
 * @param {number} width
 */
export function resizeCharts(width) {
    if (width === charts.width || width === 0)
        return;
    charts.width = width;
    for (const { plot } of charts.list)
        plot.setSize({ width, height: plot.height });
    inNextFrame(drawCursor);
}
