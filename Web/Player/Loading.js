/** Files on their way here, and how far they are. */
export class Loading {
    /**
     * @param {string} base the address that their paths go from
     * @param {(done: number) => void} onProgress 0 to 1, never less than before
     */
    constructor(base, onProgress) {
        this.base = base;
        this.total = Number(document.documentElement.dataset.bytes); // of all of them: the page is built with it
        this.onProgress = onProgress;
        this.done = 0;
    }

    /**
     * @param {string} path
     * @returns {Promise<ArrayBuffer>}
     */
    async get(path) {
        try {
            const answer = await fetch(new URL(path, this.base));
            const isPage = answer.headers.get("content-type")?.startsWith("text/html");
            if (!answer.ok || !answer.body || isPage) throw new Error(`The show's file ${path} is missing.`);
            const reader = answer.body.getReader();
            const parts = [];
            for (;;) {
                const { done, value } = await reader.read();
                if (done) return new Blob(parts).arrayBuffer();
                parts.push(value);
                this.done += value.length;
                if (this.total) this.onProgress(Math.min(1, this.done / this.total));
            }
        } catch (error) {
            const broken = error instanceof TypeError; // as fetch says it
            throw broken ? new Error(`The connection broke while ${path} was on its way.`) : error;
        }
    }

    /** @param {string} path */
    async getText(path) {
        return new TextDecoder().decode(await this.get(path));
    }
}
