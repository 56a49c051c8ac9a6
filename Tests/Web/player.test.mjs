// What plays the show in a page, tried where a page can go wrong: at its ends, at its edges, and with what visitors
// bring. That its pictures are those of the show, sameness.test.mjs knows.
import assert from "node:assert/strict";
import { readdir, readFile, writeFile } from "node:fs/promises";

import { ours, run, shareBrowser } from "./browser.mjs";

const FRAME = 0.015; // seconds
const ROUND = 103.215;

const { shared, visit, file, ffmpeg } = shareBrowser(async () => {
    await run("cp", ["-r", ours("data"), file("data")]);
    const track = "-stream_loop 2 -i data/music/quelar.mp3 -sample_fmt s16";
    await ffmpeg(`${track} -t 20 -af volume=-18dB quiet.flac`);
    await ffmpeg(`${track} -t 20 loud.flac`);
    await ffmpeg("-f lavfi -i aevalsrc=between(t\\,110\\,123)*sin(600*t)/2:s=44100:d=210 long.flac");
});

const seek = ({ read }, seconds) => read((to) => window.quelar.seek(to), seconds);

/** Puts a song in place of the track, and stops. */
async function play({ page, until, read }, name) {
    await read(() => void (window.former = window.quelar.sound.buffer));
    await (await page.$("#file")).uploadFile(file(name));
    await until(() => window.quelar.sound.buffer !== window.former && window.quelar.state === "playing");
    await read(() => window.quelar.pause());
}

visit("muted it begins without a sound; from its end it begins again", {}, async (show) => {
    const { shows, time, page, read, until, picture } = show;
    await shows("ready");
    await read(() => Object.assign(window.quelar, { muted: true, volume: 0.25 }));
    await show.start();
    assert.equal(await read(() => window.quelar.sound.device.gain.gain.value), 0);
    await read(() => void (window.quelar.muted = false));
    await until(() => Math.abs(window.quelar.sound.device.gain.gain.value - 0.25) < 0.01);

    await seek(show, 102.9);
    await shows("ended");
    await page.click("#start");
    await shows("playing");
    await until(() => window.quelar.time > 0 && window.quelar.time < 20);
    await read(() => window.quelar.pause());
    await seek(show, 1000); // behind its end is its last frame
    assert.ok(Math.abs((await time()) - (ROUND - FRAME)) < 1e-6);
    const last = await picture();
    await seek(show, 30);
    await seek(show, ROUND - FRAME);
    assert.equal(await picture(), last);
});

visit("resized it is as it opens at that size, pixel by pixel", { size: "" }, async (show) => {
    const { page, shows, until, picture } = show;
    const drawn = async () => {
        await shows("ready");
        await seek(show, 41);
        await until(
            (canvas) => canvas.width === Math.round(canvas.clientWidth * devicePixelRatio),
            await page.$("#canvas"),
        );
        return picture();
    };
    await drawn();
    await page.setViewport({ width: 500, height: 700, deviceScaleFactor: 2, hasTouch: true });
    const resized = await drawn();
    await page.reload();
    assert.equal(await drawn(), resized);
});

visit("frame by frame, and started often, it is as after a jump", { hash: "t=66&pause" }, async (show) => {
    const { read, shows, picture } = show;
    await shows("paused");
    const jumped = await picture();
    await read(() => {
        for (let frame = 4267; frame < 4400; ++frame) window.quelar.show.goTo(frame); // more and more sparks
    });
    assert.equal(await picture(), jumped);
    await read(() => {
        for (let starts = 0; starts < 300; ++starts) window.quelar.show.start(false);
    });
    assert.equal(await picture(), jumped);
});

const lostEarly = () => {
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
const LOST = { prepare: lostEarly, hash: "t=24.3&pause", forgiven: /CONTEXT_LOST_WEBGL/ };
visit("a lost picture comes back, also while it loads, and is saved as no black", LOST, async (show) => {
    const { page, read, shows, until, picture } = show;
    await shows("paused");
    await until(() => !window.quelar.drawing.isLost);
    const returned = await picture();
    await read(() => window.loss.loseContext());
    await until(() => window.quelar.drawing.isLost);
    const refused = await read(() => window.quelar.picture().catch(({ message }) => message));
    assert.match(refused, /^There is no picture to save: [^.]+\.$/);
    await page.waitForSelector("[data-show=failed] #retry");
    await page.keyboard.press(" "); // plays nothing on
    await show.ticks(3);
    await read(() => window.loss.restoreContext());
    await shows("paused");
    assert.equal(await picture(), returned);
});

visit("shaders: faults in the author's words, no stray light", { hash: "t=14&pause" }, async (show) => {
    await show.shows("paused");
    const put = (name, text) => show.read((...wish) => window.quelar.setShader(...wish), name, text);
    const main = (...lines) => `void main() {\n${lines.join(";\n")};\n}`;
    for (const [name, text, wanted] of [
        ["pulse.ps", main("gl_FragColor = gl_FragColor(gl_Color)"), /^2: .*'gl_FragColor'/],
        ["hblur.ps", `uniform sampler2D map;\n${main("gl_FragColor = texture2D(map)")}`, /^3: 'texture2D'/],
        ["pulse.vs", main("gl_Position = ftransform()", "gl_FrontColor = gl_Colour"), /^3: .*gl_Colour/],
        ["vblur.ps", `varying vec2 other;\n${main("gl_FragColor = other.xyxy")}`, /other/],
        ["pulse.ps", main().padEnd(2000, "\n"), /longer than graphics cards take/],
    ]) {
        const [{ line, message }] = await put(name, text);
        assert.match(`${line}: ${message}`, wanted);
        assert.doesNotMatch(message, /show_|caught_/);
    }
    // all red close by, all green in the haze, nothing anywhere else
    const halves = "gl_FragColor = gl_TexCoord[0].s < 0.255 ? vec4(1, 0, 0, 1) : vec4(0, 1, 0, 1)";
    assert.equal(await put("pulse.ps", main("gl_FragColor = vec4(0.0)")), null);
    assert.equal(await put("hblur.ps", main(halves)), null);
    const range = (colour) => `%[fx:255*minima.${colour}] %[fx:255*maxima.${colour}] `;
    const statistics = ["-format", range("r") + range("g") + range("b"), "info:"];
    // also when the show starts over, or is another one
    for (const begin of [() => seek(show, 0), () => show.read(() => window.quelar.begin(7))]) {
        await begin();
        await seek(show, 14);
        await writeFile(file("glow.png"), await show.png());
        const { stdout } = await run("convert", [file("glow.png"), ...statistics]);
        const [redFrom, redTo, greenFrom, greenTo, , blue] = stdout.split(" ").map(Number);
        assert.ok(Math.min(redFrom, greenFrom) > 176 && Math.max(redTo, greenTo) < 181 && blue < 2, stdout);
    }
});

visit("a song is heard as loud as the track, and goes in rounds to its last sound", {}, async (show) => {
    const { read, follows, picture } = show;
    await show.start();
    const gains = [];
    for (const name of ["quiet.flac", "loud.flac", "long.flac"]) {
        await play(show, name);
        gains.push(await read(() => 20 * Math.log10(window.quelar.sound.gain)));
    }
    assert.ok(Math.abs(gains[0] - gains[1] - 18) < 0.1 && Math.abs(gains[1]) < 1.5, `${gains}`);
    assert.equal(Math.round(await read(() => window.quelar.duration)), 210);
    const begins = await read(() => window.quelar.rounds.map((round) => round.start));
    assert.deepEqual(begins, [0, ROUND, 2 * ROUND]);
    // the second round hears the song go on ...
    await seek(show, 20);
    const first = await picture();
    await seek(show, ROUND + 20);
    assert.notEqual(await picture(), first);
    // ... and is the next seed's: the solids stand elsewhere
    await seek(show, ROUND + 80);
    const second = await picture();
    await seek(show, 2 * ROUND + 2);
    await seek(show, ROUND + 80);
    assert.equal(await picture(), second);
    await follows("seed=43&t=80&pause");
    await show.until(() => window.quelar.seed === 43 && Math.abs(window.quelar.time - 79.995) < 0.001);
    assert.equal(await picture(), second);
    await read(() => void (window.quelar.seek(209.8), window.quelar.play()));
    await show.shows("ended");
});

const DOWNLOADED = { prepare: () => void delete window.showSaveFilePicker };
visit("a film has every frame as it stands, its sound in time", DOWNLOADED, async (show) => {
    const { page, until } = show;
    const [from, to, pip] = [60.99, 61.35, 61.1]; // seconds
    await ffmpeg(`-f lavfi -i aevalsrc=gt(t\\,${pip})*sin(6000*t)/2:s=44100:d=70 pip.wav`);
    const looked = (await readFile(file("data/shaders/pulse.ps"), "utf8")).replace(
        "gl_Color;",
        "gl_Color.brga;",
    );
    await writeFile(file("data/shaders/pulse.ps"), looked);
    const record = `"$0" --track pip.wav --from ${from} --to ${to} - >drawn`;
    await run("sh", ["-c", record, ours("build/bin/quelar-record")], { cwd: shared.folder });

    await show.start();
    await play(show, "pip.wav");
    await show.read((text) => void window.quelar.setShader("pulse.ps", text), looked);
    await page.click("#film");
    await page.waitForSelector("#filming input");
    const filmed = async (words) => {
        await page.click("#filming ::-p-text(Film it)");
        await until((said) => document.querySelector("#filming p").textContent.includes(said), words);
    };
    await filmed("Frame "); // of the whole song
    await page.click("#filming ::-p-text(Cancel)");
    await page.waitForSelector("#filming ::-p-text(cancelled)");
    const fill = (fields, ...values) => fields.forEach((field, i) => (field.value = values[i]));
    await page.$$eval("#filming input", fill, from, to);
    await filmed("is there");
    const name = await page.$eval("#filming p", (said) => said.textContent.split(" ")[0]);
    await show.handedOut(name);
    // nothing is left of what was cancelled
    assert.deepEqual(
        (await readdir(shared.folder)).filter((left) => left.startsWith("quelar")),
        [name],
    );

    const drawn = "-f rawvideo -pix_fmt rgb24 -s 640x480 -r 200/3 -i drawn";
    const compare =
        "[1]scale=out_color_matrix=bt709:out_range=tv,format=yuv420p[b];[0]format=yuv420p[a];[a][b]psnr=f=-";
    const { stdout } = await ffmpeg(`-i ${name} ${drawn} -lavfi ${compare} -f null -`);
    const likeness = [...stdout.matchAll(/psnr_avg:(\S+)/g)].map((found) => Number(found[1])); // dB
    assert.ok(likeness.length === 24 && Math.min(...likeness) > 35, `${likeness}`);
    await ffmpeg(`-i ${name} -ac 1 -ar 48000 -f f32le heard`);
    const { buffer, byteOffset, length } = await readFile(file("heard"));
    const heard = new Float32Array(buffer, byteOffset, length / 4);
    const first = heard.findIndex((sample) => Math.abs(sample) > 0.1) / 48000;
    assert.ok(Math.abs(from + first - pip) < 0.005, `${first}`);
    assert.ok(Math.abs(heard.length / 48000 - (to - from)) < 0.02);
});
