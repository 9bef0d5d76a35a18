'use strict';

// Elements of the page. Texts always go in as text, never as markup: they come from recordings.

/** The element called `id`. */
function byId(id) {
    return document.getElementById(id);
}

/**
 * A new element. `properties` are attributes, but `class` is the class, `on` an object of listeners,
 * and an attribute of true stands without a value, one of false or null not at all. Children are
 * elements or texts; null ones are left out.
 */
function el(tag, properties, ...children) {
    const element = document.createElement(tag);
    for (const [name, value] of Object.entries(properties ?? {})) {
        if (name === 'on') {
            for (const [type, listener] of Object.entries(value))
                element.addEventListener(type, listener);
        } else if (value !== null && value !== undefined && value !== false) {
            element.setAttribute(name, value === true ? '' : value);
        }
    }
    element.append(...children.flat().filter((child) => child !== null && child !== undefined));
    return element;
}

/** The value of the custom property `name` of the style sheet. */
function styleValue(name) {
    return getComputedStyle(document.documentElement).getPropertyValue(name).trim();
}
