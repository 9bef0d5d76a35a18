// How uPlot draws a chart: colours, axes, and what the mouse does.

import uPlot from 'uplot';

import { axisTexts } from './chartdata.js';
import { styleValue } from './dom.js';
import { lapColour, lapDash } from './marks.js';
import { setCursor, setRange, shownRange, view } from './view.js';

/** @import { ChartContent, Lap } from './types.js' */

/** @type {Record<string, number>} */
const heights = { difference: 130, speed: 210, gear: 90 };
const usualHeight = 120;
const labelHeight = 26;

/**
 * @param {ChartContent} chart
 * @param {Lap} lap
 * @returns {uPlot.Series}
 */
function lapSeries(chart, lap) {
    const isReference = lap === view.reference;
    const colour = lapColour(lap);
    return {
        stroke: colour,
        width: isReference ? 2 : 1.5,
        dash: lapDash(lap),
        ...(chart.filled && !isReference
            ? { fill: `color-mix(in srgb, ${colour} 14%, transparent)` } : {}),
        points: { show: false },
        pxAlign: 0,
        paths: chart.stepped ? uPlot.paths.stepped?.({ align: 1 }) : uPlot.paths.linear?.(),
    };
}

/**
 * @param {boolean} hasLabels
 * @returns {uPlot.Axis[]}
 */
function axes(hasLabels) {
    /** @type {uPlot.Axis} */
    const axis = {
        stroke: styleValue('--muted'),
        font: '11px system-ui, sans-serif',
        grid: { stroke: styleValue('--grid'), width: 1 },
        ticks: { show: false },
        values: (_plot, numbers, _axis, _space, increment) => axisTexts(numbers, increment),
    };
    return [
        { ...axis, size: hasLabels ? labelHeight : 0, space: 70, ...(hasLabels ? {} : { values: () => [] }) },
        { ...axis, size: 52, space: 26 },
    ];
}

/** @type {uPlot.Cursor} */
const cursor = {
    y: false,
    drag: { x: true, y: false, setScale: false },
    points: { size: 7, width: 0 },
    // When the mouse leaves, the cursor stays where it was, where the values above the charts come from.
    bind: { mouseleave: () => null, dblclick: () => () => { setRange(null); return null; } },
};

/** @param {uPlot} plot */
function onCursor(plot) {
    const { left } = plot.cursor;
    if (left !== undefined && left >= 0)
        setCursor(plot.posToVal(left, 'x'));
}

/** @param {uPlot} plot */
function onSelect(plot) {
    const { left, width } = plot.select;
    if (width > 0) {
        plot.setSelect({ left: 0, top: 0, width: 0, height: 0 }, false);
        setRange({ min: plot.posToVal(left, 'x'), max: plot.posToVal(left + width, 'x') });
    }
}

/**
 * A new plot of `chart` in `place`.
 * @param {HTMLElement} place
 * @param {ChartContent} chart
 * @param {{ laps: Lap[], width: number, squeeze: number, hasLabels: boolean }} look
 *     `laps` in the order of the chart's data; `squeeze` is a factor of the height
 */
export function newPlot(place, chart, { laps, width, squeeze, hasLabels }) {
    // What is listed first is painted last: the reference lies on top.
    const series = laps.map((lap) => lapSeries(chart, lap)).reverse();
    const data = [...chart.data].reverse();
    return new uPlot({
        width,
        height: (heights[chart.key] ?? usualHeight) * squeeze + (hasLabels ? labelHeight : 0),
        padding: [6, 10, hasLabels ? 0 : 6, 0],
        legend: { show: false },
        scales: {
            x: { time: false, range: () => [shownRange().min, shownRange().max] },
            y: { range: (_plot, least, most) => chart.ends(least, most) },
        },
        axes: axes(hasLabels),
        series: [{}, ...series],
        cursor,
        hooks: { setCursor: [onCursor], setSelect: [onSelect] },
    }, [view.grid, ...data], place);
}
