/** What stands on the buttons: lines in a square of 24. */
const LINES = {
    play: "M7 4V20L20 12Z",
    pause: "M7 4V20M17 4V20",
    again: "M20 12A8 8 0 1 1 16.5 5.4M17 1V6H12",
    sound: "M3 9V15H7L12 20V4L7 9ZM15.5 9A4 4 0 0 1 15.5 15M18 6A8 8 0 0 1 18 18",
    silence: "M3 9V15H7L12 20V4L7 9ZM16 9L22 15M22 9L16 15",
    music: "M8 18V5L20 3V16M8 18A3 2.5 0 1 1 2 18A3 2.5 0 1 1 8 18M20 16A3 2.5 0 1 1 14 16A3 2.5 0 1 1 20 16",
    listen: "M12 3A3 3 0 0 1 15 6V11A3 3 0 0 1 9 11V6A3 3 0 0 1 12 3M5 11A7 7 0 0 0 19 11M12 18V21",
    code: "M8 5L2 12L8 19M16 5L22 12L16 19",
    save: "M12 3V15M6 10L12 16L18 10M3 20H21",
    film: "M3 6H15V18H3ZM15 10L21 7V17L15 14",
    link: "M10 7L13 4A5 5 0 0 1 20 11L17 14M14 17L11 20A5 5 0 0 1 4 13L7 10M9 15L15 9",
    full: "M3 9V3H9M15 3H21V9M21 15V21H15M9 21H3V15",
    window: "M9 3V9H3M21 9H15V3M15 21V15H21M3 15H9V21",
};

/** @typedef {keyof typeof LINES} Icon */

const SVG = "http://www.w3.org/2000/svg";

/**
 * Draws an icon on a button in place of the last one.
 * @param {HTMLElement} button
 * @param {Icon} icon
 */
export function draw(button, icon) {
    if (button.dataset.icon === icon) return;
    button.dataset.icon = icon;
    const svg = document.createElementNS(SVG, "svg");
    svg.setAttribute("viewBox", "0 0 24 24");
    svg.ariaHidden = "true";
    const lines = document.createElementNS(SVG, "path");
    lines.setAttribute("d", LINES[icon]);
    svg.append(lines);
    button.replaceChildren(svg);
}
