import { wholeNumbers } from "./Sound.js";
import { nextTask } from "./tasks.js";

/** Sound frames that are measured at once, some ms long. */
const PART = 65536;

/**
 * What makes a song as loud as the show is used to; nobody else notices that it is measured.
 * @param {import("./Engine.js").LoadEngine} loadEngine
 * @param {AudioBuffer} song
 */
export async function gainOf(loadEngine, song) {
    const engine = await loadEngine({});
    const loudness = engine._newLoudness(song.sampleRate);
    const place = engine._malloc(4 * PART);
    const part = new Float32Array(PART);
    for (let first = 0; first < song.length; first += PART) {
        const count = Math.min(PART, song.length - first);
        for (const side of [0, 1]) {
            song.copyFromChannel(part, Math.min(side, song.numberOfChannels - 1), first);
            wholeNumbers(part.subarray(0, count), engine.HEAP16, (place >> 1) + side);
        }
        engine._addToLoudness(loudness, place, count);
        await nextTask();
    }
    return engine._gainOf(loudness);
}
