// Quantities in the units that drivers know, or in those that were recorded.

import { fixed } from './numbers.js';

/** @import { Quantity, UnitSystem } from './types.js' */

/** @type {Record<string, { unit: string, factor: number }>} */
const driverUnits = {
    'm/s': { unit: 'km/h', factor: 3.6 },
    'm/s^2': { unit: 'm/s²', factor: 1 },
    'kg/m^3': { unit: 'kg/m³', factor: 1 },
    'rad': { unit: '°', factor: 180 / Math.PI },
    'rad/s': { unit: '°/s', factor: 180 / Math.PI },
    'revs/min': { unit: 'rpm', factor: 1 },
    'pu': { unit: '%', factor: 100 },
    'C': { unit: '°C', factor: 1 },
    'N*m': { unit: 'N·m', factor: 1 },
};

/**
 * The unit in which `system` shows numbers recorded in `unit`, and the factor to multiply them by.
 * @param {string} unit
 * @param {UnitSystem} system
 */
export function shownUnit(unit, system) {
    if (system === 'driver' && Object.hasOwn(driverUnits, unit))
        return driverUnits[unit];
    return { unit, factor: 1 };
}

/**
 * The unit in which the first known one of `quantities` is shown; "" if none is known.
 * @param {(Quantity | null)[]} quantities
 * @param {UnitSystem} system
 */
export function shownUnitOf(quantities, system) {
    const known = quantities.find((quantity) => quantity !== null);
    return known ? shownUnit(known.unit, system).unit : '';
}

/**
 * The number alone, as in "40.8"; "–" for null.
 * @param {Quantity | null} quantity
 * @param {UnitSystem} system
 * @param {number} decimals
 */
export function formatNumber(quantity, system, decimals) {
    return quantity ? fixed(quantity.value * shownUnit(quantity.unit, system).factor, decimals) : '–';
}

/**
 * "40.8 km/h", "–" for null. Without `decimals`, up to five digits and no trailing zeros.
 * @param {Quantity | null | undefined} quantity
 * @param {UnitSystem} system
 * @param {number} [decimals]
 */
export function formatQuantity(quantity, system, decimals) {
    if (!quantity || !Number.isFinite(quantity.value))
        return '–';
    const { unit, factor } = shownUnit(quantity.unit, system);
    const value = quantity.value * factor;
    const text = decimals === undefined
        ? String(Number(value.toPrecision(5))).replace('-', '−') : fixed(value, decimals);
    return unit ? `${text} ${unit}` : text;
}

/**
 * The average of `quantities`, which share a unit; null if one of them is missing.
 * @param {(Quantity | null)[]} quantities
 * @returns {Quantity | null}
 */
export function averageQuantity(quantities) {
    const known = quantities.filter((quantity) => quantity !== null);
    if (known.length === 0 || known.length < quantities.length)
        return null;
    const sum = known.reduce((total, quantity) => total + quantity.value, 0);
    return { value: sum / known.length, unit: known[0].unit };
}
