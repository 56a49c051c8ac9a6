import { Player } from "../Player/Player.js";
import { stayAwake } from "./awake.js";
import { camera } from "./camera.js";
import { actions, controls } from "./controls.js";
import { cover } from "./cover.js";
import { element } from "./dom.js";
import { Goal } from "./goal.js";
import { watchIdle } from "./idle.js";
import { keys } from "./keys.js";
import { readLink, unpack } from "./link.js";
import { listening } from "./listen.js";
import { lookInside } from "./look.js";
import { ownMusic } from "./music.js";
import { mediaSession } from "./session.js";
import { timeline } from "./timeline.js";

const canvas = element("canvas", HTMLCanvasElement);
const bar = element("controls", HTMLElement);
const { dataset, style } = document.documentElement;
const front = cover();
let link = readLink(location.hash);

/** @typedef {{player: Player, look: ReturnType<typeof lookInside>}} Started */

/** @type {(started: Started) => void} */
let onBegin;
/** @type {Promise<Started>} */
const beginning = new Promise((resolve) => (onBegin = resolve));

async function load() {
    const { seed, size } = link;
    if (size) {
        style.setProperty("--aspect", String(size.width / size.height));
        canvas.width = size.width;
        canvas.height = size.height;
    }
    return Player.load({ canvas, seed, size, onProgress: front.progress });
}

/** @param {Player} player */
async function open(player) {
    const goal = new Goal(player);
    const look = lookInside(player);
    const act = actions(player, look);

    /** Whether a visitor has started the show, or a link has: until then the cover stays, whatever lies under it. */
    let begun = false;

    const show = () => {
        begun ||= player.state === "playing";
        if (begun) onBegin({ player, look });
        const idle = player.state === "ready" || player.state === "paused";
        dataset.show = idle ? (begun ? "paused" : "ready") : player.state;
        bar.inert = !begun || player.state === "failed";
        if (player.state === "ended") front.again();
        if (player.state === "failed") front.fail("The picture is lost, or the show could not go on.");
    };

    /** Goes where the address says. */
    const follow = async () => {
        const { time, pause } = link;
        if (pause) {
            begun = true;
            player.pause();
        }
        if (pause || time !== undefined) {
            await goal.to(time ?? 0);
            dataset.drawn = "";
        }
        show();
    };

    Object.assign(window, { quelar: player }); // for the curious, and for tests
    player.addEventListener("frame", () => (dataset.drawn = ""), { once: true });
    controls(player, act);
    const line = timeline(player, goal);
    keys(player, act, goal, line);
    mediaSession(player, act, goal, line);
    camera(player);
    listening(player);
    stayAwake(player);
    watchIdle();
    addEventListener("hashchange", async () => {
        const last = link;
        link = readLink(location.hash);
        if (JSON.stringify([link.size, link.look]) !== JSON.stringify([last.size, last.look])) {
            return location.reload();
        }
        if (link.seed !== last.seed) {
            const playing = player.state === "playing";
            player.pause();
            player.begin(link.seed);
            await goal.to(0);
            if (playing) await player.play();
        }
        await follow();
    });
    canvas.addEventListener("click", (event) => {
        const mouse = /** @type {PointerEvent} */ (event).pointerType === "mouse";
        if (mouse && begun) act.toggle(); // a finger only brings the controls back
    });
    const { look: packed } = link;
    if (packed) {
        const guest = element("guest", HTMLElement);
        guest.hidden = false;
        beginning.then(() => {
            guest.hidden = true;
            return look.wear(unpack(packed), "link");
        });
    }
    await follow();
    player.addEventListener("state", show);
    front.ready(async () => {
        await act.toggle();
        element("stage", HTMLElement).focus({ preventScroll: true });
    });
}

if (!window.WebAssembly || !Player.supported()) {
    const lack = window.WebAssembly
        ? "WebGL 2, which the show is drawn with"
        : "WebAssembly, which the show is made of";
    front.fail(`This browser has no ${lack}.`, "refused");
} else {
    ownMusic(beginning);
    load()
        .then(open)
        .catch((error) => {
            const ours = error instanceof Error && error.constructor === Error; // not in the browser's own words
            if (!ours) console.error(error);
            front.fail(ours ? error.message : "A part of the show is missing or damaged.");
        });
}
