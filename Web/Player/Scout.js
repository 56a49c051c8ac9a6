import { Show } from "./Show.js";

/** Time for a look ahead, in ms, where the browser does not tell how long it is idle. */
const SLICE = 4;

/** A show that nobody sees: it draws nothing, and what its programs say is good. */
const UNSEEN = {
    reset() {},
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
    }

    /**
     * @param {Show} followed
     * @param {number | undefined} seed
     * @param {Map<string, string>} shaders
     */
    explore(followed, seed, shaders) {
        this.stop();
        this.show.begin(seed, shaders);
        this.show.snapshots = followed.snapshots;
        this.wait();
    }

    stop() {
        whenIdle.cancel(this.task);
    }

    wait() {
        if (this.show.explored) return;
        this.task = whenIdle.request((deadline) => {
            while (deadline.timeRemaining() > 1 && !this.show.explored) this.show.explore();
            this.wait();
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
