// Laps for tests that need no recording.

import { view } from '../../../../../host/report/page/view.js';

/** @import { Lap, Session, Tyre } from '../../../../../host/report/page/types.js' */

/** @returns {Tyre} */
function unknownTyre() {
    const unknown = [null, null, null];
    return { surface: unknown, carcass: unknown, tread: unknown, pressure: [null, null] };
}

/** @param {Partial<Session>} changes @returns {Session} */
export function testSession(changes = {}) {
    return {
        file: 'a.ibt', track: 'Ring', configuration: null, car: null, driver: null, session: null,
        date: null, dateOfFile: false, trackLength: 100, values: [], messages: [], tyresSeenAtStops: false,
        weather: {
            skies: null, air: null, track: null, airTemperature: null, trackSurfaceTemperature: null,
            wind: null, humidity: null, pressure: null,
        },
        ...changes,
    };
}

/**
 * A complete lap of 100 m whose ticks are at `distances`, `times` seconds after its start, with the
 * properties of `changes` different.
 * @param {number[]} distances
 * @param {number[]} times
 * @param {Partial<Lap>} changes
 * @returns {Lap}
 */
export function testLap(distances, times, changes = {}) {
    const missing = distances.map(() => NaN);
    const index = changes.index ?? 0;
    return {
        index, session: 0, number: index + 1, lapInSession: index + 1, stint: 1, kind: 'timed',
        time: 10, noTime: null, gap: null, best: false, bestOfFile: false, timed: true, part: null,
        missingBefore: 0, completed: true, fromLine: true, samples: distances.length, topSpeed: null,
        fuelUsed: null, fuelAdded: null, fuel: { start: null, end: null },
        tyres: { lf: unknownTyre(), rf: unknownTyre(), lr: unknownTyre(), rr: unknownTyre() },
        label: `#${index + 1}`, track: 'Ring', trackLength: 100, slot: 0, paths: {},
        ticks: {
            distance: Float64Array.from(distances), time: Float64Array.from(times),
            latitude: Float64Array.from(missing), longitude: Float64Array.from(missing),
        },
        ...changes,
    };
}

/**
 * A lap at a steady `speed` in m/s, with a tick each metre from half a metre after the line on.
 * @param {number} speed
 * @param {Partial<Lap>} changes
 */
export function steadyLap(speed, changes = {}) {
    const distances = Array.from({ length: 100 }, (_, i) => i + 0.5);
    return testLap(distances, distances.map((distance) => distance / speed), changes);
}

/** Puts the view back to how it is before a page is shown. */
export function resetView() {
    Object.assign(view, {
        model: { sessions: [], laps: [], channels: [] }, drawn: [], reference: null, axis: 'distance',
        grid: [], range: null, cursor: null, units: 'driver', hidden: new Set(),
    });
}
