// Numbers as text.

/**
 * `number` with a real minus sign, but without one when it rounds to zero.
 * @param {number} number
 * @param {number} decimals
 */
export function fixed(number, decimals) {
    const text = Math.abs(number).toFixed(decimals);
    return number < 0 && Number(text) !== 0 ? `−${text}` : text;
}

/**
 * How many decimals give four digits for numbers up to `greatest`.
 * @param {number} greatest
 */
export function decimalsFor(greatest) {
    return greatest > 0 ? Math.min(6, Math.max(0, 3 - Math.floor(Math.log10(greatest)))) : 0;
}

/**
 * Seconds as "1:05.123", "–" for null.
 * @param {number | null} seconds
 */
export function formatLapTime(seconds) {
    if (seconds === null)
        return '–';
    const milliseconds = Math.round(seconds * 1000);
    const minutes = Math.floor(milliseconds / 60000);
    const rest = ((milliseconds % 60000) / 1000).toFixed(3).padStart(6, '0');
    if (minutes < 60)
        return `${minutes}:${rest}`;
    return `${Math.floor(minutes / 60)}:${String(minutes % 60).padStart(2, '0')}:${rest}`;
}

/**
 * Seconds as "+0.156"; "0.000" for no difference.
 * @param {number} seconds
 */
export function formatGap(seconds) {
    const text = fixed(seconds, 3);
    return Number(text) > 0 ? `+${text}` : text;
}

/**
 * The least and the greatest of `numbers`, without those that are not a number; infinite if there is
 * none. Unlike Math.min() it takes as many as there are.
 * @param {Iterable<number>} numbers
 */
export function extent(numbers) {
    let least = Infinity;
    let greatest = -Infinity;
    for (const number of numbers) {
        least = number < least ? number : least;
        greatest = number > greatest ? number : greatest;
    }
    return { least, greatest };
}

/**
 * The one in the middle of `numbers`; the lower one if there are two, 0 if there is none.
 * @param {number[]} numbers
 */
export function median(numbers) {
    return [...numbers].sort((a, b) => a - b)[Math.ceil(numbers.length / 2) - 1] ?? 0;
}
