/** @typedef {import("../Player/Player.js").Player} Player */

/** Where the show is told to go: steps asked for in a burst add up, though the show follows only the newest. */
export class Goal {
    #player;
    #underWay = 0;
    #seconds = 0;

    /** @param {Player} player */
    constructor(player) {
        this.#player = player;
    }

    /** Seconds of the show: those it was told to go to, until it has left the frame that shows them. */
    get time() {
        const { time, frameMs } = this.#player;
        const there = this.#seconds >= time && this.#seconds < time + frameMs / 1000;
        return this.#underWay || there ? this.#seconds : time;
    }

    /** @param {number} seconds */
    async to(seconds) {
        this.#seconds = Math.min(Math.max(seconds, 0), this.#player.duration);
        this.#underWay++;
        try {
            await this.#player.seek(this.#seconds);
        } finally {
            this.#underWay--;
        }
    }

    /** @param {number} seconds */
    by(seconds) {
        return this.to(this.time + seconds);
    }
}
