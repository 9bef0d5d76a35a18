// Elements of the page. Texts always go in as text, never as markup: they come from recordings.

/** @typedef {Node | string | null | undefined} Child */
/** @typedef {Record<string, (event: Event) => void>} Listeners */

/**
 * The element called `id`, of class `type`. A page without it is broken.
 * @template {HTMLElement} T
 * @param {string} id
 * @param {new () => T} [type]
 * @returns {T}
 */
export function byId(id, type) {
    const element = document.getElementById(id);
    if (!(element instanceof (type ?? HTMLElement)))
        throw new Error(`it has no element '${id}'`);
    return /** @type {T} */ (element);
}

/**
 * A new element. `properties` are attributes, except that `on` is an object of listeners. An
 * attribute that is true has no value; one that is false, null or undefined is left out. Children
 * are elements or texts; null and undefined are left out.
 * @template {keyof HTMLElementTagNameMap} Tag
 * @param {Tag} tag
 * @param {{ on?: Listeners, [name: string]: unknown }} [properties]
 * @param {(Child | Child[])[]} children
 */
export function el(tag, properties = {}, ...children) {
    const { on = {}, ...attributes } = properties;
    const element = document.createElement(tag);
    for (const [type, listener] of Object.entries(on))
        element.addEventListener(type, listener);
    for (const [name, value] of Object.entries(attributes)) {
        if (value !== null && value !== undefined && value !== false)
            element.setAttribute(name, value === true ? '' : String(value));
    }
    for (const child of children.flat()) {
        if (child !== null && child !== undefined)
            element.append(child);
    }
    return element;
}

/**
 * The value of the custom property `name` of the style sheet.
 * @param {string} name
 */
export function styleValue(name) {
    return getComputedStyle(document.documentElement).getPropertyValue(name).trim();
}
