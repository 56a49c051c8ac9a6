/**
 * A link to a moment of a show: what stands behind the # of an address.
 * @typedef {object} Link
 * @property {number} [time] seconds
 * @property {number} [seed]
 * @property {boolean} pause the frame of that moment stands still and needs no click
 * @property {{width: number, height: number}} [size] of the canvas, in pixels
 */

const LARGEST_SEED = 2 ** 31 - 1;
const LARGEST_SIDE = 8192;

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
    return {
        time: number("t", /^\d+(\.\d+)?$/, Infinity),
        seed: number("seed", /^\d+$/, LARGEST_SEED),
        pause: words.has("pause"),
        size: fits ? { width, height } : undefined,
    };
}

/**
 * @param {Link} link
 * @returns {string}
 */
export function writeLink({ time, seed, pause, size }) {
    const words = [];
    if (time !== undefined) words.push(`t=${Number(time.toFixed(3))}`);
    if (seed !== undefined) words.push(`seed=${seed}`);
    if (size) words.push(`size=${size.width}x${size.height}`);
    if (pause) words.push("pause");
    return `#${words.join("&")}`;
}
