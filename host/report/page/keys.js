'use strict';

// The page by keyboard.

/** One step of the cursor: a five-hundredth of what is shown. */
function cursorStep() {
    const { min, max } = view.range ?? charts.fullRange();
    return (max - min) / 500;
}

function moveCursor(steps) {
    const { min, max } = view.range ?? charts.fullRange();
    const start = view.cursor ?? (steps > 0 ? min : max);
    setCursor(Math.min(max, Math.max(min, start + cursorStep() * steps)));
}

/** Where to zoom: at the cursor if it is in sight, else in the middle. */
function zoomPlace() {
    const { min, max } = view.range ?? charts.fullRange();
    return view.cursor !== null && view.cursor >= min && view.cursor <= max
        ? view.cursor : (min + max) / 2;
}

function toggleLapNumber(number) {
    const lap = view.model.laps[number - 1];
    if (lap)
        toggleLap(lap);
}

const shortcuts = [
    { keys: ['ArrowLeft', 'ArrowRight'], text: '← →', what: 'move the cursor',
        run: (event) => moveCursor((event.key === 'ArrowLeft' ? -1 : 1) * (event.shiftKey ? 10 : 1)) },
    { text: 'Shift ← →', what: 'move it ten times as far', keys: [] },
    { keys: ['<', '>'], text: '< >', what: 'go to the start or the end of what is shown',
        run: (event) => moveCursor(event.key === '<' ? -Infinity : Infinity) },
    { keys: ['+', '=', '-'], text: '+ −', what: 'zoom in and out',
        run: (event) => zoomBy(event.key === '-' ? 1.5 : 1 / 1.5, zoomPlace()) },
    { keys: [',', '.'], text: ', .', what: 'move what is shown',
        run: (event) => panBy(event.key === ',' ? -0.2 : 0.2) },
    { keys: ['0', 'Escape'], text: '0 Esc', what: 'show the whole lap', run: () => setRange(null) },
    { keys: ['1', '2', '3', '4', '5', '6', '7', '8', '9'], text: '1 … 9',
        what: 'draw that lap, or take it away', run: (event) => toggleLapNumber(Number(event.key)) },
    { keys: ['x'], text: 'X', what: 'distance or time',
        run: () => setAxis(view.axis === 'distance' ? 'time' : 'distance') },
    { keys: ['u'], text: 'U', what: 'units of drivers or as recorded',
        run: () => setUnits(view.units === 'driver' ? 'recorded' : 'driver') },
    { keys: ['t'], text: 'T', what: 'light or dark',
        run: () => setTheme(theme() === 'dark' ? 'light' : 'dark') },
    { keys: ['?'], text: '?', what: 'show this list', run: () => byId('help').showModal() },
];

function addKeys() {
    document.addEventListener('keydown', (event) => {
        if (event.ctrlKey || event.altKey || event.metaKey || byId('help').open)
            return;
        // A slider, a list or a choice has its own use for keys.
        if (event.target.matches('input[type=range], input[type=radio], select'))
            return;
        const key = event.key.length === 1 ? event.key.toLowerCase() : event.key;
        const shortcut = shortcuts.find(({ keys }) => keys.includes(key));
        if (!shortcut)
            return;
        event.preventDefault();
        shortcut.run(event);
    });
    byId('shortcuts').append(...shortcuts.map(({ text, what }) => el('div', {},
        el('dt', {}, text.split(' ').map((key) => el('kbd', {}, key))), el('dd', {}, what))));
}
