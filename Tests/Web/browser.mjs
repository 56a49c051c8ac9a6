// A real browser, a server for the page on the loopback address, and what every test of it watches over.
import { createReadStream } from "node:fs";
import { mkdtemp, rm, stat } from "node:fs/promises";
import { createServer } from "node:http";
import { createRequire } from "node:module";
import { tmpdir } from "node:os";
import { extname, join, normalize } from "node:path";
import { fileURLToPath } from "node:url";

const { default: puppeteer } = await import(
    createRequire(new URL("../../Web/package.json", import.meta.url)).resolve("puppeteer-core")
);

/** Where the page lies; another folder can be tested in its place. */
export const BUILT = process.env.QUELAR_WEB ?? fileURLToPath(new URL("../../build/web", import.meta.url));

const PATIENCE_MS = Number(process.env.QUELAR_PATIENCE_MS ?? 60000); // a busy machine is no fault of the page

const TYPES = {
    ".css": "text/css",
    ".html": "text/html",
    ".jpg": "image/jpeg",
    ".js": "text/javascript",
    ".mp3": "audio/mpeg",
    ".wasm": "application/wasm",
};

/**
 * Serves a folder, as any web server would, on a port of its own.
 * @param {{folder?: string, hold?: RegExp}} wishes `hold`: the paths that wait for `release`
 */
export async function serve({ folder = BUILT, hold } = {}) {
    let release;
    const released = new Promise((done) => (release = done));
    const server = createServer(async ({ url }, answer) => {
        const { pathname } = new URL(url, "http://localhost");
        const file = join(folder, normalize(decodeURIComponent(pathname === "/" ? "/index.html" : pathname)));
        const found = await stat(file).catch(() => undefined);
        if (!found?.isFile()) return answer.writeHead(404).end();
        if (hold?.test(pathname)) await released;
        const type = TYPES[extname(file)] ?? "application/octet-stream";
        answer.writeHead(200, {
            "Content-Type": type,
            "Content-Length": found.size,
        });
        return createReadStream(file).pipe(answer);
    });
    await new Promise((done) => server.listen(0, "127.0.0.1", done));
    return {
        url: `http://127.0.0.1:${server.address().port}/`,
        release,
        close: () => server.close(),
    };
}

/** Starts Debian's Chromium, without a window, drawing by the same software OpenGL as the rest of the tests. */
export async function openBrowser() {
    const userDataDir = await mkdtemp(join(tmpdir(), "quelar-browser-"));
    const browser = await puppeteer.launch({
        executablePath: process.env.CHROMIUM ?? "/usr/bin/chromium",
        userDataDir,
        protocolTimeout: PATIENCE_MS,
        args: [
            "--no-sandbox",
            "--disable-dev-shm-usage",
            "--use-gl=angle",
            "--use-angle=gl-egl",
            "--ignore-gpu-blocklist",
            "--disable-background-networking",
            "--disable-component-update",
            "--disable-default-apps",
            "--disable-sync",
            "--no-first-run",
            "--autoplay-policy=user-gesture-required",
        ],
    });
    return {
        browser,
        async close() {
            await browser.close();
            await rm(userDataDir, { recursive: true, force: true, maxRetries: 5 });
        },
    };
}

/**
 * Opens the page and watches over it: `close` fails if it said anything on the console but lines of the show, if
 * an error went uncaught, or if it asked for anything from elsewhere.
 * @param {{browser: object, url: string, hash?: string, size?: string, before?: Function}} wishes
 *     `size` of the canvas, small as the drawing is done by software; `before` runs in the page ahead of its own scripts
 */
export async function openPage({ browser, url, hash = "", size = "320x240", before }) {
    const page = await browser.newPage();
    const problems = [];
    const complain = (problem) => problems.push(problem);
    page.setDefaultTimeout(PATIENCE_MS);
    page.on(
        "console",
        (said) => /^(warn|error)/.test(said.type()) && complain(`${said.type()}: ${said.text()}`),
    );
    page.on("pageerror", ({ message }) => complain(`uncaught: ${message}`));
    page.on("request", (request) => {
        if (!/^(blob|data):/.test(request.url()) && !request.url().startsWith(url)) {
            complain(`asks ${request.url()}`);
        }
    });
    if (before) await page.evaluateOnNewDocument(before);
    await page.setViewport({ width: 800, height: 700, hasTouch: true });
    await page.goto(`${url}#${[hash, size && `size=${size}`].filter(Boolean).join("&")}`);

    /** Waits until a function of the page gives true. */
    const until = (condition, ...values) => page.waitForFunction(condition, { polling: "raf" }, ...values);
    /** Waits until the document says that the show is loading, ready, playing, paused, ended or failed. */
    const shows = (state) => until((wanted) => document.documentElement.dataset.show === wanted, state);
    return {
        page,
        problems,
        until,
        shows,
        read: (question, ...values) => page.evaluate(question, ...values),
        time: () => page.evaluate(() => window.quelar.time),
        /** Waits until so many more frames are drawn. */
        frames: (count) =>
            page.evaluate(
                (wanted) =>
                    new Promise((done) => {
                        const drawn = () =>
                            --wanted || done(window.quelar.removeEventListener("frame", drawn));
                        window.quelar.addEventListener("frame", drawn);
                    }),
                count,
            ),
        /** Waits for so many frames of the browser's, whether the show draws or not. */
        ticks: (count) =>
            page.evaluate(async (left) => {
                while (left--) await new Promise(requestAnimationFrame);
            }, count),
        /** Goes where a link says, in the open page; true when it is there. */
        async follows(link) {
            await page.evaluate((to) => (location.hash = to), link + (size && `&size=${size}`));
        },
        /** The picture on screen as a text, equal for equal pictures. */
        picture: () =>
            page.evaluate(async () => {
                const bytes = await (await window.quelar.picture()).arrayBuffer();
                return [...new Uint8Array(await crypto.subtle.digest("SHA-256", bytes))].join();
            }),
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
