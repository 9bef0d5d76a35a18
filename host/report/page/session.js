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
    return dateOfFile ? `${text} (file date)` : text;
}

/**
 * What was measured on a lap, and what the recording says of the session, are named differently: they
 * are not the same.
 * @param {Weather} weather
 */
function weatherFacts({ skies, air, track, airTemperature, trackSurfaceTemperature, wind, humidity, pressure }) {
    const airPressure = pressure?.unit === 'Pa' ? { value: pressure.value / 100, unit: 'hPa' }
        : pressure;
    return [
        fact('Sky', skies),
        air ? fact('Air, measured', formatQuantity(air, view.units, 1))
            : fact('Air temperature', formatQuantity(airTemperature, view.units, 1)),
        track ? fact('Track, measured', formatQuantity(track, view.units, 1))
            : fact('Track surface temperature', formatQuantity(trackSurfaceTemperature, view.units, 1)),
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
 * The laps of a session, how many of them are timed, and the best one.
 * @param {number} index
 * @param {Model} model
 */
export function sessionLaps(index, model) {
    const laps = model.laps.filter((lap) => lap.session === index);
    return {
        count: laps.length,
        timed: laps.filter((lap) => lap.timed).length,
        best: laps.find((lap) => lap.bestOfFile) ?? null,
    };
}

/**
 * @param {Session} session
 * @param {Model} model
 */
function sessionFacts(session, model) {
    const { count, timed, best } = sessionLaps(0, model);
    const length = session.trackLength ? { value: session.trackLength, unit: 'm' } : null;
    const tank = session.values.find(({ name }) => name === 'Maximum fuel level');
    return el('dl', { class: 'facts' },
        best ? fact(`Best lap ${best.label}`, formatLapTime(best.time), 'best-fact') : null,
        fact('Timed laps', `${timed} of ${count}`),
        fact('Track length', formatQuantity(length, view.units, 0)),
        weatherFacts(session.weather),
        fact('Tank', formatQuantity(quantityOf(tank), view.units)));
}

/**
 * The head of a page about one file.
 * @param {Model} model
 */
function sessionHead(model) {
    const [session] = model.sessions;
    const date = sessionDate(session);
    const names = [session.car, session.driver, session.session].filter(Boolean).join(' · ');
    return el('section', { 'class': 'session', 'aria-label': `Session ${sessionTitle(session)}` },
        el('div', { class: 'session-title' },
            el('h1', {}, sessionTitle(session)),
            el('p', { class: 'subtitle' }, names, names && date ? ' · ' : null,
                date && el('span', { class: 'date' }, date))),
        sessionFacts(session, model));
}

/**
 * The columns of the table of sessions, without those that say nothing, and in which all are the same.
 * @param {Model} model
 * @returns {{ title: string, number?: boolean, texts: (string | null)[] }[]}
 */
export function sessionColumns(model) {
    const { sessions } = model;
    const laps = sessions.map((_, index) => sessionLaps(index, model));
    /** @param {Quantity | null} quantity */
    const temperature = (quantity) => quantity && formatQuantity(quantity, view.units, 1);
    const varying = [
        { title: 'Track', texts: sessions.map(sessionTitle) },
        { title: 'Car', texts: sessions.map(({ car }) => car) },
        { title: 'Driver', texts: sessions.map(({ driver }) => driver) },
        { title: 'Session', texts: sessions.map(({ session }) => session) },
    ].filter(({ texts }) => new Set(texts).size > 1);
    return [
        { title: 'File', texts: sessions.map(({ file }) => file) },
        { title: 'Date', texts: sessions.map(sessionDate) },
        ...varying,
        { title: 'Best lap', number: true, texts: laps.map(({ best }) => best && formatLapTime(best.time)) },
        { title: 'Timed laps', number: true, texts: laps.map(({ timed, count }) => `${timed} of ${count}`) },
        { title: 'Air', number: true,
            texts: sessions.map(({ weather }) => temperature(weather.air ?? weather.airTemperature)) },
        { title: 'Track, measured', number: true, texts: sessions.map(({ weather }) => temperature(weather.track)) },
    ].filter(({ texts }) => texts.some((text) => text));
}

/**
 * The head of a page about several files: what they share, and a row for each.
 * @param {Model} model
 */
function sessionTable(model) {
    const { sessions } = model;
    /** @param {(session: Session) => string | null} name */
    const shared = (name) => (new Set(sessions.map(name)).size === 1 ? name(sessions[0]) : null);
    const names = [shared(({ car }) => car), shared(({ driver }) => driver), shared(({ session }) => session)];
    const columns = sessionColumns(model);
    return el('section', { 'class': 'session-table', 'aria-label': 'Sessions' },
        el('h1', {}, shared(sessionTitle) ?? `${sessions.length} recordings`),
        el('p', { class: 'subtitle' }, names.filter(Boolean).join(' · ')),
        el('div', { 'class': 'scroll sessions', 'tabindex': 0, 'role': 'region', 'aria-label': 'Table of sessions' },
            el('table', {},
                el('caption', { class: 'hidden' }, 'Sessions'),
                el('thead', {}, el('tr', {}, el('th', { scope: 'col' }, '#'), columns.map(
                    ({ title, number }) => el('th', { scope: 'col', class: number ? 'number' : null }, title)))),
                el('tbody', {}, sessions.map((_, index) => el('tr', { class: 'session' },
                    el('th', { scope: 'row' }, fileLetter(index)),
                    columns.map(({ texts, number }) => el('td', { class: number ? 'number' : null },
                        texts[index] ?? '–'))))))));
}

export function showSessions() {
    const { model } = view;
    byId('sessions').replaceChildren(model.sessions.length === 1 ? sessionHead(model) : sessionTable(model));
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

/**
 * A list of messages; null if there is none.
 * @param {{ file: string, text: string, error: boolean }[]} messages
 */
function messageList(messages) {
    return messages.length === 0 ? null
        : el('ul', {}, messages.map(({ file, text, error }) => el('li', { class: error ? 'error' : null },
            view.model.sessions.length > 1 ? `${file}: ${text}` : text)));
}

/** Shows what went wrong; what an import says when all is well is folded away. */
export function showMessages() {
    const { sessions } = view.model;
    const messages = sessions.flatMap(({ file, messages: all }) => all.map((message) => ({ ...message, file })));
    const errors = messages.filter(({ error }) => error);
    const others = messageList(messages.filter(({ error }) => !error));
    byId('messages').replaceChildren(
        messageList(errors) ?? el('p', { class: 'muted' }, 'The import had nothing to complain about.'),
        ...others ? [el('details', {}, el('summary', {}, 'Everything that the import said'), others)] : [],
        ...sessions.map(sessionValues));
}
