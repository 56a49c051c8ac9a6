import { Slot } from "./Slot.js";
import { Program, faultsOfText } from "./Program.js";

/** A longer shader would hold up graphics cards, and the page with them: 20 000 lines for half a minute. */
const MOST_LINES = 1000;
const MOST_LETTERS = 60000;

/**
 * What the show draws, drawn on a canvas by WebGL 2. All that is made here can be made again, should the
 * graphics context get lost: textures and programs are known by the numbers that the show gave them.
 *
 * @typedef {{texture: WebGLTexture | null, framebuffer: WebGLFramebuffer | null}} Target
 */
export class Picture {
    /**
     * @param {HTMLCanvasElement} canvas
     * @param {boolean} antialias whether edges may be smoothed
     */
    constructor(canvas, antialias) {
        this.canvas = canvas;
        /** Called when the context is lost, and when it is back and all is in it again. */
        this.onLost = () => {};
        this.onRestored = () => {};
        canvas.addEventListener("webglcontextlost", (event) => {
            event.preventDefault(); // or it would never come back
            this.onLost();
        });
        canvas.addEventListener("webglcontextrestored", () => {
            this.rebuild();
            this.onRestored();
        });
        const gl = canvas.getContext("webgl2", {
            alpha: false,
            antialias,
            depth: true,
            powerPreference: "high-performance",
        });
        if (!gl) {
            throw new Error("This browser does not offer WebGL 2.");
        }
        this.gl = gl;
        /** @type {Map<number, Program>} */
        this.programs = new Map();
        /** @type {Program[]} */
        this.prepared = []; // programs that the show will ask for
        /** @type {Map<number, Target>} */
        this.textures = new Map();
        /** @type {Slot[]} */
        this.slots = [];
        /** @type {WebGLBuffer | null} */
        this.corners = null; // of a picture drawn as a whole ...
        /** @type {WebGLVertexArrayObject | null} */
        this.quad = null;
        /** @type {WebGLTexture | null} */
        this.quadMatrix = null; // ... and its model-view matrix
        /** @type {{array: WebGLVertexArrayObject | null, buffer: WebGLBuffer | null} | null} */
        this.quadElements = null; // four corners for each line
        this.quadCount = 0;
        this.prepare();
    }

    /**
     * Makes programs ahead of the show, while the page lives on.
     * @param {string[]} texts two for each
     */
    async prepareFor(texts) {
        for (let i = 0; i < texts.length; i += 2) {
            const program = new Program(this.gl, texts.slice(i, i + 2));
            program.launch();
            this.prepared.push(program);
        }
        // To ask for their state would be to wait for them; this asks whether the graphics card has come so far.
        const { gl } = this;
        const sync = gl.fenceSync(gl.SYNC_GPU_COMMANDS_COMPLETE, 0);
        gl.flush();
        while (sync && !this.isLost && gl.getSyncParameter(sync, gl.SYNC_STATUS) !== gl.SIGNALED) {
            await new Promise((goOn) => setTimeout(goOn, 4));
        }
        gl.deleteSync(sync);
        for (const program of this.prepared) program.build();
    }

    /** While it is lost all that is drawn comes to nothing. */
    get isLost() {
        return this.gl.isContextLost();
    }

    /** What a new context needs. */
    prepare() {
        const { gl } = this;
        gl.disable(gl.DITHER);
        gl.blendFunc(gl.SRC_ALPHA, gl.ONE);
        this.slots = [];
        this.corners = gl.createBuffer();
        this.quad = gl.createVertexArray();
        this.quadMatrix = newTexture(gl, gl.NEAREST);
        gl.texStorage2D(gl.TEXTURE_2D, 1, gl.RGBA32F, 4, 1);
        gl.bindVertexArray(this.quad);
        gl.bindBuffer(gl.ARRAY_BUFFER, this.corners);
        gl.enableVertexAttribArray(0);
        gl.vertexAttribPointer(0, 2, gl.FLOAT, false, 16, 0);
        gl.enableVertexAttribArray(3);
        gl.vertexAttribPointer(3, 2, gl.FLOAT, false, 16, 8);
        gl.vertexAttribI4ui(2, 0, 0, 0, 0); // its matrix is the first one
        gl.bindVertexArray(null);
        this.quadElements = null;
        this.quadCount = 0;
    }

    /** Makes everything again, in a context that has been restored. */
    rebuild() {
        this.prepare();
        for (const program of new Set([...this.programs.values(), ...this.prepared])) {
            program.forget();
            program.build();
        }
        const textures = [...this.textures.keys()];
        this.textures.clear();
        for (const texture of textures) this.allocate(texture);
    }

    /**
     * The canvas gets so many pixels, and what is drawn on the way to it likewise.
     * @param {number} width
     * @param {number} height
     */
    resize(width, height) {
        if (this.canvas.width === width && this.canvas.height === height) return;
        this.canvas.width = width;
        this.canvas.height = height;
        for (const texture of this.textures.keys()) this.allocate(texture);
    }

    // The show's own calls, see Engine/page.h. Each of its starts makes the same programs and textures under the
    // same numbers: what is there is left as it is.

    get height() {
        return this.canvas.height;
    }

    /**
     * @param {boolean} ofVertices
     * @param {string} text
     */
    compile(ofVertices, text) {
        const known = [...this.programs.values(), ...this.prepared];
        if (known.some(({ main, texts }) => main && texts[ofVertices ? 0 : 1] === text)) return "";
        return told(faultsOfText(this.gl, ofVertices, text));
    }

    /**
     * @param {number} number
     * @param {string} vertexText
     * @param {string} pixelText
     */
    makeProgram(number, vertexText, pixelText) {
        const former = this.programs.get(number);
        const texts = [vertexText, pixelText];
        if (former?.main && former.isOf(texts)) return "";
        former?.delete();
        const program = this.prepared.find((one) => one.isOf(texts)) ?? new Program(this.gl, texts);
        this.programs.set(number, program);
        return program.main ? "" : told(program.build());
    }

    /**
     * @param {number} number
     * @param {string} name
     * @param {number} value
     */
    setUniform(number, name, value) {
        this.programs.get(number)?.setUniform(name, value);
    }

    /** @param {number} number */
    makeTexture(number) {
        if (!this.textures.has(number)) this.allocate(number);
    }

    /** @param {number} number of a texture */
    allocate(number) {
        const { gl } = this;
        const former = this.textures.get(number);
        gl.deleteTexture(former?.texture ?? null);
        gl.deleteFramebuffer(former?.framebuffer ?? null);
        const texture = newTexture(gl, gl.LINEAR);
        gl.texStorage2D(gl.TEXTURE_2D, 1, gl.RGBA8, this.canvas.width, this.canvas.height);
        const framebuffer = gl.createFramebuffer();
        gl.bindFramebuffer(gl.FRAMEBUFFER, framebuffer);
        gl.framebufferTexture2D(gl.FRAMEBUFFER, gl.COLOR_ATTACHMENT0, gl.TEXTURE_2D, texture, 0);
        gl.bindFramebuffer(gl.FRAMEBUFFER, null);
        this.textures.set(number, { texture, framebuffer });
    }

    /** @param {number} number */
    setTarget(number) {
        const { gl } = this;
        gl.bindFramebuffer(gl.FRAMEBUFFER, this.textures.get(number)?.framebuffer ?? null);
        gl.viewport(0, 0, this.canvas.width, this.canvas.height);
    }

    /**
     * @param {number} r
     * @param {number} g
     * @param {number} b
     * @param {number} a
     */
    clear(r, g, b, a) {
        const { gl } = this;
        gl.clearColor(r, g, b, a);
        gl.clear(gl.COLOR_BUFFER_BIT | gl.DEPTH_BUFFER_BIT);
    }

    /** @param {import("./Engine.js").Batch} batch */
    draw(batch) {
        const { gl } = this;
        const program = this.programs.get(batch.program);
        if (!program?.main) {
            return;
        }
        const slot = (this.slots[batch.slot] ??= new Slot(gl));
        slot.take(batch);
        this.setState(batch.blended, batch.tested);
        if (batch.lines.count) {
            this.drawLines(program, slot, batch);
        } else {
            this.drawPoints(program, slot, batch);
        }
    }

    /**
     * Puts another text in place of one of a program's two.
     * @param {number} index of the program, in the order of their making
     * @param {boolean} ofVertices
     * @param {string} text
     * @returns {import("./glsl.js").Fault[]}
     */
    replaceShader(index, ofVertices, text) {
        if (text.length > MOST_LETTERS || text.split("\n").length > MOST_LINES) {
            const most = `${MOST_LINES} lines or ${MOST_LETTERS} letters`;
            return [{ line: 1, message: `This text is longer than graphics cards take at once: ${most}.` }];
        }
        const program = [...this.programs.values()][index];
        return program.replace(ofVertices, text).map(({ line, message }) => ({ line, message }));
    }

    /**
     * @param {Program} program
     * @param {Slot} slot
     * @param {import("./Engine.js").Batch} batch
     */
    drawPoints(program, slot, { runs, projection }) {
        const { gl } = this;
        const main = program.useMain(projection);
        bind(gl, 1, slot.matrices.texture);
        gl.bindVertexArray(slot.vertexArray);
        let first = 0;
        for (const { count, width } of runs) {
            main.setPointSize(Math.max(1, width));
            gl.drawArrays(gl.POINTS, first, count);
            first += count;
        }
        gl.bindVertexArray(null);
    }

    /**
     * @param {Program} program
     * @param {Slot} slot
     * @param {import("./Engine.js").Batch} batch
     */
    drawLines(program, slot, { points, lines, runs, projection }) {
        const { gl } = this;
        // Once for both drawings of a frame.
        slot.transform(program, projection, points.count);
        const between = program.useLines(this.canvas.width / 2, this.canvas.height / 2);
        bind(gl, 2, slot.transformed.texture);
        bind(gl, 3, slot.lines.texture);
        this.useQuads(lines.count / 2);
        let first = 0;
        for (const { count, width } of runs) {
            between.setWidth(width);
            gl.drawElements(gl.TRIANGLES, 6 * count, gl.UNSIGNED_INT, 24 * first);
            first += count;
        }
        gl.bindVertexArray(null);
    }

    /** @param {import("./Engine.js").Quad} quad */
    drawQuad({ program: number, texture, corners, projection, modelView, blended }) {
        const { gl } = this;
        const program = this.programs.get(number);
        const source = this.textures.get(texture);
        if (!program?.main || !source) {
            return;
        }
        this.setState(blended, false);
        gl.bindBuffer(gl.ARRAY_BUFFER, this.corners);
        gl.bufferData(gl.ARRAY_BUFFER, corners, gl.STREAM_DRAW);
        bind(gl, 1, this.quadMatrix);
        gl.texSubImage2D(gl.TEXTURE_2D, 0, 0, 0, 4, 1, gl.RGBA, gl.FLOAT, modelView);
        bind(gl, 0, source.texture);
        program.useMain(projection);
        gl.bindVertexArray(this.quad);
        gl.drawArrays(gl.TRIANGLE_FAN, 0, 4);
        gl.bindVertexArray(null);
    }

    /**
     * @param {boolean} blended
     * @param {boolean} tested
     */
    setState(blended, tested) {
        const { gl } = this;
        blended ? gl.enable(gl.BLEND) : gl.disable(gl.BLEND);
        tested ? gl.enable(gl.DEPTH_TEST) : gl.disable(gl.DEPTH_TEST);
    }

    /**
     * Four corners for each line, made of nothing but their numbers.
     * @param {number} count
     */
    useQuads(count) {
        const { gl } = this;
        if (count > this.quadCount) {
            this.quadCount = Math.max(count, 2 * this.quadCount);
            const numbers = new Uint32Array(6 * this.quadCount);
            for (let i = 0; i < this.quadCount; ++i) {
                numbers.set([4 * i, 4 * i + 1, 4 * i + 2, 4 * i + 2, 4 * i + 1, 4 * i + 3], 6 * i);
            }
            this.quadElements ??= { array: gl.createVertexArray(), buffer: gl.createBuffer() };
            gl.bindVertexArray(this.quadElements.array);
            gl.bindBuffer(gl.ELEMENT_ARRAY_BUFFER, this.quadElements.buffer);
            gl.bufferData(gl.ELEMENT_ARRAY_BUFFER, numbers, gl.STATIC_DRAW);
        }
        gl.bindVertexArray(this.quadElements?.array ?? null);
    }
}

/** @param {import("./glsl.js").Fault[]} faults */
const told = (faults) => faults.map(({ line, message }) => `${line}: ${message}`).join("\n");

/**
 * @param {WebGL2RenderingContext} gl
 * @param {number} unit
 * @param {WebGLTexture | null} texture
 */
function bind(gl, unit, texture) {
    gl.activeTexture(gl.TEXTURE0 + unit);
    gl.bindTexture(gl.TEXTURE_2D, texture);
}

/**
 * A texture, bound, with its filter.
 * @param {WebGL2RenderingContext} gl
 * @param {number} filter
 */
function newTexture(gl, filter) {
    const texture = gl.createTexture();
    bind(gl, 0, texture);
    gl.texParameteri(gl.TEXTURE_2D, gl.TEXTURE_MIN_FILTER, filter);
    gl.texParameteri(gl.TEXTURE_2D, gl.TEXTURE_MAG_FILTER, filter);
    return texture;
}
