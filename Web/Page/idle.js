const STILL_MS = 2000;

/**
 * Says on the document when nobody has moved anything for two seconds; the controls then fade while it plays. A
 * finger brings them back by the end of its touch, so that it works nothing which it could not see.
 */
export function watchIdle() {
    const { dataset } = document.documentElement;
    /** @type {ReturnType<typeof setTimeout> | undefined} */
    let timer;
    /** @param {Event & {pointerType?: string}} event */
    const stir = ({ type, pointerType }) => {
        if ("idle" in dataset && pointerType === "touch" && !/click|cancel/.test(type)) return;
        delete dataset.idle;
        clearTimeout(timer);
        timer = setTimeout(() => (dataset.idle = ""), STILL_MS);
    };
    for (const type of [
        "pointermove",
        "pointerdown",
        "pointercancel",
        "click",
        "keydown",
        "focusin",
        "input",
    ]) {
        document.addEventListener(type, stir, { capture: true, passive: true });
    }
    stir(new Event("input"));
}
