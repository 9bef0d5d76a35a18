// The page by keyboard.

import { byId, el } from './dom.js';
import { toggleTheme } from './theme.js';
import {
    panBy, setAxis, setCursor, setRange, setUnits, shownRange, toggleLap, view, zoomBy,
} from './view.js';

/**
 * Moves the cursor by steps of a five-hundredth of what is shown; it stays within that.
 * @param {number} steps
 */
function moveCursor(steps) {
    const { min, max } = shownRange();
    const start = view.cursor ?? (steps > 0 ? min : max);
    setCursor(Math.min(max, Math.max(min, start + (max - min) / 500 * steps)));
}

/** Where to zoom: at the cursor if it is in sight, otherwise in the middle. */
function zoomPlace() {
    const { min, max } = shownRange();
    return view.cursor !== null && view.cursor >= min && view.cursor <= max
        ? view.cursor : (min + max) / 2;
}

/** @param {number} number the # of a lap; with several files, of the one that the reference lap is in */
function toggleLapNumber(number) {
    const session = view.reference?.session ?? 0;
    const lap = view.model.laps.find((one) => one.session === session && one.number === number);
    if (lap)
        toggleLap(lap);
}

/** False if the user has switched the shortcuts of single keys off. */
let areOn = true;

/**
 * `keys` are the keys that `run` is for, `text` is how the list names them.
 * @type {{ keys: string[], text: string, what: string, run?: (event: KeyboardEvent) => void }[]}
 */
const shortcuts = [
    { keys: ['ArrowLeft', 'ArrowRight'], text: '← →', what: 'move the cursor',
        run: (event) => moveCursor((event.key === 'ArrowLeft' ? -1 : 1) * (event.shiftKey ? 10 : 1)) },
    { keys: [], text: 'Shift ← →', what: 'move the cursor ten times as far' },
    { keys: ['<', '>'], text: '< >', what: 'jump to the start or end of what is shown',
        run: (event) => moveCursor(event.key === '<' ? -Infinity : Infinity) },
    { keys: ['+', '=', '-'], text: '+ −', what: 'zoom in or out',
        run: (event) => zoomBy(event.key === '-' ? 1.5 : 1 / 1.5, zoomPlace()) },
    { keys: [',', '.'], text: ', .', what: 'scroll back or forward along the lap',
        run: (event) => panBy(event.key === ',' ? -0.2 : 0.2) },
    { keys: ['0', 'Escape'], text: '0 Esc', what: 'show the whole lap', run: () => setRange(null) },
    { keys: ['1', '2', '3', '4', '5', '6', '7', '8', '9'], text: '1 … 9',
        what: 'show or hide the lap with that #', run: (event) => toggleLapNumber(Number(event.key)) },
    { keys: ['x'], text: 'X', what: 'switch between distance and time',
        run: () => setAxis(view.axis === 'distance' ? 'time' : 'distance') },
    { keys: ['u'], text: 'U', what: 'switch between drivers’ units and recorded units',
        run: () => setUnits(view.units === 'driver' ? 'recorded' : 'driver') },
    { keys: ['t'], text: 'T', what: 'switch between light and dark', run: toggleTheme },
    { keys: ['?'], text: '?', what: 'show this list',
        run: () => byId('help', HTMLDialogElement).showModal() },
];

/** @param {KeyboardEvent} event */
function onKey(event) {
    if (event.ctrlKey || event.altKey || event.metaKey || byId('help', HTMLDialogElement).open)
        return;
    // A slider, a list or a choice has its own use for keys.
    if (event.target instanceof Element
        && event.target.matches('input[type=range], input[type=radio], select'))
        return;
    const key = event.key.length === 1 ? event.key.toLowerCase() : event.key;
    if (!areOn && event.key.length === 1)
        return;
    const shortcut = shortcuts.find(({ keys }) => keys.includes(key));
    if (!shortcut?.run)
        return;
    event.preventDefault();
    shortcut.run(event);
}

export function addKeys() {
    document.addEventListener('keydown', onKey);
    const choice = byId('keys-on', HTMLInputElement);
    choice.addEventListener('change', () => { areOn = choice.checked; });
    byId('shortcuts').append(...shortcuts.map(({ text, what }) => el('div', {},
        el('dt', {}, text.split(' ').map((key) => el('kbd', {}, key))), el('dd', {}, what))));
}
