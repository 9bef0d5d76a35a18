// The colours of laps, the same everywhere on the page.

import { el, styleValue } from './dom.js';
import { view } from './view.js';

/** @import { Lap } from './types.js' */

/** How many the style sheet has: --lap-0 to --lap-6. */
export const lapColours = 7;
const lapDashes = [[], [7, 4], [2, 3]]; // for laps beyond the colours

/** @param {Lap} lap */
function lapColourName(lap) {
    return lap === view.reference ? '--lap-reference' : `--lap-${lap.slot % lapColours}`;
}

/** @param {Lap} lap */
export function lapColour(lap) {
    return styleValue(lapColourName(lap));
}

/** @param {Lap} lap */
export function lapDash(lap) {
    const dash = lap === view.reference ? 0 : Math.floor(lap.slot / lapColours);
    return lapDashes[dash % lapDashes.length];
}

/**
 * A small square in the colour of `lap`.
 * @param {Lap} lap
 */
export function lapMark(lap) {
    const mark = el('span', { class: 'mark', 'aria-hidden': 'true' });
    mark.style.setProperty('--mark', `var(${lapColourName(lap)})`);
    return mark;
}
