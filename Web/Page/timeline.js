import { element, make } from "./dom.js";

/** @typedef {import("../Player/Player.js").Player} Player */
/** @typedef {import("./goal.js").Goal} Goal */

/** @param {number} seconds */
export const minutes = (seconds) =>
    `${Math.floor(seconds / 60)}:${String(Math.floor(seconds % 60)).padStart(2, "0")}`;

/**
 * The scenes along a line, round after round as long as the music goes, to click, to drag along, or to step through
 * by keys; the picture follows at once.
 * @param {Player} player
 * @param {Goal} goal
 */
export function timeline(player, goal) {
    const slider = element("time", HTMLInputElement);
    const clock = element("clock", HTMLElement);
    const scene = element("scene", HTMLElement);
    const there = element("there", HTMLElement);
    const frame = element("timeline", HTMLElement);
    slider.step = String(player.frameMs / 1000);

    let duration = 0;
    /** @type {{name: string, start: number, mark: HTMLElement}[]} */
    let scenes = [];
    let held = false;
    let resume = false;
    let shown = "";

    /** @param {number} seconds */
    const sceneAt = (seconds) =>
        Math.max(
            scenes.findLastIndex(({ start }) => start <= seconds + 0.001),
            0,
        );

    const measure = () => {
        const { rounds } = player;
        duration = player.duration;
        slider.max = String(duration);
        scenes = rounds.flatMap((round, number) =>
            player.scenes.map(({ name, start }, index) => {
                const mark = make("li", {}, make("span", {}, name));
                if (number && !index) mark.dataset.round = String(number + 1);
                const words = number ? `${name}, round ${number + 1}` : name;
                return { name: words, start: round.start + start, mark };
            }),
        );
        scenes = scenes.filter(({ start }) => start < duration);
        scenes.forEach(({ start, mark }, index) => {
            const end = scenes[index + 1]?.start ?? duration;
            mark.style.setProperty("--from", String(start / duration));
            mark.style.setProperty("--share", String((end - start) / duration));
        });
        element("scenes", HTMLElement).replaceChildren(...scenes.map(({ mark }) => mark));
    };

    const show = () => {
        if (player.live) return; // which has no end
        if (duration !== player.duration) measure();
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
        scenes.forEach(({ mark }, index) => mark.toggleAttribute("data-now", index === now));
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
    for (const end of ["pointerup", "pointercancel", "lostpointercapture"]) {
        slider.addEventListener(end, () => {
            if (held && resume) player.play();
            held = false;
        });
    }

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
        /**
         * Goes a scene on, or back: first to the start of the one that is on.
         * @param {1 | -1} way
         */
        step(way) {
            if (player.live) return;
            const now = sceneAt(goal.time);
            const within = way < 0 && goal.time > scenes[now].start + 1;
            const next = scenes[Math.max(within ? now : now + way, 0)];
            if (next) goal.to(next.start);
        },
    };
}
