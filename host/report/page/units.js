'use strict';

// Units as drivers know them, beside those that were recorded.

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
    'l': { unit: 'l', factor: 1 },
};

/** The unit that `unit` is shown in, and what a number in `unit` is multiplied by for it. */
function shownUnit(unit) {
    if (view.units === 'driver' && Object.hasOwn(driverUnits, unit))
        return driverUnits[unit];
    return { unit, factor: 1 };
}

/** "(km/h)" behind the name of a quantity; nothing for one without a unit. */
function unitLabel(unit) {
    const shown = shownUnit(unit).unit;
    return shown ? ` (${shown})` : '';
}

/** `number` with a proper minus, and none for what rounds to zero. */
function fixed(number, decimals) {
    const text = Math.abs(number).toFixed(decimals);
    return number < 0 && Number(text) !== 0 ? `−${text}` : text;
}

/** Decimals that show four digits of numbers up to `greatest`. */
function decimalsFor(greatest) {
    return greatest > 0 ? Math.min(6, Math.max(0, 3 - Math.floor(Math.log10(greatest)))) : 0;
}

/** "40.8 km/h", "–" for null. Without `decimals` as many as there are, in five digits. */
function formatQuantity(quantity, decimals) {
    if (!quantity || !Number.isFinite(quantity.value))
        return '–';
    const shown = shownUnit(quantity.unit);
    const value = quantity.value * shown.factor;
    const text = decimals === undefined
        ? String(Number(value.toPrecision(5))).replace('-', '−') : fixed(value, decimals);
    return shown.unit ? `${text} ${shown.unit}` : text;
}

/** Seconds as "1:05.123", "–" for null. */
function formatLapTime(seconds) {
    if (seconds === null)
        return '–';
    const milliseconds = Math.round(seconds * 1000);
    const minutes = Math.floor(milliseconds / 60000);
    const rest = ((milliseconds % 60000) / 1000).toFixed(3).padStart(6, '0');
    if (minutes < 60)
        return `${minutes}:${rest}`;
    return `${Math.floor(minutes / 60)}:${String(minutes % 60).padStart(2, '0')}:${rest}`;
}

/** Seconds as "+0.156"; "0.000" for none. */
function formatGap(seconds) {
    const text = fixed(seconds, 3);
    return Number(text) > 0 ? `+${text}` : text;
}
