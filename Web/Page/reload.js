/**
 * Follows the shader files while somebody works on them in an editor of their own. Only the server of ./web can
 * tell of a save, and it says that it does in a header that comes with the page, so that no other is asked.
 * @param {string[]} names
 * @param {(name: string, text: string) => void} onSave
 */
export function followFiles(names, onSave) {
    const [page] = /** @type {PerformanceNavigationTiming[]} */ (performance.getEntriesByType("navigation"));
    const told = page?.serverTiming.find(({ name }) => name === "saves");
    if (!told) return;
    new EventSource(told.description).addEventListener("message", async ({ data: name }) => {
        if (!names.includes(name)) return;
        const answer = await fetch(`data/shaders/${name}`, { cache: "no-store" });
        if (answer.ok) onSave(name, await answer.text());
    });
}
