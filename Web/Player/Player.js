import { fetchEngine } from "./Engine.js";
import { Live } from "./Live.js";
import { Loading } from "./Loading.js";
import { gainOf } from "./loudness.js";
import { Picture } from "./Picture.js";
import { Scout } from "./Scout.js";
import { Show } from "./Show.js";
import { Sound } from "./Sound.js";
import { nextTask } from "./tasks.js";

/** The shader files, two for each program of the show, in the order in which it makes them. */
const SHADERS = ["pulse.vs", "pulse.ps", "hblur.vs", "hblur.ps", "vblur.vs", "vblur.ps"];

/** After so many ms without its graphics context the show has failed. */
const PATIENCE = 4000;

/**
 * Plays the show on a canvas.
 *
 * Fires "state" when its state changes, and "frame" after each frame that it has drawn.
 *
 * @typedef {"loading" | "ready" | "playing" | "paused" | "ended" | "failed"} State
 * @typedef {{width: number, height: number}} Size in pixels
 */
export class Player extends EventTarget {
    /** Whether this browser has what it takes. */
    static supported() {
        const gl = document.createElement("canvas").getContext("webgl2");
        gl?.getExtension("WEBGL_lose_context")?.loseContext();
        return gl !== null && typeof WebAssembly === "object";
    }

    /**
     * @param {object} wishes
     * @param {HTMLCanvasElement} wishes.canvas
     * @param {number} [wishes.seed] of the show's chance
     * @param {Size} [wishes.size] without, the canvas has as many pixels as it is large
     * @param {(done: number) => void} [wishes.onProgress] 0 to 1
     */
    static async load({ canvas, seed, size, onProgress = () => {} }) {
        const loading = new Loading(document.baseURI, onProgress);
        const picture = new Picture(canvas, !size);
        const sound = new Sound();
        const [loadEngine, texts] = await Promise.all([
            fetchEngine(loading.base, loading.get("quelar.wasm")),
            Promise.all(SHADERS.map((name) => loading.getText(`data/shaders/${name}`))).then(
                async (files) => {
                    await picture.prepareFor(files);
                    return files;
                },
            ),
            loading.get("data/music/quelar.mp3").then(async (file) => sound.take(await sound.decode(file))),
        ]);
        const show = await Show.load(loadEngine, picture, sound);
        await nextTask();
        const scout = await Scout.load(loadEngine, sound);
        const player = new Player(canvas, picture, sound, show, scout, loadEngine, size);
        SHADERS.forEach((name, i) => player.texts.set(name, texts[i]));
        const { width, height } = player.extent;
        picture.resize(width, height);
        await nextTask();
        player.begin(seed);
        player.setState("ready");
        return player;
    }

    /**
     * @param {HTMLCanvasElement} canvas
     * @param {Picture} drawing
     * @param {Sound} sound
     * @param {Show} show
     * @param {Scout} scout
     * @param {import("./Engine.js").LoadEngine} loadEngine
     * @param {Size | undefined} size
     */
    constructor(canvas, drawing, sound, show, scout, loadEngine, size) {
        super();
        this.canvas = canvas;
        this.drawing = drawing;
        this.sound = sound;
        this.show = show;
        this.scout = scout;
        this.loadEngine = loadEngine;
        this.size = size;
        /** @type {Map<string, string>} */
        this.texts = new Map(); // in force
        this.shaders = SHADERS;
        this.scenes = show.scenes;
        /** @type {number | undefined} */
        this.seed = undefined;
        /** @type {State} */
        this.state = "loading";
        this.ownMusic = false; // the visitor's
        this.shown = 0; // the frame on screen
        this.wanted = 0; // the frame to go to
        /** @type {Promise<void> | null} */
        this.seeking = null;
        this.anchor = { time: 0, at: 0 }; // seconds of the show, and when that was in ms
        this.waiting = false; // for the sound
        this.request = 0;
        this.redrawn = false; // whether the frame on screen is to be drawn again
        /** @type {BlobCallback[]} */
        this.takers = []; // who wait for a picture
        this.awaited = false; // playing, as soon as the page is seen again
        this.patience = 0; // with a lost context ...
        /** @type {State} */
        this.stateBefore = "ready"; // ... and what was, before it was at an end

        drawing.onLost = () => this.loseContext();
        drawing.onRestored = () => this.restoreContext();
        if (drawing.isLost) this.loseContext();
        document.addEventListener("visibilitychange", () => this.hideOrShow());
        new ResizeObserver(() => this.follow()).observe(canvas);
    }

    // Time

    /** The moment on screen, in seconds of the show. */
    get time() {
        return (this.shown * this.frameMs) / 1000;
    }

    /** Of the whole song, in seconds: the show goes in rounds until its music ends; with a live one it never does. */
    get duration() {
        return (this.frames * this.frameMs) / 1000;
    }

    get frames() {
        if (this.live) return Infinity;
        return this.ownMusic ? Math.ceil((1000 * this.sound.duration) / this.frameMs) : this.show.frames;
    }

    /** Whether it is moved by a sound from outside. */
    get live() {
        return this.sound.live !== null;
    }

    /** Where the rounds start, in seconds. */
    get rounds() {
        if (this.live) return [];
        const length = (this.show.frames * this.frameMs) / 1000;
        return Array.from({ length: Math.ceil(this.frames / this.show.frames) }, (_, i) => ({
            start: i * length,
        }));
    }

    get frameMs() {
        return this.show.frameMs;
    }

    async play() {
        if (this.state === "playing") return;
        if (this.state === "ended") this.shown = 0;
        this.setState("playing");
        await this.startClock();
        this.tick();
    }

    pause() {
        this.awaited = false;
        if (this.state !== "playing") return;
        this.sound.stop();
        cancelAnimationFrame(this.request);
        this.setState("paused");
    }

    /**
     * Goes to a moment, in seconds; of several wishes at a time the newest counts.
     * @param {number} seconds
     */
    async seek(seconds) {
        if (this.live) return;
        const frame = Math.floor((1000 * seconds) / this.frameMs + 1e-6);
        this.wanted = Math.max(0, Math.min(frame, this.frames - 1));
        this.seeking ??= this.goToWanted();
        return this.seeking;
    }

    /** Bit by bit, where the way is long: meanwhile the page lives on, and the wish may be another one. */
    async goToWanted() {
        await new Promise((resolve) => requestAnimationFrame(resolve));
        while (!this.attempt(() => this.show.approach(this.wanted))) await nextTask();
        this.seeking = null;
        this.drawFrame(this.wanted);
        if (this.state === "playing") {
            await this.startClock();
        } else {
            this.setState("paused");
        }
    }

    /** Time goes on from the frame on screen. */
    async startClock() {
        this.waiting = true;
        if (!this.live) await this.sound.play(this.time);
        this.waiting = false;
        this.anchor = { time: this.time, at: performance.now() };
    }

    /** The moment that the show is to be at, in seconds: that of the sound, if there is any. */
    get now() {
        const at = performance.now();
        if (this.sound.sounding) this.anchor = { time: this.sound.position, at };
        return this.anchor.time + (at - this.anchor.at) / 1000;
    }

    /** Once for each picture that the screen shows. */
    tick() {
        cancelAnimationFrame(this.request);
        if (this.state !== "playing") return;
        this.request = requestAnimationFrame(() => this.tick());
        if (this.waiting || this.seeking) return;
        if (this.sound.isBack) this.startClock();
        const due = Math.floor((1000 * this.now) / this.frameMs);
        if (due >= this.frames) {
            this.end();
        } else if (due > this.shown || this.redrawn || this.takers.length) {
            this.drawFrame(Math.max(due, this.shown));
        }
    }

    end() {
        this.sound.stop();
        this.shown = this.frames - 1;
        this.setState("ended");
    }

    // Picture

    /**
     * Draws a frame, after all that were not drawn on the way.
     * @param {number} frame
     */
    drawFrame(frame) {
        const { width, height } = this.extent;
        this.drawing.resize(width, height);
        this.attempt(() => this.show.goTo(frame));
        this.shown = frame;
        this.redrawn = false;
        if (!this.drawing.isLost) for (const take of this.takers.splice(0)) this.canvas.toBlob(take);
        this.dispatchEvent(new Event("frame"));
    }

    /** The frame on screen again, for something about it has changed. */
    redraw() {
        if (this.state === "playing") {
            this.redrawn = true;
        } else {
            this.drawFrame(this.shown);
        }
    }

    /** The pixels that the canvas is to have. */
    get extent() {
        const pixels = (/** @type {number} */ length) => Math.max(1, Math.round(length * devicePixelRatio));
        return (
            this.size ?? { width: pixels(this.canvas.clientWidth), height: pixels(this.canvas.clientHeight) }
        );
    }

    follow() {
        const { width, height } = this.extent;
        if (this.state !== "loading" && (width !== this.canvas.width || height !== this.canvas.height)) {
            this.redraw();
        }
    }

    /**
     * The frame on screen as a PNG.
     * @returns {Promise<Blob>}
     */
    async picture() {
        if (this.drawing.isLost) throw new Error("There is no picture to save: the graphics card is busy.");
        const blob = await new Promise((resolve) => {
            this.takers.push(resolve);
            this.redraw();
        });
        if (!blob) throw new Error("This browser cannot save the picture.");
        return blob;
    }

    /** Mostly it is back in a moment. */
    loseContext() {
        clearTimeout(this.patience);
        this.patience = setTimeout(() => {
            this.pause();
            this.stateBefore = this.state;
            this.setState("failed");
        }, PATIENCE);
    }

    restoreContext() {
        clearTimeout(this.patience);
        this.show.engine._forgetDrawn();
        if (this.state === "failed") this.setState(this.stateBefore);
        if (this.state !== "loading") this.redraw();
    }

    // Show

    /** @param {number | undefined} seed */
    begin(seed) {
        this.seed = seed;
        this.attempt(() => this.show.begin(seed, this.texts));
        this.shown = 0;
        if (this.live) this.scout.stop();
        else this.scout.explore(this.show, this.texts, this.frames);
    }

    /** @param {{seed?: number}} wishes */
    async restart({ seed }) {
        this.pause();
        this.begin(seed);
        await this.play();
    }

    /**
     * Starts over with other music.
     * @param {ArrayBuffer} file
     */
    async setTrack(file) {
        const buffer = await this.sound.decode(file).catch(() => {
            throw new Error("This file is no music that the browser can play.");
        });
        const gain = await gainOf(this.loadEngine, buffer);
        this.stopListening();
        this.sound.take(buffer, gain);
        this.ownMusic = true;
        await this.restart({ seed: this.seed });
    }

    /**
     * Starts over with a sound from outside, without end. Should it break off, the player says "unplugged" and goes
     * on with its track.
     * @param {MediaStream} stream
     */
    async listen(stream) {
        const live = await Live.open(stream, async () => {
            if (live !== this.sound.live) return;
            this.stopListening();
            this.dispatchEvent(new Event("unplugged"));
            await this.play();
        });
        this.pause();
        this.sound.live?.close();
        this.sound.live = live;
        this.show.keeping = false; // no moment of it comes back
        this.begin(this.seed);
        await this.play();
    }

    /** Back to the beginning with the track, if it was listening. */
    stopListening() {
        if (!this.live) return;
        this.pause();
        this.sound.live?.close();
        this.sound.live = null;
        this.show.keeping = true;
        this.begin(this.seed);
    }

    /** @param {string} name */
    shaderText(name) {
        return this.texts.get(name) ?? "";
    }

    /**
     * Puts another text in place of a shader file's, unless it is faulty.
     * @param {string} name
     * @param {string} text
     */
    setShader(name, text) {
        const index = SHADERS.indexOf(name);
        const faults = this.drawing.replaceShader(index >> 1, index % 2 === 0, text);
        if (faults.length) return faults;
        this.texts.set(name, text);
        this.show.setShader(name, text);
        this.redraw();
        return null;
    }

    // Sound

    get sounding() {
        return this.sound.sounding;
    }

    get analyser() {
        return this.sounding ? (this.sound.device?.analyser ?? null) : null;
    }

    get volume() {
        return this.sound.level;
    }

    set volume(level) {
        this.sound.setLevel(level, this.muted);
    }

    get muted() {
        return this.sound.isMuted;
    }

    set muted(muted) {
        this.sound.setLevel(this.volume, muted);
    }

    // Life

    /** @param {State} state */
    setState(state) {
        if (state === this.state) return;
        this.state = state;
        this.dispatchEvent(new Event("state"));
    }

    /** A hidden page plays nothing, and goes on where it was when it is seen again. */
    hideOrShow() {
        if (document.hidden && this.state === "playing") {
            this.pause();
            this.awaited = true;
        } else if (!document.hidden && this.awaited) {
            this.awaited = false;
            this.play();
        }
    }

    /**
     * @template T
     * @param {() => T} action that fails for good
     */
    attempt(action) {
        try {
            return action();
        } catch (error) {
            this.sound.stop();
            this.setState("failed");
            throw error;
        }
    }
}
