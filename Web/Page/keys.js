/** @typedef {import("./controls.js").Actions} Actions */
/** @typedef {import("./goal.js").Goal} Goal */

const STEP = 5; // seconds

/** What has a use of its own for a key: letters and arrows of a text, arrows of a slider, space of a button. */
const OWN = [
    { of: ".cm-editor", keys: /^(?!Escape$)/ },
    { of: "#loudness, [role=tab]", keys: /^(Arrow|Home|End)/ },
    { of: "button, a, [role=tab]", keys: /^( |Enter)$/ },
];

/**
 * The keyboard, wherever on the page the focus is.
 * @param {Actions} act
 * @param {Goal} goal
 */
export function keys(act, goal) {
    /** @type {Record<string, () => unknown>} */
    const table = {
        " ": act.toggle,
        f: act.fullScreen,
        m: act.mute,
        ArrowLeft: () => goal.by(-STEP),
        ArrowRight: () => goal.by(STEP),
        Home: () => goal.to(0),
        Escape: () => document.fullscreenElement && document.exitFullscreen(),
    };
    document.addEventListener("keydown", (event) => {
        const { key, target } = event;
        const action = table[key.length > 1 ? key : key.toLowerCase()];
        const taken = OWN.some(
            ({ of, keys: own }) => target instanceof Element && target.closest(of) && own.test(key),
        );
        if (!action || taken || event.ctrlKey || event.metaKey || event.altKey) return;
        event.preventDefault();
        action();
    });
}
