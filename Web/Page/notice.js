import { element, makeButton } from "./dom.js";

const STAYS_MS = 5000;
const OFFER_STAYS_MS = 20000;

/** @type {ReturnType<typeof setTimeout> | undefined} */
let timer;

/**
 * Says a sentence on the picture's lower edge, which goes by itself, with a button for what can be done about it.
 * @param {string} sentence
 * @param {{label: string, act: () => void}} [offer]
 */
export function say(sentence, offer) {
    const notice = element("notice", HTMLElement);
    const clear = () => notice.replaceChildren();
    const button = offer && makeButton(offer.label, () => (clear(), offer.act()));
    notice.replaceChildren(sentence, ...(button ? [" ", button] : []));
    clearTimeout(timer);
    timer = setTimeout(clear, offer ? OFFER_STAYS_MS : STAYS_MS);
}
