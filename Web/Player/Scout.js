import { Show } from "./Show.js";

/** Time for a look ahead at once, in ms, if the browser has it: nobody is to notice. */
const SLICE = 12;

/** A show that nobody sees: it draws nothing, and what its programs say is good. */
const UNSEEN = {
    height: 0,
    compile: () => "",
    makeProgram: () => "",
    setUniform() {},
    makeTexture() {},
    setTarget() {},
    clear() {},
    draw() {},
    drawQuad() {},
};

/**
 * Runs ahead of a show in the browser's idle time, and keeps for it the moments to go on from: then all of them
 * are near one, also those that have not been seen yet.
 */
export class Scout {
    /**
     * @param {import("./Engine.js").LoadEngine} loadEngine
     * @param {import("./Engine.js").Track} sound
     */
    static async load(loadEngine, sound) {
        return new Scout(await Show.load(loadEngine, UNSEEN, sound, { print() {} }));
    }

    /** @param {Show} show */
    constructor(show) {
        this.show = show;
        this.task = 0;
        this.done = false; // been everywhere
    }

    /**
     * @param {Show} followed
     * @param {Map<string, string>} shaders
     * @param {number} frames
     */
    explore(followed, shaders, frames) {
        this.stop();
        this.done = false;
        this.task = whenIdle.request(() => {
            this.show.begin(followed.seed, shaders);
            this.show.rounds = followed.rounds;
            this.show.enter(0);
            this.wait(frames);
        });
    }

    stop() {
        whenIdle.cancel(this.task);
    }

    /** @param {number} frames of the song */
    wait(frames) {
        this.task = whenIdle.request((deadline) => {
            const end = performance.now() + SLICE;
            let more = true;
            while (more && deadline.timeRemaining() > 1 && performance.now() < end) {
                more = this.show.explore(frames);
            }
            if (more) this.wait(frames);
            else this.done = true;
        });
    }
}

const whenIdle =
    "requestIdleCallback" in window
        ? {
              request: (/** @type {IdleRequestCallback} */ action) => requestIdleCallback(action),
              cancel: (/** @type {number} */ task) => cancelIdleCallback(task),
          }
        : {
              request: (/** @type {IdleRequestCallback} */ action) =>
                  setTimeout(() => {
                      const end = performance.now() + SLICE;
                      action({ didTimeout: false, timeRemaining: () => end - performance.now() });
                  }),
              cancel: (/** @type {number} */ task) => clearTimeout(task),
          };
