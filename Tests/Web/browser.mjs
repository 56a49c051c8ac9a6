// A real browser, a server for the page on the loopback address, and what every test of it watches over.
import { execFile, spawn } from "node:child_process";
import { createHash } from "node:crypto";
import { once } from "node:events";
import { mkdtemp, readdir, readFile, rm } from "node:fs/promises";
import { createServer } from "node:http";
import { createRequire } from "node:module";
import { tmpdir } from "node:os";
import { extname, join } from "node:path";
import { after, before, test } from "node:test";
import { fileURLToPath } from "node:url";
import { promisify } from "node:util";

const { default: puppeteer } = await import(
    createRequire(new URL("../../Web/package.json", import.meta.url)).resolve("puppeteer-core")
);

/** The path of something in the repository. */
export const ours = (path) => fileURLToPath(new URL(`../../${path}`, import.meta.url));

/** Runs a program to its end: run(NAME, ARGUMENTS). */
export const run = promisify(execFile);

/** Where the page lies; another folder can be tested in its place. */
export const BUILT = process.env.QUELAR_WEB ?? ours("build/web");

const PATIENCE_MS = Number(process.env.QUELAR_PATIENCE_MS ?? 60000); // a busy machine is no fault of the page

const TYPES = {
    ".css": "text/css",
    ".html": "text/html",
    ".js": "text/javascript",
    ".svg": "image/svg+xml",
};

/** A browser, a server for the page, like any other, and a folder for what is downloaded from it. */
async function open(launch) {
    const folder = await mkdtemp(join(tmpdir(), "quelar-page-"));
    const browser = await launch(folder);
    const server = createServer(async ({ url }, answer) => {
        const path = new URL(url, "http://localhost").pathname.replace(/\/$/, "/index.html");
        const bytes = await readFile(join(BUILT, path)).catch(() => undefined);
        const type = TYPES[extname(path)] ?? "application/octet-stream";
        answer.writeHead(bytes ? 200 : 404, { "Content-Type": type, "Content-Length": bytes?.length ?? 0 });
        answer.end(bytes);
    });
    await new Promise((done) => server.listen(0, "127.0.0.1", done));
    const close = async () => {
        await browser.close();
        server.close();
        await rm(folder, { recursive: true, force: true });
    };
    return { browser, folder, close, url: `http://127.0.0.1:${server.address().port}/` };
}

/**
 * The page as it is met in Debian's Chromium, without a window. It draws by the same software OpenGL as the rest of
 * the tests.
 * @param {string[]} [more] options of the browser
 */
export const openBrowser = (more = []) =>
    open((folder) =>
        puppeteer.launch({
            executablePath: process.env.CHROMIUM ?? "/usr/bin/chromium",
            downloadBehavior: { policy: "allow", downloadPath: folder },
            protocolTimeout: PATIENCE_MS,
            args: [
                "--no-sandbox",
                "--disable-dev-shm-usage",
                "--use-gl=angle",
                "--use-angle=gl-egl",
                "--ignore-gpu-blocklist",
                "--disable-component-update",
                "--autoplay-policy=user-gesture-required",
                ...more,
            ],
        }),
    );

/** The page in Debian's Firefox, which draws only where there is a screen: it gets one that nobody sees. */
export const openFirefox = () =>
    open(async (folder) => {
        const options = ["-displayfd", "3", "-screen", "0", "1024x768x24", "-nolisten", "tcp"];
        const screen = spawn("Xvfb", options, { stdio: ["ignore", "ignore", "ignore", "pipe"] });
        process.once("exit", () => screen.kill());
        const [number] = await once(screen.stdio[3], "data");
        for (const tie of [screen, screen.stdio[3]]) tie.unref();
        return puppeteer.launch({
            browser: "firefox",
            executablePath: "/usr/bin/firefox-esr",
            headless: false,
            env: { ...process.env, DISPLAY: `:${String(number).trim()}`, HOME: folder },
            protocolTimeout: PATIENCE_MS,
        });
    });

/**
 * What the tests of a file share, from the first to the last: a browser, a folder, and how they visit the page.
 * @param {(shared: {browser: object, url: string, folder: string}) => Promise<void>} prepare what the tests need
 * @param {string[]} [more] options of the browser
 * @param {(show: object) => object} [abilities] what else visitors do and wait for
 */
export function shareBrowser(prepare, more = [], abilities = () => ({})) {
    const shared = {};
    before(async () => prepare(Object.assign(shared, await openBrowser(more))));
    after(() => shared.close?.());
    /** Walks through a page of its own, which must stay free of complaints. */
    const walk = async (wishes, steps) => {
        const show = await openPage({ ...shared, ...wishes });
        await steps({ ...show, ...abilities(show) }).catch((error) => show.problems.unshift(error.stack));
        await show.close();
    };
    return {
        shared,
        walk,
        visit: (name, wishes, steps) => test(name, () => walk(wishes, steps)),
        file: (name) => join(shared.folder, name),
        /** Runs FFmpeg in the folder, by words that are parted by blanks. */
        ffmpeg: (words) => run("ffmpeg", ["-v", "error", ...words.split(" ")], { cwd: shared.folder }),
    };
}

/**
 * Opens the page and watches over it: `close` fails if it said anything on the console but lines of the show, if
 * an error went uncaught, or if it asked for anything from elsewhere.
 * @param {{browser: object, url: string, folder: string, hash?: string, size?: string, scale?: number, prepare?: Function,
 *     forgiven?: RegExp}} wishes `size` of the canvas, small as the drawing is done by software, or none, so that it
 *     has as many pixels as it is large, `scale` to each side of a point; `prepare` runs in the page ahead of its own
 *     scripts; `forgiven` is what may be said on the console
 */
export async function openPage({
    browser,
    url,
    folder,
    hash = "",
    size = "320x240",
    scale = 1,
    prepare,
    forgiven,
}) {
    const page = await browser.newPage();
    const problems = [];
    page.setDefaultTimeout(PATIENCE_MS);
    page.on("console", (said) => {
        const spoken = `${said.type()}: ${said.text()}`;
        if (/^(warn|error)/.test(spoken) && !forgiven?.test(said.text())) problems.push(spoken);
    });
    page.on("pageerror", ({ message }) => problems.push(`uncaught: ${message}`));
    page.on("request", (request) => {
        const asked = request.url();
        if (!/^(blob|data):/.test(asked) && !asked.startsWith(url)) problems.push(`asks ${asked}`);
    });
    if (prepare) await page.evaluateOnNewDocument(prepare);
    const hasTouch = /chrom/i.test(await browser.version()); // Firefox cannot pretend
    await page.setViewport({ width: 800, height: 700, hasTouch, deviceScaleFactor: scale });
    await page.goto(`${url}#${hash}${size && `&size=${size}`}`);

    const read = page.evaluate.bind(page);
    /** Waits until a function of the page gives true. */
    const until = (condition, ...values) => page.waitForFunction(condition, { polling: "raf" }, ...values);
    /** Waits until the document says that the show is loading, ready, playing, paused, ended or failed. */
    const shows = (state) => until((wanted) => document.documentElement.dataset.show === wanted, state);
    /** Waits for so many frames of the browser's, whether the show draws or not. */
    const ticks = (count) =>
        read(async (left) => {
            while (left--) await new Promise(requestAnimationFrame);
        }, count);
    const png = async () =>
        Buffer.from(
            await read(async () => [...new Uint8Array(await (await window.quelar.picture()).arrayBuffer())]),
        );
    return {
        page,
        problems,
        read,
        until,
        shows,
        /** Plays as a visitor has it play. */
        async start() {
            await (await page.waitForSelector("#start:enabled")).click();
            await shows("playing");
        },
        time: () => read(() => window.quelar.time),
        /** Waits until so many more frames are drawn. */
        frames: (count) =>
            read(async (left) => {
                const drawn = (done) => window.quelar.addEventListener("frame", done, { once: true });
                while (left--) await new Promise(drawn);
            }, count),
        ticks,
        /** Goes where a link says, in the open page; true when it is there. */
        follows: (link) => read((to) => void (location.hash = to), `${link}&size=${size}`),
        /** Waits for a file that the page hands out, whole: the browser gives it its name last. */
        async handedOut(name) {
            const end = Date.now() + PATIENCE_MS;
            while (!(await readdir(folder)).includes(name) && Date.now() < end) await ticks(1);
            return readFile(join(folder, name));
        },
        png,
        /** The picture on screen as a text, equal for equal pictures. */
        picture: async () =>
            createHash("sha256")
                .update(await png())
                .digest("hex"),
        /** The middle of an element, or another place in it: shares of its width and height. */
        async place(selector, across = 0.5, down = 0.5) {
            const { x, y, width, height } = await (await page.$(selector)).boundingBox();
            return [x + across * width, y + down * height];
        },
        async close() {
            await page.close();
            if (problems.length) throw new Error(problems.join("\n"));
        },
    };
}
