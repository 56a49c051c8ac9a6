// Bundles the page into build/web, or into the folder that is named: page.js, and editor.js for whoever opens it.
import { build } from "esbuild";
import { copyFile, mkdir, readFile, writeFile } from "node:fs/promises";
import { fileURLToPath } from "node:url";

const here = (/** @type {string} */ path) => fileURLToPath(new URL(path, import.meta.url));
const outdir = process.argv[2] ?? here("../build/web");

await mkdir(outdir, { recursive: true });
const { metafile } = await build({
    entryPoints: [here("Page/page.js"), here("Page/editor.js")],
    outdir,
    bundle: true,
    format: "esm",
    target: "es2022",
    minify: true,
    legalComments: "none",
    external: ["./editor.js", "./quelar.js"], // fetched when they are needed
    metafile: true,
    logLevel: "warning",
});
for (const file of ["index.html", "style.css"]) await copyFile(here(`Page/${file}`), `${outdir}/${file}`);

// The licences of what is bundled, as each of them asks for.
const packages = new Set(
    Object.keys(metafile.inputs).map((path) => path.match(/.*node_modules\/((@[^/]+\/)?[^/]+)/)?.[1]),
);
const licences = [...packages].flatMap((name) => (name ? [name] : [])).sort();
const texts = licences.map(
    async (name) => `${name}\n\n${await readFile(here(`node_modules/${name}/LICENSE`), "utf8")}`,
);
await writeFile(`${outdir}/editor.licences.txt`, (await Promise.all(texts)).join("\n\n"));
