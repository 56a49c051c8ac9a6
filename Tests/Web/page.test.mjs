// The page under a visitor's hands: every step is an event of mouse, finger, keyboard or file in a real browser.
import assert from "node:assert/strict";
import { spawn } from "node:child_process";
import { once } from "node:events";
import { readdir, readFile, utimes, writeFile } from "node:fs/promises";
import { join } from "node:path";
import { test } from "node:test";

import { openPage, ours, shareBrowser, writeTone } from "./browser.mjs";

const FRAME = 0.015; // seconds
const SCENES = "Opening Flight Greetings Fountains Waves Descent";

const file = (name) => join(shared.folder, name);
const shared = shareBrowser(async ({ browser, url }) => {
    const rights = ["clipboard-read", "clipboard-sanitized-write"];
    await browser.defaultBrowserContext().overridePermissions(new URL(url).origin, rights);
    await writeTone(file("low.wav"), 1000);
    await writeTone(file("high.wav"), 3000);
    await writeFile(file("broken.mp3"), "no music at all ".repeat(500));
});

/** Walks through a page of its own, which must stay free of complaints. */
async function walk(wishes, steps) {
    const show = await openPage({ ...shared, ...wishes });
    await steps(show).catch((error) => show.problems.unshift(error.stack));
    await show.close();
}
const visit = (name, wishes, steps) => test(name, () => walk(wishes, steps));

/** Starts the show as a visitor does. */
async function start({ page, shows }) {
    await shows("ready");
    await (await page.waitForSelector("#start:enabled")).click();
    await shows("playing");
}

/** Waits until the loudest that comes out of the page is a tone from so many hertz to so many; 0 is silence. */
const hears = ({ until }, lowest, highest = lowest) =>
    until(
        (low, high) => {
            const { analyser } = window.quelar;
            const levels = new Float32Array(analyser?.frequencyBinCount ?? 0);
            analyser?.getFloatFrequencyData(levels);
            const most = Math.max(...levels); // dB
            const place = (hertz) => (hertz * analyser?.fftSize) / analyser?.context.sampleRate;
            const tone = levels.indexOf(most);
            if (!high) return most < -100;
            return most > -60 && tone > place(low) - 1 && tone < place(high) + 1;
        },
        lowest,
        highest,
    );
const hearsMusic = (show) => hears(show, 20, 20000);

/** Waits until the page says something on the picture's lower edge. */
const says = ({ until }, words) =>
    until((wanted) => new RegExp(wanted).test(document.getElementById("notice").textContent), words);

/** Waits until the show stands at a time, its frame drawn. */
const stands = ({ until }, seconds) =>
    until((wanted, frame) => Math.abs(window.quelar.time - wanted) <= frame, seconds, FRAME);

/** Waits until the show has gone on from a time. */
const goesOn = ({ until }, seconds) => until((last) => window.quelar.time > last, seconds);

/** Waits for the frame that the timeline's handle is at. */
const followsHandle = async (show) =>
    stands(show, await show.page.$eval("#time", (slider) => Number(slider.value)));

/** Waits for a file that the page hands out, whole: the browser renames it last. */
async function handedOut(name, { ticks }) {
    for (let left = 3000; left && !(await readdir(shared.folder)).includes(name); left--) await ticks(1);
    return readFile(file(name));
}

/** Drops a file from outside onto the middle of the picture. */
async function drop({ page, place }, name) {
    const [x, y] = await place("#picture");
    const session = await page.createCDPSession();
    const data = { items: [], files: [file(name)], dragOperationsMask: 1 };
    for (const type of ["dragEnter", "dragOver", "drop"]) {
        await session.send("Input.dispatchDragEvent", { type, x, y, data });
    }
}

visit("one click plays picture and sound, other music starts them over", {}, async (show) => {
    const { page, shows, read, frames, ticks, time, place, picture } = show;
    await shows("ready");
    await page.waitForSelector("#start:enabled");
    const seen = await read(() => ({
        still: document.getElementById("still").naturalWidth > 0,
        title: document.querySelector("#title path").getTotalLength() > 20,
        words: document.getElementById("cover").innerText.split("\n").filter(Boolean),
        buttons: [...document.querySelectorAll("button:not([inert] *)")].filter((one) =>
            one.checkVisibility(),
        ).length,
    }));
    const words = ["a show in lines of light", "PLAY", "Contains flashing light."];
    assert.deepEqual(seen, { still: true, title: true, words, buttons: 1 });

    await start(show);
    await frames(3);
    await hearsMusic(show);
    await page.keyboard.press("m");
    await hears(show, 0);
    await page.keyboard.press("m");
    await hearsMusic(show);

    await page.click("#play");
    await shows("paused");
    const stood = [await time(), await picture()];
    await hears(show, 0);
    await ticks(5);
    assert.deepEqual([await time(), await picture()], stood);
    await page.keyboard.press(" ");
    await goesOn(show, stood[0]);
    await page.mouse.click(...(await place("#canvas")));
    await shows("paused");
    await page.focus("#loudness");
    for (const [key, loudness] of Object.entries({ Home: 0, ArrowRight: 0.05, End: 1 })) {
        await page.keyboard.press(key);
        const [volume, muted] = await read(() => [window.quelar.volume, window.quelar.muted]);
        assert.deepEqual([volume, muted], [loudness, loudness === 0]);
    }

    // other music starts the show over, chosen or dropped
    await page.mouse.click(...(await place("#time")));
    await followsHandle(show);
    const [chooser] = await Promise.all([page.waitForFileChooser(), page.click("#music")]);
    await chooser.accept([file("low.wav")]);
    await says(show, "low.wav now");
    assert.ok((await time()) < 20);
    await hears(show, 1000);
    await drop(show, "high.wav");
    await says(show, "high.wav now");
    await hears(show, 3000);

    // what is no music is refused in one sentence, and the show goes on
    await drop(show, "broken.mp3");
    await says(show, "^[A-Z][^.]*\\.$");
    await shows("playing");
    await goesOn(show, await time());
});

visit("the timeline is clicked, dragged and stepped along", { hash: "t=100&pause" }, async (show) => {
    const { page, shows, place, until, time, read } = show;
    await shows("paused");
    assert.equal(await page.$eval("#scenes", (marks) => marks.innerText.replace(/\s+/g, " ")), SCENES);
    const [starts, duration] = await read(({ scenes, duration: seconds } = window.quelar) => [
        scenes.map((scene) => scene.start),
        seconds,
    ]);

    // a click on each mark leads into its scene
    for (const [scene, begins] of starts.entries()) {
        const [x] = await place(`#scenes li:nth-child(${scene + 1})`, 0);
        const [, y] = await place("#time");
        await page.mouse.click(x + 1, y);
        await until((from) => window.quelar.time >= from - 0.3 && window.quelar.time < from + 0.6, begins);
    }

    // while it is dragged the picture follows at once, and it plays on when it is let go
    await page.click("#play");
    await shows("playing");
    await page.mouse.move(...(await place("#time", 0.8)));
    await page.mouse.down();
    await shows("paused");
    for (const share of [0.7, 0.5, 0.3]) {
        await page.mouse.move(...(await place("#time", share)));
        await followsHandle(show);
        assert.ok(Math.abs((await time()) / duration - share) < 0.02);
    }
    await page.mouse.up();
    await shows("playing");
    await page.click("#play");
    await shows("paused");

    // keys; those pressed in a burst add up
    await page.focus("#time");
    for (const [key, seconds, times = 1] of [
        ["Home", 0],
        ["ArrowRight", 5],
        ["ArrowRight", 20, 3],
        ["ArrowLeft", 10, 2],
        ["PageUp", starts[1]],
        ["PageUp", starts[3], 2],
        ["PageDown", starts[2]],
        ["ArrowUp", starts[2] + FRAME],
    ]) {
        await Promise.all(Array.from({ length: times }, () => page.keyboard.press(key)));
        await stands(show, seconds);
    }

    // thirty more seeks leave memory where it was; what is kept to go on from is kept with the first three
    const session = await page.createCDPSession();
    const held = async (seeks) => {
        for (const share of seeks) {
            await page.mouse.click(...(await place("#time", share)));
            await followsHandle(show);
        }
        await session.send("HeapProfiler.collectGarbage");
        const { usedSize, backingStorageSize } = await session.send("Runtime.getHeapUsage");
        return usedSize + backingStorageSize;
    };
    const first = await held([0.99, 0.5, 0.05]);
    const grown = (await held(Array.from({ length: 30 }, (_, i) => ((i * 7) % 30) / 31 + 0.01))) - first;
    assert.ok(grown < 1 << 20, `${grown} bytes more`);
});

const LINKED = {
    hash: "t=66.2&seed=7&pause",
    forgiven: /CONTEXT_LOST_WEBGL/,
    prepare: () => {
        window.requestIdleCallback = () => 0; // too busy to look ahead ...
        delete window.AudioContext; // ... and mute
    },
};
visit("a link stands still at its frame, which comes back", LINKED, async (show) => {
    const { page, shows, time, follows, picture, read } = show;
    await shows("paused");
    await stands(show, 66.2);
    assert.equal(await read(() => window.quelar.state), "paused");
    assert.deepEqual(await page.$eval("#canvas", ({ width, height }) => [width, height]), [320, 240]);
    const linked = await picture();
    const moment = await time();
    await page.keyboard.press("Home");
    await stands(show, 0);

    // another seed is another show, and the first comes back
    const pictureAt = async (seconds, seed) => {
        const drawn = show.frames(1);
        await follows(`t=${seconds}&seed=${seed}&pause`);
        await drawn;
        await stands(show, seconds);
        return picture();
    };
    for (const seed of [7, 8, 7]) {
        assert.equal((await pictureAt(moment, seed)) === linked, seed === 7, `seed ${seed}`);
    }

    // the link that the page hands out leads to the same frame
    await page.keyboard.press("ArrowLeft");
    await stands(show, moment - 5);
    await page.click("#copy");
    await says(show, "copied");
    const copied = new URL(await read(() => navigator.clipboard.readText())).hash.slice(1);
    const words = [`t=${Number((await time()).toFixed(3))}`, "seed=7", "size=320x240", "pause"];
    assert.deepEqual(copied.split("&").sort(), words.sort());

    // without &pause it waits for the click, then plays from there
    await follows("t=3.7&seed=9");
    await stands(show, 3.7);
    await page.mouse.click(...(await show.place("#canvas")));
    await shows("playing");
    await goesOn(show, 4);

    // moments kept while it played are as good as others
    await pictureAt(20, 9);
    const kept = await pictureAt(4.2, 9);
    await pictureAt(4.2, 8);
    assert.equal(await pictureAt(4.2, 9), kept);
    await pictureAt(20, 9);
    await page.keyboard.press("Space");
    await shows("playing");

    // a context that is lost meanwhile, of which the browser itself complains, comes back with all that was in it
    await read(() => {
        window.canvas = document.getElementById("canvas");
        window.loss = window.canvas.getContext("webgl2").getExtension("WEBGL_lose_context");
    });
    for (const [does, event] of [
        ["loseContext", "webglcontextlost"],
        ["restoreContext", "webglcontextrestored"],
    ]) {
        await read(
            (act, outcome) =>
                new Promise((done) => {
                    window.canvas.addEventListener(outcome, () => done(), { once: true });
                    window.loss[act]();
                }),
            does,
            event,
        );
    }
    const played = await read(async () => {
        const { quelar } = window;
        const drawn = new Promise((done) =>
            quelar.addEventListener("frame", () => done(quelar.time), { once: true }),
        );
        const png = await (await quelar.picture()).arrayBuffer();
        return { time: await drawn, png: [...new Uint8Array(png)] };
    });
    await pictureAt(played.time, 9);
    assert.ok(Buffer.from(played.png).equals(await show.png()), `another picture at ${played.time}`);
});

test("a shader is seen as it is saved elsewhere or typed here, a bad one marked, and taken back", async () => {
    const server = spawn(process.execPath, [ours("Web/serve.js")], { env: { ...process.env, PORT: "0" } });
    const [said] = await once(server.stdout, "data");
    const [url] = said.toString().match(/http:\S+/);
    await walk({ url, hash: "t=20&pause" }, async (show) => {
        const { page, shows, until, picture, read } = show;
        const judged = (words) =>
            until((wanted) => document.getElementById("verdict").textContent.includes(wanted), words);
        await shows("paused");
        const first = await picture();
        const drawn = show.frames(1);
        await utimes(ours("data/shaders/hblur.ps"), new Date(), new Date());
        await drawn;
        await says(show, "^hblur.ps is read anew.$");

        await page.click("#look");
        await page.waitForSelector(">>> .cm-content");
        const names = await page.$$eval("[role=tab]", (tabs) => tabs.map((tab) => tab.textContent));
        assert.deepEqual(names, ["pulse.vs", "pulse.ps", "hblur.vs", "hblur.ps", "vblur.vs", "vblur.ps"]);
        const text = () => read(() => window.quelar.shaderText("pulse.ps"));
        const original = await text();
        await page.click("[role=tab]:nth-child(2)");

        // the colours turned round: on screen though the show stands
        const line = original.split("\n").findIndex((words) => words.includes("gl_Color")) + 1;
        await page.click(`>>> .cm-line:nth-child(${line})`);
        await page.keyboard.press("End");
        await page.keyboard.type(" gl_FragColor.rgb = 1.0 - gl_FragColor.rgb;");
        await until((former) => window.quelar.shaderText("pulse.ps") !== former, original);
        await judged("In the picture");
        const turned = await picture();
        assert.notEqual(turned, first);

        // an error: its line is marked, the last good picture stays; its repair takes the mark away
        await page.keyboard.type(" wrong");
        await judged(`Line ${line}:`);
        await page.waitForSelector(`>>> .cm-line:nth-child(${line}) .cm-lintRange-error`);
        assert.equal(await page.$$eval("[role=tab][data-bad]", ([tab]) => tab.textContent), "pulse.ps");
        assert.equal(await picture(), turned);
        for (let left = " wrong".length; left; left--) await page.keyboard.press("Backspace");
        await judged("In the picture");
        assert.equal(await page.$("[data-bad]"), null);

        const button = (name) => page.click(`#editor .row ::-p-text(${name})`);
        await button("Download");
        assert.equal((await handedOut("pulse.ps", show)).toString(), await text());
        await page.click("#save");
        const png = await handedOut(`quelar-${(await show.time()).toFixed(3)}.png`, show);
        assert.deepEqual(png, await show.png());
        assert.deepEqual([png.readUInt32BE(16), png.readUInt32BE(20)], [320, 240]);
        await button("Reset");
        await until((former) => window.quelar.shaderText("pulse.ps") === former, original);
        assert.equal(await picture(), first);
        await button("Close");
        assert.ok(await page.$("#editor[hidden]"));
    }).finally(() => server.kill());
});

visit("a hidden tab waits; full screen is left by Escape; controls go by themselves", {}, async (show) => {
    const { page, shows, read, time, frames, until } = show;
    await start(show);
    await frames(3);
    const other = await shared.browser.newPage();
    await other.bringToFront();
    await page.waitForFunction(() => document.visibilityState === "hidden", { polling: 50 });
    assert.equal(await read(() => window.quelar.sounding), false);
    const left = await time();
    // from when it is seen again to its first frame no more of the show may pass than of the clock
    const jumps = read(async (last) => {
        await new Promise((seen) => document.addEventListener("visibilitychange", seen, { once: true }));
        const since = performance.now();
        await new Promise((drawn) => window.quelar.addEventListener("frame", drawn, { once: true }));
        return window.quelar.time - last - (performance.now() - since) / 1000;
    }, left);
    await read(() => new Promise((done) => setTimeout(done, 2000)));
    assert.equal(await time(), left);
    await page.bringToFront();
    await other.close();
    assert.ok((await jumps) < 1);
    await shows("playing");

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
    await shows("playing");
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
    const focused = ({ role, name, focused: here, children = [] }) =>
        here ? `${role} ${name}` : children.map(focused).find(Boolean);
    for (const stop of [
        "slider Time",
        "button Play",
        "button Mute",
        "slider Loudness",
        "button Play it with music of your own",
        "button Look inside: the shader texts",
        "button Save this picture",
        "button Save a film",
        "button Copy a link to this moment",
        "button Full screen",
        undefined, // past the end, and round
    ]) {
        await page.keyboard.press("Tab");
        assert.equal(focused(await page.accessibility.snapshot()), stop);
        const outline = await read(() => getComputedStyle(document.activeElement).outlineStyle);
        assert.equal(outline, stop ? "solid" : "none", stop);
    }

    // the texts too, and back out of them
    await page.focus("#look");
    await page.keyboard.press("Enter");
    await page.waitForSelector(">>> .cm-content:focus");
    await page.keyboard.press("Tab");
    await page.keyboard.press("Enter");
    await page.focus("[role=tab][aria-selected=true]");
    await page.keyboard.press("ArrowRight");
    assert.equal(await read(() => document.activeElement.textContent), "pulse.ps");
});

const NARROW = { hash: "t=8&pause" };
visit("at any width the picture is as large as fits, and all can be touched", NARROW, async (show) => {
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
    for (const size of ["3840x2160", "1440x900", "768x1024", "568x320", "320x568"]) {
        const [width, height] = size.split("x").map(Number);
        await page.setViewport({ width, height, hasTouch: true });
        await until((wide) => innerWidth === wide && window.quelar?.state === "paused", width);
        assert.deepEqual(await looks(), good, size);
        await page.tap("#look");
        await page.waitForSelector(">>> .cm-content");
        assert.deepEqual(await looks(), good, `${size} with the texts`);
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
});

const noPicture = () => {
    const { getContext } = HTMLCanvasElement.prototype;
    HTMLCanvasElement.prototype.getContext = function (kind, ...more) {
        return kind === "webgl2" ? null : getContext.call(this, kind, ...more);
    };
};
visit(
    "without WebGL 2 there are a sentence and the still",
    { prepare: noPicture },
    async ({ page, shows }) => {
        await shows("refused");
        assert.match(await page.$eval("#fault", (fault) => fault.innerText), /^[A-Z][^.]*WebGL 2[^.]*\.$/);
        assert.ok(await page.$eval("#still", (still) => still.checkVisibility() && still.naturalWidth > 0));
        assert.equal(await page.$eval("#start", (button) => button.checkVisibility()), false);
    },
);

const noSoundAndLate = () => {
    window.AudioContext = class {
        constructor() {
            throw new DOMException("There is no sound here.", "NotSupportedError");
        }
    };
    const arrived = new Promise((arrive) => (window.arrive = arrive));
    const { fetch } = window;
    window.fetch = (path) => (/mp3$/.test(path) ? arrived.then(() => fetch(path)) : fetch(path));
};
const silent = "loading tells how far it is; without sound it plays silently, with a quiet sign";
visit(silent, { prepare: noSoundAndLate }, async (show) => {
    await show.until(() => /^Loading \d+ %$/i.test(document.getElementById("start").innerText));
    assert.equal(await show.read(() => document.documentElement.dataset.show), "loading");
    await show.read(() => window.arrive());
    await start(show);
    await show.frames(3);
    await goesOn(show, 0.1);
    assert.ok(await show.page.waitForSelector("#mute[data-refused]"));
});
