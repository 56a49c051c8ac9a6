/**
 * The line letters of the show that its title needs, with the coordinates of the show: corners (x from -0.5 to
 * 0.5, y from 0, the top, to 1) and pairs of indices into them.
 * @type {Record<string, {corners: number[][], segments: number[]}>}
 */
export const GLYPHS = {
    q: {
        corners: [
            [-0.5, 1],
            [-0.5, 0],
            [0.5, 0],
            [0.5, 1],
            [0, 0.5],
        ],
        segments: [0, 1, 1, 2, 2, 3, 3, 0, 3, 4],
    },
    u: {
        corners: [
            [-0.5, 0],
            [-0.5, 1],
            [0.5, 1],
            [0.5, 0],
        ],
        segments: [0, 1, 1, 2, 2, 3],
    },
    e: {
        corners: [
            [-0.5, 0],
            [-0.5, 1],
            [0.5, 0],
            [0.5, 1],
            [-0.5, 0.5],
            [0.5, 0.5],
        ],
        segments: [0, 1, 0, 2, 1, 3, 4, 5],
    },
    l: {
        corners: [
            [-0.5, 0],
            [-0.5, 1],
            [0.5, 1],
        ],
        segments: [0, 1, 1, 2],
    },
    a: {
        corners: [
            [-0.5, 1],
            [0, 0],
            [0.5, 1],
            [-0.25, 0.5],
            [0.25, 0.5],
        ],
        segments: [0, 1, 2, 1, 3, 4],
    },
    r: {
        corners: [
            [-0.5, 1],
            [-0.5, 0],
            [0.5, 0],
            [0.5, 0.5],
            [-0.5, 0.5],
            [0.5, 1],
        ],
        segments: [0, 1, 1, 2, 2, 3, 3, 4, 4, 5],
    },
};

const ADVANCE = 1.5;
const MARGIN = 0.15;

/**
 * A word in line letters, as wide as its element.
 * @param {string} word
 * @returns {SVGSVGElement}
 */
export function write(word) {
    const lines = [...word].flatMap((letter, place) => {
        const { corners, segments } = GLYPHS[letter];
        return segments.map((corner, end) => {
            const [x, y] = corners[corner];
            return `${end % 2 ? "L" : "M"}${x + place * ADVANCE} ${y}`;
        });
    });
    const left = -0.5 - MARGIN;
    const width = (word.length - 1) * ADVANCE + 1 + 2 * MARGIN;
    const svg = document.createElementNS("http://www.w3.org/2000/svg", "svg");
    svg.setAttribute("viewBox", `${left} ${-MARGIN} ${width} ${1 + 2 * MARGIN}`);
    svg.ariaHidden = "true";
    const path = document.createElementNS(svg.namespaceURI, "path");
    path.setAttribute("d", lines.join(""));
    svg.append(path);
    return svg;
}
