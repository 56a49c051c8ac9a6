const STILL_MS = 2000;

/** Says on the document when nobody has moved anything for two seconds; the controls then fade while it plays. */
export function watchIdle() {
    const { dataset } = document.documentElement;
    /** @type {ReturnType<typeof setTimeout> | undefined} */
    let timer;
    const stir = () => {
        delete dataset.idle;
        clearTimeout(timer);
        timer = setTimeout(() => (dataset.idle = ""), STILL_MS);
    };
    for (const move of ["pointermove", "pointerdown", "keydown", "focusin", "input"]) {
        document.addEventListener(move, stir, { capture: true, passive: true });
    }
    stir();
}
