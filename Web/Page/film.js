import { film, kindOfFilm } from "../Player/Film.js";
import { download, make, makeButton } from "./dom.js";
import { say } from "./notice.js";
import { minutes } from "./timeline.js";

/** @typedef {import("../Player/Player.js").Player} Player */

const SIZES = ["640x480", "1280x960", "1920x1440"];
const LACKING =
    "This browser cannot film: that takes WebCodecs, which Chrome, Edge, Firefox and Safari have in their newest versions.";

/** Asks what is to be filmed, films it beside the page, and tells how far it is. */
export class FilmPanel {
    #player;
    #panel;
    #size = make("select", {}, ...SIZES.map((size) => make("option", {}, size)));
    #from;
    #to;
    #says = make("p", { role: "status" });
    #bar = make("progress", { "aria-label": "Film" });
    #leave;
    #start = makeButton("Film it", () => this.#film());
    /** @type {AbortController | undefined} */
    #making;

    /**
     * @param {HTMLElement} panel to fill
     * @param {Player} player
     * @param {() => void} close
     */
    constructor(panel, player, close) {
        this.#player = player;
        this.#panel = panel;
        const seconds = () => make("input", { type: "number", min: "0", step: "any", required: "" });
        this.#from = seconds();
        this.#to = seconds();
        const field = (/** @type {string} */ name, /** @type {HTMLElement} */ input) =>
            make("label", {}, name, input);
        this.#leave = makeButton("Close", () => (this.#making ? this.#making.abort() : close()));
        panel.replaceChildren(
            field("Size", this.#size),
            field("From", this.#from),
            field("to second", this.#to),
            this.#start,
            this.#leave,
            this.#bar,
            this.#says,
        );
        panel.addEventListener("keydown", (event) => {
            if (event.key === "Escape") close();
            event.stopPropagation(); // digits and letters are for the fields
        });
    }

    /** The whole show, or song. */
    reset() {
        if (this.#making) return;
        const { duration } = this.#player;
        this.#from.value = "0";
        this.#to.value = duration.toFixed(3);
        this.#to.max = this.#to.value;
        this.#bar.hidden = true;
        this.#says.textContent =
            "Every frame is drawn, as fast as this machine can; the page goes on meanwhile.";
    }

    focus() {
        this.reset();
        this.#size.focus();
    }

    async #film() {
        const [width, height] = this.#size.value.split("x").map(Number);
        const size = { width, height };
        const [from, to] = [
            Number(this.#from.value),
            Math.min(Number(this.#to.value), this.#player.duration),
        ];
        if (!(from >= 0 && from < to)) {
            this.#says.textContent = "A film goes from a moment to a later one.";
            return;
        }
        const making = new AbortController();
        this.#make(making);
        /** @type {any} */
        let handle;
        try {
            const kind = await kindOfFilm(size);
            if (!kind) throw new Error(LACKING);
            const name = `quelar.${kind.ending}`;
            handle = await pick(name, kind.ending);
            if (handle === null) making.abort();
            making.signal.throwIfAborted();
            const began = performance.now();
            let told = 0;
            let first = 0; // ms, when the first frame was there
            const file = await handle?.createWritable();
            const made = await film(this.#player, {
                ...{ size, from, to, kind, file },
                signal: making.signal,
                onFrame: (done, all) => {
                    this.#bar.value = done / all;
                    const now = performance.now();
                    first ||= now;
                    if (now - told < 500 && done < all) return;
                    told = now;
                    const left = ((now - first) * (all - done)) / (done - 1) / 1000;
                    const when = done > 1 ? `, ${minutes(left + 0.5)} left` : "";
                    this.#says.textContent = `Frame ${done} of ${all}${when}.`;
                },
            });
            if (made) download(made, name);
            const took = minutes((performance.now() - began) / 1000);
            this.#says.textContent = `${name} is there; it took ${took}.`;
            if (this.#panel.hidden) say(`The film ${name} is there.`);
        } catch (error) {
            await handle?.remove?.().catch(() => {});
            const why = making.signal.aborted
                ? "It was cancelled; nothing is left of it."
                : Object(error).message;
            this.#says.textContent = why;
            if (this.#panel.hidden) say(`There is no film: ${why}`);
            this.#bar.hidden = true;
        } finally {
            this.#make(undefined);
        }
    }

    /** @param {AbortController | undefined} making the film that is being made */
    #make(making) {
        this.#making = making;
        for (const input of [this.#size, this.#from, this.#to, this.#start]) input.disabled = Boolean(making);
        this.#leave.textContent = making ? "Cancel" : "Close";
        if (making) this.#bar.hidden = false;
    }
}

/**
 * Where the film is to go: a file, where the browser can write into one; null if the visitor thinks better of it.
 * @param {string} name
 * @param {string} ending
 */
async function pick(name, ending) {
    if (!("showSaveFilePicker" in window)) return undefined;
    const types = [{ description: "Film", accept: { [`video/${ending}`]: [`.${ending}`] } }];
    try {
        return await /** @type {any} */ (window).showSaveFilePicker({ suggestedName: name, types });
    } catch (error) {
        return Object(error).name === "AbortError" ? null : undefined;
    }
}
