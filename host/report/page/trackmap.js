// The track from above, coloured by the speed of the reference lap, with every lap at the cursor.

import { byId, el, styleValue } from './dom.js';
import { lapColour } from './marks.js';
import {
    colourRuns, fittedMap, hasPosition, mapPlace, mapPoints, nearestPoint, outlineLap, projection,
    speedColour, speedLimits,
} from './mapgeometry.js';
import { formatQuantity } from './units.js';
import { paintedLaps, setCursor, shownRange, view } from './view.js';

/** @import { Projection } from './mapgeometry.js' */
/** @import { Lap, MapPoint, Point } from './types.js' */

export const trackMap = {
    /** The track, as the reference lap drove it. @type {MapPoint[]} */
    points: [],
    /** The whole track, as another lap may have driven it. @type {MapPoint[]} */
    outline: [],
    /** The first of these lies at the start/finish line; empty if no lap starts there. @type {MapPoint[]} */
    start: [],
    /** @type {Projection} */
    project: () => ({ x: NaN, y: NaN }),
    /** From map units to pixels. @type {(point: Point) => Point} */
    scale: (point) => point,
    /** The lap whose track is drawn; null if there is no map. @type {Lap | null} */
    lap: null,
};

function speedChannel() {
    return view.model.channels.find((channel) => channel.name === 'speed');
}

/**
 * The drawing context of the canvas called `id`, empty.
 * @param {string} id
 */
function mapContext(id) {
    const canvas = byId(id, HTMLCanvasElement);
    const context = canvas.getContext('2d');
    if (!context)
        return null;
    context.setTransform(devicePixelRatio, 0, 0, devicePixelRatio, 0, 0);
    context.clearRect(0, 0, canvas.width, canvas.height);
    context.lineCap = 'round';
    context.lineJoin = 'round';
    return context;
}

/**
 * @param {CanvasRenderingContext2D} context
 * @param {Point[]} points
 * @param {number} width
 * @param {string} colour
 */
function drawLine(context, points, width, colour) {
    context.lineWidth = width;
    context.strokeStyle = colour;
    context.beginPath();
    points.forEach(({ x, y }, i) => (i === 0 ? context.moveTo(x, y) : context.lineTo(x, y)));
    context.stroke();
}

/**
 * The start/finish line across the track, and which way the lap goes.
 * @param {CanvasRenderingContext2D} context
 * @param {Point[]} places
 */
function drawStart(context, places) {
    const [start] = places;
    const later = places.find(({ x, y }) => Math.hypot(x - start.x, y - start.y) > 6);
    if (!later)
        return;
    const ink = styleValue('--ink');
    context.save();
    context.translate(start.x, start.y);
    context.rotate(Math.atan2(later.y - start.y, later.x - start.x));
    drawLine(context, [{ x: 0, y: -10 }, { x: 0, y: 10 }], 3, ink);
    context.fillStyle = ink;
    context.beginPath();
    context.moveTo(12, -13);
    context.lineTo(4, -17);
    context.lineTo(4, -9);
    context.fill();
    context.restore();
}

/**
 * The colour of a point of the track between two speeds; null outside of the shown stretch.
 * @param {number} slowest
 * @param {number} fastest
 * @returns {(point: MapPoint) => string | null}
 */
function trackColour(slowest, fastest) {
    const { min, max } = shownRange();
    const unknown = styleValue('--muted');
    const shades = 32; // few, so that most neighbours share one line
    const step = Math.max(1e-9, fastest - slowest) / shades;
    return ({ speed, place }) => {
        if (place < min || place > max)
            return null;
        return Number.isNaN(speed) ? unknown : speedColour(Math.round((speed - slowest) / step) / shades);
    };
}

/** Draws the shown stretch of the track in colour, and the rest of it in grey. */
export function drawTrack() {
    const context = trackMap.lap && mapContext('map-track');
    if (!context)
        return;
    const { points } = trackMap;
    const places = points.map(trackMap.scale);
    const outline = trackMap.outline.map(trackMap.scale);
    const { slowest, fastest } = speedLimits(points);
    drawLine(context, outline, 9, styleValue('--map-edge'));
    drawLine(context, places, 9, styleValue('--map-edge'));
    for (const { colour, from, to } of colourRuns(points, trackColour(slowest, fastest)))
        drawLine(context, places.slice(from, to + 1), 5, colour);
    if (trackMap.start.length > 0)
        drawStart(context, trackMap.start.map(trackMap.scale));
    showMapKey(slowest, fastest);
}

/**
 * @param {number} slowest
 * @param {number} fastest
 */
function showMapKey(slowest, fastest) {
    const speed = speedChannel();
    if (!speed || !Number.isFinite(slowest)) {
        byId('map-key').replaceChildren();
        return;
    }
    /** @param {number} value */
    const text = (value) => formatQuantity({ value, unit: speed.unit }, view.units, 0);
    byId('map-key').replaceChildren(
        el('span', {}, text(slowest)), el('span', { 'class': 'ramp', 'aria-hidden': 'true' }),
        el('span', {}, text(fastest)));
}

/** Draws each lap where it is at the cursor. */
export function drawMapCursor() {
    const context = trackMap.lap && mapContext('map-cursor');
    if (!context || view.cursor === null)
        return;
    for (const lap of paintedLaps()) {
        const place = lap.track === trackMap.lap?.track
            ? mapPlace(lap, view.axis, trackMap.project, view.cursor) : null;
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

/** Fits the map into its card, as high as its shape needs. */
function fitMap() {
    const map = byId('map');
    const width = map.clientWidth;
    const { height, scale } = fittedMap([...trackMap.outline, ...trackMap.points], width);
    trackMap.scale = scale;
    for (const canvas of map.querySelectorAll('canvas')) {
        canvas.width = width * devicePixelRatio;
        canvas.height = height * devicePixelRatio;
        canvas.style.setProperty('width', `${width}px`);
        canvas.style.setProperty('height', `${height}px`);
    }
}

export function showMap() {
    const lap = view.reference;
    trackMap.lap = null;
    byId('map-title').textContent = lap === null ? 'Track map' : `Track map, lap ${lap.label}`;
    byId('map-note').textContent = '';
    byId('map').hidden = true;
    if (lap === null)
        return;
    trackMap.project = projection(lap);
    trackMap.points = mapPoints(lap, view.axis, trackMap.project, speedChannel()?.laps[lap.index]);
    const whole = outlineLap(lap, view.model.laps);
    trackMap.outline = mapPoints(whole, 'distance', trackMap.project, undefined);
    trackMap.start = [trackMap.points, trackMap.outline].find((_, i) => [lap, whole][i].fromLine) ?? [];
    if (trackMap.points.length < 2) {
        byId('map-note').textContent = 'Neither positions nor distances were recorded for this lap.';
        return;
    }
    trackMap.lap = lap;
    byId('map').hidden = false;
    if (!hasPosition(lap))
        byId('map-note').textContent = 'Positions were not recorded. The ring shows the distance '
            + 'around the lap, clockwise from the start/finish line at the top.';
    fitMap();
    drawTrack();
    drawMapCursor();
}

/**
 * Moves the cursor to the place of the track that is nearest to the mouse or finger.
 * @param {PointerEvent} event
 */
export function pointAtMap(event) {
    if (!trackMap.lap || (event.pointerType === 'touch' && event.type === 'pointermove'))
        return;
    const box = byId('map-cursor').getBoundingClientRect();
    const pointed = { x: event.clientX - box.left, y: event.clientY - box.top };
    const reach = 30; // pixels
    const nearest = nearestPoint(trackMap.points, pointed, reach, trackMap.scale);
    if (nearest)
        setCursor(nearest.place);
}
