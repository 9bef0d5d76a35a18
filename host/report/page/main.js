'use strict';

// Puts the page together.

/** A button that stays pressed, for one of several choices or for one that is on or off. */
function choiceButton(text, isPressed, run) {
    return el('button', { type: 'button', 'aria-pressed': String(isPressed), on: { click: run } },
        text);
}

/** Buttons are made anew when they change, so the one with the focus gets it again. */
function replaceButtons(container, buttons) {
    const focused = [...container.children].indexOf(document.activeElement);
    container.replaceChildren(...buttons);
    container.children[focused]?.focus();
}

function showChoices() {
    const hasTime = view.model.laps.some((lap) => pathOf(lap, 'time').values.length > 1);
    const hasDistance = view.model.laps.some((lap) => pathOf(lap, 'distance').values.length > 1);
    replaceButtons(byId('axis'), [['distance', 'Distance', hasDistance], ['time', 'Time', hasTime]]
        .filter(([, , isThere]) => isThere)
        .map(([axis, text]) => choiceButton(text, view.axis === axis, () => setAxis(axis))));
    replaceButtons(byId('channels'), view.model.channels.map((channel) => choiceButton(
        channel.title, !view.hidden.has(channel.key), () => toggleChannel(channel.key))));
    byId('units').textContent = view.units === 'driver' ? 'Units: km/h, %' : 'Units: as recorded';
    byId('theme').textContent = theme() === 'dark' ? 'Light' : 'Dark';
}

function showLegend() {
    byId('legend').replaceChildren(...shownLaps().map((lap) => el('span', {}, lapMark(lap),
        `${lap.label}${lap.time === null ? '' : ` ${formatLapTime(lap.time)}`}`
        + `${lap === view.reference ? ' (reference)' : ''}`)));
}

function showPosition() {
    const slider = byId('position');
    const { min, max } = view.range ?? charts.fullRange();
    slider.min = min;
    slider.max = max;
    slider.step = (max - min) / 500;
    slider.value = view.cursor ?? min;
    const text = view.cursor === null ? '–' : formatPlace(view.cursor);
    byId('position-text').textContent = text;
    slider.setAttribute('aria-valuetext', text);
    byId('reset').hidden = view.range === null;
}

function showAxisTitle() {
    byId('axis-title').textContent = axisTitle();
}

/**
 * The fastest lap, or what was driven longest; with it the best ones of the other files, or else the
 * one next to it.
 */
function chooseFirstLaps(laps) {
    const timed = laps.filter((lap) => lap.time !== null && lap.kind === 'timed')
        .sort((a, b) => a.time - b.time);
    const first = timed[0] ?? [...laps].sort((a, b) => b.samples - a.samples)[0];
    const others = timed.filter((lap) => lap !== first && lap.track === first.track);
    const rivals = others.filter((lap) => lap.best);
    for (const lap of [first, ...(rivals.length > 0 ? rivals.slice(0, 3) : others.slice(0, 1))])
        toggleLap(lap);
}

function connect() {
    onView('laps', showLapTable);
    onView('laps axis units channels theme', () => {
        showCharts();
        showMap();
    });
    onView('laps axis units channels theme', showLegend);
    onView('range', () => {
        showRange();
        if (trackMap.lap)
            drawTrack();
    });
    onView('cursor', () => {
        showCursor();
        drawMapCursor();
    });
    onView('laps axis range cursor channels', showPosition);
    onView('axis units channels theme', showChoices);
    onView('axis laps', showAxisTitle);
    onView('laps units', showTyres);
    onView('units', () => {
        showSessions();
        showLapTable();
        showFuel();
        showRemarks();
    });

    byId('units').addEventListener('click', () => setUnits(view.units === 'driver' ? 'recorded' : 'driver'));
    byId('theme').addEventListener('click', () => setTheme(theme() === 'dark' ? 'light' : 'dark'));
    byId('reset').addEventListener('click', () => setRange(null));
    byId('help-button').addEventListener('click', () => byId('help').showModal());
    byId('help-close').addEventListener('click', () => byId('help').close());
    byId('position').addEventListener('input', (event) => setCursor(event.target.valueAsNumber));
    for (const type of ['pointermove', 'pointerdown'])
        byId('map-cursor').addEventListener(type, pointAtMap);
    const isPrinted = matchMedia('print');
    new ResizeObserver(() => {
        if (!isPrinted.matches)
            resizeCharts(byId('charts').clientWidth);
    }).observe(byId('charts'));
    addEventListener('resize', () => {
        if (!isPrinted.matches)
            showMap();
    });
    addKeys();
}

/** Paper is white and narrow, whatever the screen is. */
function addPrinting() {
    const paperWidth = 680;
    let shownTheme = null;
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

async function main() {
    const dark = matchMedia('(prefers-color-scheme: dark)');
    document.documentElement.dataset.theme = dark.matches ? 'dark' : 'light';
    dark.addEventListener('change', () => setTheme(dark.matches ? 'dark' : 'light'));
    try {
        view.model = await readModel(JSON.parse(byId('data').textContent));
    } catch (error) {
        byId('trouble').textContent = `This report cannot be shown: ${error.message}. `
            + 'It needs a browser of 2023 or later.';
        byId('trouble').hidden = false;
        return;
    }
    const { laps } = view.model;
    if (!laps.some((lap) => pathOf(lap, 'distance').values.length > 1))
        view.axis = 'time';
    connect();
    byId('page').hidden = false;
    showSessions();
    showFuel();
    showRemarks();
    showChoices();
    chooseFirstLaps(laps);
    const { min, max } = charts.fullRange();
    setCursor((min + max) / 2);
    addPrinting();
    document.documentElement.dataset.ready = 'true';
}

main();
