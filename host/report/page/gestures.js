// The wheel and fingers on a chart. uPlot handles dragging with the mouse and the double-click.

import { panBy, setCursor, setRange, shownRange, zoomBy } from './view.js';

/** @import uPlot from 'uplot' */

/**
 * The place on the axis below `clientX`. The plot itself cannot say: it may still show the stretch
 * of the last frame.
 * @param {uPlot} plot
 * @param {number} clientX
 */
function placeAt(plot, clientX) {
    const { left, width } = plot.over.getBoundingClientRect();
    const { min, max } = shownRange();
    return min + (max - min) * (clientX - left) / width;
}

/** @param {uPlot} plot */
function addWheel(plot) {
    const { over } = plot;
    over.addEventListener('wheel', (event) => {
        // The wheel alone scrolls the page, which is longer than the screen.
        if (event.ctrlKey || event.metaKey) {
            event.preventDefault();
            zoomBy(Math.exp(Math.max(-0.5, Math.min(0.5, event.deltaY / 300))),
                placeAt(plot, event.clientX));
        } else if (event.shiftKey || Math.abs(event.deltaX) > Math.abs(event.deltaY)) {
            event.preventDefault();
            panBy((event.deltaX || event.deltaY) / over.clientWidth);
        }
    }, { passive: false });
}

/**
 * One finger moves the cursor, two fingers zoom, and a double tap shows the whole lap.
 * @param {uPlot} plot
 */
function addTouch(plot) {
    const { over } = plot;
    /** @type {Map<number, number>} */
    const fingers = new Map();
    let lastTap = 0;
    const width = () => {
        const [a, b] = [...fingers.values()];
        return Math.max(10, Math.abs(a - b));
    };
    const middle = () => {
        const [a, b] = [...fingers.values()];
        return (a + b) / 2;
    };
    over.addEventListener('pointerdown', (event) => {
        if (event.pointerType !== 'touch')
            return;
        fingers.set(event.pointerId, event.clientX);
        if (fingers.size === 1) {
            if (event.timeStamp - lastTap < 300)
                setRange(null);
            lastTap = event.timeStamp;
            setCursor(placeAt(plot, event.clientX));
        }
    });
    over.addEventListener('pointermove', (event) => {
        if (!fingers.has(event.pointerId))
            return;
        if (fingers.size === 1) {
            fingers.set(event.pointerId, event.clientX);
            setCursor(placeAt(plot, event.clientX));
        } else if (fingers.size === 2) {
            const before = width();
            const place = placeAt(plot, middle());
            fingers.set(event.pointerId, event.clientX);
            zoomBy(before / width(), place);
        }
    });
    for (const type of /** @type {const} */ (['pointerup', 'pointercancel']))
        over.addEventListener(type, (event) => fingers.delete(event.pointerId));
}

/** @param {uPlot} plot */
export function addGestures(plot) {
    addWheel(plot);
    addTouch(plot);
}
