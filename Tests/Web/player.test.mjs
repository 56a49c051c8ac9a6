// What plays the show in a page, tried where a page can go wrong: at its ends, at its edges, and with what visitors
// bring. That its pictures are those of the show, sameness.test.mjs knows.
import assert from "node:assert/strict";
import { readdir, readFile, writeFile } from "node:fs/promises";
import { join } from "node:path";
import { test } from "node:test";

import { openPage, ours, run, shareBrowser, writeTone } from "./browser.mjs";

const FRAME = 0.015; // seconds
const ROUND = 103.215;

const file = (name) => join(shared.folder, name);
const shared = shareBrowser(async () => {
    await writeTone(file("tone.wav"), 440);
    const [quiet, loud, long] = ["-18dB", "0dB", "-8dB"].map((volume) => ["-af", `volume=${volume}`]);
    for (const [name, ...how] of [
        ["quiet.flac", "-t", "20", ...quiet],
        ["loud.flac", "-t", "20", ...loud],
        ["long.flac", "-t", "210", ...long],
    ]) {
        const track = ["-stream_loop", "2", "-i", ours("data/music/quelar.mp3")];
        await run("ffmpeg", ["-v", "error", ...track, ...how, "-sample_fmt", "s16", file(name)]);
    }
});

/** A visit that must stay free of complaints. */
const visit = (name, wishes, steps) =>
    test(name, async () => {
        const show = await openPage({ ...shared, ...wishes });
        await steps(show).catch((error) => show.problems.unshift(error.stack));
        await show.close();
    });

/** Plays as a visitor has it play. */
async function start({ page, shows }) {
    await (await page.waitForSelector("#start:enabled")).click();
    await shows("playing");
}

const seek = ({ read }, seconds) => read((to) => window.quelar.seek(to), seconds);

/** Puts a song in place of the track, and stops. */
async function play({ page, until, read }, name) {
    const former = await read(() => (window.former = window.quelar.sound.buffer) && 1);
    await (await page.$("#file")).uploadFile(file(name));
    await until(
        () => window.quelar.sound.buffer !== window.former && window.quelar.state === "playing",
        former,
    );
    await read(() => window.quelar.pause());
}

visit("from its end it begins again; behind its end is its last frame", {}, async (show) => {
    const { shows, time, page, read, until, picture } = show;
    await start(show);
    await seek(show, 102.9);
    await shows("ended");
    await page.click("#start");
    await shows("playing");
    await until(() => window.quelar.time > 0 && window.quelar.time < 20);
    await read(() => window.quelar.pause());
    await seek(show, 1000);
    assert.ok(Math.abs((await time()) - (ROUND - FRAME)) < 1e-6);
    const last = await picture();
    await seek(show, 30);
    await seek(show, ROUND - FRAME);
    assert.equal(await picture(), last);
});

visit("it is silent from its first sound on where it was told so before, and as soft", {}, async (show) => {
    const { read, frames } = show;
    await show.shows("ready");
    await read(() => Object.assign(window.quelar, { muted: true, volume: 0.25 }));
    await start(show);
    const gain = () => read(() => window.quelar.sound.device.gain.gain.value);
    assert.equal(await gain(), 0);
    await read(() => (window.quelar.muted = false));
    await frames(20);
    assert.ok(Math.abs((await gain()) - 0.25) < 0.01);
});

visit(
    "resized it has the pixels of its place, and is the picture that a start there has",
    { size: "" },
    async (show) => {
        const { page, read, until } = show;
        const extent = () => page.$eval("#canvas", (canvas) => [canvas.width, canvas.height]);
        await show.shows("ready");
        await seek(show, 41);
        const first = [await extent(), await show.picture()];
        for (const [width, height, scale] of [
            [500, 400, 2],
            [800, 700, 1],
        ]) {
            await page.setViewport({ width, height, deviceScaleFactor: scale, hasTouch: true });
            await until(
                (pixels) => document.getElementById("canvas").width === Math.round(pixels * devicePixelRatio),
                await page.$eval("#canvas", (canvas) => canvas.clientWidth),
            );
            await read(() => window.quelar.picture());
        }
        assert.deepEqual([await extent(), await show.picture()], first);
    },
);

visit(
    "frames as they follow each other, and after many starts, are those of a jump",
    { hash: "t=66&pause" },
    async (show) => {
        const { read, shows, picture } = show;
        await shows("paused");
        const jumped = await picture();
        await read(() => {
            const { show: shown } = window.quelar;
            for (let frame = Math.floor(64 / 0.015); frame < 4400; ++frame) shown.goTo(frame); // more and more sparks
        });
        assert.equal(await picture(), jumped);
        await read(() => {
            for (let starts = 0; starts < 300; ++starts) window.quelar.show.start(false);
        });
        assert.equal(await picture(), jumped);
    },
);

const early = () => {
    const { getContext } = HTMLCanvasElement.prototype;
    HTMLCanvasElement.prototype.getContext = function (...wishes) {
        const context = getContext.apply(this, wishes);
        if (wishes[0] !== "webgl2" || this.id !== "canvas" || window.loss) return context;
        window.loss = context.getExtension("WEBGL_lose_context");
        setTimeout(() => window.loss.loseContext(), 0);
        setTimeout(() => window.loss.restoreContext(), 1000);
        return context;
    };
};
const LOST = { prepare: early, hash: "t=24.3&pause", forgiven: /CONTEXT_LOST_WEBGL/ };
visit(
    "a picture lost while it loads comes back; one that stays away is told, and not saved black",
    LOST,
    async (show) => {
        const { read, shows, until, picture } = show;
        await shows("paused");
        await until(() => !window.quelar.drawing.isLost);
        const returned = await picture();
        await read(() => window.loss.loseContext());
        await until(() => window.quelar.drawing.isLost);
        const saved = await read(() =>
            window.quelar.picture().then(
                () => "saved",
                ({ message }) => message,
            ),
        );
        assert.match(saved, /^There is no picture to save: [^.]+\.$/);
        await shows("failed");
        await read(() => window.loss.restoreContext());
        await shows("paused");
        assert.equal(await picture(), returned);
    },
);

visit(
    "each of the glow's small pictures is read to its rim and no farther; faults are told in the author's words",
    { hash: "t=14&pause" },
    async (show) => {
        const { read, shows, png } = show;
        await shows("paused");
        const put = (name, text) => read((...wish) => window.quelar.setShader(...wish), name, text);
        const told = async (name, text) =>
            (await put(name, text)).map(({ line, message }) => `${line}: ${message}`).join();
        const VERTICES = "void main() {\n gl_Position = ftransform();\n";
        for (const [name, text, wanted] of [
            ["pulse.ps", "void main() {\n gl_FragColor = gl_FragColor(gl_Color);\n}", /^2: .*'gl_FragColor'/],
            [
                "hblur.ps",
                "uniform sampler2D map;\nvoid main() {\n gl_FragColor = texture2D(map);\n}",
                /^3: 'texture2D'/,
            ],
            [
                "pulse.ps",
                "void main() {\n vec4 a;\n a = gl_FragCoord + gl_Colour;\n gl_FragColor = a;\n}",
                /^3: .*gl_Colour/,
            ],
            [
                "pulse.vs",
                `${VERTICES} gl_FrontColor = gl_Vertex * gl_NormalMatrix;\n}`,
                /^3: .*gl_NormalMatrix/,
            ],
            ["hblur.vs", `${VERTICES} gl_TexCoord[0] = 2;\n}`, /^3: /],
            ["vblur.ps", "varying vec2 other;\nvoid main() {\n gl_FragColor = other.xyxy;\n}", /other/],
            ["pulse.ps", "void main() {}\n".padEnd(2000, "\n"), /longer than graphics cards take/],
        ]) {
            const said = await told(name, text);
            assert.match(said, wanted, text);
            assert.doesNotMatch(said, /show_|caught_/);
        }
        // all red close by, all green in the haze, nothing anywhere else
        assert.equal(await put("pulse.ps", "void main() {\n gl_FragColor = vec4(0.0);\n}"), null);
        const halves =
            "void main() {\n gl_FragColor = gl_TexCoord[0].s < 0.255 ? vec4(1, 0, 0, 1) : vec4(0, 1, 0, 1);\n}";
        assert.equal(await put("hblur.ps", halves), null);
        await writeFile(file("glow.png"), await png());
        const statistics =
            "%[fx:255*minima.r] %[fx:255*maxima.r] %[fx:255*minima.g] %[fx:255*maxima.g] %[fx:255*maxima.b]";
        const { stdout } = await run("convert", [file("glow.png"), "-format", statistics, "info:"]);
        const [leastRed, mostRed, leastGreen, mostGreen, blue] = stdout.split(" ").map(Number);
        assert.ok(leastRed > 176 && mostRed < 181 && leastGreen > 176 && mostGreen < 181 && blue < 2, stdout);
    },
);

visit(
    "a song goes in rounds to its last sound, each with a seed of its own, heard as loud as the show's track",
    {},
    async (show) => {
        const { read, follows, picture } = show;
        await start(show);
        const gains = [];
        for (const name of ["quiet.flac", "loud.flac", "long.flac"]) {
            await play(show, name);
            gains.push(await read(() => 20 * Math.log10(window.quelar.sound.gain)));
        }
        assert.ok(Math.abs(gains[0] - gains[1] - 18) < 0.1 && Math.abs(gains[1]) < 1.5, `${gains}`);
        const seen = await read(() => [
            window.quelar.duration,
            window.quelar.rounds.map(({ start: begins }) => begins),
        ]);
        assert.deepEqual([Math.round(seen[0]), seen[1]], [210, [0, ROUND, 2 * ROUND]]);
        // the second round is what another seed has, but for what it hears: nothing yet, in the opening
        await seek(show, ROUND + 5);
        const second = await picture();
        await seek(show, 2 * ROUND + 2);
        await seek(show, ROUND + 5);
        assert.equal(await picture(), second);
        await follows("seed=43&t=5&pause");
        await show.until(() => window.quelar.seed === 43 && Math.abs(window.quelar.time - 4.995) < 0.001);
        assert.equal(await picture(), second);
        await read(() => (window.quelar.seek(209.8), window.quelar.play()));
        await show.shows("ended");
    },
);

visit(
    "a sound from outside moves the show until it breaks off; then its own track does",
    {},
    async (show) => {
        const { read, shows, until } = show;
        await start(show);
        await read(async () => {
            const context = new AudioContext();
            const tone = context.createOscillator();
            window.outside = context.createMediaStreamDestination();
            tone.connect(window.outside);
            tone.start();
            await window.quelar.listen(window.outside.stream);
        });
        await until(() => window.quelar.sound.live?.newest.some((sample) => Math.abs(sample) > 0.9));
        await until(() => window.quelar.time > 0.5);
        assert.ok(await read(() => window.quelar.duration === Infinity && !window.quelar.sounding));
        const unplugged = read(
            () => new Promise((done) => window.quelar.addEventListener("unplugged", () => done(1))),
        );
        await read(() => window.outside.stream.getAudioTracks()[0].dispatchEvent(new Event("ended")));
        await unplugged;
        await shows("playing");
        await until(() => !window.quelar.live && window.quelar.sounding && window.quelar.time > 0.1);
    },
);

const noPicker = () => void delete window.showSaveFilePicker;
visit(
    "a film has every frame of the show as it stands, its sound in time; cancelled, nothing of it",
    { prepare: noPicker },
    async (show) => {
        const { page, read, until } = show;
        const [from, count, pip] = [60.99, 24, 61.1];
        const edit = ["gl_Color;", "gl_Color.brga;"];
        const wave = `aevalsrc=gt(t\\,${pip})*sin(6000*t)/2:s=44100:d=70`;
        await run("ffmpeg", ["-v", "error", "-f", "lavfi", "-i", wave, file("pip.wav")]);
        await run("cp", ["-r", ours("data"), file("data")]);
        const text = await readFile(file("data/shaders/pulse.ps"), "utf8");
        await writeFile(file("data/shaders/pulse.ps"), text.replace(...edit));
        const [wishes, ends] = [
            ["--data", file("data"), "--track", file("pip.wav")],
            [from, from + count * FRAME],
        ];
        const range = ["--from", `${ends[0]}`, "--to", `${ends[1]}`];
        const drawn = run("sh", [
            "-c",
            '"$@" - >"$0"',
            file("drawn"),
            ours("build/bin/quelar-record"),
            ...wishes,
            ...range,
        ]);

        await start(show);
        await play(show, "pip.wav");
        await read(
            (...words) => {
                const { quelar } = window;
                quelar.setShader("pulse.ps", quelar.shaderText("pulse.ps").replace(...words));
            },
            ...edit,
        );
        await page.click("#film");
        await page.waitForSelector("#filming input");
        await page.$$eval(
            "#filming input",
            (fields, values) => fields.forEach((field, i) => (field.value = values[i])),
            ends,
        );
        const press = (name) => page.click(`#filming ::-p-text(${name})`);
        const says = (words) =>
            until(
                (wanted) => document.querySelector("#filming [role=status]").textContent.includes(wanted),
                words,
            );
        await press("Film it");
        await says("Frame ");
        await press("Cancel");
        await says("cancelled");
        await press("Film it");
        await says("is there");
        const films = (await readdir(shared.folder)).filter((name) => name.startsWith("quelar"));
        assert.equal(films.length, 1);
        const film = file(films[0]);

        await drawn;
        const compare =
            "[1]scale=out_color_matrix=bt709:out_range=tv,format=yuv420p[b];[0]format=yuv420p[a];[a][b]psnr=f=-";
        const raw = [
            "-f",
            "rawvideo",
            "-pix_fmt",
            "rgb24",
            "-s",
            "640x480",
            "-r",
            "200/3",
            "-i",
            file("drawn"),
        ];
        const measured = await run("ffmpeg", [
            "-v",
            "error",
            "-i",
            film,
            ...raw,
            "-lavfi",
            compare,
            "-f",
            "null",
            "-",
        ]);
        const likeness = [...measured.stdout.matchAll(/psnr_avg:(\S+)/g)].map(([, decibels]) =>
            Number(decibels),
        );
        assert.equal(likeness.length, count);
        assert.ok(Math.min(...likeness) > 35, `${likeness}`);
        const bare = ["-ac", "1", "-ar", "48000", "-f", "f32le", file("heard")];
        await run("ffmpeg", ["-v", "error", "-i", film, ...bare]);
        const heard = await readFile(file("heard"));
        const samples = new Float32Array(heard.buffer, heard.byteOffset, heard.length / 4);
        const first = samples.findIndex((sample) => Math.abs(sample) > 0.1) / 48000;
        assert.ok(Math.abs(from + first - pip) < 0.005, `${first}`);
        assert.ok(Math.abs(samples.length / 48000 - count * FRAME) < 0.02);
    },
);
