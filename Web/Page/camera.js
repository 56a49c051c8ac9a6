import { describe, element } from "./dom.js";
import { drawer } from "./drawer.js";
import { draw } from "./icons.js";

/**
 * The button that opens what makes a film of the show.
 * @param {import("../Player/Player.js").Player} player
 */
export function camera(player) {
    const button = element("film", HTMLButtonElement);
    const panel = element("filming", HTMLElement);
    draw(button, "film");
    describe(button, "Save a film");
    drawer(button, panel, async (close) => {
        const { FilmPanel } = await import("./film.js");
        return new FilmPanel(panel, player, close);
    });
}
