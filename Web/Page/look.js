import { describe, element } from "./dom.js";
import { drawer } from "./drawer.js";
import { draw } from "./icons.js";
import { say } from "./notice.js";
import { followFiles } from "./reload.js";

/** @typedef {import("../Player/Player.js").Player} Player */

/**
 * The look of the show, which is its shader texts, and the button that opens them.
 * @param {Player} player
 */
export function lookInside(player) {
    const button = element("look", HTMLButtonElement);
    const panel = element("editor", HTMLElement);
    const files = new Map(player.shaders.map((name) => [name, player.shaderText(name)]));
    draw(button, "code");
    describe(button, "Look inside: the shader texts");
    const texts = drawer(button, panel, async (/** @type {() => void} */ close) => {
        const { Editor } = await import("./editor.js");
        return new Editor(panel, player, files, close);
    });

    /** What the compiler has to say of another text in place of one. @param {string} name @param {string} text */
    const wear = async (name, text) => {
        const editor = await texts.inside;
        return (editor ? editor.replace(name, text) : player.setShader(name, text)) ?? [];
    };
    followFiles(player.shaders, async (name, text) => {
        files.set(name, text);
        const [first] = await wear(name, text);
        say(first ? `${name}, line ${first.line}: ${first.message}` : `${name} is read anew.`);
    });

    return {
        close: texts.close,
        /** The texts that are not those of the files. */
        get changed() {
            const now = player.shaders.map((name) => [name, player.shaderText(name)]);
            return Object.fromEntries(now.filter(([name, text]) => text !== files.get(name)));
        },
        /**
         * Puts other texts on, in whichever order they fit each other, and tells how that went.
         * @param {Promise<Record<string, string>>} given
         * @param {string} from
         */
        async wear(given, from) {
            const brought = Object(await given.catch(() => undefined));
            const names = player.shaders.filter((name) => typeof brought[name] === "string");
            if (!names.length) return say(`There is no look in the ${from} that the show could put on.`);
            let left = names;
            for (let before = Infinity; left.length && left.length < before;) {
                before = left.length;
                const faulty = [];
                for (const name of left) if ((await wear(name, brought[name])).length) faulty.push(name);
                left = faulty;
            }
            for (const name of left) await wear(name, player.shaderText(name));
            const which = left.join(" and ");
            say(
                which
                    ? `The show keeps its own ${which}: what the ${from} brings no longer compiles.`
                    : `The look of the ${from} is on.`,
            );
        },
    };
}
