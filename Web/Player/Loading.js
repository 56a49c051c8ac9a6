/** Files on their way here, and how far they are. */
export class Loading {
    /**
     * @param {string} base the address that their paths go from
     * @param {(done: number) => void} onProgress 0 to 1, never less than before
     */
    constructor(base, onProgress) {
        this.base = base;
        this.onProgress = onProgress;
        this.total = 0;
        this.done = 0;
        this.told = 0;
    }

    /**
     * @param {string} path
     * @returns {Promise<ArrayBuffer>}
     */
    async get(path) {
        const answer = await fetch(new URL(path, this.base));
        if (!answer.ok || !answer.body) throw new Error(`The file ${path} of the show is missing.`);
        this.total += Number(answer.headers.get("content-length")) || 0;
        const reader = answer.body.getReader();
        const parts = [];
        for (;;) {
            const { done, value } = await reader.read();
            if (done) return new Blob(parts).arrayBuffer();
            parts.push(value);
            this.done += value.length;
            this.tell();
        }
    }

    /** @param {string} path */
    async getText(path) {
        return new TextDecoder().decode(await this.get(path));
    }

    tell() {
        const share = this.total ? Math.min(1, this.done / this.total) : 0;
        if (share > this.told) {
            this.told = share;
            this.onProgress(share);
        }
    }
}
