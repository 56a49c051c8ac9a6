import { Picture } from "./Picture.js";
import { Show } from "./Show.js";
import { Sound } from "./Sound.js";

/** The shader files, two for each program of the show, in the order in which it makes them. */
const SHADERS = ["pulse.vs", "pulse.ps", "hblur.vs", "hblur.ps", "vblur.vs", "vblur.ps"];

/** Time to look ahead with, while nothing plays: ms at a stretch. */
const IDLE_SLICE = 8;

/**
 * Plays the show on a canvas.
 *
 * Fires "state" when its state changes, and "frame" after each frame that it has drawn.
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
     * @param {{width: number, height: number}} [wishes.size] in pixels; without, as large as the canvas is shown
     * @param {(done: number) => void} [wishes.onProgress] 0 to 1
     * @param {string} [wishes.base] the address of the folder with the engine and the data
     */
    static async load({ canvas, seed, size, onProgress = () => {}, base = document.baseURI }) {
        const loading = new Loading(base, onProgress);
        const sound = new Sound();
        const picture = new Picture(canvas, { antialias: !size });
        const [show, , ...texts] = await Promise.all([
            Show.load({ picture, sound, base }),
            loading.get("data/music/quelar.mp3").then((file) => sound.load(file)),
            ...SHADERS.map(async (name) =>
                new TextDecoder().decode(await loading.get(`data/shaders/${name}`)),
            ),
        ]);
        const player = new Player(
            canvas,
            picture,
            sound,
            show,
            new Map(SHADERS.map((name, i) => [name, texts[i]])),
        );
        player.size = size;
        player.follow();
        picture.resize(player.width, player.height);
        player.begin(seed);
        player.setState("ready");
        return player;
    }

    constructor(canvas, picture, sound, show, texts) {
        super();
        Object.assign(this, { canvas, drawing: picture, sound, show, texts });
        this.originals = new Map(texts);
        this.state = "loading";
        this.scenes = show.scenes;
        this.duration = (show.frames * show.frameMs) / 1000;
        this.shaders = SHADERS;
        this.shown = 0; // the frame on screen
        this.anchor = { time: 0, at: 0 };
        this.takers = []; // who waits for a picture
        this.hiddenWhilePlaying = false;
        this.ending = new AbortController();
        const listen = (target, name, action) =>
            target.addEventListener(name, action, { signal: this.ending.signal });
        listen(canvas, "webglcontextlost", (event) => event.preventDefault());
        listen(canvas, "webglcontextrestored", () => this.restoreContext());
        listen(document, "visibilitychange", () => this.hideOrShow());
        this.resizing = new ResizeObserver(() => this.follow());
        this.resizing.observe(canvas);
    }

    dispose() {
        this.ending.abort();
        this.resizing.disconnect();
        cancelAnimationFrame(this.request);
        clearTimeout(this.exploring);
        this.sound.close();
        this.setState("paused");
    }

    // Time

    /** Seconds of the show: while it plays those of the sound, if there is any. */
    get time() {
        return (this.shown * this.show.frameMs) / 1000;
    }

    async play() {
        if (this.state === "playing") {
            return;
        }
        if (this.state === "ended") {
            this.shown = 0;
        }
        clearTimeout(this.exploring);
        this.setState("playing");
        await this.startClock(this.time);
        this.tick();
    }

    pause() {
        if (this.state !== "playing") {
            return;
        }
        this.sound.stop();
        cancelAnimationFrame(this.request);
        this.setState("paused");
        this.explore();
    }

    /**
     * Goes to a moment, in seconds.
     * @param {number} seconds
     */
    async seek(seconds) {
        const frame = Math.floor((1000 * seconds) / this.show.frameMs + 1e-6);
        this.wanted = Math.max(0, Math.min(frame, this.show.frames - 1));
        if (this.seeking) {
            return this.seeking; // the newest wins
        }
        this.seeking = new Promise((resolve) => requestAnimationFrame(resolve)).then(async () => {
            this.seeking = null;
            this.drawFrame(this.wanted);
            if (this.state === "playing") {
                await this.startClock(this.time);
            } else if (this.state === "ended" || this.state === "ready") {
                this.setState("paused");
            }
        });
        return this.seeking;
    }

    async startClock(time) {
        this.anchor = { time, at: performance.now() };
        this.waitingForSound = true;
        await this.sound.play(time);
        this.waitingForSound = false;
        this.anchor = { time, at: performance.now() };
    }

    /** The moment that the show is to be at, in seconds. */
    get now() {
        const at = performance.now();
        if (this.sound.sounding) {
            this.anchor = { time: this.sound.position, at };
        }
        return this.anchor.time + (at - this.anchor.at) / 1000;
    }

    /** Once for each picture that the screen shows. */
    tick() {
        cancelAnimationFrame(this.request);
        if (this.state !== "playing") {
            return;
        }
        this.request = requestAnimationFrame(() => this.tick());
        if (this.waitingForSound || this.seeking) {
            return;
        }
        const due = Math.floor((1000 * this.now) / this.show.frameMs);
        if (due >= this.show.frames) {
            this.end();
        } else if (due > this.shown || this.takers.length || this.mustRedraw) {
            this.drawFrame(Math.max(due, this.shown));
        }
    }

    end() {
        this.attempt(() => this.show.finish());
        this.sound.stop();
        this.shown = this.show.frames - 1;
        this.setState("ended");
    }

    // Picture

    /** Draws a frame, after all that were not drawn on the way. */
    drawFrame(frame) {
        if (this.canvas.width !== this.width || this.canvas.height !== this.height) {
            this.drawing.resize(this.width, this.height);
        }
        this.attempt(() => this.show.goTo(frame));
        this.shown = frame;
        this.mustRedraw = false;
        for (const take of this.takers.splice(0)) {
            this.canvas.toBlob(take);
        }
        this.dispatchEvent(new Event("frame"));
    }

    /** The frame on screen again, for it has changed. */
    redraw() {
        if (this.state === "playing") {
            this.mustRedraw = true;
        } else {
            this.drawFrame(this.shown);
        }
    }

    /** As many pixels as the canvas is large. */
    follow() {
        const { devicePixelRatio } = window;
        this.width = this.size?.width ?? Math.max(1, Math.round(this.canvas.clientWidth * devicePixelRatio));
        this.height =
            this.size?.height ?? Math.max(1, Math.round(this.canvas.clientHeight * devicePixelRatio));
        if (
            this.state !== "loading" &&
            (this.canvas.width !== this.width || this.canvas.height !== this.height)
        ) {
            this.redraw();
        }
    }

    /** The frame on screen as a PNG. */
    async picture() {
        return new Promise((resolve) => {
            this.takers.push(resolve);
            this.redraw();
        });
    }

    restoreContext() {
        this.drawing.rebuild();
        this.show.engine._forgetDrawn();
        this.redraw();
    }

    // Show

    begin(seed) {
        this.seed = seed;
        this.attempt(() => this.show.begin({ seed }, this.texts));
        this.shown = 0;
    }

    async restart({ seed }) {
        this.pause();
        this.begin(seed);
        await this.play();
    }

    async setTrack(file) {
        try {
            await this.sound.load(file);
        } catch {
            throw new Error("This browser cannot decode that file as music.");
        }
        await this.restart({ seed: this.seed });
    }

    shaderText(name) {
        return this.texts.get(name);
    }

    setShader(name, text) {
        const index = SHADERS.indexOf(name);
        const program = [...this.drawing.programs.values()][index >> 1];
        const faults = program.replace(index % 2 === 0, text);
        if (faults.length) {
            return faults.map(({ line, message }) => ({ line, message }));
        }
        this.texts.set(name, text);
        this.show.engine.FS.writeFile(`/data/shaders/${name}`, text);
        this.redraw();
        return null;
    }

    // Sound

    get sounding() {
        return this.sound.sounding;
    }

    get analyser() {
        return this.sound.sounding ? this.sound.analyser : null;
    }

    get volume() {
        return this.sound.level;
    }

    set volume(level) {
        this.sound.level = level;
        this.sound.setGain();
    }

    get muted() {
        return this.sound.isMuted;
    }

    set muted(muted) {
        this.sound.isMuted = muted;
        this.sound.setGain();
    }

    // Life

    setState(state) {
        if (state !== this.state) {
            this.state = state;
            this.dispatchEvent(new Event("state"));
        }
        if (state === "ready") {
            this.explore();
        }
    }

    /** A hidden page plays nothing, and goes on where it was when it is seen again. */
    hideOrShow() {
        if (document.hidden && this.state === "playing") {
            this.pause();
            this.hiddenWhilePlaying = true;
        } else if (!document.hidden && this.hiddenWhilePlaying) {
            this.hiddenWhilePlaying = false;
            this.play();
        }
    }

    /** While nothing plays the show runs ahead unseen, so that every moment is near a kept one later on. */
    explore() {
        clearTimeout(this.exploring);
        this.exploring = setTimeout(() => {
            const until = performance.now() + IDLE_SLICE;
            while (performance.now() < until && this.show.unexplored < this.show.frames) {
                this.show.goTo(Math.max(this.show.frame, this.show.unexplored - 256) + 8, false);
            }
            if (this.show.unexplored < this.show.frames) {
                this.explore();
            }
        });
    }

    attempt(action) {
        try {
            action();
        } catch (error) {
            this.sound.stop();
            this.setState("failed");
            throw error;
        }
    }
}

/** Files on their way here, and how far they are. */
class Loading {
    constructor(base, onProgress) {
        Object.assign(this, { base, onProgress });
        this.total = 0;
        this.done = 0;
    }

    async get(path) {
        const answer = await fetch(new URL(path, this.base));
        if (!answer.ok) {
            throw new Error(`The file ${path} of the show is missing.`);
        }
        const size = Number(answer.headers.get("content-length")) || 0;
        this.total += size;
        const reader = answer.body.getReader();
        const parts = [];
        for (;;) {
            const { done, value } = await reader.read();
            if (done) {
                return new Blob(parts).arrayBuffer();
            }
            parts.push(value);
            this.done += value.length;
            this.onProgress(Math.min(1, this.done / (this.total || this.done)));
        }
    }
}
