import {
    AudioSample,
    AudioSampleSource,
    BufferTarget,
    CanvasSource,
    canEncodeAudio,
    canEncodeVideo,
    Mp4OutputFormat,
    Output,
    StreamTarget,
    WebMOutputFormat,
} from "mediabunny";

import { Picture } from "./Picture.js";
import { Show } from "./Show.js";
import { Sound } from "./Sound.js";
import { nextTask } from "./tasks.js";

/** @typedef {import("./Player.js").Player} Player */
/** @typedef {import("./Player.js").Size} Size */

const SIDES = 2;
const SOUND_BITRATE = 192000;

/** Bits a second of the smallest picture; the larger ones need less than they are larger. */
const bitrateOf = (/** @type {Size} */ { width, height }) =>
    Math.round(6e6 * ((width * height) / 307200) ** 0.75);

/**
 * What this browser can make of a picture of that size: MP4 where it can, else WebM.
 * @param {Size} size
 */
export async function kindOfFilm(size) {
    if (!("VideoEncoder" in window)) return undefined;
    const sound = { numberOfChannels: SIDES, sampleRate: Sound.RATE, bitrate: SOUND_BITRATE };
    const hears = async (/** @type {("aac" | "opus")[]} */ ...codecs) => {
        for (const codec of codecs) if (await canEncodeAudio(codec, sound)) return codec;
        return undefined;
    };
    const draws = (/** @type {"avc" | "vp9" | "vp8"} */ codec) =>
        canEncodeVideo(codec, { ...size, bitrate: bitrateOf(size) });
    if (await draws("avc")) {
        const audio = await hears("aac", "opus");
        if (audio) return { ending: "mp4", video: /** @type {const} */ ("avc"), audio };
    }
    const audio = await hears("opus");
    for (const video of /** @type {const} */ (["vp9", "vp8"])) {
        if (audio && (await draws(video))) return { ending: "webm", video, audio };
    }
    return undefined;
}

/**
 * Makes a film of the show as it stands, song, seed and look: every frame, drawn by a show and on a canvas of its own,
 * as fast as the machine can; the page goes on meanwhile. Resolves to the film, or nothing if it went into a file.
 *
 * @param {Player} player
 * @param {object} wishes
 * @param {Size} wishes.size
 * @param {number} wishes.from seconds of the song
 * @param {number} wishes.to
 * @param {NonNullable<Awaited<ReturnType<typeof kindOfFilm>>>} wishes.kind
 * @param {WritableStream} [wishes.file] to write into; what is there of it when all is aborted is for the caller
 * @param {AbortSignal} wishes.signal
 * @param {(done: number, all: number) => void} wishes.onFrame
 * @returns {Promise<Blob | undefined>}
 */
export async function film(player, { size, from, to, kind, file, signal, onFrame }) {
    const canvas = document.createElement("canvas");
    Object.assign(canvas, size);
    const picture = new Picture(canvas, false);
    const sound = new Sound();
    const { buffer, ownGain } = player.sound;
    if (!buffer) throw new Error("There is no sound to film.");
    sound.take(buffer, ownGain);
    const show = await Show.load(player.loadEngine, picture, sound, { print() {} });
    show.keeping = false;
    const texts = new Map(player.texts);
    await picture.prepareFor([...texts.values()]);
    show.begin(player.seed, texts);

    const { frameMs } = show;
    const first = Math.floor((1000 * from) / frameMs + 1e-6);
    const end = Math.min(Math.ceil((1000 * to) / frameMs - 1e-6), player.frames);
    const target = file ? new StreamTarget(file, { chunked: true }) : new BufferTarget();
    const format = kind.ending === "mp4" ? new Mp4OutputFormat() : new WebMOutputFormat();
    const output = new Output({ format, target });
    const frames = new CanvasSource(canvas, {
        codec: kind.video,
        bitrate: bitrateOf(size),
        latencyMode: "quality",
    });
    const samples = new AudioSampleSource({ codec: kind.audio, bitrate: SOUND_BITRATE });
    output.addVideoTrack(frames);
    output.addAudioTrack(samples);
    try {
        await output.start();
        while (!show.approach(first)) await breathe(signal);
        for (let frame = first; frame < end; ++frame) {
            await breathe(signal);
            show.goTo(frame);
            if (picture.isLost) throw new Error("The graphics card has lost the film's picture.");
            await frames.add(((frame - first) * frameMs) / 1000, frameMs / 1000);
            const sample = soundOf(buffer, first * frameMs, frame * frameMs, (frame + 1) * frameMs);
            await samples.add(sample);
            sample.close();
            onFrame(frame + 1 - first, end - first);
        }
        await output.finalize();
        return target instanceof BufferTarget && target.buffer
            ? new Blob([target.buffer], { type: format.mimeType })
            : undefined;
    } catch (error) {
        await output.cancel();
        throw error;
    } finally {
        picture.gl.getExtension("WEBGL_lose_context")?.loseContext();
    }
}

/** @param {AbortSignal} signal */
async function breathe(signal) {
    await nextTask();
    signal.throwIfAborted();
}

/**
 * What sounds from one moment of the song to another, in ms.
 * @param {AudioBuffer} buffer
 * @param {number} start of the film
 * @param {number} from
 * @param {number} to
 */
function soundOf(buffer, start, from, to) {
    const { sampleRate, numberOfChannels } = buffer;
    const place = (/** @type {number} */ ms) => Math.round((ms * sampleRate) / 1000);
    const count = place(to) - place(from);
    const data = new Float32Array(SIDES * count);
    for (let side = 0; side < SIDES && place(from) < buffer.length; ++side) {
        const channel = Math.min(side, numberOfChannels - 1);
        buffer.copyFromChannel(data.subarray(side * count, (side + 1) * count), channel, place(from));
    }
    const timestamp = (place(from) - place(start)) / sampleRate;
    return new AudioSample({ data, format: "f32-planar", numberOfChannels: SIDES, sampleRate, timestamp });
}
