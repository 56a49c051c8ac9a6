// Serves build/web on this machine, for whoever works on the show or watches it: the shader files come from the
// repository itself, and the page is told of each save.
import { watch } from "node:fs";
import { readFile } from "node:fs/promises";
import { createServer } from "node:http";
import { extname, normalize } from "node:path";
import { fileURLToPath } from "node:url";

const folder = (/** @type {string} */ path) => fileURLToPath(new URL(path, import.meta.url));
const PAGE = folder("../build/web");
const SHADERS = folder("../data/shaders");

/** @type {Record<string, string>} */
const TYPES = {
    ".css": "text/css",
    ".html": "text/html",
    ".jpg": "image/jpeg",
    ".js": "text/javascript",
    ".mp3": "audio/mpeg",
    ".wasm": "application/wasm",
};

/** @type {Set<import("node:http").ServerResponse>} */
const followers = new Set();

watch(SHADERS, (_, name) => {
    for (const follower of followers) follower.write(`data: ${name}\n\n`);
});

const server = createServer(async (request, answer) => {
    const path = normalize(decodeURIComponent(new URL(request.url ?? "/", "http://localhost").pathname));
    if (path === "/events") {
        answer
            .writeHead(200, { "Content-Type": "text/event-stream", "Cache-Control": "no-store" })
            .flushHeaders();
        followers.add(answer);
        request.on("close", () => followers.delete(answer));
        return;
    }
    const file = path.endsWith("/") ? `${path}index.html` : path;
    const shader = file.match(/^\/data\/shaders\/([^/]+)$/);
    try {
        const bytes = await readFile(shader ? `${SHADERS}/${shader[1]}` : PAGE + file);
        answer.writeHead(200, {
            "Content-Type": TYPES[extname(file)] ?? "text/plain; charset=utf-8",
            "Content-Length": bytes.length,
            "Cache-Control": "no-cache",
            "Server-Timing": 'saves;desc="events"', // the page asks there
        });
        answer.end(bytes);
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
