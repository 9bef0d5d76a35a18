'use strict';

// The track from above, coloured by the speed of the reference lap, with every lap at the cursor.

const mapColours = ['#46327e', '#365c8d', '#277f8e', '#1fa187', '#4ac16d', '#a0da39', '#fde725'];

const trackMap = {
    points: [], // { x, y, speed, place } of the reference lap, in map units; y points down
    project: null, // from the ticks of a lap to map units
    scale: null, // from map units to pixels
    lap: null,
};

/** A colour between those of the map for `part` of the way from slow to fast. */
function mapColour(part) {
    const place = Math.min(1, Math.max(0, part)) * (mapColours.length - 1);
    const i = Math.min(mapColours.length - 2, Math.floor(place));
    const channel = (colour, at) => parseInt(colour.slice(at, at + 2), 16);
    const mixed = [1, 3, 5].map((at) => Math.round(channel(mapColours[i], at)
        + (channel(mapColours[i + 1], at) - channel(mapColours[i], at)) * (place - i)));
    return `rgb(${mixed.join(',')})`;
}

function hasPosition(lap) {
    return lap.ticks.latitude.some((sample, tick) => !Number.isNaN(sample)
        && !Number.isNaN(lap.ticks.longitude[tick]));
}

/** Metres east and south of the first place of `lap`; without positions, a ring of its distance. */
function projection(lap) {
    if (!hasPosition(lap)) {
        const length = lap.trackLength ?? Math.max(...pathOf(lap, 'distance').values);
        return (other, tick) => {
            const angle = 2 * Math.PI * other.ticks.distance[tick] / length;
            return { x: Math.sin(angle), y: -Math.cos(angle) };
        };
    }
    const { latitude, longitude } = lap.ticks;
    const first = latitude.findIndex((sample, tick) => !Number.isNaN(sample)
        && !Number.isNaN(longitude[tick]));
    const metresPerDegree = 111320;
    const narrowing = Math.cos(latitude[first] * Math.PI / 180);
    return (other, tick) => ({
        x: (other.ticks.longitude[tick] - longitude[first]) * narrowing * metresPerDegree,
        y: (latitude[first] - other.ticks.latitude[tick]) * metresPerDegree,
    });
}

function mapPoints(lap) {
    const speed = view.model.channels.find((channel) => channel.name === 'speed')?.laps[lap.index];
    const { ticks, values } = pathOf(lap, view.axis);
    return ticks.map((tick, i) => ({
        ...trackMap.project(lap, tick), speed: speed?.[tick] ?? NaN, place: values[i],
    })).filter(({ x, y }) => !Number.isNaN(x) && !Number.isNaN(y));
}

/** The place of `lap` on the map at `place` of the axis; null where it is not known. */
function mapPlace(lap, place) {
    const { ticks, values } = pathOf(lap, view.axis);
    const i = floorIndex(values, place);
    if (i < 0)
        return null;
    const here = trackMap.project(lap, ticks[i]);
    if (i + 1 >= values.length)
        return place - values[i] < (values[i] - values[0]) * 0.01 ? here : null;
    const next = trackMap.project(lap, ticks[i + 1]);
    const part = (place - values[i]) / (values[i + 1] - values[i]);
    const at = { x: here.x + part * (next.x - here.x), y: here.y + part * (next.y - here.y) };
    return Number.isNaN(at.x) || Number.isNaN(at.y) ? null : at;
}

/** Fits the map into its card, as high as its shape asks for. */
function fitMap() {
    const { points } = trackMap;
    const width = byId('map').clientWidth;
    const xs = points.map(({ x }) => x);
    const ys = points.map(({ y }) => y);
    const left = Math.min(...xs);
    const top = Math.min(...ys);
    const wide = Math.max(1e-9, Math.max(...xs) - left);
    const high = Math.max(1e-9, Math.max(...ys) - top);
    const margin = 22;
    const height = Math.min(360, Math.max(180, (width - 2 * margin) * high / wide + 2 * margin));
    const factor = Math.min((width - 2 * margin) / wide, (height - 2 * margin) / high);
    trackMap.scale = ({ x, y }) => ({
        x: (width - wide * factor) / 2 + (x - left) * factor,
        y: (height - high * factor) / 2 + (y - top) * factor,
    });
    for (const canvas of byId('map').querySelectorAll('canvas')) {
        canvas.width = width * devicePixelRatio;
        canvas.height = height * devicePixelRatio;
        canvas.style.setProperty('width', `${width}px`);
        canvas.style.setProperty('height', `${height}px`);
    }
}

function mapContext(id) {
    const canvas = byId(id);
    const context = canvas.getContext('2d');
    context.setTransform(devicePixelRatio, 0, 0, devicePixelRatio, 0, 0);
    context.clearRect(0, 0, canvas.width, canvas.height);
    context.lineCap = 'round';
    context.lineJoin = 'round';
    return context;
}

function drawLine(context, points, width, colour) {
    context.lineWidth = width;
    context.strokeStyle = colour;
    context.beginPath();
    points.forEach(({ x, y }, i) => (i === 0 ? context.moveTo(x, y) : context.lineTo(x, y)));
    context.stroke();
}

function drawTrack() {
    const context = mapContext('map-track');
    const { points } = trackMap;
    const places = points.map(trackMap.scale);
    const { min, max } = view.range ?? charts.fullRange();
    const speeds = points.map(({ speed }) => speed).filter((speed) => !Number.isNaN(speed));
    const slowest = Math.min(...speeds);
    const fastest = Math.max(...speeds);
    drawLine(context, places, 9, styleValue('--map-edge'));
    const shades = 32;
    const shadeOf = ({ speed, place }) => (place < min || place > max ? null
        : Number.isNaN(speed) ? styleValue('--muted')
            : mapColour(Math.round(shades * (speed - slowest) / Math.max(1e-9, fastest - slowest)) / shades));
    // Neighbours of one shade make one line.
    for (let from = 0, to; from < points.length; from = to) {
        const shade = shadeOf(points[from]);
        for (to = from + 1; to < points.length && shadeOf(points[to]) === shade;)
            ++to;
        if (shade !== null)
            drawLine(context, places.slice(from, to + 1), 5, shade);
    }
    drawStart(context, places);
    showMapKey(slowest, fastest);
}

/** The line, across the track where the lap begins, and which way it goes. */
function drawStart(context, places) {
    const later = places.find(({ x, y }) => Math.hypot(x - places[0].x, y - places[0].y) > 6);
    if (!later || !trackMap.lap.fromLine)
        return;
    const angle = Math.atan2(later.y - places[0].y, later.x - places[0].x);
    context.save();
    context.translate(places[0].x, places[0].y);
    context.rotate(angle);
    drawLine(context, [{ x: 0, y: -10 }, { x: 0, y: 10 }], 3, styleValue('--ink'));
    context.fillStyle = styleValue('--ink');
    context.beginPath();
    context.moveTo(12, -13);
    context.lineTo(4, -17);
    context.lineTo(4, -9);
    context.fill();
    context.restore();
}

function showMapKey(slowest, fastest) {
    const speed = view.model.channels.find((channel) => channel.name === 'speed');
    if (!speed || !Number.isFinite(slowest)) {
        byId('map-key').replaceChildren();
        return;
    }
    const text = (value, decimals) => formatQuantity({ value, unit: speed.unit }, decimals);
    byId('map-key').replaceChildren(
        el('span', {}, text(slowest, 0)), el('span', { class: 'ramp', 'aria-hidden': 'true' }),
        el('span', {}, text(fastest, 0)));
}

function drawMapCursor() {
    if (!trackMap.lap)
        return;
    const context = mapContext('map-cursor');
    if (view.cursor === null)
        return;
    for (const lap of shownLaps().reverse()) {
        const place = lap.track === trackMap.lap.track ? mapPlace(lap, view.cursor) : null;
        if (!place)
            continue;
        const { x, y } = trackMap.scale(place);
        context.beginPath();
        context.arc(x, y, 6.5, 0, 2 * Math.PI);
        context.fillStyle = lapColour(lap);
        context.fill();
        context.lineWidth = 2;
        context.strokeStyle = styleValue('--card');
        context.stroke();
    }
}

function showMap() {
    const lap = view.reference;
    trackMap.lap = null;
    byId('map').hidden = lap === null;
    byId('map-title').textContent = lap === null ? 'Track map' : `Track map, lap ${lap.label}`;
    byId('map-note').textContent = '';
    if (lap === null)
        return;
    trackMap.project = projection(lap);
    trackMap.points = mapPoints(lap);
    if (trackMap.points.length < 2) {
        byId('map').hidden = true;
        byId('map-note').textContent = 'Neither positions nor distances of this lap were recorded.';
        return;
    }
    trackMap.lap = lap;
    if (!hasPosition(lap))
        byId('map-note').textContent = 'Positions were not recorded: the ring is the lap\'s distance, '
            + 'clockwise from the line at the top.';
    fitMap();
    drawTrack();
    drawMapCursor();
}

/** Moves the cursor to the place of the track that is nearest to the mouse or finger. */
function pointAtMap(event) {
    if (!trackMap.lap || (event.pointerType === 'touch' && event.type === 'pointermove'))
        return;
    const box = byId('map-cursor').getBoundingClientRect();
    let nearest = null;
    let least = 30 ** 2;
    for (const point of trackMap.points) {
        const { x, y } = trackMap.scale(point);
        const distance = (x - event.clientX + box.left) ** 2 + (y - event.clientY + box.top) ** 2;
        if (distance < least) {
            least = distance;
            nearest = point;
        }
    }
    if (nearest)
        setCursor(nearest.place);
}
