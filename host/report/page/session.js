// The head of the page: track, car, driver and weather. At its foot: what the import said.

import { byId, el } from './dom.js';
import { fileLetter } from './model.js';
import { formatLapTime } from './numbers.js';
import { formatQuantity } from './units.js';
import { view } from './view.js';

/** @import { Model, NamedValue, Quantity, Session, Weather } from './types.js' */

/**
 * A name and a value; null if there is no value.
 * @param {string} name
 * @param {string | null} value
 * @param {string} [kind] a further class
 */
function fact(name, value, kind = '') {
    return value === null || value === '–' ? null
        : el('div', { class: `fact ${kind}` }, el('dt', {}, name), el('dd', {}, value));
}

/** @param {Session} session */
function sessionTitle(session) {
    return [session.track ?? 'Unknown track', session.configuration?.trim()].filter(Boolean)
        .join(' – ');
}

/** @param {Session} session */
function sessionDate({ date, dateOfFile }) {
    if (!date)
        return null;
    const text = date.slice(0, 16).replace('T', ' ');
    return el('span', { class: 'date' }, dateOfFile ? `${text} (file date)` : text);
}

/** @param {Weather} weather */
function weatherFacts({ skies, air, track, wind, humidity, pressure }) {
    const airPressure = pressure?.unit === 'Pa' ? { value: pressure.value / 100, unit: 'hPa' }
        : pressure;
    return [
        fact('Sky', skies),
        fact('Air', formatQuantity(air, view.units, 1)),
        fact('Track surface', formatQuantity(track, view.units, 1)),
        fact('Wind', formatQuantity(wind, view.units, 1)),
        fact('Humidity', formatQuantity(humidity, view.units, 0)),
        fact('Air pressure', formatQuantity(airPressure, view.units, 0)),
    ];
}

/**
 * `value` as a quantity; null if it is not a number.
 * @param {NamedValue | undefined} value
 * @returns {Quantity | null}
 */
function quantityOf(value) {
    return typeof value?.value === 'number' ? { value: value.value, unit: value.unit ?? '' } : null;
}

/**
 * @param {Session} session
 * @param {number} index
 * @param {Model} model
 */
function sessionFacts(session, index, model) {
    const laps = model.laps.filter((lap) => lap.session === index);
    const timed = laps.filter((lap) => lap.time !== null);
    const best = laps.find((lap) => lap.best);
    const length = session.trackLength ? { value: session.trackLength, unit: 'm' } : null;
    const tank = session.values.find(({ name }) => name === 'Maximum fuel level');
    return el('dl', { class: 'facts' },
        best ? fact(`Best lap ${best.label}`, formatLapTime(best.time), 'best-fact') : null,
        fact('Timed laps', `${timed.length} of ${laps.length}`),
        fact('Track length', formatQuantity(length, view.units, 0)),
        weatherFacts(session.weather),
        fact('Tank', formatQuantity(quantityOf(tank), view.units)));
}

/**
 * @param {Session} session
 * @param {number} index
 * @param {Model} model
 */
function sessionHead(session, index, model) {
    const date = sessionDate(session);
    const names = [session.car, session.driver, session.session].filter(Boolean).join(' · ');
    return el('section', { 'class': 'session', 'aria-label': `Session ${sessionTitle(session)}` },
        el('div', { class: 'session-title' },
            el(index === 0 ? 'h1' : 'h2', {}, sessionTitle(session)),
            el('p', { class: 'subtitle' }, names, names && date ? ' · ' : null, date),
            model.sessions.length > 1
                ? el('p', { class: 'file' }, `${fileLetter(index)}: ${session.file}`) : null),
        sessionFacts(session, index, model));
}

export function showSessions() {
    const { model } = view;
    byId('sessions').replaceChildren(...model.sessions.map(
        (session, index) => sessionHead(session, index, model)));
}

/** @param {Session} session */
function sessionValues(session) {
    return el('details', {},
        el('summary', {}, `All values from ${session.file}`),
        el('dl', { class: 'values' }, session.values.map((value) => {
            const quantity = quantityOf(value);
            return el('div', {}, el('dt', {}, value.name), el('dd', {},
                quantity ? formatQuantity(quantity, view.units) : String(value.value ?? '–')));
        })));
}

export function showMessages() {
    const { sessions } = view.model;
    const messages = sessions.flatMap((session) => session.messages.map(
        ({ text, error }) => el('li', { class: error ? 'error' : null },
            sessions.length > 1 ? `${session.file}: ${text}` : text)));
    byId('messages').replaceChildren(
        messages.length > 0 ? el('ul', {}, messages)
            : el('p', { class: 'muted' }, 'The import had nothing to report.'),
        ...sessions.map(sessionValues));
}
