// The page plays the very show: its pictures are the recorder's, and the state behind each frame is that of the
// program. What the program and the page do not share is the decoder of the track; where the state is compared,
// the page gets the program's samples as music of its own, and how far its decoder is from that is measured by
// itself.
import assert from "node:assert/strict";
import { writeFile } from "node:fs/promises";
import { join } from "node:path";
import { test } from "node:test";

import { openFirefox, openPage, ours, run, shareBrowser, writeTone } from "./browser.mjs";

const MOMENTS = [1, 9.6, 14, 24.3, 41, 52, 55.3, 61.2, 66.5, 74, 83, 95]; // two of each scene
const FLIGHT = 760; // the frame at which the music begins to move the lattice
const APART = 0.008; // of two pictures seen from afar
const STATE = ours("build/bin/web_state");

const file = (name) => join(shared.folder, name);
const shared = shareBrowser(async () => {
    const decode = `"$0" "$1" | ffmpeg -v error -f s16le -ac 2 -ar 44100 -i - -c:a pcm_f32le "$2"`;
    await run("sh", ["-c", decode, STATE, ours("data/music/quelar.mp3"), file("track.wav")]);
    await writeTone(file("silence.wav"), 0);
});

/** The page, paused at its beginning. */
async function open({ seed = 42, ...wishes }) {
    const shown = await openPage({ ...shared, hash: `pause&seed=${seed}`, ...wishes });
    await shown.shows("paused");
    return shown;
}

/** Puts a track in place of the page's, whose samples are kept, to be heard as loud as it is; and pauses again. */
async function listen({ page, read, shows }, track) {
    await read(() => (window.own = window.quelar.sound.buffer));
    await (await page.$("#file")).uploadFile(file(`${track}.wav`));
    await shows("playing");
    await read(() => {
        window.quelar.pause();
        window.quelar.sound.ownGain = 1;
    });
}

/** How far pictures of the page are from the recorder's, seen from afar: only those that are farther than they may. */
async function apart(shown, moments, seed, size = "640x480") {
    const stills = moments.flatMap((moment) => ["--still", `${moment}`, file(`${moment}.png`)]);
    await run(ours("build/bin/quelar-record"), [
        ...["--data", ours("data"), "--seed", `${seed}`, "--size", size],
        ...stills,
    ]);
    const afar = "-alpha off -resize 40x30! -metric RMSE -compare -format %[distortion] info:".split(" ");
    const distances = {};
    for (const moment of moments) {
        await shown.read((seconds) => window.quelar.seek(seconds), moment);
        await writeFile(file("page.png"), await shown.png());
        const { stdout } = await run("convert", [file("page.png"), file(`${moment}.png`), ...afar]);
        distances[moment] = Number(stdout);
    }
    console.log(distances);
    return Object.entries(distances).filter(([, distance]) => distance > APART);
}

for (const seed of [42, 0]) {
    test(`the same pictures with seed ${seed}`, async () => {
        const shown = await open({ seed, size: "640x480" });
        assert.deepEqual(await apart(shown, MOMENTS, seed), []);
        await shown.close();
    });
}

test("the same pictures on a screen of two pixels a point, with the lines and letters of that size", async () => {
    const shown = await open({ size: "", scale: 2 });
    const [width, height] = await shown.page.$eval("#canvas", (canvas) => [canvas.width, canvas.height]);
    assert.ok(height > 960, `${height}`);
    assert.deepEqual(await apart(shown, [14, 41], 42, `${width}x${height}`), []);
    await shown.close();
});

test("Firefox loads and plays it, and draws the same picture, without a word on its console", async () => {
    const opened = await openFirefox();
    try {
        const shown = await openPage({ ...opened, size: "640x480" });
        await (await shown.page.waitForSelector("#start:enabled")).click();
        await shown.shows("playing");
        await shown.frames(3);
        await shown.read(() => window.quelar.pause());
        assert.deepEqual(await apart(shown, [24.3], 42), []);
        await shown.close();
    } finally {
        await opened.close();
    }
});

/** The state behind each frame, summed up as state.cpp does it. */
async function states({ read }) {
    const frames = await read(() => {
        const { show, texts } = window.quelar;
        let sum = 0;
        let latticeDue = false;
        const add = (numbers) => {
            const words = new Uint32Array(numbers.buffer, numbers.byteOffset, numbers.length);
            for (const word of words) sum = Math.imul(sum ^ word, 16777619) >>> 0;
        };
        const stage = {
            setUniform(_program, _name, value) {
                add(Float32Array.of(value));
                latticeDue = true;
            },
            draw({ points, lines }) {
                if (latticeDue && lines.count) {
                    add(points.items.subarray(0, 70000));
                    latticeDue = false;
                }
            },
            compile: () => "",
            makeProgram: () => "",
        };
        for (const call of ["reset", "makeTexture", "setTarget", "clear", "drawQuad"]) stage[call] = () => {};
        show.engine.picture = stage;
        show.begin(undefined, texts);
        window.stateAt = (frame) => {
            sum = 0;
            show.goTo(frame);
            return sum.toString(16).padStart(8, "0");
        };
        return [...Array(show.frames).keys()];
    });
    const sums = [];
    while (frames.length) {
        sums.push(...(await read((some) => some.map(window.stateAt), frames.splice(0, 200))));
    }
    return sums;
}

test("the same state behind every frame, made of the same samples; of no music another", async () => {
    const native = (await run(STATE, [], { cwd: ours("") })).stdout.trim().split("\n");
    const shown = await open({ size: "64x48" });
    const parting = async () => {
        const sums = await states(shown);
        assert.equal(sums.length, native.length);
        return sums.findIndex((sum, frame) => sum !== native[frame]);
    };
    await listen(shown, "track");
    assert.equal(await parting(), -1);
    // the browser decodes the track in its own way: as long, and nowhere more than a step off
    const [longer, off] = await shown.read(() => {
        const { buffer } = window.quelar.sound;
        const [left, own] = [buffer, window.own].map((track) => track.getChannelData(0));
        const worst = left.reduce((most, sample, i) => Math.max(most, Math.abs(sample - own[i])), 0);
        return [left.length - own.length, 32768 * worst];
    });
    assert.equal(longer, 0);
    assert.ok(off < 1.5, `${off} steps off`);

    await listen(shown, "silence");
    const parted = await parting();
    assert.ok(parted >= FLIGHT && parted < FLIGHT + 10, `parted at ${parted}`);
    await shown.close();
});
