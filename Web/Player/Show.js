import { Snapshots } from "./Snapshots.js";

/** A moment to go on from is kept every so many frames, 3.84 s. */
const SNAPSHOT_FRAMES = 256;

/**
 * The show itself, as WebAssembly, run frame by frame: to any frame, without drawing what nobody will see.
 *
 * Each frame ends in the show's call to swap the buffers, and there the program can stand still: the engine
 * then unwinds its stack into its memory, so that a copy of that memory is the whole state of the show, and
 * putting it back returns to that moment. Two things lie outside: the place of the suspended stack, which is
 * kept with the copy, and the pictures and sounds, which are the page's.
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
        this.frameMs = engine._frameMs();
        this.frames = engine._showFrames();
        this.scenes = Array.from({ length: engine._sceneCount() }, (_, i) => ({
            name: engine.UTF8ToString(engine._sceneName(i)),
            start: (engine._sceneStart(i) * this.frameMs) / 1000,
        }));
        // As it is before anything has run: every start begins here.
        this.blank = new Snapshots();
        this.blank.take(engine, -1);
        this.snapshots = new Snapshots();

        this.frame = -1; // that is complete
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
        this.engine.FS.writeFile("/data/settings.ini", seed === undefined ? "" : `seed ${seed}\n`);
        for (const [name, text] of shaders) this.setShader(name, text);
        this.snapshots = new Snapshots();
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

    /** @param {boolean} drawn */
    start(drawn) {
        this.engine.picture.reset();
        this.blank.restore(this.engine, -1);
        this.ended = false;
        this.frame = -1;
        this.goal = 0;
        this.engine._play(drawn ? 1 : 0);
        this.checkEnd();
    }

    /**
     * Runs to a frame, forwards or backwards, and draws that one. Stands still there, unless the show ends
     * before.
     * @param {number} frame
     */
    goTo(frame, drawn = true) {
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

    /** Runs to the end. */
    finish() {
        this.goTo(Infinity, false);
    }

    /** Whether moments to go on from are kept of the whole show. */
    get explored() {
        return this.snapshots.last + SNAPSHOT_FRAMES >= this.frames;
    }

    /** Runs on by some frames where no moment has been kept yet. */
    explore(frames = 8) {
        this.goTo(Math.max(this.frame, this.snapshots.last) + frames, false);
    }

    /** @param {number} frame */
    isDue(frame) {
        return frame % SNAPSHOT_FRAMES === 0 && !this.snapshots.has(frame);
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
