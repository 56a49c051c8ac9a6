/** @typedef {import("../Player/Player.js").Player} Player */

/**
 * Title, time and keys of the show for what a system has of media keys and lock screens. They heed an audio element
 * and nothing else, so a silent one goes along with the show.
 * @param {Player} player
 * @param {import("./controls.js").Actions} act
 * @param {import("./goal.js").Goal} goal
 * @param {{step(way: 1 | -1): void}} line
 */
export function mediaSession(player, act, goal, line) {
    const { mediaSession: session } = navigator;
    if (!session) return;
    const silence = new Audio("data/silence.mp3");
    silence.loop = true;
    const artwork = [{ src: new URL("data/still.jpg", document.baseURI).href, sizes: "1280x960" }];
    session.metadata = new MediaMetadata({ title: "Quelar", artwork });

    /** @type {Partial<Record<MediaSessionAction, MediaSessionActionHandler>>} */
    const handlers = {
        play: act.toggle,
        pause: act.toggle,
        stop: () => player.pause(),
        seekto: ({ seekTime = 0 }) => goal.to(seekTime),
        seekbackward: ({ seekOffset = 10 }) => goal.by(-seekOffset),
        seekforward: ({ seekOffset = 10 }) => goal.by(seekOffset),
        previoustrack: () => line.step(-1),
        nexttrack: () => line.step(1),
    };
    for (const [action, handler] of Object.entries(handlers)) {
        try {
            session.setActionHandler(/** @type {MediaSessionAction} */ (action), handler);
        } catch {
            // not one of this browser's keys
        }
    }

    let told = -1;
    const tell = () => {
        if (Math.floor(player.time) === told) return;
        told = Math.floor(player.time);
        const { duration, time } = player;
        session.setPositionState(player.live ? undefined : { duration, position: Math.min(time, duration) });
    };
    player.addEventListener("frame", tell);
    player.addEventListener("state", () => {
        const playing = player.state === "playing";
        session.playbackState = playing ? "playing" : "paused";
        if (!playing) silence.pause();
        else silence.play().catch(() => {}); // where sound is refused there are no keys either
        told = -1;
        tell();
    });
}

/** Says what is played. @param {string} title */
export function entitle(title) {
    if (navigator.mediaSession?.metadata) navigator.mediaSession.metadata.title = title;
}
