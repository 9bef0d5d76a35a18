// Light or dark.

import { changed } from './view.js';

/** @import { Theme } from './types.js' */

/** @returns {Theme} */
export function theme() {
    return document.documentElement.dataset.theme === 'dark' ? 'dark' : 'light';
}

/** @param {Theme} name */
export function setTheme(name) {
    document.documentElement.dataset.theme = name;
    changed('theme');
}

export function toggleTheme() {
    setTheme(theme() === 'dark' ? 'light' : 'dark');
}

/** Follows the system, as long as nobody chooses otherwise. */
export function followSystemTheme() {
    const dark = matchMedia('(prefers-color-scheme: dark)');
    const follow = () => setTheme(dark.matches ? 'dark' : 'light');
    dark.addEventListener('change', follow);
    follow();
}
