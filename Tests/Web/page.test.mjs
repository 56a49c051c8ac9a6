// The page under a visitor's hands: every step is an event of mouse, finger, keyboard or file in a real browser.
import assert from "node:assert/strict";
import { spawn } from "node:child_process";
import { randomBytes } from "node:crypto";
import { once } from "node:events";
import { readFile, utimes, writeFile } from "node:fs/promises";
import { get } from "node:http";
import { join } from "node:path";
import { test } from "node:test";
import { pathToFileURL } from "node:url";

import { BUILT, ours, shareBrowser } from "./browser.mjs";

const FRAME = 0.015; // seconds

/** What a visitor does and waits for. */
const visitor = ({ page, until, place }) => ({
    /** Waits until the loudest that comes out of the page is a tone from so many hertz to so many; 0 is silence. */
    hears: (lowest, highest = lowest) =>
        until(
            (low, high) => {
                const { analyser } = window.quelar;
                const levels = new Float32Array(analyser?.frequencyBinCount ?? 0);
                analyser?.getFloatFrequencyData(levels);
                const most = Math.max(...levels); // dB
                const bin = analyser?.context.sampleRate / analyser?.fftSize; // Hz
                const tone = most > -60 ? levels.indexOf(most) * bin : 0;
                return high ? tone > low - bin && tone < high + bin : most < -100;
            },
            lowest,
            highest,
        ),
    /** Waits until the page says something on the picture's lower edge. */
    says: (words) =>
        until((wanted) => new RegExp(wanted).test(document.getElementById("notice").textContent), words),
    /** Waits until the frame of a moment is drawn: the last that has begun by then. */
    stands: (seconds) =>
        until(
            (frames) => Math.round(window.quelar.time / 0.015) === Math.floor(frames),
            seconds / FRAME + 1e-6,
        ),
    goesOn: (seconds) => until((last) => window.quelar.time > last, seconds),
    /** Waits for the frame that the timeline's handle is at. */
    followsHandle: () =>
        until(() => Math.abs(window.quelar.time - document.getElementById("time").value) < 0.0151),
    text: (selector) => page.$eval(selector, (one) => one.innerText.replace(/\s+/g, " ")),
    opacity: (wanted) =>
        until((value) => getComputedStyle(document.getElementById("controls")).opacity === value, wanted),
    /** Chooses a file by the button for it. */
    async choose(name) {
        const [chooser] = await Promise.all([page.waitForFileChooser(), page.click("#music")]);
        await chooser.accept([file(name)]);
    },
    /** Drops a file from outside onto the middle of the picture. */
    async drop(name) {
        const [x, y] = await place("#stage");
        const session = await page.createCDPSession();
        const data = { items: [], files: [file(name)], dragOperationsMask: 1 };
        for (const type of ["dragEnter", "dragOver", "drop"]) {
            await session.send("Input.dispatchDragEvent", { type, x, y, data });
        }
    },
});

const { shared, file, ffmpeg, walk, visit } = shareBrowser(
    async ({ browser, url }) => {
        const rights = ["clipboard-read", "clipboard-sanitized-write"];
        await browser.defaultBrowserContext().overridePermissions(new URL(url).origin, rights);
        await ffmpeg("-f lavfi -i sine=1000:duration=60 low.wav");
        await ffmpeg("-f lavfi -i sine=3000:duration=60 high.wav");
        await ffmpeg("-stream_loop 2 -i low.wav -t 130 long.mp3");
        await writeFile(file("broken.mp3"), "no music at all ".repeat(500));
    },
    ["--use-fake-device-for-media-stream"],
    visitor,
);

const watch = () => {
    Object.assign(window, { awake: 0, said: [] });
    const request = async () => (window.awake++, { release: async () => window.awake-- });
    if (navigator.wakeLock) Object.assign(navigator.wakeLock, { request });
    document.addEventListener("DOMContentLoaded", () => {
        const notice = document.getElementById("notice");
        const note = () => notice.textContent && window.said.push(notice.textContent);
        if (notice) new MutationObserver(note).observe(notice, { childList: true });
    });
};
visit("one click plays picture and sound; other music starts over", { prepare: watch }, async (show) => {
    const { page, shows, read, ticks, time, place, picture, until, hears, says, drop, text } = show;
    await page.waitForSelector("#start:enabled");
    const seen = await read(() => ({
        still: document.getElementById("still").naturalWidth > 0,
        title: document.querySelector("#title path").getTotalLength() > 20,
        buttons: [...document.querySelectorAll("main button")].filter((one) => one.checkVisibility()).length,
    }));
    assert.deepEqual(seen, { still: true, title: true, buttons: 1 });
    assert.equal(await text("#cover"), "a show in lines of light PLAY Contains flashing light.");

    // the warning stands until the click, whatever the address says meanwhile
    await show.follows("seed=7");
    await until(() => window.quelar.seed === 7);
    await ticks(3);
    await shows("ready");

    await show.start();
    await hears(20, 20000);
    await until(() => window.awake === 1);
    await page.keyboard.press("m");
    await hears(0);
    await page.waitForSelector("#mute[title='Sound on (M)'][aria-pressed=true]");
    await page.keyboard.press("m");
    await hears(20, 20000);
    await page.waitForSelector("#mute[title='Mute (M)'][aria-pressed=false]");
    await page.click("#play[title='Pause (Space)']");
    await page.waitForSelector("#play[title='Play (Space)']");
    await until(() => window.awake === 0);
    const stood = [await time(), await picture()];
    await hears(0);
    await ticks(5);
    assert.deepEqual([await time(), await picture()], stood);
    await page.keyboard.press(" ");
    await show.goesOn(stood[0]);
    await page.mouse.click(...(await place("#canvas")));
    await shows("paused");
    await page.focus("#loudness");
    for (const [key, loudness] of Object.entries({ Home: 0, ArrowRight: 0.05, End: 1 })) {
        await page.keyboard.press(key);
        const sound = await read(({ volume, muted } = window.quelar) => [volume, muted]);
        assert.deepEqual(sound, [loudness, loudness === 0]);
    }

    // other music starts the show over, chosen, chosen again or dropped; the last wish counts
    for (const share of [0.5, 0.7]) {
        await page.mouse.click(...(await place("#time", share)));
        await show.followsHandle();
        await read(() => window.said.splice(0));
        await show.choose("low.wav");
        await says("low.wav now");
        const said = ["low.wav it is.", "Reading low.wav …", "The music is low.wav now, 1:00 long."];
        assert.deepEqual(await read(() => window.said), said);
        assert.ok((await time()) < 20);
        await hears(1000);
    }
    await drop("long.mp3");
    await drop("high.wav");
    await says("high.wav now");
    await hears(3000);

    // what is no music is refused in one sentence, and the show goes on
    await drop("broken.mp3");
    await says("^[A-Z][^.]*\\.$");
    await hears(3000);
    assert.equal(await page.$("[data-drop]"), null);

    // a song that is longer than the show goes on with its second round
    await drop("long.mp3");
    await says("long.mp3 now, 2:10 long");
    await page.click("#play");
    assert.match(await text("#scenes"), /Descent Opening Flight$/);
    await page.mouse.click(...(await place("#time", 0.85)));
    await until(() => window.quelar.time > 105);
    await page.waitForSelector("#time[aria-valuetext$=' / 2:10, Opening, round 2']");
    assert.match(await text("#there"), /^1:\d\d Opening, round 2$/);
});

visit("the timeline is clicked, dragged and stepped along", { hash: "t=100&pause" }, async (show) => {
    const { page, shows, place, until, time, read, stands } = show;
    await shows("paused");
    assert.equal(await show.text("#scenes"), "Opening Flight Greetings Fountains Waves Descent");
    const [starts, duration] = await read(({ scenes, duration: seconds } = window.quelar) => [
        scenes.map((scene) => scene.start),
        seconds,
    ]);
    for (const [scene, begins] of starts.entries()) {
        const [x] = await place(`#scenes li:nth-child(${scene + 1})`, 0);
        const [, y] = await place("#time");
        await page.mouse.click(x + 1, y); // leads into the scene
        await until((from) => window.quelar.time >= from - 0.3 && window.quelar.time < from + 0.6, begins);
    }

    // while it is dragged the picture follows at once, and it plays on when it is let go
    await page.click("#play");
    await page.mouse.move(...(await place("#time", 0.8)));
    await page.mouse.down();
    await shows("paused");
    for (const share of [0.7, 0.5, 0.3]) {
        await page.mouse.move(...(await place("#time", share)));
        await show.followsHandle();
        assert.ok(Math.abs((await time()) / duration - share) < 0.02);
    }
    await page.mouse.up();
    await shows("playing");
    await page.keyboard.press("k");
    await shows("paused");
    await page.mouse.click(...(await place("#time", 0.5)));
    await show.followsHandle();
    assert.equal(await read(() => window.quelar.state), "paused");

    // keys; those pressed in a burst add up
    for (const [keys, seconds] of [
        ["Home", 0],
        ["ArrowRight ArrowRight ArrowRight", 15],
        ["ArrowLeft ArrowLeft", 5],
        ["PageUp PageUp PageUp", starts[3]],
        ["PageDown", starts[2]],
        [". . . ,", starts[2] + 2 * FRAME],
        ["l l", starts[2] + 2 * FRAME + 20],
        ["j", starts[2] + 2 * FRAME + 10],
        ["7", 0.7 * duration],
        ["End", duration - FRAME],
    ]) {
        await Promise.all(keys.split(" ").map((key) => page.keyboard.press(key)));
        await stands(seconds);
    }
    await page.keyboard.press("?");
    await page.waitForSelector("dialog[open]");
    assert.match(await show.text("dialog"), /J ?L 10 seconds/);
    for (const key of ["3", "Escape", "."]) await page.keyboard.press(key); // the first goes nowhere
    await stands(duration - FRAME);
    assert.equal(await page.$("dialog[open]"), null);

    // what the browser has a key for is left to it
    await read(() => addEventListener("keydown", (event) => (window.taken = event.defaultPrevented)));
    await page.keyboard.down("Control");
    await page.keyboard.press("f");
    await page.keyboard.up("Control");
    assert.deepEqual(await read(() => [window.taken, document.fullscreenElement]), [false, null]);
});

const busy = () => (window.requestIdleCallback = () => 0); // no time to look ahead
const LINKED = { hash: "t=66.2&seed=7&pause", prepare: busy };
visit("a link stands still at its frame, which comes back", LINKED, async (show) => {
    const { page, shows, follows, picture, read, stands, until } = show;
    await shows("paused");
    await stands(66.2);
    assert.deepEqual(await page.$eval("#canvas", ({ width, height }) => [width, height]), [320, 240]);
    const linked = await picture();
    await page.keyboard.press("Home");
    await stands(0);

    // another seed is another show, and the first comes back
    for (const seed of [8, 7]) {
        await follows(`t=66.2&seed=${seed}&pause`);
        await until((wanted) => window.quelar.seed === wanted, seed);
        await stands(66.2);
        assert.equal((await picture()) === linked, seed === 7, `seed ${seed}`);
    }

    // the link that the page hands out leads to the same frame
    await page.keyboard.press("ArrowLeft");
    await stands(61.2);
    await page.click("#copy");
    await show.says("copied");
    const copied = new URL(await read(() => navigator.clipboard.readText())).hash.slice(1);
    assert.deepEqual(copied.split("&").sort(), ["pause", "seed=7", "size=320x240", "t=61.2"]);

    // without &pause it waits for the click, then plays from there
    await follows("t=4.02&seed=9");
    await stands(4.02);
    await page.mouse.click(...(await show.place("#canvas")));
    await shows("playing");
    await until(() => window.quelar.time > 4.1 && window.quelar.time < 40);
});

test("shader texts: seen as they are typed or saved elsewhere, marked, taken back, handed on", async () => {
    const env = { ...process.env, PORT: new URL(shared.url).port }; // which is taken: another one is found
    const server = spawn(process.execPath, [ours("Web/serve.js")], { env });
    const [said] = await once(server.stdout, "data");
    const [url] = said.toString().match(/http:\S+/);
    for (const [path, status] of Object.entries({ "/%": 404, "//": 200, "/%00": 404, "/quelar.wasm": 200 })) {
        const [answer] = await once(get(url, { path }), "response");
        assert.equal(answer.resume().statusCode, status, path);
        if (status === 200) assert.equal(answer.headers["cache-control"], "no-cache");
    }
    const [other] = await once(get(`${url}events`), "response"); // another page, open before

    await walk({ url, hash: "t=20&pause" }, async (show) => {
        const { page, shows, until, picture, read, says } = show;
        const save = async (name) => {
            let drawn = false;
            const told = show.frames(1).then(() => (drawn = true));
            while (!drawn) {
                await utimes(ours(`data/shaders/${name}`), new Date(), new Date());
                await show.ticks(20); // the page may not have asked for saves yet
            }
            await told;
        };
        const judged = (words) => page.waitForSelector(`#verdict::-p-text(${words})`);
        const button = (name) => page.click(`#editor .row ::-p-text(${name})`);
        const tab = (name) => page.click(`[role=tab]::-p-text(${name})`);
        const inForce = (name = "pulse.ps") => read((which) => window.quelar.shaderText(which), name);
        const shown = () => page.$eval(">>> .cm-content", (content) => content.innerText);
        const line = async (number) => {
            await page.click(`>>> .cm-line:nth-child(${number})`);
            await page.keyboard.press("End");
        };
        await shows("paused");
        const first = await picture();
        await save("hblur.ps");
        await says("^hblur.ps is read anew.$");
        const [told] = await once(other, "data", { signal: AbortSignal.timeout(30000) });
        assert.match(String(told), /^data: hblur.ps\n/);
        await page.click("#look");
        await page.waitForSelector(">>> .cm-content");

        // the colours turned round: on screen though the show stands; the show's keys are letters here
        const original = await inForce();
        await tab("pulse.ps");
        const colours = original.split("\n").findIndex((words) => words.includes("gl_Color")) + 1;
        await line(colours);
        await page.keyboard.type(" gl_FragColor.rgb = 1.0 - gl_FragColor.rgb; // 0fm?");
        await until((former) => window.quelar.shaderText("pulse.ps") !== former, original);
        await judged("In the picture");
        const turned = await picture();
        assert.notEqual(turned, first);
        const typed = await shown();
        const nextTab = await page.$("[role=tab]::-p-text(hblur.vs)");

        // an error: its line is marked, the last good picture stays; its repair takes the mark away
        await page.keyboard.press("Enter");
        await page.keyboard.type("wrong");
        await judged(`Line ${colours + 1}:`);
        await page.waitForSelector(`>>> .cm-line:nth-child(${colours + 1}) .cm-lintRange-error`);
        assert.equal(await show.text("[role=tab][data-bad]"), "pulse.ps");
        assert.equal(await picture(), turned);
        for (let left = "\n\twrong".length; left; left--) await page.keyboard.press("Backspace");

        // the text stays while another is looked at, reset, and saved elsewhere; it is taken as it is left
        await nextTab.evaluate((one) => one.click()); // before the pause in the typing that it is compiled in
        await judged("In the picture");
        assert.equal(await page.$("[data-bad]"), null);
        await button("Reset");
        await tab("pulse.ps");
        await save("hblur.vs");
        assert.equal(await shown(), typed);
        assert.equal(await picture(), turned);
        await button("Download");
        const turnedText = await inForce();
        assert.equal((await show.handedOut("pulse.ps")).toString(), turnedText);
        await page.click("#save");
        const png = await show.handedOut(`quelar-${(await show.time()).toFixed(3)}.png`);
        assert.deepEqual(png, await show.png());

        // a link takes it along, which shows after the click and not before; a reset takes it off
        await page.click("#copy");
        await says("moment and look is copied");
        await page.reload();
        await page.waitForSelector("#start:enabled");
        assert.equal(await inForce(), original);
        assert.match(await show.text("#cover"), /look that comes with the link/);
        await show.start();
        await says("look of the link is on");
        await page.keyboard.press("k");
        assert.equal(await inForce(), turnedText);
        await page.click("#look");
        await page.waitForSelector(">>> .cm-content");
        await tab("pulse.ps");
        await button("Reset");
        await until((former) => window.quelar.shaderText("pulse.ps") === former, original);

        // one that is too long for a link is a file, which can be dropped; what does not compile stays off
        await line(1);
        await page.keyboard.sendCharacter(`\n// ${randomBytes(9000).toString("base64")}`);
        await until(() => window.quelar.shaderText("pulse.ps").length > 9000);
        await page.click("#copy");
        await (await page.waitForSelector("#notice button")).click();
        const saved = JSON.parse(await show.handedOut("quelar-look.json"));
        assert.deepEqual(saved, { "pulse.ps": await inForce() });
        const blur = await inForce("vblur.ps");
        await writeFile(file("look.json"), JSON.stringify({ "pulse.ps": original, "vblur.ps": "no shader" }));
        await show.drop("look.json");
        await says("its own vblur.ps: what the file brings no longer");
        assert.deepEqual([await inForce(), await inForce("vblur.ps")], [original, blur]);
    }).finally(() => server.kill());
});

visit("a hidden tab waits; full screen is left by Escape; controls go by themselves", {}, async (show) => {
    const { page, shows, read, time, until, opacity } = show;
    await show.start();
    await show.frames(3);
    for (const before of ["playing", "paused"]) {
        await shows(before);
        const other = await shared.browser.newPage();
        await other.bringToFront();
        await page.waitForFunction(() => document.visibilityState === "hidden", { polling: 50 });
        assert.equal(await read(() => window.quelar.sounding), false);
        const left = await time();
        await read(() => new Promise((done) => setTimeout(done, 1000)));
        assert.equal(await time(), left);
        await page.bringToFront();
        await other.close();
        await show.ticks(3);
        await shows(before);
        await page.keyboard.press("k");
    }

    for (const enter of [() => page.keyboard.press("f"), () => page.click("#full")]) {
        await enter();
        await until(() => document.fullscreenElement);
        await page.keyboard.press("Escape");
        await page.waitForSelector("#full[title='Full screen (F)']");
    }
    // what lies under the picture goes after two seconds without a move, but not from under the keyboard
    await opacity("0");
    await page.mouse.move(300, 300);
    await opacity("1");
    await opacity("0");
    await page.keyboard.press("Tab");
    await opacity("1");
    await page.waitForSelector("[data-idle]");
    await show.frames(20);
    await opacity("1");
    await shows("playing");
});

visit("all of it is reached by keyboard alone, seen and named", {}, async (show) => {
    const { page, shows, read } = show;
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
        "button Listen: live sound moves the show",
        "button Look inside: the shader texts",
        "button Save this picture",
        "button Save a film",
        "button Copy a link to this moment",
        "button Full screen",
        undefined, // past the end, and round
    ]) {
        await page.keyboard.press("Tab");
        const outline = await read(() => getComputedStyle(document.activeElement).outlineStyle);
        const here = focused(await page.accessibility.snapshot());
        assert.deepEqual([here, outline], [stop, stop ? "solid" : "none"]);
    }

    // the texts too, and back out of them
    await page.focus("#look");
    await page.keyboard.press("Enter");
    await page.waitForSelector(">>> .cm-content:focus");
    for (const key of ["Tab", "Enter"]) await page.keyboard.press(key);
    await page.focus("[role=tab][aria-selected=true]");
    await page.keyboard.press("ArrowRight");
    assert.equal(await read(() => document.activeElement.textContent), "pulse.ps");
    await page.keyboard.press("Escape");
    assert.equal(await read(() => document.activeElement.id), "look");
});

visit("at any width the picture fits, and all can be touched", { hash: "t=8&pause" }, async (show) => {
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
    await page.waitForSelector("[data-idle]");
    await page.touchscreen.tap(...(await place("#time", 0.8))); // only brings back what it cannot see
    await until(() => !("idle" in document.documentElement.dataset));
    await show.frames(10);
    assert.ok((await show.time()) < 50);
    await shows("playing");
    await page.touchscreen.tap(...(await place("#time", 0.5)));
    await until(() => Math.abs(window.quelar.time / window.quelar.duration - 0.5) < 0.1);
});

test("what keeps it from starting is one sentence, with a button where trying again may help", async () => {
    const { browser, url } = shared;
    /** Answers once in place of the server where a part of the page is asked for, or breaks the connection. */
    const hinder = (part, answer) => async (page) => {
        let hindered = false;
        await page.setRequestInterception(true);
        page.on("request", (request) => {
            if (hindered || !request.url().endsWith(part)) return request.continue();
            hindered = true;
            return answer ? request.respond(answer) : request.abort();
        });
    };
    const lack = (what) => (page) => page.evaluateOnNewDocument(what);
    const noPicture = () => (HTMLCanvasElement.prototype.getContext = () => null);
    const isPage = { contentType: "text/html", body: "<p>Welcome" };
    const newer = { contentType: "text/javascript", body: "a?.?b" };
    const shut = async (page) => {
        await page.goto(`${url}style.css`);
        await page.setContent(`<iframe sandbox="allow-scripts" src="${url}">`);
    };
    for (const [sentence, again, arrange, address] of [
        [/has no WebGL 2/, false, lack(noPicture)],
        [/has no WebAssembly/, false, lack(() => delete window.WebAssembly)],
        [/part of the page did not arrive/, true, hinder("page.js", { status: 404 })],
        [/too new for this browser/, false, hinder("page.js", newer)],
        [/missing or damaged/, true, hinder("quelar.js", { status: 404 })],
        [/connection broke while quelar.wasm/, true, hinder("quelar.wasm")],
        [/quelar.mp3 is missing/, true, hinder("quelar.mp3", isPage)],
        [/from a web server/, false, () => {}, pathToFileURL(join(BUILT, "index.html")).href],
        [/in a window of its own/, false, shut],
    ]) {
        const page = await browser.newPage();
        await arrange(page);
        if (arrange !== shut) await page.goto(address ?? url);
        const frame = page.frames().at(-1);
        const fault = await frame.waitForSelector("#fault:not(:empty)");
        const said = await fault.evaluate((one) => one.innerText);
        assert.match(said, new RegExp(`^[A-Z].*${sentence.source}.*\\.$`));
        const shown = await frame.$$eval("#still, #start, #retry", (all) =>
            all.filter((one) => one.checkVisibility()).map(({ id }) => id),
        );
        assert.deepEqual(shown, again ? ["still", "retry"] : ["still"], said);
        if (again) {
            await page.click("#retry");
            await page.waitForSelector("#start:enabled");
        }
        await page.close();
    }
});

const noSoundAndLate = () => {
    delete window.AudioContext;
    const arrived = new Promise((arrive) => (window.arrive = arrive));
    const { fetch } = window;
    window.fetch = (path) => (/mp3$/.test(path) ? arrived.then(() => fetch(path)) : fetch(path));
};
const silent = "loading tells how far it is; without sound it plays silently, with a quiet sign";
visit(silent, { prepare: noSoundAndLate }, async (show) => {
    await show.until(() => /^Loading [1-9]\d? %$/i.test(document.getElementById("start").innerText));
    await show.shows("loading");
    await show.read(() => window.arrive());
    await show.start();
    await show.goesOn(0.1);
    await show.page.waitForSelector("#mute[title^='No sound here']");
});

test("in another page it listens to live sound, or says why not, and heeds media keys", async () => {
    const { browser, url } = shared;
    const host = url.replace("127.0.0.1", "localhost");
    const rights = (...granted) =>
        browser.defaultBrowserContext().overridePermissions(new URL(host).origin, granted);
    const page = await browser.newPage();
    await page.evaluateOnNewDocument(() => {
        window.mediaKeys = {};
        navigator.mediaSession.setActionHandler = (key, act) => (window.mediaKeys[key] = act);
    });
    await page.goto(`${host}style.css`);
    const [snippet] = (await readFile(ours("README.md"), "utf8")).match(/<iframe.*?<\/iframe>/s);
    await page.setContent(snippet.replace(/src="[^"]*"/, `src="${url}#size=160x120"`));
    const frame = await (await page.$("iframe")).contentFrame();
    const until = (condition, ...values) => frame.waitForFunction(condition, {}, ...values);
    const says = (words) =>
        until((wanted) => document.getElementById("notice").textContent.includes(wanted), words);
    const state = (wanted) => until((to) => window.quelar.state === to, wanted);
    await (await frame.waitForSelector("#start:enabled")).click();
    await state("playing");
    /** Presses the button, and the first one of the dialog: "Microphone or line in". */
    const listen = async (words) => {
        await frame.focus("#listen");
        await page.keyboard.press("Enter");
        await page.keyboard.press("Enter");
        await says(words);
    };
    await rights();
    await listen("refused: the show goes on with its own track");
    await rights("microphone");
    await listen("Nothing is recorded, and nothing leaves this machine");
    await until(() => window.quelar.sound.live.newest.some((sample) => Math.abs(sample) > 0.1));
    await until(() => document.fullscreenElement && !document.getElementById("timeline").checkVisibility());
    const heard = await frame.evaluateHandle(() => window.quelar.sound.live.stream.getAudioTracks()[0]);
    await heard.evaluate((track) => track.dispatchEvent(new Event("ended")));
    await says("broke off: the show goes on with its own track");
    await until(() => window.quelar.sounding && window.quelar.state === "playing");
    assert.equal(await heard.evaluate((track) => track.readyState), "ended"); // no browser's sign of it stays

    await listen("Nothing is recorded");
    await page.keyboard.press("Enter");
    await says("stopped listening");
    await state("paused");

    const key = (name) => frame.evaluate((pressed) => window.mediaKeys[pressed]({}), name);
    await key("play");
    await state("playing");
    await key("pause");
    await key("nexttrack");
    await until(() => Math.abs(window.quelar.time - window.quelar.scenes[1].start) < 0.016);
    await page.close();
});
