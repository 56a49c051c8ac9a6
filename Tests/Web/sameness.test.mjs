// The page plays the very show: its pictures are the recorder's, and the state behind each frame is that of the
// program. What the program and the page do not share is the decoder of the track; where the state is compared,
// the page gets the program's samples as music of its own, and how far its decoder is from that is measured by
// itself.
import assert from "node:assert/strict";
import { execFile } from "node:child_process";
import { mkdtemp, rm, writeFile } from "node:fs/promises";
import { tmpdir } from "node:os";
import { join } from "node:path";
import { after, before, test } from "node:test";
import { fileURLToPath } from "node:url";
import { promisify } from "node:util";

import { openBrowser, openPage, serve } from "./browser.mjs";

const run = promisify(execFile);
const root = fileURLToPath(new URL("../..", import.meta.url));
const program = (name) => join(root, "build/bin", name);

const MOMENTS = [1, 9.6, 14, 24.3, 41, 52, 55.3, 61.2, 66.5, 74, 83, 95]; // two of each scene
const FLIGHT = 760; // the frame at which the music begins to move the lattice
const APART = 0.015; // of two pictures seen from afar, as in the tests of the picture

let server, opened, folder;

before(async () => {
    folder = await mkdtemp(join(tmpdir(), "quelar-sameness-"));
    server = await serve();
    opened = await openBrowser();
    await run(program("web_state"), ["--wav", join(root, "data/music/quelar.mp3"), file("track.wav")]);
    await writeFile(file("silence.wav"), silence());
});

after(async () => {
    await opened?.close();
    server?.close();
    await rm(folder, { recursive: true, force: true });
});

const file = (name) => join(folder, name);

/** A second of it. */
function silence() {
    const wav = Buffer.alloc(44 + 44100);
    wav.write("RIFF\0\0\0\0WAVEfmt \x10\0\0\0\x01\0\x01\0", "latin1");
    wav.writeUInt32LE(36 + 44100, 4);
    wav.writeUInt32LE(44100, 24);
    wav.writeUInt32LE(44100, 28);
    wav.writeUInt32LE(0x00080001, 32); // a byte each, of 8 bits
    wav.write("data", 36);
    wav.writeUInt32LE(44100, 40);
    return wav.fill(0x80, 44);
}

/** The page, paused at its beginning, with a track in place of its own if one is named. */
async function open(wishes, track) {
    const shown = await openPage({ browser: opened.browser, url: server.url, ...wishes });
    await shown.shows("paused");
    if (track) {
        await (await shown.page.$("#file")).uploadFile(file(track));
        await shown.shows("playing");
        await shown.read(() => window.quelar.pause());
    }
    return shown;
}

/** The recorder's pictures of some moments, by its options. */
async function record(moments, ...options) {
    const stills = moments.map((moment) => ({ moment, picture: file(`${options.join("")}-${moment}.png`) }));
    const wishes = stills.flatMap(({ moment, picture }) => ["--still", String(moment), picture]);
    await run(program("quelar-record"), ["--data", join(root, "data"), ...options, ...wishes]);
    return stills;
}

/** How far the page's picture of a moment is from another, seen from afar. */
async function distance({ read }, moment, picture) {
    const bytes = await read(async (seconds) => {
        await window.quelar.seek(seconds);
        const blob = await window.quelar.picture();
        return [...new Uint8Array(await blob.arrayBuffer())];
    }, moment);
    await writeFile(file("page.png"), Buffer.from(bytes));
    const afar = [file("page.png"), picture, "-alpha", "off", "-resize", "40x30!"];
    const { stdout } = await run("convert", [
        ...afar,
        "-metric",
        "RMSE",
        "-compare",
        "-format",
        "%[distortion]",
        "info:",
    ]);
    return Number(stdout);
}

/** Line widths as most WebGLs have them: lines are drawn as quads then. */
function thinLines() {
    const get = WebGL2RenderingContext.prototype.getParameter;
    WebGL2RenderingContext.prototype.getParameter = function (name) {
        return name === this.ALIASED_LINE_WIDTH_RANGE ? new Float32Array([1, 1]) : get.call(this, name);
    };
}

for (const { name, seed, size, moments = MOMENTS, before: prepared } of [
    { name: "with the usual chance", seed: 42, size: "640x480" },
    { name: "with another chance", seed: 7, size: "640x480" },
    { name: "at half the size", seed: 42, size: "320x240" },
    { name: "at half the size with another chance", seed: 7, size: "320x240" },
    { name: "with lines made of quads", seed: 42, size: "640x480", before: thinLines },
]) {
    test(`the same pictures ${name}`, async () => {
        const [shown, stills] = await Promise.all([
            open({ hash: `pause&seed=${seed}`, size, before: prepared }),
            record(moments, "--size", size, "--seed", String(seed)),
        ]);
        const apart = [];
        for (const { moment, picture } of stills) {
            apart.push([moment, await distance(shown, moment, picture)]);
        }
        console.log(name, Object.fromEntries(apart));
        for (const [moment, distortion] of apart) {
            assert.ok(distortion < APART, `${moment} s: ${distortion} apart`);
        }
        await shown.close();
    });
}

test("another show without the music, from the flight on", async () => {
    const moments = [9.6, 24.3, 83];
    const [shown, stills] = await Promise.all([
        open({ hash: "pause", size: "320x240" }, "silence.wav"),
        record(moments, "--size", "320x240", "--seed", "42"),
    ]);
    const apart = [];
    for (const { moment, picture } of stills) {
        apart.push(await distance(shown, moment, picture));
    }
    assert.ok(apart[0] < APART && apart[1] > APART && apart[2] > APART, apart.join());
    await shown.close();
});

/** The state behind each frame, summed up as state.cpp does it. */
async function states({ read }, seed) {
    await read((chance) => {
        const { show, texts } = window.quelar;
        const sums = [];
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
        show.begin(chance, texts);
        window.sumUp = (frame) => {
            sum = 0;
            show.goTo(frame);
            sums.push(sum.toString(16).padStart(8, "0"));
        };
        window.sums = sums;
    }, seed);
    const frames = await read(() => window.quelar.show.frames);
    for (let from = 0; from < frames; from += 200) {
        await read(
            (first, end) => {
                for (let frame = first; frame < end; ++frame) window.sumUp(frame);
            },
            from,
            Math.min(from + 200, frames),
        );
    }
    return read(() => window.sums);
}

/** The first frame in which two shows differ, or none. */
const parting = (a, b) => {
    assert.equal(a.length, b.length);
    const frame = a.findIndex((sum, i) => sum !== b[i]);
    return frame < 0 ? "none" : frame;
};

test("the same state behind every frame", async () => {
    const { stdout } = await run(program("web_state"), [], { cwd: root });
    const native = stdout.trim().split("\n");
    const shown = await open({ hash: "pause", size: "64x48" }, "track.wav");
    assert.equal(parting(await states(shown), native), "none");
    await shown.close();

    const muted = await open({ hash: "pause", size: "64x48" }, "silence.wav");
    const frame = parting(await states(muted), native);
    assert.ok(frame >= FLIGHT && frame < FLIGHT + 10, `parted at ${frame}`);
    await muted.close();
});

test("the browser's decoder is within a step of ours, sample by sample", async () => {
    const shown = await open({ hash: "pause", size: "64x48" });
    await shown.read(() => {
        window.decoded = window.quelar.sound.left;
    });
    await (await shown.page.$("#file")).uploadFile(file("track.wav"));
    await shown.shows("playing");
    const [lengths, most] = await shown.read(() => {
        window.quelar.pause();
        const ours = window.quelar.sound.left;
        const apart = ours.reduce(
            (worst, sample, i) => Math.max(worst, Math.abs(sample - window.decoded[i])),
            0,
        );
        return [[ours.length, window.decoded.length], apart];
    });
    assert.equal(lengths[0], lengths[1]);
    assert.ok(most <= 1, `${most} apart`);
    await shown.close();
});
