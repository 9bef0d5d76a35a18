// Samples as zepimport packs them; docs/report.md describes the format.

/** @import { LapData, PackedChannel, Packing } from './types.js' */

/**
 * The bytes in `base64`, decompressed.
 * @param {string} base64
 */
export async function unpackedBytes(base64) {
    if (base64 === '') // nothing was recorded
        return new Uint8Array();
    const text = atob(base64);
    const bytes = new Uint8Array(text.length);
    for (let i = 0; i < bytes.length; ++i)
        bytes[i] = text.charCodeAt(i);
    const stream = new Blob([bytes]).stream().pipeThrough(new DecompressionStream('deflate'));
    return new Uint8Array(await new Response(stream).arrayBuffer());
}

/** Reads the packed samples of one channel after the other. */
export class SampleReader {
    /** @param {Uint8Array} bytes */
    constructor(bytes) {
        this.bytes = bytes;
        this.place = 0;
    }

    number() {
        let number = 0;
        for (let weight = 1; ; weight *= 128) {
            const byte = this.bytes[this.place++];
            if (byte === undefined)
                throw new Error('its samples are incomplete');
            number += (byte & 127) * weight;
            if (byte < 128)
                return number;
        }
    }

    /**
     * The samples of a lap of `count` ticks, NaN for the missing ones.
     * @param {Packing} packing
     * @param {number} count
     */
    samples({ base, step }, count) {
        const samples = new Float64Array(count);
        let steps = 0;
        for (let i = 0; i < count; ++i) {
            const number = this.number();
            if (number === 0) {
                samples[i] = NaN;
                continue;
            }
            steps += number % 2 === 1 ? (number - 1) / 2 : -number / 2;
            samples[i] = base + step * steps;
        }
        return samples;
    }

    /**
     * The samples of `channel` in each of `laps`.
     * @param {PackedChannel} channel
     * @param {LapData[]} laps
     */
    laps(channel, laps) {
        return laps.map((lap) => this.samples(channel.packings[lap.session], lap.samples));
    }
}
