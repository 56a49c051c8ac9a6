import { defaultKeymap, history, historyKeymap } from "@codemirror/commands";
import { bracketMatching, HighlightStyle, StreamLanguage, syntaxHighlighting } from "@codemirror/language";
import { shader } from "@codemirror/legacy-modes/mode/clike";
import { lintGutter, lintKeymap, setDiagnostics } from "@codemirror/lint";
import { EditorState } from "@codemirror/state";
import {
    drawSelection,
    EditorView,
    highlightActiveLine,
    highlightActiveLineGutter,
    keymap,
    lineNumbers,
} from "@codemirror/view";
import { tags } from "@lezer/highlight";

import { download, make, makeButton } from "./dom.js";

/** @typedef {import("../Player/Player.js").Player} Player */
/** @typedef {{line: number, message: string}} Problem */

const PAUSE_MS = 200; // in the typing, before a text is compiled

const THEME = [
    EditorView.theme(
        {
            "&": { height: "100%", backgroundColor: "#000", color: "#c8c8c8" },
            "&.cm-focused": { outline: "none" },
            ".cm-scroller": { fontFamily: "inherit", lineHeight: "1.5" },
            ".cm-gutters": { backgroundColor: "#000", color: "#999", border: "none" },
            ".cm-activeLine, .cm-activeLineGutter": { backgroundColor: "#141414" },
            ".cm-cursor": { borderLeftColor: "#f33" },
            "&.cm-focused > .cm-scroller > .cm-selectionLayer .cm-selectionBackground, .cm-selectionBackground":
                { backgroundColor: "#4a1414" },
            ".cm-matchingBracket": { backgroundColor: "#333 !important", color: "#fff" },
            ".cm-tooltip": { backgroundColor: "#1a1a1a", color: "#eee", border: "1px solid #444" },
            ".cm-lintRange-error": {
                backgroundColor: "#400c0c",
                backgroundImage: "none", // which the page does not allow, as it would be a data: address
                textDecoration: "underline wavy #ff6b6b",
            },
            ".cm-lint-marker-error": { content: "normal", borderRadius: "50%", background: "#ff6b6b" },
        },
        { dark: true },
    ),
    syntaxHighlighting(
        HighlightStyle.define([
            { tag: tags.comment, color: "#8c8c8c" },
            { tag: [tags.keyword, tags.typeName, tags.standard(tags.name)], color: "#7fd6ff" },
            { tag: [tags.number, tags.atom], color: "#ffd24d" },
            { tag: tags.meta, color: "#ff7a7a" },
        ]),
    ),
];

/** The six shader texts in tabs. What is typed is compiled at once; a bad text is marked, the last good one stays. */
export class Editor {
    #player;
    #view;
    #tabs;
    #says = make("p", { id: "verdict", role: "status" });
    /** @type {Map<string, {state: EditorState, problems: Problem[]}>} */
    #texts = new Map();
    #name;
    /** @type {ReturnType<typeof setTimeout> | undefined} */
    #timer;

    /**
     * @param {HTMLElement} panel to fill
     * @param {Player} player
     * @param {Map<string, string>} files what a reset goes back to
     * @param {() => void} close
     */
    constructor(panel, player, files, close) {
        this.#player = player;
        for (const name of player.shaders) {
            this.#texts.set(name, { state: this.#fresh(player.shaderText(name)), problems: [] });
        }
        this.#name = player.shaders[0];
        this.#tabs = player.shaders.map((name) => {
            const tab = make("button", { role: "tab", type: "button", "aria-controls": "text" }, name);
            tab.addEventListener("click", () => this.#open(name));
            return tab;
        });
        const list = make("div", { role: "tablist", "aria-label": "Shaders" }, ...this.#tabs);
        list.addEventListener("keydown", (event) => this.#step(event));

        // Where styles are kept apart, the editor's come without a style element, which the page does not allow.
        const tabpanel = make("div", { id: "text", role: "tabpanel" });
        const parent = tabpanel.attachShadow({ mode: "open", delegatesFocus: true });
        this.#view = new EditorView({ parent, root: parent, state: this.#text.state });

        const row = make(
            "div",
            { class: "row" },
            makeButton("Reset", () => this.#write(files.get(this.#name) ?? "")),
            makeButton("Download", () => download(new Blob([this.#view.state.doc.toString()]), this.#name)),
            makeButton("Close", close),
        );
        panel.replaceChildren(list, tabpanel, this.#says, row);
        this.#open(this.#name);
    }

    focus() {
        this.#view.focus();
    }

    /**
     * Takes over a text that was changed elsewhere.
     * @param {string} name
     * @param {string} text
     * @returns {Problem[]}
     */
    replace(name, text) {
        this.#keep();
        const kept = this.#texts.get(name);
        if (!kept) return [];
        kept.state = this.#fresh(text);
        if (name === this.#name) this.#view.setState(kept.state);
        return this.#compile(name, text);
    }

    get #text() {
        const text = this.#texts.get(this.#name);
        if (!text) throw new Error(`There is no shader ${this.#name}.`);
        return text;
    }

    /** @param {string} doc */
    #fresh(doc) {
        return EditorState.create({
            doc,
            extensions: [
                lineNumbers(),
                lintGutter(),
                history(),
                drawSelection(),
                bracketMatching(),
                highlightActiveLine(),
                highlightActiveLineGutter(),
                StreamLanguage.define(shader),
                THEME,
                keymap.of([...defaultKeymap, ...historyKeymap, ...lintKeymap]),
                EditorView.contentAttributes.of({ "aria-label": "Text of the shader" }),
                EditorView.updateListener.of(({ docChanged }) => docChanged && this.#typed()),
            ],
        });
    }

    #typed() {
        clearTimeout(this.#timer);
        this.#timer = setTimeout(() => this.#keep(), PAUSE_MS);
    }

    /** Compiles what is in the view, if it was not yet. */
    #keep() {
        if (this.#timer === undefined) return;
        clearTimeout(this.#timer);
        this.#timer = undefined;
        this.#compile(this.#name, this.#view.state.doc.toString());
    }

    /**
     * @param {string} name
     * @param {string} text
     */
    #compile(name, text) {
        const kept = this.#texts.get(name);
        const problems = this.#player.setShader(name, text) ?? [];
        if (kept) kept.problems = problems;
        this.#judge();
        return problems;
    }

    /** Shows what the compiler said of each text, and on which lines of the one in view. */
    #judge() {
        const { doc } = this.#view.state;
        const { problems } = this.#text;
        const marks = problems.map(({ line, message }) => {
            const { from, to } = doc.line(Math.min(Math.max(line, 1), doc.lines));
            return { from, to, message, severity: /** @type {const} */ ("error") };
        });
        this.#view.dispatch(setDiagnostics(this.#view.state, marks));
        const [first] = problems;
        this.#says.textContent = first ? `Line ${first.line}: ${first.message}` : "In the picture.";
        this.#says.toggleAttribute("data-bad", first !== undefined);
        for (const tab of this.#tabs) {
            const name = tab.textContent ?? "";
            const open = name === this.#name;
            tab.ariaSelected = String(open);
            tab.tabIndex = open ? 0 : -1;
            tab.toggleAttribute("data-bad", Boolean(this.#texts.get(name)?.problems.length));
        }
    }

    /** @param {string} name */
    #open(name) {
        this.#keep();
        this.#text.state = this.#view.state;
        this.#name = name;
        this.#view.setState(this.#text.state);
        this.#judge();
    }

    /** @param {string} text in place of the one in view, as one step that can be undone */
    #write(text) {
        this.#view.dispatch({ changes: { from: 0, to: this.#view.state.doc.length, insert: text } });
        this.#keep();
    }

    /** @param {KeyboardEvent} event */
    #step(event) {
        const { shaders } = this.#player;
        const now = shaders.indexOf(this.#name);
        const places = { ArrowLeft: now - 1, ArrowRight: now + 1, Home: 0, End: -1 };
        const place = places[/** @type {keyof typeof places} */ (event.key)];
        if (place === undefined) return;
        event.preventDefault();
        const next = (place + shaders.length) % shaders.length;
        this.#open(shaders[next]);
        this.#tabs[next].focus();
    }
}
