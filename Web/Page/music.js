import { describe, element } from "./dom.js";
import { draw } from "./icons.js";
import { say } from "./notice.js";

/** @typedef {import("../Player/Player.js").Player} Player */

/**
 * Music of the visitor's own, chosen or dropped anywhere; the show starts over with it.
 * @param {Promise<Player>} beginning of the show: before that no browser lets a page sound
 */
export function ownMusic(beginning) {
    const button = element("music", HTMLButtonElement);
    const file = element("file", HTMLInputElement);
    const { dataset } = document.documentElement;
    draw(button, "music");
    describe(button, "Play it with music of your own");

    /** @param {File} track */
    const take = async (track) => {
        say(`${track.name} it is.`);
        const player = await beginning;
        say(`Reading ${track.name} …`);
        try {
            await player.setTrack(await track.arrayBuffer());
            say(`The music is ${track.name} now.`);
        } catch (error) {
            say(error instanceof Error ? error.message : String(error));
        }
    };
    button.addEventListener("click", () => file.click());
    file.addEventListener("change", async () => {
        const [track] = file.files ?? [];
        if (track) await take(track);
        file.value = ""; // the same file can be chosen again
    });

    document.addEventListener("dragover", (event) => {
        event.preventDefault();
        dataset.drop = "";
    });
    document.addEventListener("dragleave", ({ relatedTarget }) => {
        if (!relatedTarget) delete dataset.drop;
    });
    document.addEventListener("drop", (event) => {
        event.preventDefault();
        delete dataset.drop;
        const [track] = event.dataTransfer?.files ?? [];
        if (track) take(track);
    });
}
