import { describe, element, make, makeButton } from "./dom.js";
import { draw } from "./icons.js";
import { say } from "./notice.js";

/** Why nothing is heard, by the browser's names of errors. */
const REASONS = new Map([
    ["NotAllowedError", "Listening was refused"],
    ["NotFoundError", "There is no microphone and no line in"],
    ["NotReadableError", "Another program holds the microphone"],
    ["TypeError", "This browser lets only pages from https, or from this machine, listen"],
]);

/** As it sounds: nothing in it is speech that a browser should clean. */
const RAW = { echoCancellation: false, noiseSuppression: false, autoGainControl: false };

/** The sound of another tab; the one in front stays this one, as far as the browser lets itself be told. */
async function askTab() {
    const { CaptureController } = /** @type {any} */ (window);
    const controller = CaptureController && new CaptureController();
    controller?.setFocusBehavior("no-focus-change");
    const wishes = { audio: RAW, video: true, controller };
    return navigator.mediaDevices.getDisplayMedia(wishes);
}

/**
 * The button that lets live sound move the show, until it is pressed again.
 * @param {import("../Player/Player.js").Player} player
 */
export function listening(player) {
    const button = element("listen", HTMLButtonElement);
    draw(button, "listen");

    /** @param {() => Promise<MediaStream>} ask */
    const listen = async (ask) => {
        dialog.close();
        /** @type {MediaStream | undefined} */
        let stream;
        try {
            stream = await ask();
            for (const picture of stream.getVideoTracks()) picture.stop();
            if (!stream.getAudioTracks().length) throw new DOMException("", "NoSound");
            await player.listen(stream);
            say("The show listens. Nothing is recorded, and nothing leaves this machine.");
        } catch (error) {
            for (const sound of stream?.getAudioTracks() ?? []) sound.stop();
            const reason = REASONS.get(Object(error).name) ?? "No sound came with it";
            return say(`${reason}: the show goes on with its own track.`);
        }
        await document.documentElement.requestFullscreen?.({ navigationUI: "hide" }).catch(() => {});
    };
    /** @type {HTMLDialogElement} */
    const dialog = make(
        "dialog",
        { "aria-label": "Listen" },
        make("p", {}, "Live sound moves the show. Nothing is recorded, and nothing leaves this machine."),
        makeButton("Microphone or line in", () =>
            listen(async () => navigator.mediaDevices.getUserMedia({ audio: RAW })),
        ),
        makeButton("Another tab", () => listen(askTab)),
        makeButton("Close", () => dialog.close()),
    );
    document.body.append(dialog);

    button.addEventListener("click", async () => {
        if (!player.live) return dialog.showModal();
        player.stopListening();
        await player.seek(0);
        show();
        say("The show has stopped listening.");
    });
    const show = () => {
        document.documentElement.toggleAttribute("data-live", player.live);
        button.ariaPressed = String(player.live);
        describe(button, player.live ? "Stop listening" : "Listen: live sound moves the show");
    };
    player.addEventListener("state", show);
    player.addEventListener("unplugged", () =>
        say("The sound broke off: the show goes on with its own track."),
    );
    show();
}
