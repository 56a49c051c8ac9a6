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
     * @param {object} world what Engine/imports.js asks for
     * @param {import("./Picture.js").Picture} world.picture
     * @param {import("./Sound.js").Sound} world.sound
     * @param {string} base the address of the folder that the engine lies in
     */
    static async load({ picture, sound, base }) {
        const { default: loadEngine } = await import(/* @vite-ignore */ new URL("quelar.js", base).href);
        const show = new Show(picture);
        show.engine = await loadEngine({
            director: show,
            picture,
            sound,
            locateFile: (name) => new URL(name, base).href,
        });
        show.prepare();
        return show;
    }

    constructor(picture) {
        this.picture = picture;
        this.frame = -1; // that is complete
        this.goal = 0;
        this.drawn = false; // whether the goal is to be drawn
        this.ended = false;
        this.status = 0;
    }

    prepare() {
        const { engine } = this;
        engine.FS.mkdirTree("/data/shaders");
        this.frameMs = engine._frameMs();
        this.frames = engine._showFrames();
        this.scenes = Array.from({ length: engine._sceneCount() }, (_, i) => ({
            name: engine.UTF8ToString(engine._sceneName(i)),
            start: (engine._sceneStart(i) * this.frameMs) / 1000,
        }));
        // As it is before anything has run: every start begins here.
        this.blank = new Snapshots(engine);
        this.blank.take(-1);
        this.snapshots = new Snapshots(engine);
    }

    /**
     * Starts from the beginning with other settings, and stands still at the first frame.
     * @param {{seed?: number}} settings
     * @param {Map<string, string>} shaders
     */
    begin(settings, shaders) {
        const { FS } = this.engine;
        FS.writeFile("/data/settings.ini", settings.seed === undefined ? "" : `seed ${settings.seed}\n`);
        for (const [name, text] of shaders) {
            FS.writeFile(`/data/shaders/${name}`, text);
        }
        this.snapshots.clear();
        this.start(false);
    }

    start(drawn) {
        this.picture.reset();
        this.blank.restore(-1);
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
                this.frame = this.snapshots.restore(from);
                this.ended = false;
                this.engine._forgetDrawn();
            }
        }
        this.goal = frame;
        this.drawn = drawn;
        while (!this.ended && this.frame < this.goal) {
            this.goOn(this.nextDrawn());
            this.keep();
        }
        this.checkEnd();
    }

    /** Runs to the end, and answers how the show ended. */
    finish() {
        this.goTo(Infinity, false);
        return this.status;
    }

    /** A moment that is not kept yet, the first one. */
    get unexplored() {
        return this.snapshots.last + SNAPSHOT_FRAMES;
    }

    keep() {
        if (!this.ended && this.isDue(this.frame)) {
            this.snapshots.take(this.frame);
        }
    }

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

    showFrame(frame, goOn) {
        this.frame = frame;
        this.goOn = goOn;
        if (frame < this.goal && !this.isDue(frame)) {
            goOn(this.nextDrawn());
        }
    }

    endShow(status) {
        this.ended = true;
        this.status = status;
    }
}
