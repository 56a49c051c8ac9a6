/**
 * The element of an id that stands in the page.
 * @template {typeof HTMLElement} T
 * @param {string} id
 * @param {T} type
 * @returns {InstanceType<T>}
 */
export function element(id, type) {
    const found = document.getElementById(id);
    if (!(found instanceof type)) throw new Error(`The page has no ${type.name} named ${id}.`);
    return /** @type {InstanceType<T>} */ (found);
}

/**
 * @template {keyof HTMLElementTagNameMap} T
 * @param {T} tag
 * @param {Record<string, string>} attributes
 * @param {...(Node | string)} inside
 * @returns {HTMLElementTagNameMap[T]}
 */
export function make(tag, attributes, ...inside) {
    const made = document.createElement(tag);
    for (const [name, value] of Object.entries(attributes)) made.setAttribute(name, value);
    made.append(...inside);
    return made;
}

/** @param {string} label @param {() => unknown} act */
export function makeButton(label, act) {
    const made = make("button", { type: "button" }, label);
    made.addEventListener("click", act);
    return made;
}

/**
 * Says what a button does, to eyes, pointers and screen readers.
 * @param {HTMLElement} button
 * @param {string} label
 * @param {string} [key] that does the same
 */
export function describe(button, label, key) {
    if (button.ariaLabel === label) return;
    button.ariaLabel = label;
    button.title = key ? `${label} (${key})` : label;
    if (key) button.setAttribute("aria-keyshortcuts", key);
}

/**
 * Hands a file to the visitor.
 * @param {Blob} blob
 * @param {string} name
 */
export function download(blob, name) {
    const link = document.createElement("a");
    link.href = URL.createObjectURL(blob);
    link.download = name;
    link.click();
    setTimeout(() => URL.revokeObjectURL(link.href), 60000); // the browser reads it after the click
}
