import { Slot } from "./Slot.js";
import { Program, faultsOfText } from "./Program.js";
import { pixelShader, varyingsOf, vertexShader } from "./glsl.js";

/** Line widths and point sizes are meant for a picture of this height, in pixels; a larger one scales them. */
const USUAL_HEIGHT = 480;

/** A WebGL that draws lines of this width by itself is taken at its word: they are as wide on a large screen. */
const WIDEST = 64;

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
        /** The widest line that this WebGL draws by itself: often 1. */
        this.widestLine = gl.getParameter(gl.ALIASED_LINE_WIDTH_RANGE)[1];
        /** @type {Map<number, Program>} */
        this.programs = new Map();
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
        for (const program of this.programs.values()) {
            program.forget();
            program.build();
        }
        for (const texture of this.textures.keys()) {
            this.textures.set(texture, { texture: null, framebuffer: null });
            this.makeTexture(texture);
        }
    }

    /** Forgets the show's objects: another show begins. */
    reset() {
        for (const program of this.programs.values()) {
            program.delete();
        }
        this.programs.clear();
        this.textures.forEach((made) => this.deleteTexture(made));
        this.textures.clear();
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
        for (const texture of this.textures.keys()) {
            this.makeTexture(texture);
        }
    }

    get scale() {
        return Math.max(1, this.canvas.height / USUAL_HEIGHT);
    }

    // The show's own calls, see Engine/page.h.

    /**
     * @param {boolean} ofVertices
     * @param {string} text
     */
    compile(ofVertices, text) {
        const varyings = varyingsOf(ofVertices ? text : "", ofVertices ? "" : text);
        const translated = (ofVertices ? vertexShader : pixelShader)(text, varyings);
        return faultsOfText(this.gl, ofVertices, translated)
            .map(({ line, message }) => `${line}: ${message}`)
            .join("\n");
    }

    /**
     * @param {number} number
     * @param {string} vertexText
     * @param {string} pixelText
     */
    makeProgram(number, vertexText, pixelText) {
        const program = new Program(this.gl, vertexText, pixelText, this.drawsWideLines);
        const faults = program.build();
        this.programs.set(number, program);
        return faults.map(({ line, message }) => `${line}: ${message}`).join("\n");
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
        const { gl } = this;
        this.deleteTexture(this.textures.get(number));
        const texture = newTexture(gl, gl.LINEAR);
        gl.texStorage2D(gl.TEXTURE_2D, 1, gl.RGBA8, this.canvas.width, this.canvas.height);
        const framebuffer = gl.createFramebuffer();
        gl.bindFramebuffer(gl.FRAMEBUFFER, framebuffer);
        gl.framebufferTexture2D(gl.FRAMEBUFFER, gl.COLOR_ATTACHMENT0, gl.TEXTURE_2D, texture, 0);
        gl.bindFramebuffer(gl.FRAMEBUFFER, null);
        this.textures.set(number, { texture, framebuffer });
    }

    /** @param {Target | undefined} made */
    deleteTexture(made) {
        if (made) {
            this.gl.deleteTexture(made.texture);
            this.gl.deleteFramebuffer(made.framebuffer);
        }
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
        const slot = (this.slots[batch.slot] ??= new Slot(gl, this.drawsWideLines));
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
     */
    replaceShader(index, ofVertices, text) {
        const program = [...this.programs.values()][index];
        return program.replace(ofVertices, text).map(({ line, message }) => ({ line, message }));
    }

    get drawsWideLines() {
        return this.widestLine >= WIDEST;
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
            main.setPointSize(Math.max(1, width * this.scale));
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
        let first = 0;
        if (this.drawsWideLines) {
            gl.bindVertexArray(slot.lineArray);
            for (const { count, width } of runs) {
                gl.lineWidth(width * this.scale);
                gl.drawElements(gl.LINES, 2 * count, gl.UNSIGNED_INT, 8 * first);
                first += count;
            }
        } else {
            bind(gl, 2, slot.transformed.texture);
            bind(gl, 3, slot.lines?.texture ?? null);
            this.useQuads(lines.count / 2);
            for (const { count, width } of runs) {
                between.setWidth(width * this.scale);
                gl.drawElements(gl.TRIANGLES, 6 * count, gl.UNSIGNED_INT, 24 * first);
                first += count;
            }
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
