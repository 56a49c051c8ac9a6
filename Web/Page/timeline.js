import { element } from "./dom.js";

/** @typedef {import("../Player/Player.js").Player} Player */
/** @typedef {import("./goal.js").Goal} Goal */

/** What the scenes are called in front of an audience. */
const TITLES = new Map([
    ["SceneSad", "Opening"],
    ["SceneSadSpectrum", "Flight"],
    ["SceneSadSpectrumGreet", "Greetings"],
    ["SceneSpectrumPart", "Fountains"],
    ["SceneSpectrumImpulsePart", "Waves"],
    ["ScenePartWorld", "Descent"],
]);

/** @param {number} seconds */
const minutes = (seconds) =>
    `${Math.floor(seconds / 60)}:${String(Math.floor(seconds % 60)).padStart(2, "0")}`;

/**
 * The six scenes along a line, to click, to drag along, or to step through by keys; the picture follows at once.
 * @param {Player} player
 * @param {Goal} goal
 */
export function timeline(player, goal) {
    const slider = element("time", HTMLInputElement);
    const clock = element("clock", HTMLElement);
    const scene = element("scene", HTMLElement);
    const there = element("there", HTMLElement);
    const frame = element("timeline", HTMLElement);
    const { duration } = player;
    /** @type {{name: string, start: number}[]} */
    const own = player.scenes;
    const scenes = own.map(({ name, start }) => ({ name: TITLES.get(name) ?? name, start }));

    /** @param {number} seconds */
    const sceneAt = (seconds) =>
        Math.max(
            scenes.findLastIndex(({ start }) => start <= seconds + 0.001),
            0,
        );

    slider.max = String(duration);
    slider.step = String(player.frameMs / 1000);
    const marks = scenes.map(({ name, start }, index) => {
        const mark = document.createElement("li");
        const end = scenes[index + 1]?.start ?? duration;
        mark.style.setProperty("--from", String(start / duration));
        mark.style.setProperty("--share", String((end - start) / duration));
        mark.textContent = name;
        return mark;
    });
    element("scenes", HTMLElement).replaceChildren(...marks);

    let held = false;
    let resume = false;
    let shown = "";

    const show = () => {
        const seconds = held ? Number(slider.value) : goal.time;
        const text = `${minutes(seconds)} / ${minutes(duration)}`;
        const now = sceneAt(seconds);
        slider.value = String(seconds);
        frame.style.setProperty("--at", String(seconds / duration));
        if (shown === text + now) return; // words change once a second
        shown = text + now;
        clock.textContent = text;
        scene.textContent = scenes[now].name;
        slider.setAttribute("aria-valuetext", `${text}, ${scenes[now].name}`);
        marks.forEach((mark, index) => mark.toggleAttribute("data-now", index === now));
    };

    slider.addEventListener("pointerdown", () => {
        held = true;
        resume = player.state === "playing";
        player.pause();
    });
    slider.addEventListener("input", () => {
        goal.to(Number(slider.value));
        show();
    });
    const release = async () => {
        if (!held) return;
        held = false;
        if (resume) await player.play();
    };
    slider.addEventListener("pointerup", release);
    slider.addEventListener("pointercancel", release);
    slider.addEventListener("lostpointercapture", release);

    frame.addEventListener("pointermove", ({ clientX, pointerType }) => {
        const { left, width } = slider.getBoundingClientRect();
        const share = Math.min(Math.max((clientX - left) / width, 0), 1);
        const seconds = share * duration;
        there.hidden = pointerType === "touch";
        there.style.setProperty("--there", String(share));
        there.textContent = `${minutes(seconds)} ${scenes[sceneAt(seconds)].name}`;
    });
    frame.addEventListener("pointerleave", () => (there.hidden = true));

    player.addEventListener("frame", show);
    player.addEventListener("state", show);
    show();

    return {
        /** Goes so many scenes on; back, first to the start of the one that is on. */
        step(/** @type {number} */ scenesOn) {
            const now = sceneAt(goal.time);
            const far = goal.time > scenes[now].start + 1 ? 1 : 0;
            const next = scenes[Math.max(now + scenesOn + (scenesOn < 0 ? far : 0), 0)];
            if (next) goal.to(next.start);
        },
    };
}
