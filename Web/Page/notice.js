import { element } from "./dom.js";

const STAYS_MS = 5000;

/** @type {ReturnType<typeof setTimeout> | undefined} */
let timer;

/**
 * Says a sentence on the picture's lower edge, which goes by itself.
 * @param {string} sentence
 */
export function say(sentence) {
    const notice = element("notice", HTMLElement);
    notice.textContent = sentence;
    clearTimeout(timer);
    timer = setTimeout(() => (notice.textContent = ""), STAYS_MS);
}
