'use strict';

// Charts one above the other, over one axis: the time difference, then a chart for each channel.

const charts = {
    list: [], // { plot, series, texts, format }
    grid: [], // places on the axis that every chart has a value for, rising
    width: 0,
    squeeze: 1, // of their heights

    fullRange() {
        const { grid } = this;
        return grid.length > 0 ? { min: grid[0], max: grid[grid.length - 1] } : { min: 0, max: 1 };
    },

    /** Index of the place of the grid that is nearest to `place`. */
    indexAt(place) {
        const { grid } = this;
        const i = Math.max(0, floorIndex(grid, place));
        return i + 1 < grid.length && grid[i + 1] - place < place - grid[i] ? i + 1 : i;
    },
};

const chartHeights = { difference: 130, speed: 210, gear: 90 };
const chartHeight = 120;
const axisFont = '11px system-ui, sans-serif';

/** The name of the axis with its unit. */
function axisTitle() {
    return view.axis === 'distance' ? 'Distance (m)' : 'Time (s)';
}

/** A place on the axis as text. */
function formatPlace(place) {
    return view.axis === 'distance' ? `${fixed(place, 1)} m` : `${fixed(place, 2)} s`;
}

/** Ticks of an axis: as many decimals as their distance needs. */
function axisValues(plot, splits, axis, space, increment) {
    const decimals = Math.max(0, Math.ceil(-Math.log10(increment) - 1e-9));
    return splits.map((value) => (value === null ? null : fixed(value, decimals)));
}

/** What the time difference to the reference lap shows. */
function differenceChart(laps) {
    return {
        key: 'difference',
        title: `Time difference to ${view.reference.label}`,
        unit: 's',
        note: 'above zero: slower',
        filled: laps.length === 2,
        data: laps.map((lap) => differences(lap, view.reference, charts.grid, view.axis)),
        format: formatGap,
        range: (plot, least, greatest) => {
            const margin = Math.max(0.01, (greatest - least) * 0.1);
            return [Math.min(0, least) - margin, Math.max(0, greatest) + margin];
        },
        stepped: false,
    };
}

/** True for a share of one, like that of a pedal: its chart always shows the whole way. */
function isShare(channel) {
    return channel.unit === 'pu'
        && channel.laps.every((samples) => samples.every((s) => !(s > 1.001 || s < -0.001)));
}

/** What `channel` shows. */
function channelChart(channel, laps) {
    const { unit, factor } = shownUnit(channel.unit);
    const share = isShare(channel);
    const data = laps.map((lap) => resampled(channel.laps[lap.index], pathOf(lap, view.axis),
        charts.grid, channel.whole).map((sample) => (sample === null ? null : sample * factor)));
    const values = data.flat().filter((sample) => sample !== null);
    const greatest = values.reduce((a, b) => Math.max(a, Math.abs(b)), 0);
    const decimals = channel.whole && factor === 1 ? 0 : Math.min(decimalsFor(greatest), share ? 0 : 4);
    return {
        key: channel.name,
        title: channel.title,
        unit,
        data,
        format: (value) => fixed(value, decimals),
        range: share ? [-0.04 * factor, 1.04 * factor] : (plot, least, most) => {
            const margin = Math.max((most - least) * 0.08, channel.whole ? 0.4 : 1e-9,
                Math.abs(most) * 1e-6);
            return least === null ? [0, 1] : [least - margin, most + margin];
        },
        stepped: channel.whole,
    };
}

function plotOptions(chart, laps, hasLabels) {
    const grid = { stroke: styleValue('--grid'), width: 1 };
    const axis = {
        stroke: styleValue('--muted'), font: axisFont, grid, ticks: { show: false },
        values: axisValues,
    };
    return {
        width: charts.width,
        height: (chartHeights[chart.key] ?? chartHeight) * charts.squeeze + (hasLabels ? 26 : 0),
        padding: [6, 10, hasLabels ? 0 : 6, 0],
        legend: { show: false },
        scales: {
            x: { time: false, range: () => Object.values(view.range ?? charts.fullRange()) },
            y: { range: chart.range },
        },
        axes: [
            { ...axis, size: hasLabels ? 26 : 0, space: 70, values: hasLabels ? axisValues : () => [] },
            { ...axis, size: 52, space: 26 },
        ],
        series: [{}, ...laps.map((lap) => ({
            stroke: lapColour(lap),
            width: lap === view.reference ? 2 : 1.5,
            dash: lapDash(lap),
            ...(chart.filled && lap !== view.reference
                ? { fill: `color-mix(in srgb, ${lapColour(lap)} 14%, transparent)` } : {}),
            points: { show: false },
            pxAlign: 0,
            paths: chart.stepped ? uPlot.paths.stepped({ align: 1 }) : uPlot.paths.linear(),
        }))],
        cursor: {
            y: false,
            drag: { x: true, y: false, setScale: false },
            points: { size: 7, width: 0 },
            // The cursor stays where it was when the mouse leaves, beside the values that it stands for.
            bind: { mouseleave: () => null, dblclick: () => () => setRange(null) },
        },
        hooks: {
            setCursor: [(plot) => {
                if (plot.cursor.left >= 0)
                    setCursor(plot.posToVal(plot.cursor.left, 'x'));
            }],
            setSelect: [(plot) => {
                const { left, width } = plot.select;
                if (width > 0) {
                    plot.setSelect({ left: 0, top: 0, width: 0, height: 0 }, false);
                    setRange({
                        min: plot.posToVal(left, 'x'), max: plot.posToVal(left + width, 'x'),
                    });
                }
            }],
        },
    };
}

/** The head of a chart: what it shows, and the value of each lap at the cursor. */
function chartHead(chart, laps, texts) {
    return el('header', {},
        el('h3', {}, chart.title, chart.unit ? el('span', { class: 'unit' }, chart.unit) : null,
            chart.note ? el('span', { class: 'note' }, chart.note) : null),
        el('div', { class: 'readings' }, laps.map((lap, i) => {
            texts.push(el('span', { class: 'reading' }, '–'));
            return el('span', { title: `Lap ${lap.label}` }, lapMark(lap), texts[i]);
        })));
}

function addChart(container, chart, laps, hasLabels) {
    const texts = [];
    const place = el('div', { class: 'plot' });
    container.append(el('section', { class: 'chart', 'data-chart': chart.key,
        'aria-label': `${chart.title}${chart.unit ? `, ${chart.unit}` : ''}` },
    chartHead(chart, laps, texts), place));
    const plot = new uPlot(plotOptions(chart, laps, hasLabels), [charts.grid, ...chart.data], place);
    addGestures(plot.over, plot);
    charts.list.push({ plot, texts, chart });
}

/** Why there is no chart of the time difference; null if there is one. */
function noDifferenceReason(laps) {
    const others = laps.filter((lap) => lap !== view.reference);
    if (others.length === 0)
        return 'Draw a second lap to see the time difference.';
    const obstacles = others.map((lap) => differenceObstacle(lap, view.reference));
    return obstacles.every((obstacle) => obstacle !== null)
        ? `No time difference: ${[...new Set(obstacles)].join('; ')}.` : null;
}

function showCharts() {
    for (const { plot } of charts.list)
        plot.destroy();
    charts.list = [];
    const container = byId('charts');
    const laps = shownLaps();
    charts.grid = commonGrid(laps, view.axis);
    charts.width = container.clientWidth;
    container.replaceChildren();
    if (laps.length === 0 || charts.grid.length === 0) {
        container.append(el('p', { class: 'muted empty-note' }, laps.length === 0
            ? 'Choose a lap in the table to draw it.'
            : `Of these laps no ${view.axis} was recorded.`));
        return;
    }
    const reason = noDifferenceReason(laps);
    const shown = view.model.channels.filter((channel) => !view.hidden.has(channel.key))
        .map((channel) => channelChart(channel, laps));
    if (reason === null)
        shown.unshift(differenceChart(laps));
    else
        container.append(el('p', { class: 'muted empty-note' }, reason));
    // Places are named below the tallest chart and the last one, which is often out of sight.
    shown.forEach((chart, i) => addChart(container, chart, laps,
        chart.key === 'speed' || i === shown.length - 1));
    queueMicrotask(showCursor); // behind those in which the charts find their size
}

/** Redraws for another stretch of the axis. */
function showRange() {
    const { min, max } = view.range ?? charts.fullRange();
    for (const { plot } of charts.list)
        plot.setScale('x', { min, max });
    showCursor();
}

function showCursor() {
    const index = view.cursor === null ? null : charts.indexAt(view.cursor);
    for (const { plot, texts, chart } of charts.list) {
        if (index !== null) {
            const left = plot.valToPos(view.cursor, 'x');
            const inside = left >= 0 && left <= plot.bbox.width / devicePixelRatio;
            plot.setCursor({ left: inside ? left : -10, top: inside ? 10 : -10 }, false);
        }
        texts.forEach((text, lap) => {
            const value = index === null ? null : chart.data[lap][index];
            text.textContent = value === null ? '–' : chart.format(value);
        });
    }
}

/** Fits the charts to the place that the page gives them. */
function resizeCharts(width) {
    if (width === charts.width || width === 0)
        return;
    charts.width = width;
    for (const { plot } of charts.list)
        plot.setSize({ width, height: plot.height });
    showCursor();
}
