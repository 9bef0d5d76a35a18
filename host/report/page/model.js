// What the page shows: sessions, laps and channels, made from the data that zepimport wrote.

import { SampleReader, unpackedBytes } from './samples.js';

/** @import { Lap, LapData, Model, ReportData, Session } from './types.js' */

/** @type {Record<string, string>} */
const channelTitles = {
    speed: 'Speed',
    throttle: 'Throttle',
    brake: 'Brake',
    gear: 'Gear',
    rpm: 'Engine speed',
    steeringwheelangle: 'Steering',
};

/**
 * "A" for the first file, "B" for the second; "27" after "Z".
 * @param {number} index
 */
export function fileLetter(index) {
    return index < 26 ? String.fromCharCode(65 + index) : String(index + 1);
}

/**
 * "#3"; with several files "B3", a letter for each file, or "27:3" when letters have run out.
 * @param {LapData} lap
 * @param {Session[]} sessions
 */
export function lapLabel(lap, sessions) {
    if (sessions.length === 1)
        return `#${lap.number}`;
    return `${fileLetter(lap.session)}${lap.session < 26 ? '' : ':'}${lap.number}`;
}

/**
 * The model of the page from its `data`.
 * @param {ReportData} data
 * @returns {Promise<Model>}
 */
export async function readModel(data) {
    const reader = new SampleReader(await unpackedBytes(data.samples));
    const { sessions } = data;
    const [distance, time, latitude, longitude] = data.places.map(
        (channel) => reader.laps(channel, data.laps));
    const channels = data.channels.map((channel) => ({
        ...channel,
        title: channelTitles[channel.name] ?? channel.name,
        whole: channel.packings.every(({ whole }) => whole),
        key: (channel.calculated ? 'calculated ' : '') + channel.name,
        laps: reader.laps(channel, data.laps),
    }));
    // Each file measures its track. Laps of one track share one length, so they end at one line.
    /** @type {Map<string, number | null>} */
    const trackLengths = new Map();
    const laps = data.laps.map((lap, index) => {
        const session = sessions[lap.session];
        const track = `${session.track}\n${session.configuration}`;
        if (!trackLengths.has(track))
            trackLengths.set(track, session.trackLength);
        return {
            ...lap,
            index,
            label: lapLabel(lap, sessions),
            track,
            trackLength: trackLengths.get(track) ?? null,
            ticks: {
                distance: distance[index],
                time: time[index],
                latitude: latitude[index],
                longitude: longitude[index],
            },
            slot: 0,
            paths: {},
        };
    });
    return { sessions, laps, channels };
}

/**
 * The laps to draw first: the fastest, or the longest if none has a time, and with it the best laps
 * of up to three other files, or the next fastest lap.
 * @param {Lap[]} laps at least one
 */
export function firstLaps(laps) {
    const timed = laps.filter((lap) => lap.timed)
        .sort((a, b) => Number(a.time) - Number(b.time));
    const first = timed[0] ?? [...laps].sort((a, b) => b.samples - a.samples)[0];
    const others = timed.filter((lap) => lap !== first && lap.track === first.track);
    const rivals = others.filter((lap) => lap.bestOfFile && lap.session !== first.session);
    return [first, ...(rivals.length > 0 ? rivals.slice(0, 3) : others.slice(0, 1))];
}
