// What stands between the player and the WebAssembly, in types: its calls are told in Engine/page.h and
// Engine/show.cpp.

/**
 * @typedef {Float32Array | Uint32Array} Items
 * @typedef {{items: Items, count: number, changedFrom: number, changedTo: number}} List
 * @typedef {{count: number, width: number}} Run
 *
 * @typedef {object} Batch
 * @property {List} points
 * @property {List} owners
 * @property {List} matrices
 * @property {List} lines
 * @property {number} slot
 * @property {number} program
 * @property {boolean} blended
 * @property {boolean} tested
 * @property {Float32Array} projection
 * @property {Run[]} runs
 *
 * @typedef {object} Quad
 * @property {number} program
 * @property {number} texture
 * @property {Float32Array} corners
 * @property {Float32Array} projection
 * @property {Float32Array} modelView
 * @property {boolean} blended
 *
 * @typedef {object} Drawing where the show is drawn
 * @property {number} height pixels
 * @property {(ofVertices: boolean, text: string) => string} compile
 * @property {(program: number, vertexText: string, pixelText: string) => string} makeProgram
 * @property {(program: number, name: string, value: number) => void} setUniform
 * @property {(texture: number) => void} makeTexture
 * @property {(texture: number) => void} setTarget
 * @property {(r: number, g: number, b: number, a: number) => void} clear
 * @property {(batch: Batch) => void} draw
 * @property {(quad: Quad) => void} drawQuad
 *
 * @typedef {object} Track what the show hears
 * @property {number} length
 * @property {number} rate
 * @property {number} gain
 * @property {(first: number, count: number, memory: Int16Array, place: number) => void} copy
 *
 * @typedef {object} Director who decides what is run when
 * @property {(asked: number) => number} seedFor
 * @property {() => number} trackStart
 * @property {(frame: number, goOn: (drawNext: number) => void) => void} showFrame
 * @property {(status: number) => void} endShow
 *
 * @typedef {object} World
 * @property {Director} director
 * @property {Drawing} picture
 * @property {Track} sound
 * @property {(line: string) => void} print
 * @property {(imports: WebAssembly.Imports, done: (instance: WebAssembly.Instance) => void) => object} instantiateWasm
 *
 * @typedef {object} Engine
 * @property {{mkdirTree: (path: string) => void, writeFile: (path: string, text: string) => void}} FS
 * @property {{currData: number | null}} Asyncify
 * @property {Uint8Array} HEAPU8
 * @property {Int16Array} HEAP16
 * @property {Drawing} picture
 * @property {(place: number) => string} UTF8ToString
 * @property {() => number} stackSave
 * @property {(place: number) => void} stackRestore
 * @property {(more: number) => number} _sbrk
 * @property {(bytes: number) => number} _malloc
 * @property {(rate: number) => number} _newLoudness
 * @property {(loudness: number, frames: number, count: number) => void} _addToLoudness
 * @property {(loudness: number) => number} _gainOf
 * @property {(drawn: number) => void} _play
 * @property {() => void} _forgetDrawn
 * @property {() => number} _frameMs
 * @property {() => number} _showFrames
 * @property {() => number} _sceneCount
 * @property {(scene: number) => number} _sceneStart
 * @property {(scene: number) => number} _sceneTitle
 *
 * @typedef {(world: Partial<World>) => Promise<Engine>} LoadEngine
 */

/**
 * Fetches the engine; it can be started more than once.
 * @param {string} base the address of the folder it lies in
 * @param {Promise<ArrayBuffer>} bytes of the WebAssembly
 * @returns {Promise<LoadEngine>}
 */
export async function fetchEngine(base, bytes) {
    const [{ default: load }, module] = await Promise.all([
        import(new URL("quelar.js", base).href),
        bytes.then((fetched) => WebAssembly.compile(fetched)),
    ]);
    return (world) =>
        load({
            instantiateWasm(/** @type {WebAssembly.Imports} */ imports, /** @type {Function} */ done) {
                WebAssembly.instantiate(module, imports).then((instance) => done(instance, module));
                return {};
            },
            ...world,
        });
}
