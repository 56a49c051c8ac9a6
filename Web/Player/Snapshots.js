const PAGE = 16384; // bytes

/** Copies of an engine's memory at moments of the show. What two neighbours have in common they share. */
export class Snapshots {
    constructor(engine) {
        this.engine = engine;
        this.clear();
    }

    clear() {
        /** @type {Map<number, {pages: Uint8Array[], stack: number, suspended: number | null}>} */
        this.moments = new Map();
        this.last = -1;
    }

    has(frame) {
        return this.moments.has(frame);
    }

    /** The last moment kept before a frame, -1 if there is none. */
    before(frame) {
        let found = -1;
        for (const kept of this.moments.keys()) {
            if (kept < frame && kept > found) {
                found = kept;
            }
        }
        return found;
    }

    take(frame) {
        const { engine } = this;
        const neighbour = this.moments.get(this.before(frame))?.pages ?? [];
        const memory = engine.HEAPU8;
        const pages = [];
        const end = engine._sbrk(0);
        for (let place = 0; place < end; place += PAGE) {
            const former = neighbour[pages.length];
            const page = memory.subarray(place, place + PAGE);
            pages.push(former && isEqual(former, page) ? former : page.slice());
        }
        this.moments.set(frame, { pages, stack: engine.stackSave(), suspended: engine.Asyncify.currData });
        this.last = Math.max(this.last, frame);
    }

    restore(frame) {
        const { engine } = this;
        const { pages, stack, suspended } = this.moments.get(frame);
        const end = engine._sbrk(0);
        pages.forEach((page, i) => engine.HEAPU8.set(page, i * PAGE));
        engine.HEAPU8.fill(0, pages.length * PAGE, Math.max(end, pages.length * PAGE));
        engine.stackRestore(stack);
        engine.Asyncify.currData = suspended;
        return frame;
    }
}

function isEqual(a, b) {
    const left = new Float64Array(a.buffer, a.byteOffset, PAGE / 8);
    const right = new Float64Array(b.buffer, b.byteOffset, PAGE / 8);
    return left.every((x, i) => Object.is(x, right[i]));
}
