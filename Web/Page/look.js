import { describe, element } from "./dom.js";
import { draw } from "./icons.js";
import { say } from "./notice.js";
import { followFiles } from "./reload.js";

/** @typedef {import("../Player/Player.js").Player} Player */

/**
 * The button that opens the shader texts; their editor is fetched when they are opened first.
 * @param {Player} player
 */
export function lookInside(player) {
    const button = element("look", HTMLButtonElement);
    const panel = element("editor", HTMLElement);
    /** @type {Promise<import("./editor.js").Editor> | undefined} */
    let loading;
    draw(button, "code");
    describe(button, "Look inside: the shader texts");

    const close = () => {
        panel.hidden = true;
        button.ariaExpanded = "false";
        button.focus();
    };
    button.addEventListener("click", async () => {
        if (!panel.hidden) return close();
        panel.hidden = false;
        button.ariaExpanded = "true";
        loading ??= import("./editor.js").then(({ Editor }) => new Editor(panel, player, close));
        try {
            (await loading).focus();
        } catch {
            loading = undefined;
            close();
            say("The editor cannot be loaded.");
        }
    });
    followFiles(player.shaders, async (name, text) => {
        const editor = await loading;
        const problems = editor ? editor.replace(name, text) : player.setShader(name, text);
        const [first] = problems ?? [];
        say(first ? `${name}, line ${first.line}: ${first.message}` : `${name} is read anew.`);
    });
}
