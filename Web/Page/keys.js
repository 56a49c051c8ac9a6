import { make } from "./dom.js";

/** @typedef {import("./controls.js").Actions} Actions */
/** @typedef {import("./goal.js").Goal} Goal */

/** What has a use of its own for a key: letters and arrows of a text, arrows of a slider, space of a button. */
const OWN = [
    { of: "#text", keys: /^(?!Escape$)/ },
    { of: "#loudness, [role=tab]", keys: /^(Arrow|Home|End|Page)/ },
    { of: "button, a, [role=tab]", keys: /^( |Enter)$/ },
];

/** How keys are written that have no letter. */
const WRITTEN = new Map([
    [" ", "Space"],
    ["ArrowLeft", "←"],
    ["ArrowRight", "→"],
    ["PageDown", "Page↓"],
    ["PageUp", "Page↑"],
    ["Escape", "Esc"],
]);

/**
 * The keyboard, wherever on the page the focus is.
 * @param {import("../Player/Player.js").Player} player
 * @param {Actions} act
 * @param {Goal} goal
 * @param {{step(way: 1 | -1): void}} line
 */
export function keys(player, act, goal, line) {
    /** @param {number} seconds */
    const steps = (seconds) => (/** @type {string} */ _, /** @type {number} */ place) =>
        goal.by(place ? seconds : -seconds);
    /** @type {[string[], string, (key: string, place: number) => unknown][]} */
    const table = [
        [[" ", "k"], "play, pause", act.toggle],
        [["ArrowLeft", "ArrowRight"], "5 seconds back, on", steps(5)],
        [["j", "l"], "10 seconds back, on", steps(10)],
        [
            [",", "."],
            "a frame back, on",
            (_, place) => {
                player.pause();
                return steps(player.frameMs / 1000)(_, place);
            },
        ],
        [["PageDown", "PageUp"], "a scene back, on", (_, place) => line.step(place ? 1 : -1)],
        [[..."0123456789"], "to so many tenths", (_, place) => goal.to((place / 10) * player.duration)],
        [["Home", "End"], "to the start, to the end", (_, place) => goal.to(place * player.duration)],
        [["m"], "sound off, on", act.mute],
        [["f"], "full screen and back", act.fullScreen],
        [["Escape"], "back", act.leave],
        [["?"], "these keys", () => list.showModal()],
    ];
    const rows = table.flatMap(([names, does]) => {
        const shown = names.length > 2 ? [names[0], "… ", names[names.length - 1]] : names;
        const marks = shown.map((name) =>
            name === "… "
                ? name
                : make("kbd", {}, WRITTEN.get(name) ?? (name[1] ? name : name.toUpperCase())),
        );
        return [make("dt", {}, ...marks), make("dd", {}, does)];
    });
    const list = make("dialog", { "aria-label": "Keys" }, make("dl", {}, ...rows));
    list.addEventListener("click", () => list.close());
    document.body.append(list);

    document.addEventListener("keydown", (event) => {
        const { key, target } = event;
        const name = key.length > 1 ? key : key.toLowerCase();
        const row = table.find(([names]) => names.includes(name));
        const taken = OWN.some(
            ({ of, keys: own }) => target instanceof Element && target.closest(of) && own.test(key),
        );
        if (!row || taken || event.defaultPrevented || event.ctrlKey || event.metaKey || event.altKey) return;
        if (player.state === "failed" || document.querySelector("dialog[open]")) return;
        event.preventDefault();
        row[2](name, row[0].indexOf(name));
    });
}
