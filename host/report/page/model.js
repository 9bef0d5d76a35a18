'use strict';

// What the page shows: sessions, laps and channels, as the program wrote them.

const channelTitles = {
    speed: 'Speed',
    throttle: 'Throttle',
    brake: 'Brake',
    gear: 'Gear',
    rpm: 'Engine speed',
    steeringwheelangle: 'Steering',
};

/** The bytes behind `base64`, unpacked. */
async function unpackedBytes(base64) {
    if (base64 === '') // nothing at all was recorded
        return new Uint8Array();
    const text = atob(base64);
    const bytes = new Uint8Array(text.length);
    for (let i = 0; i < bytes.length; ++i)
        bytes[i] = text.charCodeAt(i);
    const stream = new Blob([bytes]).stream().pipeThrough(new DecompressionStream('deflate'));
    return new Uint8Array(await new Response(stream).arrayBuffer());
}

/** Reads the packed samples of one channel after the other; see docs/report.md. */
class SampleReader {
    constructor(bytes) {
        this.bytes = bytes;
        this.place = 0;
    }

    number() {
        let number = 0;
        for (let weight = 1; ; weight *= 128) {
            const byte = this.bytes[this.place++];
            if (byte === undefined)
                throw new Error('the samples of this report end too early');
            number += (byte & 127) * weight;
            if (byte < 128)
                return number;
        }
    }

    /** The samples of `channel` in a lap of `count` ticks, NaN for the missing ones. */
    samples(channel, count) {
        const samples = new Float64Array(count);
        let steps = 0;
        for (let i = 0; i < count; ++i) {
            const number = this.number();
            if (number === 0) {
                samples[i] = NaN;
                continue;
            }
            steps += number % 2 === 1 ? (number - 1) / 2 : -number / 2;
            samples[i] = channel.base + channel.step * steps;
        }
        return samples;
    }

    /** The samples of `channel` in each of `laps`. */
    laps(channel, laps) {
        return laps.map((lap) => this.samples(channel, lap.samples));
    }
}

/** "#3"; with several files "B3", a letter for each file. */
function lapLabel(lap, sessions) {
    if (sessions.length === 1)
        return `#${lap.number}`;
    const letter = lap.session < 26 ? String.fromCharCode(65 + lap.session) : `${lap.session + 1}:`;
    return letter + lap.number;
}

/** The model of the page from its `data`. */
async function readModel(data) {
    const reader = new SampleReader(await unpackedBytes(data.samples));
    const { sessions, laps } = data;
    const [distance, time, latitude, longitude] = data.places.map(
        (channel) => reader.laps(channel, laps));
    const channels = data.channels.map((channel) => ({
        ...channel,
        title: channelTitles[channel.name] ?? channel.name,
        key: (channel.calculated ? 'calculated ' : '') + channel.name,
        laps: reader.laps(channel, laps),
    }));
    const trackLengths = new Map(); // one line for all laps of a track, though measured by each file
    laps.forEach((lap, index) => {
        const session = sessions[lap.session];
        const track = `${session.track}\n${session.configuration}`;
        if (!trackLengths.has(track))
            trackLengths.set(track, session.trackLength);
        Object.assign(lap, {
            index,
            label: lapLabel(lap, sessions),
            track,
            trackLength: trackLengths.get(track),
            ticks: {
                distance: distance[index],
                time: time[index],
                latitude: latitude[index],
                longitude: longitude[index],
            },
        });
    });
    return { sessions, laps, channels };
}
