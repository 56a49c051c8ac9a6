// What the page costs in a browser that draws by software, next to the native show.
//
//     node Benchmarks/page.mjs     after ./web --test, which installs and builds all that it takes
//
// Prints the lines of docs/figures.md: transfer, start, frames a second at 640 x 480, our own work in a frame with a
// drawing that does nothing, seeks, rounds of a song, a film and live sound. The machine must have nothing else to do
// meanwhile.
import { execFileSync } from "node:child_process";
import { readdir, readFile } from "node:fs/promises";
import { join } from "node:path";
import { gzipSync } from "node:zlib";

import { BUILT, openBrowser, openPage, ours } from "../Tests/Web/browser.mjs";

const SECONDS = 6; // of a scene, while its frames are counted
const REPEATS = 5; // of what takes a moment; the median counts

const median = (values) => values.sort((a, b) => a - b)[values.length >> 1];

/** What one visit loads before the first picture, and what comes later. */
async function transfer() {
    const sizes = [];
    for (const entry of await readdir(BUILT, { recursive: true, withFileTypes: true })) {
        if (!entry.isFile()) continue;
        const bytes = await readFile(join(entry.parentPath ?? entry.path, entry.name));
        const packed = /\.(jpg|mp3)$/.test(entry.name) ? bytes : gzipSync(bytes, { level: 9 });
        sizes.push([entry.name, packed.length / 1000]);
    }
    const sum = (wanted) => sizes.filter(([name]) => wanted(name)).reduce((all, [, size]) => all + size, 0);
    const later = ["editor", "film", "quelar.mp3"]; // each when it is asked for, or beside the picture
    const first = sum((name) => !later.some((part) => name.startsWith(part)));
    const parts = later.map((part) => `${sum((name) => name.startsWith(part)).toFixed(0)} kB of ${part}`);
    console.log(`transfer: ${first.toFixed(0)} kB, further ${parts.join(", ")}`);
}

/** From the address to the button, and from the click to the first frame and the first sound. */
async function start(open) {
    const loads = [];
    const firsts = [];
    for (let i = 0; i < REPEATS; i++) {
        const show = await open("");
        await show.page.waitForSelector("#start:enabled");
        loads.push(await show.read(() => performance.now()));
        await show.read(() => {
            addEventListener("click", () => (window.clicked = performance.now()), { capture: true });
            const drawn = () => (window.first ??= performance.now() - window.clicked);
            window.quelar.addEventListener("frame", () => window.clicked && drawn());
        });
        await show.page.click("#start");
        await show.until(() => window.first);
        firsts.push(await show.read(() => window.first));
        await show.close();
    }
    console.log(
        `start: ready ${median(loads).toFixed(0)} ms after the address, first frame ${median(firsts).toFixed(0)} ms after the click`,
    );
}

/** As it plays, with the rest of the frames run and not drawn. */
async function pace(open, scenes) {
    for (const number of [1, 2, 5, 6]) {
        const { name, start: begins } = scenes[number - 1];
        const show = await open(`t=${begins + 1}`);
        await show.page.waitForSelector("#start:enabled");
        await show.page.click("#start");
        await show.shows("playing");
        await show.frames(1);
        const [drawn, passed] = await show.read(async (seconds) => {
            let frames = 0;
            const from = window.quelar.time;
            window.quelar.addEventListener("frame", () => frames++);
            await new Promise((done) => setTimeout(done, 1000 * seconds));
            return [frames, window.quelar.time - from];
        }, SECONDS);
        await show.close();
        console.log(
            `scene ${number} (${name}): ${(drawn / SECONDS).toFixed(1)} frames a second, the show at ${((100 * passed) / SECONDS).toFixed(1)} %`,
        );
    }
}

/**
 * Run by the look-ahead, which draws to nobody: once with all calls to draw answered by nothing, as the native figure
 * has them, once with all that the page's own drawing asks of the processor.
 */
async function work(open) {
    const table = execFileSync(ours("build/bin/frame_bench"), ["3"], { cwd: ours(""), encoding: "utf8" });
    const native = table.match(/^(.+?) +\d+ +[\d.]+ +[\d.]+$/gm).map((row) => Number(row.split(/ +/).at(-2)));
    const show = await open("pause");
    await show.shows("paused");
    const run = (everyFrame) =>
        show.read((drawn) => {
            const { scout, texts, scenes } = window.quelar;
            scout.stop();
            const { show: unseen } = scout;
            unseen.keeping = false;
            unseen.begin(undefined, texts);
            const starts = scenes.map(({ start: begins }) => Math.round((1000 * begins) / unseen.frameMs));
            const times = [...starts.slice(1), unseen.frames - 1].map((end) => {
                const [first, from] = [unseen.frame, performance.now()];
                if (drawn) {
                    while (unseen.frame < end) unseen.goTo(unseen.frame + 1);
                } else {
                    unseen.goTo(end, false);
                }
                return { frames: end - first, time: performance.now() - from };
            });
            times.push({
                frames: times.reduce((all, { frames }) => all + frames, 0),
                time: times.reduce((all, { time }) => all + time, 0),
            });
            return times.map(({ frames, time }) => (1000 * time) / frames);
        }, everyFrame);
    const runs = [];
    for (let i = 0; i < REPEATS; i++) runs.push([await run(false), await run(true)]);
    await show.close();
    native.forEach((here, row) => {
        const [unseen, drawn] = [0, 1].map((kind) => median(runs.map((one) => one[kind][row])));
        const name = row < native.length - 1 ? `scene ${row + 1}` : "show";
        console.log(
            `work, ${name}: ${unseen.toFixed(0)} us a frame, native ${here.toFixed(0)}, ratio ${(unseen / here).toFixed(2)}; with its lists ${drawn.toFixed(0)} us`,
        );
    });
}

/** From the first frame to the last: at once, and when the look-ahead has been everywhere. */
async function seeks(open) {
    const seek = (show, seconds) =>
        show.read(async (to) => {
            const from = performance.now();
            await window.quelar.seek(to);
            return performance.now() - from;
        }, seconds);
    const unexplored = [];
    for (let i = 0; i < REPEATS; i++) {
        const show = await open("pause");
        await show.shows("paused");
        await show.read(() => window.quelar.scout.stop());
        unexplored.push(await seek(show, 103));
        await show.close();
    }
    const show = await open("pause");
    await show.until(() => window.quelar?.scout.done);
    const ways = [];
    for (let i = 0; i < 40; i++) ways.push(await seek(show, i % 2 ? 0.5 + i : 103 - i));
    await show.close();
    console.log(`seek over the whole show: ${median(unexplored).toFixed(0)} ms right after loading;`);
    console.log(
        `    later ${median(ways).toFixed(0)} ms, at most ${Math.max(...ways).toFixed(0)} ms, over forty moments`,
    );
}

/** In a song that has just been chosen: to its last moment at once, and to moments of rounds that have been entered. */
async function rounds(open, folder) {
    const song = join(folder, "song.mp3");
    const track = ["-stream_loop", "2", "-i", ours("data/music/quelar.mp3"), "-t", "300", "-c", "copy"];
    execFileSync("ffmpeg", ["-v", "error", ...track, song]);
    const firsts = [];
    const laters = [];
    for (let i = 0; i < REPEATS; i++) {
        const show = await open("pause");
        await show.shows("paused");
        await (await show.page.$("#file")).uploadFile(song);
        await show.until(() => window.quelar.ownMusic && window.quelar.state === "playing");
        const [first, ...later] = await show.read(async () => {
            window.quelar.pause();
            window.quelar.scout.stop();
            const ways = [];
            for (const to of [299, 250, 207, 298, 220]) {
                const from = performance.now();
                await window.quelar.seek(to);
                ways.push(performance.now() - from);
            }
            return ways;
        });
        firsts.push(first);
        laters.push(...later);
        await show.close();
    }
    console.log(`rounds: to the end of the third in ${median(firsts).toFixed(0)} ms at once;`);
    console.log(
        `    then in it ${median(laters).toFixed(0)} ms, at most ${Math.max(...laters).toFixed(0)} ms`,
    );
}

/** A film of three seconds by the page's button, while the show plays on. */
async function film(open) {
    const [from, to] = [14, 17];
    const prepare = () => void delete window.showSaveFilePicker; // it would ask
    const show = await open("", prepare);
    const { page } = show;
    await (await page.waitForSelector("#start:enabled")).click();
    await show.shows("playing");
    await page.click("#film");
    await page.waitForSelector("#filming input");
    const fill = (fields, ...values) => fields.forEach((field, i) => (field.value = values[i]));
    await page.$$eval("#filming input", fill, from, to);
    const frames = Math.round((to - from) / 0.015);
    const begun = performance.now();
    await page.click("#filming ::-p-text(Film it)");
    await show.until(() => document.querySelector("#filming p").textContent.includes("is there"));
    const seconds = (performance.now() - begun) / 1000;
    await show.close();
    console.log(`film: ${(frames / seconds).toFixed(1)} frames a second beside the playing page`);
}

/** From a beep of the browser's false microphone to the first spike that it lifts, over a scene that has spikes. */
async function live(open) {
    const show = await open("");
    const { page } = show;
    await (await page.waitForSelector("#start:enabled")).click();
    await show.shows("playing");
    const delays = await show.read(async (seconds) => {
        const stream = await navigator.mediaDevices.getUserMedia({ audio: true });
        const captured = new MediaStreamTrackProcessor({ track: stream.getAudioTracks()[0].clone() });
        await window.quelar.listen(stream);
        const isDue = () => window.quelar.time > 13 && window.quelar.time < 13 + seconds;
        let beep = 0; // when it came in, in ms; 0: the last one has been seen
        let quiet = 0; // ms of silence
        const found = [];
        const watch = async () => {
            for await (const data of captured.readable) {
                const now = performance.now();
                const samples = new Float32Array(data.numberOfFrames);
                data.copyTo(samples, { planeIndex: 0, format: "f32-planar" });
                const onset = samples.findIndex((sample) => Math.abs(sample) > 0.02);
                if (onset < 0) {
                    quiet += data.duration / 1000;
                } else {
                    if (quiet > 150) beep = now - (1000 * (samples.length - onset)) / data.sampleRate;
                    quiet = 0;
                }
                data.close();
            }
        };
        watch();
        const { drawing } = window.quelar;
        const { draw } = drawing;
        drawing.draw = (list) => {
            draw.call(drawing, list);
            const points = list.points.items.subarray(0, 70000); // seven numbers each, the second its height
            if (!beep || !list.lines.count || !points.some((value, i) => i % 7 === 1 && value > 0.5)) return;
            if (isDue()) found.push(performance.now() - beep);
            beep = 0;
        };
        while (window.quelar.time < 13 + seconds) await new Promise(requestAnimationFrame);
        return found;
    }, 2 * SECONDS);
    await show.close();
    console.log(
        `live: ${delays.length} beeps, ${median(delays).toFixed(0)} ms to the spike, at most ${Math.max(...delays).toFixed(0)} ms`,
    );
}

const opened = await openBrowser(["--use-fake-device-for-media-stream", "--use-fake-ui-for-media-stream"]);
try {
    const open = (hash, prepare) => openPage({ ...opened, hash, size: "640x480", prepare });
    await transfer();
    await start(open);
    const show = await open("pause");
    await show.shows("paused");
    const scenes = await show.read(() => window.quelar.scenes);
    await show.close();
    await pace(open, scenes);
    await work(open);
    await seeks(open);
    await rounds(open, opened.folder);
    await film(open);
    await live(open);
} finally {
    await opened.close();
}
