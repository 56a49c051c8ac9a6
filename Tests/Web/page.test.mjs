// The page under a visitor's hands: every step is an event of mouse, finger, keyboard or file in a real browser.
import assert from "node:assert/strict";
import { spawn } from "node:child_process";
import { once } from "node:events";
import { mkdtemp, readdir, readFile, rm, utimes, writeFile } from "node:fs/promises";
import { tmpdir } from "node:os";
import { join } from "node:path";
import { after, before, test } from "node:test";
import { fileURLToPath } from "node:url";

import { GLYPHS } from "../../Web/Page/title.js";
import { openBrowser, openPage, serve } from "./browser.mjs";

const FRAME = 0.015; // seconds
const SILENCE = 0.0001; // peak of a sample, from 0 to 1
const SCENES = ["Opening", "Flight", "Greetings", "Fountains", "Waves", "Descent"];

let server, opened, folder;

before(async () => {
    folder = await mkdtemp(join(tmpdir(), "quelar-page-"));
    server = await serve();
    opened = await openBrowser();
    const session = await opened.browser.target().createCDPSession();
    await session.send("Browser.setDownloadBehavior", {
        behavior: "allow",
        downloadPath: folder,
    });
    const { origin } = new URL(server.url);
    await opened.browser
        .defaultBrowserContext()
        .overridePermissions(origin, ["clipboard-read", "clipboard-sanitized-write"]);
});

after(async () => {
    await opened?.close();
    server?.close();
    await rm(folder, { recursive: true, force: true });
});

/** A test on a page of its own, which must stay free of complaints. */
const visit = (name, wishes, steps) =>
    test(name, async () => {
        const show = await openPage({
            browser: opened.browser,
            url: server.url,
            ...wishes,
        });
        try {
            await steps(show);
        } catch (error) {
            await show.close().catch(({ message }) => (error.message += `\nThe page: ${message}`));
            throw error;
        }
        await show.close();
    });

/** Starts the show as a visitor does. */
async function start({ page, shows }) {
    await shows("ready");
    await (await page.waitForSelector("#start:enabled")).click();
    await shows("playing");
}

/** Waits until what comes out of the page is so loud: peaks from 0 to 1. */
const hears = ({ until }, least, most = 1) =>
    until(
        (low, high) => {
            const { analyser } = window.quelar;
            const samples = new Float32Array(analyser?.fftSize ?? 1);
            analyser?.getFloatTimeDomainData(samples);
            const peak = Math.max(...samples.map(Math.abs));
            return peak >= low && peak <= high;
        },
        least,
        most,
    );

/** Waits until the strongest tone that comes out of the page is of so many hertz. */
const hearsTone = ({ until }, hertz) =>
    until((wanted) => {
        const { analyser } = window.quelar;
        if (!analyser) return false;
        const levels = new Float32Array(analyser.frequencyBinCount);
        analyser.getFloatFrequencyData(levels);
        const width = analyser.context.sampleRate / analyser.fftSize;
        const most = Math.max(...levels);
        return most > -60 && Math.abs(levels.indexOf(most) * width - wanted) <= width;
    }, hertz);

/** Waits until the show stands at a time, its frame drawn. */
const stands = ({ until }, seconds) =>
    until((wanted, frame) => Math.abs(window.quelar.time - wanted) <= frame, seconds, FRAME);

/** Waits for a file that the page hands out, whole: the browser renames it last. */
async function handedOut(name, { ticks }) {
    while (!(await readdir(folder)).includes(name)) await ticks(1);
    return readFile(join(folder, name));
}

/** Writes a file that a visitor may have. */
async function owned(name, bytes) {
    const path = join(folder, name);
    await writeFile(path, bytes);
    return path;
}

/** A second of a tone, as a WAV file. */
function tone(hertz, rate = 44100) {
    const samples = Int16Array.from(
        { length: rate },
        (_, i) => 16000 * Math.sin((2 * Math.PI * hertz * i) / rate),
    );
    const head = Buffer.alloc(44);
    head.write("RIFF____WAVEfmt ____________________data");
    const words = {
        4: 36 + samples.byteLength,
        16: 16,
        20: 0x10001,
        24: rate,
        28: 2 * rate,
        32: 0x100002,
        40: samples.byteLength,
    };
    for (const [place, word] of Object.entries(words)) {
        head.writeUInt32LE(word, Number(place));
    }
    return Buffer.concat([head, Buffer.from(samples.buffer)]);
}

/** Drops a file from outside onto the middle of the picture. */
async function drop({ page, place }, path) {
    const [x, y] = await place("#picture");
    const session = await page.createCDPSession();
    const data = { items: [], files: [path], dragOperationsMask: 1 };
    for (const type of ["dragEnter", "dragOver", "drop"]) {
        await session.send("Input.dispatchDragEvent", { type, x, y, data });
    }
}

test("the title has the letters of the show", async () => {
    const font = await readFile(new URL("../../Sources/Objects/Font.cpp", import.meta.url), "utf8");
    const numbers = (text) => text.match(/-?\d+(\.\d+)?/g).map(Number);
    const glyphs = [...font.matchAll(/\{'(\w)',\s*\{(\{.*?\})\},\s*\{([\d, ]+)\}\}/gs)];
    const letters = Object.fromEntries(glyphs.map(([, letter, ...parts]) => [letter, parts.map(numbers)]));
    for (const [letter, { corners, segments }] of Object.entries(GLYPHS)) {
        assert.deepEqual([corners.flat(), segments], letters[letter], letter);
    }
});

visit(
    "before the show there are a still, a title, a warning and one button",
    {},
    async ({ page, read, shows }) => {
        await shows("ready");
        await page.waitForSelector("#start:enabled");
        const seen = await read(() => ({
            still: document.getElementById("still").naturalWidth > 0,
            title: document.querySelector("#title path").getTotalLength() > 20,
            words: document.getElementById("cover").innerText.split("\n").filter(Boolean),
            buttons: [...document.querySelectorAll("button")].filter(
                (button) => !button.closest("[inert], [hidden]"),
            ).length,
        }));
        const words = ["six scenes in lines of light", "PLAY", "Contains flashing light."];
        assert.deepEqual(seen, { still: true, title: true, words, buttons: 1 });
    },
);

visit("one click starts sound and picture; they stop and go on together", {}, async (show) => {
    const { page, shows, read, frames, ticks, time, until, place } = show;
    await start(show);
    await frames(3);
    await hears(show, 0.01);
    await page.keyboard.press("m");
    await hears(show, 0, SILENCE);
    await page.keyboard.press("m");
    await hears(show, 0.01);

    await page.click("#play");
    await shows("paused");
    const [stood, picture] = [await time(), await show.picture()];
    await hears(show, 0, SILENCE);
    await ticks(5);
    assert.deepEqual([await time(), await show.picture()], [stood, picture]);

    await page.keyboard.press(" ");
    await until((last) => window.quelar.time > last, stood);
    await page.mouse.click(...(await place("#canvas")));
    await shows("paused");
    await page.focus("#loudness");
    await page.keyboard.press("Home");
    assert.equal(await read(() => window.quelar.volume), 0);
    await page.keyboard.press("ArrowRight");
    assert.equal(await read(() => window.quelar.volume), 0.05);
    assert.equal(await read(() => window.quelar.muted), false);
});

visit("the timeline is clicked, dragged and stepped along", { hash: "t=100&pause" }, async (show) => {
    const { page, shows, place, until, time, read } = show;
    await shows("paused");
    assert.deepEqual(
        await page.$$eval("#scenes li", (marks) => marks.map((mark) => mark.textContent)),
        SCENES,
    );
    const starts = await read(() => window.quelar.scenes.map(({ start: begins }) => begins));
    const duration = await read(() => window.quelar.duration);

    // a click on each mark leads into its scene
    for (const [scene, begins] of starts.entries()) {
        const [x] = await place(`#scenes li:nth-child(${scene + 1})`, 0);
        const [, y] = await place("#time");
        await page.mouse.click(x + 1, y);
        await until(
            (from, to) => window.quelar.time >= from && window.quelar.time < to,
            begins - 0.3,
            begins + 0.6,
        );
    }

    // while it is dragged the picture follows at once, and it plays on when it is let go
    await page.click("#play");
    await shows("playing");
    await page.mouse.move(...(await place("#time", 0.8)));
    await page.mouse.down();
    await shows("paused");
    for (const share of [0.7, 0.5, 0.3]) {
        await page.mouse.move(...(await place("#time", share)));
        await stands({ until }, await page.$eval("#time", (slider) => Number(slider.value)));
        assert.ok(Math.abs((await time()) / duration - share) < 0.02);
    }
    await page.mouse.up();
    await shows("playing");
    await page.click("#play");
    await shows("paused");

    // keys; those pressed in a burst add up
    const table = [
        ["Home", 0, 1],
        ["ArrowRight", 5, 1],
        ["ArrowRight", 20, 3],
        ["ArrowLeft", 10, 2],
        ["PageUp", starts[1], 1],
        ["PageUp", starts[3], 2],
        ["PageDown", starts[2], 1],
        ["ArrowUp", starts[2] + FRAME, 1],
    ];
    await page.focus("#time");
    for (const [key, seconds, times] of table) {
        await Promise.all(Array.from({ length: times }, () => page.keyboard.press(key)));
        await stands(show, seconds);
    }
});

visit(
    "a link stands still at its frame, which is the one that seeking shows",
    { hash: "t=66.2&seed=7&pause" },
    async (show) => {
        const { page, shows, until, time, follows, picture, read } = show;
        await shows("paused");
        await stands(show, 66.2);
        assert.deepEqual(await read(() => [window.quelar.state === "playing", innerWidth > 0]), [
            false,
            true,
        ]);
        assert.deepEqual(await page.$eval("#canvas", ({ width, height }) => [width, height]), [320, 240]);
        const linked = await picture();
        const moment = await time();

        await page.keyboard.press("Home");
        await stands(show, 0);
        await follows(`t=${moment}&seed=7&pause`);
        await stands(show, moment);
        assert.equal(await picture(), linked);

        // another seed is another show, and the first comes back
        for (const [seed, same] of [
            [8, false],
            [7, true],
        ]) {
            const drawn = show.frames(1);
            await follows(`t=${moment}&seed=${seed}&pause`);
            await drawn;
            await stands(show, moment);
            assert.equal((await picture()) === linked, same, `seed ${seed}`);
        }

        // the link that the page hands out leads to the same frame
        await page.keyboard.press("ArrowLeft");
        await stands(show, moment - 5);
        await page.click("#copy");
        await until(() => document.getElementById("notice").textContent.includes("copied"));
        const copied = new URL(await read(() => navigator.clipboard.readText())).hash.slice(1);
        assert.deepEqual(
            new Set(copied.split("&")),
            new Set([`t=${Number((await time()).toFixed(3))}`, "seed=7", "size=320x240", "pause"]),
        );

        // without &pause it waits for the click, then plays from there
        await follows("t=20&seed=7");
        await stands(show, 20);
    },
);

visit("music of one's own starts the show over, by choice and by drop", { hash: "t=30" }, async (show) => {
    const { page, time, until, read } = show;
    const says = (words) =>
        until((wanted) => document.getElementById("notice").textContent.includes(wanted), words);
    await start(show);
    assert.ok((await time()) >= 30 - FRAME);

    const [chooser] = await Promise.all([page.waitForFileChooser(), page.click("#music")]);
    await chooser.accept([await owned("low.wav", tone(1000))]);
    await says("low.wav now");
    assert.ok((await time()) < 20);
    await hearsTone(show, 1000);

    await drop(show, await owned("high.wav", tone(3000)));
    await says("high.wav now");
    await hearsTone(show, 3000);

    // what is no music is refused in one sentence, and the show goes on
    const told = await time();
    await drop(show, await owned("broken.mp3", Buffer.from("no music at all ".repeat(500))));
    await until(() => /^[A-Z][^.]*\.$/.test(document.getElementById("notice").textContent));
    assert.equal(await read(() => document.documentElement.dataset.show), "playing");
    await until((last) => window.quelar.time > last, told);
});

visit(
    "a shader is seen as it is typed, a bad one marked, and taken back",
    { hash: "t=20&pause" },
    async (show) => {
        const { page, shows, until, picture, read } = show;
        const judged = (words) =>
            until((wanted) => document.getElementById("verdict").textContent.includes(wanted), words);
        await shows("paused");
        const first = await picture();
        await page.click("#look");
        await page.waitForSelector(".cm-content");
        const names = await page.$$eval("[role=tab]", (tabs) => tabs.map((tab) => tab.textContent));
        assert.deepEqual(names, ["pulse.vs", "pulse.ps", "hblur.vs", "hblur.ps", "vblur.vs", "vblur.ps"]);
        const original = await read(() => window.quelar.shaderText("pulse.ps"));
        await page.click("[role=tab]:nth-child(2)");

        // the colours turned round: on screen though the show stands
        const line = original.split("\n").findIndex((text) => text.includes("gl_Color")) + 1;
        await page.click(`.cm-line:nth-child(${line})`);
        await page.keyboard.press("End");
        await page.keyboard.type(" gl_FragColor.rgb = 1.0 - gl_FragColor.rgb;");
        await until((text) => window.quelar.shaderText("pulse.ps") !== text, original);
        await judged("In the picture");
        const turned = await picture();
        assert.notEqual(turned, first);

        // an error: its line is marked, the last good picture stays; its repair takes the mark away
        await page.keyboard.type(" wrong");
        await judged(`Line ${line}:`);
        await page.waitForSelector(`.cm-line:nth-child(${line}) .cm-lintRange-error`);
        assert.equal(await page.$$eval("[role=tab][data-bad]", ([tab]) => tab.textContent), "pulse.ps");
        assert.equal(await picture(), turned);
        for (let left = " wrong".length; left; left--) await page.keyboard.press("Backspace");
        await judged("In the picture");
        assert.equal(await page.$(".cm-lintRange-error, [data-bad]"), null);

        const button = (name) => page.click(`#editor .row ::-p-text(${name})`);
        await button("Download");
        assert.equal(
            (await handedOut("pulse.ps", show)).toString(),
            await read(() => window.quelar.shaderText("pulse.ps")),
        );
        await page.click("#save");
        const png = await handedOut(`quelar-${(await show.time()).toFixed(3)}.png`, show);
        assert.equal(png.toString("latin1", 1, 4), "PNG");
        assert.deepEqual([png.readUInt32BE(16), png.readUInt32BE(20)], [320, 240]);
        await button("Reset");
        await until((text) => window.quelar.shaderText("pulse.ps") === text, original);
        assert.equal(await picture(), first);
        await button("Close");
        assert.ok(await page.$("#editor[hidden]"));
    },
);

visit("a context that is lost comes back with its picture", { hash: "t=25&pause" }, async (show) => {
    const { shows, picture, read, until, page } = show;
    await shows("paused");
    const first = await picture();
    await read(() =>
        (window.lost = document
            .getElementById("canvas")
            .getContext("webgl2")
            .getExtension("WEBGL_lose_context")).loseContext(),
    );
    await until(() => document.getElementById("canvas").getContext("webgl2").isContextLost());
    await read(() => window.lost.restoreContext());
    await until(() => !document.getElementById("canvas").getContext("webgl2").isContextLost());
    await show.ticks(3);
    assert.equal(await picture(), first);
    await page.keyboard.press(" ");
    await shows("playing");
    await show.frames(3);
    // what the browser itself says of it
    show.problems.splice(
        0,
        Infinity,
        ...show.problems.filter((problem) => !problem.includes("CONTEXT_LOST_WEBGL")),
    );
});

visit("a hidden tab waits, and goes on where it was", {}, async (show) => {
    const { page, shows, read, time, frames } = show;
    await start(show);
    await frames(3);
    const other = await opened.browser.newPage();
    await other.bringToFront();
    await page.waitForFunction(() => document.visibilityState === "hidden", {
        polling: 50,
    });
    assert.equal(await read(() => window.quelar.sounding), false);
    const left = await time();
    // from when it is seen again to its first frame no more of the show may pass than of the clock
    const jumps = read(
        (last) =>
            new Promise((done) => {
                let seen = 0;
                document.addEventListener("visibilitychange", () => (seen = performance.now()), {
                    once: true,
                });
                const drawn = () => done(window.quelar.time - last - (performance.now() - seen) / 1000);
                window.quelar.addEventListener("frame", drawn, { once: true });
            }),
        left,
    );
    await read(() => new Promise((done) => setTimeout(done, 2000)));
    assert.equal(await time(), left);
    await page.bringToFront();
    await other.close();
    assert.ok((await jumps) < 1);
    await shows("playing");
});

visit("full screen is left by Escape, and the controls go by themselves", {}, async (show) => {
    const { page, until } = show;
    await start(show);
    for (const enter of [() => page.keyboard.press("f"), () => page.click("#full")]) {
        await enter();
        await until(() => document.fullscreenElement);
        await page.keyboard.press("Escape");
        await until(() => !document.fullscreenElement);
    }
    // what lies under the picture goes after two seconds without a move
    const opacity = (wanted) =>
        until((value) => getComputedStyle(document.getElementById("controls")).opacity === value, wanted);
    await opacity("0");
    await page.mouse.move(300, 300);
    await opacity("1");
    await opacity("0");
    await page.keyboard.press("Tab");
    await opacity("1");
    await show.shows("playing");
});

visit("all of it is reached by keyboard alone, seen and named", {}, async (show) => {
    const { page, shows, read } = show;
    await shows("ready");
    await page.waitForSelector("#start:enabled");
    await page.keyboard.press("Tab");
    await page.keyboard.press("Enter");
    await shows("playing");
    await page.keyboard.press(" ");
    await shows("paused");
    const walk = new Set();
    for (const back of [true, false]) {
        if (back) await page.keyboard.down("Shift");
        for (const seen = new Set(); ;) {
            const [id, outline] = await read(() => {
                const { activeElement } = document;
                return [activeElement.id, getComputedStyle(activeElement).outlineStyle];
            });
            if (seen.has(id)) break; // round, or at the end
            seen.add(id);
            walk.add(id);
            assert.ok(!id || outline === "solid", id);
            await page.keyboard.press("Tab");
        }
        await page.keyboard.up("Shift");
    }
    assert.deepEqual([...walk].filter(Boolean).sort(), [
        "copy",
        "full",
        "look",
        "loudness",
        "music",
        "mute",
        "play",
        "save",
        "time",
    ]);
    const names = [];
    const collect = ({ role, name, children = [] }) => {
        if (["button", "slider"].includes(role)) names.push(`${role} ${name}`);
        children.forEach(collect);
    };
    collect(await page.accessibility.snapshot());
    assert.deepEqual(names, [
        "slider Time",
        "button Play",
        "button Mute",
        "slider Loudness",
        "button Play it with music of your own",
        "button Look inside: the shader texts",
        "button Save this picture",
        "button Copy a link to this moment",
        "button Full screen",
    ]);

    // the texts too, and back out of them
    await page.focus("#look");
    await page.keyboard.press("Enter");
    await page.waitForSelector(".cm-content");
    await page.waitForFunction(() => document.activeElement.matches(".cm-content"));
    await page.keyboard.press("Tab");
    await page.keyboard.press("Enter");
    await page.focus("[role=tab][aria-selected=true]");
    await page.keyboard.press("ArrowRight");
    assert.equal(await read(() => document.activeElement.textContent), "pulse.ps");
});

visit(
    "at any width the picture is as large as fits, and all can be touched",
    { hash: "t=8&pause" },
    async (show) => {
        const { page, shows, read, until, place } = show;
        await shows("paused");
        const looks = () =>
            read(() => {
                const box = (element) => element.getBoundingClientRect();
                const { width, height } = box(document.getElementById("canvas"));
                const stage = box(document.getElementById("stage"));
                const outside = [...document.querySelectorAll("button, input[type=range]")].filter((one) => {
                    const { left, right, top, bottom } = box(one);
                    const seen = one.checkVisibility() && !one.closest("#cover, [role=tablist]");
                    return seen && (left < 0 || top < 0 || right > innerWidth || bottom > innerHeight);
                });
                return {
                    shape: Math.abs(width / height - 4 / 3) < 0.02,
                    fits: Math.abs(width - Math.min(stage.width, (stage.height * 4) / 3)) < 1,
                    scrolls: document.documentElement.scrollWidth > innerWidth,
                    outside: outside.map(({ id, textContent }) => id || textContent),
                };
            });
        const good = { shape: true, fits: true, scrolls: false, outside: [] };
        for (const [width, height] of [
            [3840, 2160],
            [1440, 900],
            [768, 1024],
            [568, 320],
            [320, 568],
        ]) {
            await page.setViewport({ width, height, hasTouch: true });
            await until((wide) => innerWidth === wide && window.quelar?.state === "paused", width);
            assert.deepEqual(await looks(), good, `${width} x ${height}`);
            await page.tap("#look");
            await page.waitForSelector(".cm-content");
            assert.deepEqual(await looks(), good, `${width} x ${height} with the texts`);
            await page.tap("#look");
        }
        await page.tap("#play");
        await shows("playing");
        await until(() => "idle" in document.documentElement.dataset);
        await page.tap("#canvas"); // only brings the controls back
        await until(() => !("idle" in document.documentElement.dataset));
        await shows("playing");
        await page.touchscreen.tap(...(await place("#time", 0.5)));
        await until(() => Math.abs(window.quelar.time / window.quelar.duration - 0.5) < 0.1);
    },
);

visit(
    "without WebGL 2 there are a sentence and the still",
    {
        before: () => {
            const { getContext } = HTMLCanvasElement.prototype;
            HTMLCanvasElement.prototype.getContext = function (kind, ...more) {
                return kind === "webgl2" ? null : getContext.call(this, kind, ...more);
            };
        },
    },
    async ({ page, shows }) => {
        await shows("failed");
        assert.match(await page.$eval("#fault", (fault) => fault.innerText), /^[A-Z][^.]*WebGL 2[^.]*\.$/);
        assert.ok(await page.$eval("#still", (still) => still.checkVisibility() && still.naturalWidth > 0));
        assert.equal(await page.$eval("#start", (button) => button.checkVisibility()), false);
    },
);

visit(
    "without sound it plays silently, with a quiet sign",
    {
        before: () => {
            window.AudioContext = class {
                constructor() {
                    throw new DOMException("There is no sound here.", "NotSupportedError");
                }
            };
        },
    },
    async (show) => {
        await start(show);
        await show.frames(3);
        await show.until(() => window.quelar.time > 0.1);
        assert.ok(await show.page.waitForSelector("#mute[data-refused]"));
    },
);

visit("thirty seeks leave memory where it was", { hash: "t=1&pause" }, async (show) => {
    const { page, shows, place } = show;
    await shows("paused");
    const session = await page.createCDPSession();
    const seek = async (share) => {
        await page.mouse.click(...(await place("#time", share)));
        await stands(show, await page.$eval("#time", (slider) => Number(slider.value)));
    };
    const held = async () => {
        await session.send("HeapProfiler.collectGarbage");
        const { usedSize, backingStorageSize } = await session.send("Runtime.getHeapUsage");
        return usedSize + backingStorageSize;
    };
    for (const share of [0.99, 0.5, 0.05]) await seek(share); // what is kept to go on from is kept now
    const first = await held();
    for (let i = 0; i < 30; i++) await seek(((i * 7) % 30) / 31 + 0.01);
    const grown = (await held()) - first;
    assert.ok(grown < 1 << 20, `${grown} bytes more`);
});

test("a save in any editor is seen in the open page", async () => {
    const program = spawn(process.execPath, [fileURLToPath(new URL("../../Web/serve.js", import.meta.url))], {
        env: { ...process.env, PORT: "0" },
        stdio: ["ignore", "pipe", "inherit"],
    });
    try {
        const [said] = await once(program.stdout, "data");
        const [url] = said.toString().match(/http:\S+/);
        const show = await openPage({ browser: opened.browser, url, hash: "t=20&pause" });
        await show.shows("paused");
        const file = fileURLToPath(new URL("../../data/shaders/hblur.ps", import.meta.url));
        await show.read(() => window.quelar.addEventListener("frame", () => (window.drawn = true)));
        await utimes(file, new Date(), new Date());
        await show.until(() => window.drawn);
        await show.until(() => document.getElementById("notice").textContent === "hblur.ps is read anew.");
        await show.close();
    } finally {
        program.kill();
    }
});

test("loading tells how far it is", async () => {
    const held = await serve({ hold: /\.mp3$/ });
    const show = await openPage({ browser: opened.browser, url: held.url });
    await show.until(() => /^Loading \d+ %$/i.test(document.getElementById("start").innerText));
    assert.equal(await show.read(() => document.documentElement.dataset.show), "loading");
    held.release();
    await show.shows("ready");
    await show.close();
    held.close();
});
