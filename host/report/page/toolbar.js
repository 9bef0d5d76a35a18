// The controls above and below the charts: axis, legend, position, channels; and the page's buttons.

import { axisTitle, formatPlace } from './chartdata.js';
import { byId, el } from './dom.js';
import { lapMark } from './marks.js';
import { formatLapTime } from './numbers.js';
import { pathOf } from './overlay.js';
import { theme, toggleTheme } from './theme.js';
import {
    listedLaps, setAxis, setCursor, setRange, setUnits, shownRange, toggleChannel, view,
} from './view.js';

/** @import { Axis } from './types.js' */

/**
 * A button that stays pressed, for one of several choices or for something that is on or off.
 * @param {string} text
 * @param {boolean} isPressed
 * @param {() => void} run
 */
function choiceButton(text, isPressed, run) {
    return el('button', { 'type': 'button', 'aria-pressed': String(isPressed), 'on': { click: run } },
        text);
}

/**
 * Puts `buttons` in place of those in `container`; the focus stays on the same one.
 * @param {HTMLElement} container
 * @param {HTMLElement[]} buttons
 */
function replaceButtons(container, buttons) {
    const focused = [...container.children].findIndex((button) => button === document.activeElement);
    container.replaceChildren(...buttons);
    buttons[focused]?.focus();
}

/**
 * True if a lap can be drawn along `axis`.
 * @param {Axis} axis
 */
export function hasAxis(axis) {
    return view.model.laps.some((lap) => pathOf(lap, axis).values.length > 1);
}

export function showChoices() {
    /** @type {[Axis, string][]} */
    const axes = [['distance', 'Distance'], ['time', 'Time']];
    replaceButtons(byId('axis'), axes.filter(([axis]) => hasAxis(axis))
        .map(([axis, text]) => choiceButton(text, view.axis === axis, () => setAxis(axis))));
    replaceButtons(byId('channels'), view.model.channels.map(({ title, key }) => choiceButton(
        title, !view.hidden.has(key), () => toggleChannel(key))));
    byId('units').textContent = view.units === 'driver' ? 'Units: km/h, %' : 'Units: as recorded';
    byId('theme').textContent = theme() === 'dark' ? 'Light' : 'Dark';
}

export function showLegend() {
    byId('legend').replaceChildren(...listedLaps().map((lap) => el('span', {}, lapMark(lap),
        `${lap.label}${lap.time === null ? '' : ` ${formatLapTime(lap.time)}`}`
        + `${lap === view.reference ? ' (reference)' : ''}`)));
}

/** Shows where the cursor is. */
export function drawPosition() {
    const slider = byId('position', HTMLInputElement);
    const { min, max } = shownRange();
    slider.min = String(min);
    slider.max = String(max);
    slider.step = String((max - min) / 500);
    slider.value = String(view.cursor ?? min);
    const text = view.cursor === null ? '–' : formatPlace(view.cursor);
    byId('position-text').textContent = text;
    slider.setAttribute('aria-valuetext', text);
    byId('reset').hidden = view.range === null;
}

export function showAxisTitle() {
    byId('axis-title').textContent = axisTitle();
}

/** Hides the controls of charts where no lap can be drawn. */
export function hideUseless() {
    const isUseful = hasAxis('distance') || hasAxis('time');
    for (const id of ['toolbar', 'chart-choices'])
        byId(id).hidden = !isUseful;
}

export function connectToolbar() {
    const help = byId('help', HTMLDialogElement);
    const position = byId('position', HTMLInputElement);
    byId('units').addEventListener('click',
        () => setUnits(view.units === 'driver' ? 'recorded' : 'driver'));
    byId('theme').addEventListener('click', toggleTheme);
    byId('reset').addEventListener('click', () => setRange(null));
    byId('help-button').addEventListener('click', () => help.showModal());
    byId('help-close').addEventListener('click', () => help.close());
    position.addEventListener('input', () => setCursor(position.valueAsNumber));
}
