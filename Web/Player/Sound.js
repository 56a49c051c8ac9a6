/** The rate at which the track is decoded, whatever the machine plays at: sound frames a second. */
const RATE = 44100;

/** After so many ms without a sound the show goes on in silence. */
const PATIENCE = 1000;

/**
 * The track: decoded, played, and read by the show for its spectrum. Where sound is refused there is silence,
 * and the show sees its spectrum all the same.
 */
export class Sound {
    constructor() {
        this.rate = RATE;
        /** @type {AudioBuffer | null} */
        this.buffer = null;
        this.gain = 1; // of what the show hears
        this.samples = new Float32Array(0); // for a moment
        /** @type {{context: AudioContext, gain: GainNode, analyser: AnalyserNode} | null} */
        this.device = null;
        /** @type {AudioBufferSourceNode | null} */
        this.source = null;
        this.wishes = 0; // to play or to stop, so far
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

    /** Sound frames of the track. */
    get length() {
        return this.buffer?.length ?? 0;
    }

    /** Seconds. */
    get duration() {
        return this.buffer?.duration ?? 0;
    }

    /**
     * Takes another track. Rejects if the browser cannot decode it; all then stays as it was.
     * @param {ArrayBuffer} file
     */
    async load(file) {
        const decoder = new OfflineAudioContext(2, 1, RATE);
        const buffer = await decoder.decodeAudioData(file);
        this.stop();
        this.buffer = buffer;
    }

    /**
     * The show's own call, see Engine/page.h. Of all the samples only those that it asks for become whole numbers:
     * a long song is played as soon as it is decoded.
     * @param {number} first
     * @param {number} count
     * @param {Int16Array} memory
     * @param {number} place
     */
    copy(first, count, memory, place) {
        if (this.samples.length !== count) this.samples = new Float32Array(count);
        const before = Math.min(Math.max(0, -first), count);
        this.samples.fill(0);
        if (before < count) this.buffer?.copyFromChannel(this.samples.subarray(before), 0, first + before);
        for (let i = 0; i < count; ++i) {
            memory[place + 2 * i] = Math.max(-32768, Math.min(32767, Math.round(32768 * this.samples[i])));
        }
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
        if (context.state !== "running" || wish !== this.wishes) return;
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

    stop() {
        ++this.wishes;
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
