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
        this.buffer = null;
        this.left = new Int16Array(0);
        this.context = null;
        this.source = null;
        this.level = 1;
        this.isMuted = false;
        this.sounding = false;
    }

    /** Sound frames of the track. */
    get length() {
        return this.left.length;
    }

    /**
     * Takes another track. Rejects if the browser cannot decode it; all then stays as it was.
     * @param {ArrayBuffer} file
     */
    async load(file) {
        const decoder = new OfflineAudioContext(2, 1, RATE);
        const buffer = await decoder.decodeAudioData(file);
        const samples = buffer.getChannelData(0);
        const left = new Int16Array(samples.length);
        for (let i = 0; i < samples.length; ++i) {
            left[i] = Math.max(-32768, Math.min(32767, Math.round(samples[i] * 32768)));
        }
        this.stop();
        this.buffer = buffer;
        this.left = left;
    }

    /** The show's own call, see Engine/page.h. */
    copy(first, count, memory, place) {
        for (let i = 0; i < count; ++i) {
            memory[place + 2 * i] = this.left[first + i] ?? 0;
        }
    }

    /**
     * Plays from a moment on, in seconds. Resolves when it is clear whether it sounds.
     * @param {number} from
     */
    async play(from) {
        this.stop();
        if (!this.buffer) {
            return;
        }
        try {
            this.open();
            if (this.context.state !== "running") {
                await Promise.race([
                    this.context.resume(),
                    new Promise((resolve) => setTimeout(resolve, PATIENCE / 2)),
                ]);
            }
        } catch {
            return;
        }
        if (this.context.state !== "running") {
            return;
        }
        this.source = this.context.createBufferSource();
        this.source.buffer = this.buffer;
        this.source.connect(this.gain);
        this.begin = this.context.currentTime;
        this.from = from;
        this.heard = from;
        this.moved = performance.now();
        this.source.start(this.begin, Math.min(from, this.buffer.duration));
        this.sounding = true;
    }

    open() {
        if (this.context) {
            return;
        }
        this.context = new AudioContext();
        this.gain = this.context.createGain();
        this.analyser = this.context.createAnalyser();
        this.gain.connect(this.analyser).connect(this.context.destination);
        this.setGain();
    }

    stop() {
        this.source?.stop();
        this.source?.disconnect();
        this.source = null;
        this.sounding = false;
    }

    /** Gives the sound device back. */
    close() {
        this.stop();
        this.context?.close();
        this.context = null;
    }

    /** What is heard at this moment, in seconds of the track. Never runs backwards. */
    get position() {
        const { context } = this;
        const now = performance.now();
        const stamp = context.getOutputTimestamp?.() ?? {};
        let time = stamp.contextTime + (now - stamp.performanceTime) / 1000;
        const delay = context.currentTime - time;
        if (!(stamp.contextTime > 0 && delay > -0.1 && delay < 1)) {
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

    setGain() {
        if (this.context) {
            this.gain.gain.setTargetAtTime(this.isMuted ? 0 : this.level, this.context.currentTime, 0.01);
        }
    }
}
