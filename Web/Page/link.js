/**
 * A link to a moment of a show: what stands behind the # of an address.
 * @typedef {object} Link
 * @property {number} [time] seconds
 * @property {number} [seed]
 * @property {boolean} pause the frame of that moment stands still and needs no click
 * @property {{width: number, height: number}} [size] of the canvas, in pixels
 * @property {string} [look] shader texts, packed
 */

const LARGEST_SEED = 2 ** 31 - 1;
const LARGEST_SIDE = 8192;

/** Letters that an address can have without trouble on its way through other people's programs. */
export const LONGEST = 8192;

/**
 * What makes no sense in an address is as if it were not there.
 * @param {string} hash
 * @returns {Link}
 */
export function readLink(hash) {
    const words = new URLSearchParams(hash.replace(/^#/, ""));
    /** @param {string} name @param {RegExp} form @param {number} most */
    const number = (name, form, most) => {
        const text = words.get(name) ?? "";
        return form.test(text) && Number(text) <= most ? Number(text) : undefined;
    };
    const [width, height] = (words.get("size")?.match(/^(\d+)x(\d+)$/) ?? []).slice(1).map(Number);
    const fits = [width, height].every((side) => side >= 1 && side <= LARGEST_SIDE);
    const look = words.get("look")?.slice(0, LONGEST);
    return {
        time: number("t", /^\d+(\.\d+)?$/, Infinity),
        seed: number("seed", /^\d+$/, LARGEST_SEED),
        pause: words.has("pause") && !look, // somebody's texts do need the click
        size: fits ? { width, height } : undefined,
        look,
    };
}

/**
 * @param {Link} link
 * @returns {string}
 */
export function writeLink({ time, seed, pause, size, look }) {
    const words = [];
    if (time !== undefined) words.push(`t=${Number(time.toFixed(3))}`);
    if (seed !== undefined) words.push(`seed=${seed}`);
    if (size) words.push(`size=${size.width}x${size.height}`);
    if (pause) words.push("pause");
    if (look) words.push(`look=${look}`);
    return `#${words.join("&")}`;
}

/** @param {Blob} blob @param {ReadableWritablePair<Uint8Array, BufferSource>} way */
const through = (blob, way) => new Response(blob.stream().pipeThrough(way));

/**
 * Texts in letters that an address can have.
 * @param {Record<string, string>} texts
 * @returns {Promise<string>}
 */
export async function pack(texts) {
    const packed = through(new Blob([JSON.stringify(texts)]), new CompressionStream("deflate-raw"));
    const letters = Array.from(new Uint8Array(await packed.arrayBuffer()), (byte) =>
        String.fromCharCode(byte),
    );
    return btoa(letters.join("")).replace(/\+/g, "-").replace(/\//g, "_").replace(/=/g, "");
}

/**
 * Rejects what was not packed so.
 * @param {string} look
 * @returns {Promise<Record<string, string>>}
 */
export async function unpack(look) {
    const letters = atob(look.replace(/-/g, "+").replace(/_/g, "/"));
    const packed = new Blob([Uint8Array.from(letters, (letter) => letter.charCodeAt(0))]);
    return through(packed, new DecompressionStream("deflate-raw")).json();
}
