import { describe, download, element } from "./dom.js";
import { draw } from "./icons.js";
import { LONGEST, pack, readLink, writeLink } from "./link.js";
import { say } from "./notice.js";

/** @typedef {import("../Player/Player.js").Player} Player */
/** @typedef {ReturnType<typeof import("./look.js").lookInside>} Look */

/**
 * What a visitor can ask for, by whichever button or key.
 * @param {Player} player
 * @param {Look} look
 */
export function actions(player, look) {
    return {
        async toggle() {
            if (player.state === "playing") player.pause();
            else await player.play();
        },
        mute() {
            player.muted = !player.muted;
        },
        async fullScreen() {
            if (document.fullscreenElement) await document.exitFullscreen();
            else await document.documentElement.requestFullscreen?.({ navigationUI: "hide" });
        },
        async leave() {
            if (!look.close() && document.fullscreenElement) await document.exitFullscreen();
        },
        async save() {
            try {
                download(await player.picture(), `quelar-${player.time.toFixed(3)}.png`);
            } catch (error) {
                say(Object(error).message);
            }
        },
        /** The link tells the moment, the look, and what the address already told; standing still is told too. */
        async copy() {
            const here = { ...readLink(location.hash), time: player.time, pause: player.state !== "playing" };
            const texts = look.changed;
            const changed = Object.keys(texts).length > 0;
            const link = new URL(
                writeLink({ ...here, look: changed ? await pack(texts) : undefined }),
                location.href,
            );
            if (link.href.length > LONGEST) {
                const act = () => download(new Blob([JSON.stringify(texts)]), "quelar-look.json");
                say("So much look is too long for a link; as a file it can be dropped on the page.", {
                    label: "Save it",
                    act,
                });
                return;
            }
            history.replaceState(null, "", link);
            const copied = await navigator.clipboard?.writeText(link.href).then(
                () => true,
                () => false,
            );
            const what = changed ? "this moment and look" : "this moment";
            say(`The link to ${what} is ${copied ? "copied" : "in the address bar"}.`);
        },
    };
}

/** @typedef {ReturnType<typeof actions>} Actions */

/**
 * The row of buttons under the picture.
 * @param {Player} player
 * @param {Actions} act
 */
export function controls(player, act) {
    const bar = element("controls", HTMLElement);
    const play = element("play", HTMLButtonElement);
    const mute = element("mute", HTMLButtonElement);
    const full = element("full", HTMLButtonElement);
    const save = element("save", HTMLButtonElement);
    const copy = element("copy", HTMLButtonElement);
    const loudness = element("loudness", HTMLInputElement);

    // A pointer leaves nothing behind that would keep the controls in sight.
    bar.addEventListener("click", ({ detail: clicks, target }) => {
        if (clicks && target !== loudness) element("stage", HTMLElement).focus({ preventScroll: true });
    });
    play.addEventListener("click", act.toggle);
    full.addEventListener("click", act.fullScreen);
    save.addEventListener("click", act.save);
    copy.addEventListener("click", act.copy);
    mute.addEventListener("click", () => {
        act.mute();
        showSound();
    });
    loudness.addEventListener("input", () => {
        player.volume = Number(loudness.value);
        player.muted = player.volume === 0;
        showSound();
    });

    const showState = () => {
        const playing = player.state === "playing";
        const ended = player.state === "ended";
        draw(play, playing ? "pause" : ended ? "again" : "play");
        describe(play, playing ? "Pause" : ended ? "Play again" : "Play", "Space");
        showSound();
    };
    function showSound() {
        const refused = player.state === "playing" && !player.sounding && !player.live;
        draw(mute, refused || player.muted ? "silence" : "sound");
        mute.ariaPressed = String(player.muted);
        mute.toggleAttribute("data-refused", refused);
        describe(
            mute,
            refused ? "No sound here: the show plays silently" : player.muted ? "Sound on" : "Mute",
            "M",
        );
        const level = player.muted ? 0 : player.volume;
        loudness.value = String(level);
        loudness.style.setProperty("--at", String(level));
    }
    const showFull = () => {
        const whole = document.fullscreenElement !== null;
        draw(full, whole ? "window" : "full");
        describe(full, whole ? "Leave full screen" : "Full screen", "F");
    };
    draw(save, "save");
    describe(save, "Save this picture");
    draw(copy, "link");
    describe(copy, "Copy a link to this moment");
    full.hidden = !document.fullscreenEnabled;
    player.addEventListener("state", showState);
    player.addEventListener("frame", showSound);
    document.addEventListener("fullscreenchange", showFull);
    showState();
    showFull();
}
