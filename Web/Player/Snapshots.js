const PAGE = 16384; // bytes

/**
 * Copies of an engine's memory at moments of the show. What two neighbours have in common they share.
 *
 * @typedef {object} Moment
 * @property {Uint8Array[]} pages
 * @property {number} stack where it ends
 * @property {number | null} suspended where the engine has unwound it to, if it stands still
 */
export class Snapshots {
    constructor() {
        /** @type {Map<number, Moment>} */
        this.moments = new Map();
        this.last = -1;
    }

    /** @param {number} frame */
    has(frame) {
        return this.moments.has(frame);
    }

    /**
     * The last moment kept before a frame, -1 if there is none.
     * @param {number} frame
     */
    before(frame) {
        let found = -1;
        for (const kept of this.moments.keys()) {
            if (kept < frame && kept > found) found = kept;
        }
        return found;
    }

    /**
     * @param {import("./Engine.js").Engine} engine
     * @param {number} frame
     */
    take(engine, frame) {
        const neighbour = this.moments.get(this.before(frame))?.pages ?? [];
        const end = engine._sbrk(0);
        /** @type {Uint8Array[]} */
        const pages = [];
        for (let place = 0; place < end; place += PAGE) {
            const former = neighbour[pages.length];
            const page = engine.HEAPU8.subarray(place, place + PAGE);
            pages.push(former && isEqual(former, page) ? former : page.slice());
        }
        this.moments.set(frame, { pages, stack: engine.stackSave(), suspended: engine.Asyncify.currData });
        this.last = Math.max(this.last, frame);
    }

    /**
     * @param {import("./Engine.js").Engine} engine
     * @param {number} frame one that has been kept
     */
    restore(engine, frame) {
        const { pages, stack, suspended } = /** @type {Moment} */ (this.moments.get(frame));
        pages.forEach((page, i) => engine.HEAPU8.set(page, i * PAGE));
        engine.stackRestore(stack);
        engine.Asyncify.currData = suspended;
    }
}

/**
 * @param {Uint8Array} a
 * @param {Uint8Array} b
 */
function isEqual(a, b) {
    const left = new Uint32Array(a.buffer, a.byteOffset, PAGE / 4);
    const right = new Uint32Array(b.buffer, b.byteOffset, PAGE / 4);
    for (let i = 0; i < left.length; ++i) if (left[i] !== right[i]) return false;
    return true;
}
