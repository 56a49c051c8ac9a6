// Serves build/web on this machine, for whoever works on the show or watches it: the shader files come from the
// repository itself, and the page is told of each save.
import { watch } from "node:fs";
import { readFile } from "node:fs/promises";
import { createServer } from "node:http";
import { extname, join } from "node:path";
import { fileURLToPath } from "node:url";
import { promisify } from "node:util";
import { gzip } from "node:zlib";

const folder = (/** @type {string} */ path) => fileURLToPath(new URL(path, import.meta.url));
const PAGE = folder("../build/web");
const DATA = folder("../data");

/** @type {Record<string, string>} */
const TYPES = {
    ".css": "text/css",
    ".html": "text/html",
    ".jpg": "image/jpeg",
    ".js": "text/javascript",
    ".mp3": "audio/mpeg",
    ".svg": "image/svg+xml",
    ".wasm": "application/wasm",
    ".webmanifest": "application/manifest+json",
};
const DENSE = [".jpg", ".mp3"]; // as they are
const [, policy] =
    (await readFile(`${PAGE}/index.html`, "utf8")).match(/content="(default-src [^"]+)"/) ?? [];

/** @type {Set<import("node:http").ServerResponse>} */
const followers = new Set();

watch(`${DATA}/shaders`, (_, name) => {
    for (const follower of followers) follower.write(`data: ${name}\n\n`);
});

const server = createServer(async ({ headers, url = "/" }, answer) => {
    try {
        const path = join("/", decodeURIComponent(url.replace(/[?#].*/s, "")));
        if (path === "/events") {
            answer
                .writeHead(200, { "Content-Type": "text/event-stream", "Cache-Control": "no-store" })
                .flushHeaders();
            followers.add(answer);
            answer.on("close", () => followers.delete(answer));
            return;
        }
        const file = path.endsWith("/") ? `${path}index.html` : path;
        const bytes = await readFile(file.startsWith("/data/shaders/") ? DATA + file.slice(5) : PAGE + file);
        const packed = !DENSE.includes(extname(file)) && /\bgzip\b/.test(headers["accept-encoding"] ?? "");
        const body = packed ? await promisify(gzip)(bytes) : bytes;
        answer.writeHead(200, {
            "Content-Type": TYPES[extname(file)] ?? "text/plain; charset=utf-8",
            "Content-Length": body.length,
            ...(packed && { "Content-Encoding": "gzip" }),
            "Cache-Control": "no-cache",
            ...(policy && { "Content-Security-Policy": policy }),
            "Server-Timing": 'saves;desc="events"', // the page asks there
        });
        answer.end(body);
    } catch {
        answer.writeHead(404).end();
    }
});

server.listen(Number(process.env.PORT ?? 8000), "127.0.0.1");
server.on("error", () => server.listen(0, "127.0.0.1")); // taken: any other
server.on("listening", () => {
    const address = server.address();
    if (address && typeof address === "object") {
        console.log(`The show is on http://127.0.0.1:${address.port}/`);
    }
});
