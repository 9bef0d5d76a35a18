// What changes as fast as a finger moves is drawn once a frame, however often it changes.

/** @type {Set<() => void>} */
const pending = new Set();

function drawFrame() {
    const draws = [...pending];
    pending.clear();
    for (const draw of draws)
        draw();
}

/**
 * Calls `draw` in the next frame, only once even when asked several times: in the order in which
 * each was asked for last.
 * @param {() => void} draw
 */
export function inNextFrame(draw) {
    if (pending.size === 0)
        requestAnimationFrame(drawFrame);
    pending.delete(draw);
    pending.add(draw);
}
