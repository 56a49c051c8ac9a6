// The page plays the very show: its pictures are the recorder's, and the state behind each frame is that of the
// program. What the program and the page do not share is the decoder of the track; where the state is compared,
// the page gets the program's samples as music of its own, and how far its decoder is from that is measured by
// itself.
import assert from "node:assert/strict";
import { writeFile } from "node:fs/promises";
import { test } from "node:test";

import { openFirefox, openPage, ours, run, shareBrowser } from "./browser.mjs";

const MOMENTS = [1, 9.6, 14, 24.3, 41, 52, 55.3, 61.2, 66.5, 74, 83, 95]; // two of each scene
const APART = 0.008; // of two pictures seen from afar
const STATE = ours("build/bin/web_state");

const { file, visit } = shareBrowser(async () => {
    const decode = `"$0" "$1" | ffmpeg -v error -f s16le -ac 2 -ar 44100 -i - -c:a pcm_f32le "$2"`;
    await run("sh", ["-c", decode, STATE, ours("data/music/quelar.mp3"), file("track.wav")]);
});

/** How far pictures of the page are from the recorder's, seen from afar: only those that are farther than they may. */
async function apart({ page, read, png }, moments, seed = 42) {
    const size = await page.$eval("#canvas", ({ width, height }) => `${width}x${height}`);
    const stills = moments.flatMap((moment) => ["--still", `${moment}`, file(`${moment}.png`)]);
    const like = ["--data", ours("data"), "--seed", `${seed}`, "--size", size];
    await run(ours("build/bin/quelar-record"), [...like, ...stills]);
    const afar = "-alpha off -resize 40x30! -metric RMSE -compare -format %[distortion] info:".split(" ");
    const distances = {};
    for (const moment of moments) {
        await read((seconds) => window.quelar.seek(seconds), moment);
        await writeFile(file("page.png"), await png());
        const { stdout } = await run("convert", [file("page.png"), file(`${moment}.png`), ...afar]);
        distances[moment] = Number(stdout);
    }
    console.log(distances);
    return Object.entries(distances).filter(([, distance]) => distance > APART);
}

for (const [what, moments, { seed = 42, ...wishes }] of [
    ["in all scenes", MOMENTS, { size: "640x480" }],
    ["by another chance", [95], { size: "640x480", seed: 0 }],
    ["with lines and letters as wide on a screen of two pixels a point", [41], { size: "", scale: 2 }],
]) {
    visit(`the same pictures ${what}`, { ...wishes, hash: `pause&seed=${seed}` }, async (show) => {
        await show.shows("paused");
        assert.deepEqual(await apart(show, moments, seed), []);
    });
}

test("Firefox loads and plays it, and draws the same picture, without a word on its console", async () => {
    const opened = await openFirefox();
    try {
        const show = await openPage({ ...opened, size: "640x480" });
        await show.start();
        await show.frames(3);
        await show.read(() => window.quelar.pause());
        assert.deepEqual(await apart(show, [24.3]), []);
        await show.close();
    } finally {
        await opened.close();
    }
});

/** The state behind each frame, summed up as state.cpp does it. */
async function states({ read }) {
    const frames = await read(() => {
        const { show, texts, scout } = window.quelar;
        let sum = 0;
        let latticeDue = false;
        const add = (numbers) => {
            const words = new Uint32Array(numbers.buffer, numbers.byteOffset, numbers.length);
            for (const word of words) sum = Math.imul(sum ^ word, 16777619) >>> 0;
        };
        show.engine.picture = {
            ...scout.show.engine.picture, // draws nothing
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
        };
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

const SMALL = { size: "64x48", hash: "pause" };
visit("the same state behind every frame, made of the same samples", SMALL, async (show) => {
    const { page, read, shows } = show;
    const program = run(STATE, [], { cwd: ours("") });
    await shows("paused");
    await read(() => (window.own = window.quelar.sound.buffer));
    await (await page.$("#file")).uploadFile(file("track.wav"));
    await shows("playing");
    // the browser decodes the track in its own way: as long, and nowhere more than a step off
    const [longer, off] = await read(() => {
        window.quelar.pause();
        window.quelar.sound.ownGain = 1; // it is the track, heard as loud as it is
        const { buffer } = window.quelar.sound;
        const [left, own] = [buffer, window.own].map((track) => track.getChannelData(0));
        const worst = left.reduce((most, sample, i) => Math.max(most, Math.abs(sample - own[i])), 0);
        return [left.length - own.length, 32768 * worst];
    });
    assert.equal(longer, 0);
    assert.ok(off < 1.5, `${off} steps off`);

    const sums = await states(show);
    const native = (await program).stdout.trim().split("\n");
    const parted = sums.findIndex((sum, frame) => sum !== native[frame]);
    assert.deepEqual([sums.length, parted], [native.length, -1]);
    assert.ok(new Set(sums).size > 4000); // for it moves
});
