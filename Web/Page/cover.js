import { element } from "./dom.js";
import { write } from "./title.js";

/**
 * What lies over the picture before the show and after it: title, one button, how far loading is.
 * @returns {{progress(share: number): void, ready(start: () => void): void, again(): void, fail(sentence: string): void}}
 */
export function cover() {
    const start = element("start", HTMLButtonElement);
    const says = element("start-says", HTMLElement);
    const fault = element("fault", HTMLElement);
    element("title", HTMLElement).append(write("quelar"));
    return {
        progress(share) {
            start.style.setProperty("--loaded", String(share));
            says.textContent = `Loading ${Math.floor(100 * share)} %`;
        },
        ready(begin) {
            says.textContent = "Play";
            start.disabled = false;
            start.addEventListener("click", begin);
        },
        again() {
            says.textContent = "Play again";
        },
        fail(sentence) {
            start.hidden = true;
            fault.hidden = false;
            fault.textContent = sentence;
        },
    };
}
