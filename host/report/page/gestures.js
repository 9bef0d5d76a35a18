'use strict';

// The mouse wheel and fingers on a chart. Dragging with the mouse and the double-click are uPlot's.

/** The place on the axis below `clientX`. */
function placeAt(plot, clientX) {
    return plot.posToVal(clientX - plot.over.getBoundingClientRect().left, 'x');
}

function addWheel(over, plot) {
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

/** One finger moves the cursor, two fingers zoom, and two taps show the whole lap. */
function addTouch(over, plot) {
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
    for (const type of ['pointerup', 'pointercancel'])
        over.addEventListener(type, (event) => fingers.delete(event.pointerId));
}

function addGestures(over, plot) {
    addWheel(over, plot);
    addTouch(over, plot);
}
