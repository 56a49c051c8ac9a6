// Bundles the page into build/web, or into the folder that is named, for the address named behind it: page.js, and
// editor.js and film.js for whoever opens them. What the show itself knows, its title's letters for one, is written
// into index.html.
import { build } from "esbuild";
import { copyFile, mkdir, readdir, readFile, stat, writeFile } from "node:fs/promises";
import { fileURLToPath } from "node:url";

const here = (/** @type {string} */ path) => fileURLToPath(new URL(path, import.meta.url));
const outdir = process.argv[2] ?? here("../build/web");

await mkdir(outdir, { recursive: true });
const { metafile } = await build({
    entryPoints: [
        ...["page.js", "first.js", "editor.js", "film.js", "style.css"].map((name) => here(`Page/${name}`)),
        here("Player/listener.js"),
    ],
    entryNames: "[name]",
    outdir,
    bundle: true,
    format: "esm",
    target: "es2022",
    minify: true,
    legalComments: "none",
    external: ["./editor.js", "./film.js", "./quelar.js"], // fetched when they are needed
    metafile: true,
    logLevel: "warning",
});

/** A word in the line letters of the show, as a path: letters a unit wide and high, 1.5 from one to the next. */
async function write(/** @type {string} */ word) {
    const font = await readFile(here("../Sources/Objects/Font.cpp"), "utf8");
    const lines = [...word].flatMap((letter, place) => {
        const glyph = font.match(
            new RegExp(`\\{'${letter}',\\s*\\{\\{(.*?)\\}\\},\\s*\\{([\\d, ]+)\\}\\}`, "s"),
        );
        const [corners, segments] = (glyph ?? [])
            .slice(1)
            .map((text) => text.match(/-?\d+(\.\d+)?/g)?.map(Number));
        if (!corners || !segments) throw new Error(`Font.cpp has no letter ${letter}`);
        return segments.map(
            (at, end) => `${"ML"[end % 2]}${corners[2 * at] + 1.5 * place} ${corners[2 * at + 1]}`,
        );
    });
    return lines.join("");
}

/** Bytes of all that is fetched before the show can start. */
async function weigh() {
    const shaders = (await readdir(`${outdir}/data/shaders`)).map((name) => `data/shaders/${name}`);
    const files = ["quelar.wasm", "data/music/quelar.mp3", ...shaders].map((name) =>
        stat(`${outdir}/${name}`),
    );
    return (await Promise.all(files)).reduce((sum, { size }) => sum + size, 0);
}

/** @type {Record<string, string | number>} */
const known = {
    address: process.argv[3]?.replace(/\/?$/, "/") ?? "", // which link previews need in full
    bytes: await weigh(),
    title: await write("quelar"),
};
const index = await readFile(here("Page/index.html"), "utf8");
await writeFile(
    `${outdir}/index.html`,
    index.replace(/\{\{(\w+)\}\}/g, (_, name) => String(known[name])),
);
await copyFile(here("Page/manifest.webmanifest"), `${outdir}/manifest.webmanifest`);
await copyFile(here("../Packaging/quelar.svg"), `${outdir}/icon.svg`);

// The licences of what is bundled, as each of them asks for.
const packages = new Set(
    Object.keys(metafile.inputs).map((path) => path.match(/.*node_modules\/((@[^/]+\/)?[^/]+)/)?.[1]),
);
const licences = [...packages].flatMap((name) => (name ? [name] : [])).sort();
const texts = licences.map(
    async (name) => `${name}\n\n${await readFile(here(`node_modules/${name}/LICENSE`), "utf8")}`,
);
await writeFile(`${outdir}/editor.licences.txt`, (await Promise.all(texts)).join("\n\n"));
