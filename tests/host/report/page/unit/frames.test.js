import assert from 'node:assert';
import { test } from 'node:test';
import { inNextFrame } from '../../../../../host/report/page/frames.js';

/** @type {FrameRequestCallback[]} */
let asked = [];
globalThis.requestAnimationFrame = (draw) => asked.push(draw);

function nextFrame() {
    const frames = asked;
    asked = [];
    for (const frame of frames)
        frame(0);
    return frames.length;
}

test('what is asked for several times is drawn once, in the order of the last requests', () => {
    /** @type {string[]} */
    const drawn = [];
    const cursor = () => { drawn.push('cursor'); };
    const range = () => { drawn.push('range'); };
    for (const draw of [cursor, cursor, range, cursor])
        inNextFrame(draw);
    assert.deepStrictEqual(drawn, []);
    assert.strictEqual(nextFrame(), 1);
    assert.deepStrictEqual(drawn, ['range', 'cursor']);
    assert.strictEqual(nextFrame(), 0);
});

test('what is asked for while drawing comes in the frame after', () => {
    let count = 0;
    const draw = () => {
        if (++count < 3)
            inNextFrame(draw);
    };
    inNextFrame(draw);
    assert.deepStrictEqual([nextFrame(), count, nextFrame(), count, nextFrame(), count, nextFrame()],
        [1, 1, 1, 2, 1, 3, 0]);
});
