/** Sound frames that are kept: more than the show ever looks at. */
const KEPT = 4096;

const OWN_TRACK = -14; // LUFS, as Platform/song/Loudness.h has it, and the limits of the gain in dB
const MOST = 20;
const SILENCE = -70; // LUFS: nothing below this counts
const SLOWNESS = 3; // seconds in which the gain follows what comes in

/** A sound that comes in from outside, of which the show sees the newest moment; nothing of it is kept or heard. */
export class Live {
    /**
     * @param {MediaStream} stream
     * @param {() => void} onEnd it was unplugged, or taken away
     */
    static async open(stream, onEnd) {
        const context = new AudioContext({ latencyHint: "interactive" });
        await context.audioWorklet.addModule(new URL("listener.js", document.baseURI));
        await context.resume();
        const live = new Live(stream, context);
        const listener = new AudioWorkletNode(context, "listener");
        listener.port.onmessage = ({ data }) => live.take(data);
        context.createMediaStreamSource(stream).connect(listener).connect(context.destination);
        for (const track of stream.getAudioTracks()) track.addEventListener("ended", onEnd);
        return live;
    }

    /**
     * @param {MediaStream} stream
     * @param {AudioContext} context
     */
    constructor(stream, context) {
        this.stream = stream;
        this.context = context;
        this.newest = new Float32Array(KEPT);
        this.loudness = OWN_TRACK;
    }

    get rate() {
        return this.context.sampleRate;
    }

    get gain() {
        return 10 ** (Math.max(-MOST, Math.min(MOST, OWN_TRACK - this.loudness)) / 20);
    }

    /** @param {Float32Array} samples */
    take(samples) {
        this.newest.copyWithin(0, samples.length);
        this.newest.set(samples, KEPT - samples.length);
        const power = samples.reduce((sum, sample) => sum + sample * sample, 0) / samples.length;
        const loudness = 10 * Math.log10(2 * power) - 0.7; // of two sides
        if (loudness < SILENCE) return;
        const share = samples.length / this.rate / SLOWNESS;
        const mean = 10 ** (this.loudness / 10);
        this.loudness = 10 * Math.log10(mean + share * (10 ** (loudness / 10) - mean));
    }

    close() {
        for (const track of this.stream.getTracks()) track.stop();
        this.context.close();
    }
}
