import { Snapshots } from "./Snapshots.js";

/** A moment to go on from is kept every so many frames, 3.84 s. */
const SNAPSHOT_FRAMES = 256;

/** The moments of so many rounds are kept, 15 MB each: of half an hour. */
export const MOST_ROUNDS = 18;

/** So many frames are run at once, on a way that is longer than that. */
const STEP = 16;

/**
 * The show itself, as WebAssembly, run frame by frame: to any frame, without drawing what nobody will see.
 *
 * Each frame ends in the show's call to swap the buffers, and there the program can stand still: the engine
 * then unwinds its stack into its memory, so that a copy of that memory is the whole state of the show, and
 * putting it back returns to that moment. Two things lie outside: the place of the suspended stack, which is
 * kept with the copy, and the pictures and sounds, which are the page's.
 *
 * With a song that is longer than the show it goes in rounds: each is a start of its own, with the next seed, and
 * hears the song from where the round before has ended. Frames are counted through all of them.
 */
export class Show {
    /**
     * @param {import("./Engine.js").LoadEngine} loadEngine
     * @param {import("./Engine.js").Drawing} picture
     * @param {import("./Engine.js").Track} sound
     * @param {Partial<import("./Engine.js").World>} [options] further ones of the engine's
     */
    static async load(loadEngine, picture, sound, options = {}) {
        /** @type {import("./Engine.js").Director} */
        const director = {
            seedFor: (asked) => (show.seed ?? asked) + show.round,
            trackStart: () => show.round * show.frames * show.frameMs,
            showFrame: (frame, goOn) => show.showFrame(frame, goOn),
            endShow: (status) => show.endShow(status),
        };
        const show = new Show(await loadEngine({ director, picture, sound, ...options }));
        return show;
    }

    /** @param {import("./Engine.js").Engine} engine */
    constructor(engine) {
        this.engine = engine;
        engine.FS.mkdirTree("/data/shaders");
        engine.FS.writeFile("/data/settings.ini", "");
        this.frameMs = engine._frameMs();
        this.frames = engine._showFrames(); // of a round
        this.scenes = Array.from({ length: engine._sceneCount() }, (_, i) => ({
            name: engine.UTF8ToString(engine._sceneTitle(i)),
            start: (engine._sceneStart(i) * this.frameMs) / 1000,
        }));
        // As it is before anything has run: every start begins here.
        this.blank = new Snapshots();
        this.blank.take(engine, -1);
        /** @type {Map<number, Snapshots>} */
        this.rounds = new Map();
        /** @type {number | undefined} */
        this.seed = undefined;
        this.keeping = true; // moments to go on from; without, there is no way back but to the start

        this.round = 0;
        this.snapshots = new Snapshots(); // of the round
        this.frame = -1; // of the round, that is complete
        this.goal = 0;
        this.drawn = false; // whether the goal is to be drawn
        this.ended = false;
        this.status = 0;
        /** @type {(drawNext: number) => void} */
        this.goOn = () => {};
    }

    /**
     * Starts from the beginning with other settings, and stands still at the first frame.
     * @param {number | undefined} seed
     * @param {Map<string, string>} shaders
     */
    begin(seed, shaders) {
        this.seed = seed;
        for (const [name, text] of shaders) this.setShader(name, text);
        this.rounds = new Map();
        this.enter(0);
        this.start(false);
    }

    /**
     * A shader text for the next start.
     * @param {string} name
     * @param {string} text
     */
    setShader(name, text) {
        this.engine.FS.writeFile(`/data/shaders/${name}`, text);
    }

    /** @param {number} round */
    enter(round) {
        this.round = round;
        if (!this.keeping) this.rounds.clear();
        this.snapshots = this.rounds.get(round) ?? new Snapshots();
        this.rounds.set(round, this.snapshots);
        const [eldest] = this.rounds.keys();
        if (this.rounds.size > MOST_ROUNDS) this.rounds.delete(eldest);
        this.ended = true; // there is nothing to go on from
    }

    /** @param {boolean} drawn */
    start(drawn) {
        this.blank.restore(this.engine, -1);
        this.ended = false;
        this.frame = -1;
        this.goal = 0;
        this.engine._play(drawn ? 1 : 0);
        this.checkEnd();
    }

    /**
     * Runs to a frame, forwards or backwards, and draws that one. Stands still there.
     * @param {number} number
     */
    goTo(number, drawn = true) {
        const frame = this.enterRoundOf(number);
        if (frame === 0 && drawn) {
            this.start(true);
            return;
        }
        const from = this.snapshots.before(frame);
        if (this.ended || this.frame >= frame || this.frame < from) {
            if (from < 0) {
                this.start(false);
            } else {
                this.snapshots.restore(this.engine, from);
                this.frame = from;
                this.ended = false;
                this.engine._forgetDrawn();
            }
        }
        this.goal = frame;
        this.drawn = drawn;
        while (!this.ended && this.frame < this.goal) {
            this.goOn(this.nextDrawn());
            if (!this.ended && this.isDue(this.frame)) {
                this.snapshots.take(this.engine, this.frame);
            }
        }
        this.checkEnd();
    }

    /**
     * Runs towards a frame for some ms, and answers whether the rest is but a step.
     * @param {number} number
     */
    approach(number, milliseconds = 20) {
        const end = performance.now() + milliseconds;
        const frame = this.enterRoundOf(number);
        for (;;) {
            const here = this.ended || this.frame >= frame ? -1 : this.frame;
            const from = Math.max(here, this.snapshots.before(frame));
            if (frame - from <= STEP) return true;
            if (performance.now() > end) return false;
            this.goTo(number - frame + Math.max(from + STEP, 0), false);
        }
    }

    /** @param {number} number */
    enterRoundOf(number) {
        const round = Math.floor(number / this.frames);
        if (round !== this.round) this.enter(round);
        return number % this.frames;
    }

    /**
     * Runs on by some frames where no moment has been kept yet; answers whether there are any such.
     * @param {number} length of the song, in frames
     */
    explore(length) {
        const frames = Math.min(length, MOST_ROUNDS * this.frames);
        for (let first = 0; first < frames; first += this.frames) {
            const last = this.rounds.get(first / this.frames)?.last ?? -1;
            const end = Math.min(frames - first, this.frames);
            if (last + SNAPSHOT_FRAMES < end) {
                this.enterRoundOf(first);
                this.goTo(first + Math.max(this.ended ? -1 : this.frame, last) + STEP / 2, false);
                return true;
            }
        }
        return false;
    }

    /** @param {number} frame */
    isDue(frame) {
        return this.keeping && frame % SNAPSHOT_FRAMES === 0 && !this.snapshots.has(frame);
    }

    nextDrawn() {
        return this.drawn && this.frame + 1 === this.goal ? 1 : 0;
    }

    checkEnd() {
        if (this.ended && this.status !== 0) {
            throw new Error("The show could not go on.");
        }
    }

    // The show's own calls, see Engine/page.h.

    /**
     * @param {number} frame
     * @param {(drawNext: number) => void} goOn
     */
    showFrame(frame, goOn) {
        this.frame = frame;
        this.goOn = goOn;
        if (frame < this.goal && !this.isDue(frame)) goOn(this.nextDrawn());
    }

    /** @param {number} status */
    endShow(status) {
        this.ended = true;
        this.status = status;
    }
}
