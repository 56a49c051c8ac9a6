// Speaks where page.js cannot. Of the old kind, which a browser runs even from a file and in a closed frame.
(() => {
    const { dataset } = document.documentElement;
    dataset.show = "loading";

    const onError = (/** @type {Event & {error?: unknown}} */ { target, error }) => {
        const old = error instanceof SyntaxError;
        const fault = document.getElementById("fault");
        if (!(old || target instanceof HTMLScriptElement) || !fault || dataset.show !== "loading") return;
        const isFile = location.protocol === "file:";
        const isClosed = !isFile && window.origin === "null";
        dataset.show = old || isFile || isClosed ? "refused" : "failed";
        if (isFile) {
            fault.textContent = "Open this from a web server: as a file it may not read its parts.";
        } else if (isClosed) {
            fault.textContent = "This frame shuts the show in: open it in a window of its own.";
        } else {
            fault.textContent = `A part of the page ${old ? "is too new for this browser" : "did not arrive"}.`;
        }
    };
    addEventListener("error", onError, true);
    addEventListener("click", ({ target }) => {
        if (target instanceof Element && target.id === "retry") location.reload();
    });
})();
