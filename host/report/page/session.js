'use strict';

// The head of the page: where, in what, by whom; weather; and what the import had to say.

function fact(name, value) {
    return value === null || value === '–' ? null
        : el('div', { class: 'fact' }, el('dt', {}, name), el('dd', {}, value));
}

function sessionTitle(session) {
    return [session.track ?? 'Unknown track', session.configuration?.trim()].filter(Boolean)
        .join(' – ');
}

function sessionDate(session) {
    if (!session.date)
        return null;
    const text = session.date.slice(0, 16).replace('T', ' ');
    return session.dateOfFile ? `${text} (of the file)` : text;
}

function weatherFacts({ skies, air, track, wind, humidity, pressure }) {
    const airPressure = pressure?.unit === 'Pa' ? { value: pressure.value / 100, unit: 'hPa' }
        : pressure;
    return [
        fact('Sky', skies),
        fact('Air', formatQuantity(air, 1)),
        fact('Track surface', formatQuantity(track, 1)),
        fact('Wind', formatQuantity(wind, 1)),
        fact('Humidity', formatQuantity(humidity, 0)),
        fact('Air pressure', formatQuantity(airPressure, 0)),
    ];
}

/** Litres and the like of the fuel in the tank, from the session's named values. */
function tankSize(session) {
    return session.values.find((value) => value.name === 'Maximum fuel level') ?? null;
}

function bestLapOf(laps) {
    return laps.find((lap) => lap.best) ?? null;
}

function sessionHead(session, index, model) {
    const laps = model.laps.filter((lap) => lap.session === index);
    const timed = laps.filter((lap) => lap.time !== null);
    const best = bestLapOf(laps);
    const several = model.sessions.length > 1;
    return el('section', { class: 'session', 'aria-label': `Session ${sessionTitle(session)}` },
        el('div', { class: 'session-title' },
            el(index === 0 ? 'h1' : 'h2', {}, sessionTitle(session)),
            el('p', { class: 'subtitle' },
                [session.car, session.driver, session.session, sessionDate(session)]
                    .filter(Boolean).join(' · ')),
            several ? el('p', { class: 'file' },
                `${String.fromCharCode(65 + index)}: ${session.file}`) : null),
        el('dl', { class: 'facts' },
            best ? el('div', { class: 'fact best-fact' }, el('dt', {}, `Best lap ${best.label}`),
                el('dd', {}, formatLapTime(best.time))) : null,
            fact('Timed laps', `${timed.length} of ${laps.length}`),
            fact('Track length', formatQuantity(session.trackLength
                ? { value: session.trackLength, unit: 'm' } : null, 0)),
            weatherFacts(session.weather),
            fact('Tank', formatQuantity(tankSize(session)))));
}

function showSessions() {
    byId('sessions').replaceChildren(...view.model.sessions.map(
        (session, index) => sessionHead(session, index, view.model)));
}

function sessionValues(session) {
    return el('details', {},
        el('summary', {}, `All values of ${session.file}`),
        el('dl', { class: 'values' }, session.values.map((value) => el('div', {},
            el('dt', {}, value.name),
            el('dd', {}, typeof value.value === 'number'
                ? formatQuantity(value) : String(value.value ?? '–'))))));
}

function showRemarks() {
    const { sessions } = view.model;
    const messages = sessions.flatMap((session) => session.messages.map(
        (message) => el('li', { class: message.error ? 'error' : null },
            sessions.length > 1 ? `${session.file}: ${message.text}` : message.text)));
    byId('remarks').replaceChildren(
        messages.length > 0 ? el('ul', {}, messages)
            : el('p', { class: 'muted' }, 'The import had nothing to remark.'),
        ...sessions.map(sessionValues));
}
