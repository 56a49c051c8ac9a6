/** After so many ms without a sound the show goes on in silence. */
const PATIENCE = 1000;

/**
 * Samples as the show reads them, each second place of a memory.
 * @param {Float32Array} samples
 * @param {Int16Array} memory
 * @param {number} place
 */
export function wholeNumbers(samples, memory, place) {
    for (let i = 0; i < samples.length; ++i) {
        memory[place + 2 * i] = Math.max(-32768, Math.min(32767, Math.round(32768 * samples[i])));
    }
}

/**
 * The track: decoded, played, and read by the show for its spectrum. Where sound is refused there is silence,
 * and the show sees its spectrum all the same.
 */
export class Sound {
    /** The rate at which the track is decoded, whatever the machine plays at: sound frames a second. */
    static RATE = 44100;

    constructor() {
        /** @type {AudioBuffer | null} */
        this.buffer = null;
        this.ownGain = 1; // the track's
        /** @type {import("./Live.js").Live | null} */
        this.live = null; // in place of the track
        this.samples = new Float32Array(0); // for a moment
        /** @type {{context: AudioContext, gain: GainNode, analyser: AnalyserNode} | null} */
        this.device = null;
        /** @type {AudioBufferSourceNode | null} */
        this.source = null;
        this.wishes = 0; // to play or to stop, so far
        this.silentAt = -1; // on the device's clock, when it could not play though it was to; else -1
        this.begin = 0; // on the device's clock, in seconds, where the track was ...
        this.from = 0; // ... here
        this.heard = 0;
        this.moved = 0; // ms, when what is heard has last changed
        this.level = 1;
        this.isMuted = false;
    }

    get sounding() {
        return this.source !== null;
    }

    /** Seconds. */
    get duration() {
        return this.buffer?.duration ?? 0;
    }

    /**
     * @param {ArrayBuffer} file
     * @returns {Promise<AudioBuffer>}
     */
    decode(file) {
        return new OfflineAudioContext(2, 1, Sound.RATE).decodeAudioData(file);
    }

    /**
     * Takes another track.
     * @param {AudioBuffer} buffer
     * @param {number} [gain] that makes it as loud as the show is used to
     */
    take(buffer, gain = 1) {
        this.stop();
        this.buffer = buffer;
        this.ownGain = gain;
    }

    // What the show hears, see Engine/page.h.

    /** Sound frames. */
    get length() {
        return this.live ? 2 ** 31 - 1 : (this.buffer?.length ?? 0);
    }

    get rate() {
        return this.live?.rate ?? Sound.RATE;
    }

    get gain() {
        return this.live?.gain ?? this.ownGain;
    }

    /**
     * Of all the samples only those that are asked for become whole numbers: a long song is played as soon as it is
     * decoded.
     * @param {number} first
     * @param {number} count
     * @param {Int16Array} memory
     * @param {number} place
     */
    copy(first, count, memory, place) {
        if (this.live) return wholeNumbers(this.live.newest.subarray(-count), memory, place);
        if (this.samples.length !== count) this.samples = new Float32Array(count);
        const before = Math.min(Math.max(0, -first), count);
        this.samples.fill(0);
        if (before < count) this.buffer?.copyFromChannel(this.samples.subarray(before), 0, first + before);
        wholeNumbers(this.samples, memory, place);
    }

    /**
     * Plays from a moment on, in seconds. Resolves when it is clear whether it sounds.
     * @param {number} from
     */
    async play(from) {
        this.stop();
        const wish = this.wishes;
        if (!this.buffer) return;
        try {
            this.device ??= this.open();
            const { context } = this.device;
            if (context.state !== "running") {
                const late = new Promise((resolve) => setTimeout(resolve, PATIENCE / 2));
                await Promise.race([context.resume(), late]);
            }
        } catch {
            return; // no sound here
        }
        const { context, gain } = this.device;
        if (wish !== this.wishes) return;
        if (context.state !== "running") {
            this.silentAt = context.currentTime;
            return;
        }
        this.source = context.createBufferSource();
        this.source.buffer = this.buffer;
        this.source.connect(gain);
        this.begin = context.currentTime;
        this.from = from;
        this.heard = from;
        this.moved = performance.now();
        this.source.start(this.begin, Math.min(from, this.buffer.duration));
    }

    open() {
        const context = new AudioContext();
        const gain = context.createGain();
        const analyser = context.createAnalyser();
        gain.gain.value = this.isMuted ? 0 : this.level;
        gain.connect(analyser).connect(context.destination);
        return { context, gain, analyser };
    }

    /** Whether it could sound again, after it could not when it was to. */
    get isBack() {
        return this.silentAt >= 0 && (this.device?.context.currentTime ?? 0) > this.silentAt;
    }

    stop() {
        ++this.wishes;
        this.silentAt = -1;
        this.source?.stop();
        this.source?.disconnect();
        this.source = null;
    }

    /** Gives the sound device back. */
    close() {
        this.stop();
        this.device?.context.close();
        this.device = null;
    }

    /** What is heard at this moment, in seconds of the track. Never runs backwards. */
    get position() {
        if (!this.device) return this.heard;
        const { context } = this.device;
        const now = performance.now();
        const { contextTime = 0, performanceTime = 0 } = context.getOutputTimestamp?.() ?? {};
        let time = contextTime + (now - performanceTime) / 1000;
        const delay = context.currentTime - time;
        if (!(contextTime > 0 && delay > -0.1 && delay < 1)) {
            time = context.currentTime - (context.outputLatency || 0);
        }
        const position = this.from + time - this.begin;
        if (position > this.heard) {
            this.heard = position;
            this.moved = now;
        } else if (now - this.moved > PATIENCE) {
            this.stop(); // a device that does not move
            this.silentAt = context.currentTime;
        }
        return this.heard;
    }

    /**
     * @param {number} level
     * @param {boolean} isMuted
     */
    setLevel(level, isMuted) {
        this.level = level;
        this.isMuted = isMuted;
        if (this.device) {
            const { context, gain } = this.device;
            gain.gain.setTargetAtTime(isMuted ? 0 : level, context.currentTime, 0.01); // without a click
        }
    }
}
