import { describe, element } from "./dom.js";
import { draw } from "./icons.js";
import { say } from "./notice.js";

/**
 * The button that opens what makes a film of the show; that is fetched when it is asked for first.
 * @param {import("../Player/Player.js").Player} player
 */
export function camera(player) {
    const button = element("film", HTMLButtonElement);
    const panel = element("filming", HTMLElement);
    /** @type {Promise<import("./film.js").FilmPanel> | undefined} */
    let loading;
    draw(button, "film");
    describe(button, "Save a film");

    const close = () => {
        panel.hidden = true;
        button.ariaExpanded = "false";
        button.focus();
    };
    button.addEventListener("click", async () => {
        if (!panel.hidden) return close();
        if (player.live) return say("A film is made of a song, not of a sound that is still coming in.");
        panel.hidden = false;
        button.ariaExpanded = "true";
        loading ??= import("./film.js").then(({ FilmPanel }) => new FilmPanel(panel, player, close));
        try {
            const film = await loading;
            film.reset();
            film.focus();
        } catch {
            loading = undefined;
            close();
            say("What makes films cannot be loaded.", { label: "Try again", act: () => button.click() });
        }
    });
}
