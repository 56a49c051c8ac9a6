/**
 * Keeps a telephone's screen from going dark while the show plays.
 * @param {EventTarget & {state: string}} player
 */
export function stayAwake(player) {
    /** @type {Promise<WakeLockSentinel | undefined> | undefined} */
    let lock;
    const update = async () => {
        const wanted = player.state === "playing" && document.visibilityState === "visible";
        if (wanted === (lock !== undefined)) return;
        const last = lock;
        lock = wanted ? navigator.wakeLock?.request("screen").catch(() => undefined) : undefined;
        await (await last)?.release();
    };
    player.addEventListener("state", update);
    document.addEventListener("visibilitychange", update);
}
