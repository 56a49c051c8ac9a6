/* global AudioWorkletProcessor, registerProcessor */

/** Hands on what comes in, its left side, as it comes; what goes out is silence. */
class Listener extends AudioWorkletProcessor {
    /** @param {Float32Array[][]} inputs */
    process([[left]]) {
        if (left) this.port.postMessage(left.slice());
        return true;
    }
}

registerProcessor("listener", Listener);
