import { describe, element } from "./dom.js";
import { draw } from "./icons.js";
import { say } from "./notice.js";
import { entitle } from "./session.js";
import { minutes } from "./timeline.js";

/** @typedef {import("../Player/Player.js").Player} Player */

/**
 * Music of the visitor's own, chosen or dropped anywhere; the show starts over with it. Of several the last counts.
 * A look that was saved as a file can be dropped too.
 * @param {Promise<{player: Player, look: import("./controls.js").Look}>} beginning of the show: before that no
 *     browser lets a page sound
 */
export function ownMusic(beginning) {
    const button = element("music", HTMLButtonElement);
    const file = element("file", HTMLInputElement);
    const { dataset } = document.documentElement;
    /** @type {File | undefined} */
    let newest;
    let turn = Promise.resolve();
    draw(button, "music");
    describe(button, "Play it with music of your own");

    /** @param {File | undefined} track */
    const take = (track) => {
        if (!track) return;
        newest = track;
        say(`${track.name} it is.`);
        turn = turn.then(async () => {
            const { player, look } = await beginning;
            if (track !== newest) return;
            if (track.name.endsWith(".json")) return look.wear(track.text().then(JSON.parse), "file");
            say(`Reading ${track.name} …`);
            try {
                const bytes = await track.arrayBuffer();
                player.stopListening();
                await player.setTrack(bytes);
                entitle(track.name);
                const length = minutes(player.duration);
                if (track === newest) say(`The music is ${track.name} now, ${length} long.`);
            } catch (error) {
                say(error instanceof DOMException ? "This file cannot be read." : Object(error).message);
            }
        });
    };
    button.addEventListener("click", () => file.click());
    file.addEventListener("change", () => {
        take(file.files?.[0]);
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
        take(event.dataTransfer?.files[0]);
    });
}
