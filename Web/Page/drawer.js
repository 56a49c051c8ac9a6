import { say } from "./notice.js";

/**
 * Opens and closes a panel by its button. What it does is fetched when it is opened first.
 * @template {{focus(): void}} T
 * @param {HTMLButtonElement} button
 * @param {HTMLElement} panel
 * @param {(close: () => void) => Promise<T>} fetchInside
 */
export function drawer(button, panel, fetchInside) {
    /** @type {Promise<T> | undefined} */
    let loading;
    const close = () => {
        panel.hidden = true;
        button.ariaExpanded = "false";
        button.focus();
    };
    button.addEventListener("click", async () => {
        if (!panel.hidden) return close();
        panel.hidden = false;
        button.ariaExpanded = "true";
        loading ??= fetchInside(close);
        try {
            (await loading).focus();
        } catch {
            loading = undefined;
            close();
            say("That part of the page did not arrive.", { label: "Try again", act: () => button.click() });
        }
    });
    return {
        /** Whether there was something to close. */
        close() {
            const open = !panel.hidden;
            if (open) close();
            return open;
        },
        /** What is in it, once it was opened. */
        get inside() {
            return loading?.catch(() => undefined);
        },
    };
}
