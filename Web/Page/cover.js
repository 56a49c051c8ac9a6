import { element } from "./dom.js";

/**
 * What lies over the picture before the show and after it: title, one button, how far loading is.
 * @returns {{progress(share: number): void, ready(start: () => void): void, again(): void, fail(sentence: string, state?: "failed" | "refused"): void}}
 */
export function cover() {
    const start = element("start", HTMLButtonElement);
    return {
        progress(share) {
            start.style.setProperty("--loaded", String(share));
            start.textContent = `Loading ${Math.floor(100 * share)} %`;
        },
        ready(begin) {
            start.textContent = "Play";
            start.disabled = false;
            start.addEventListener("click", begin);
        },
        again() {
            start.textContent = "Play again";
        },
        fail(sentence, state = "failed") {
            document.documentElement.dataset.show = state;
            element("fault", HTMLElement).textContent = sentence;
        },
    };
}
