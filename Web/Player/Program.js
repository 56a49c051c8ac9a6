import { caught, faultsOf, pixelShader, quadShader, varyingsOf, vertexShader } from "./glsl.js";

/**
 * @param {WebGL2RenderingContext} gl
 * @param {number} type
 * @param {string} text
 */
function compile(gl, type, text) {
    const shader = /** @type {WebGLShader} */ (gl.createShader(type));
    gl.shaderSource(shader, text);
    gl.compileShader(shader);
    return shader;
}

/**
 * @param {WebGL2RenderingContext} gl
 * @param {WebGLShader} shader
 */
function faultsOfShader(gl, shader) {
    if (gl.getShaderParameter(shader, gl.COMPILE_STATUS) || gl.isContextLost()) {
        return [];
    }
    return faultsOf(gl.getShaderInfoLog(shader) || "It does not compile.");
}

/**
 * What is wrong with a shader by itself.
 * @param {WebGL2RenderingContext} gl
 * @param {boolean} ofVertices
 * @param {string} text
 */
export function faultsOfText(gl, ofVertices, text) {
    const translated = ofVertices
        ? vertexShader(text, varyingsOf(text, ""))
        : pixelShader(text, varyingsOf("", text));
    const shader = compile(gl, ofVertices ? gl.VERTEX_SHADER : gl.FRAGMENT_SHADER, translated);
    const faults = faultsOfShader(gl, shader);
    gl.deleteShader(shader);
    return faults;
}

/**
 * One program of the show, of two of its shader files. It becomes two of WebGL: the main one, which draws
 * points and pictures and puts the points of lines through the vertex shader, once each; and one that draws
 * lines between such points.
 *
 * @typedef {{shaders: WebGLShader[], main: WebGLProgram, lines: WebGLProgram, texels: number}} Launched
 */
export class Program {
    /**
     * @param {WebGL2RenderingContext} gl
     * @param {string[]} texts of the vertices, and of the pixels
     */
    constructor(gl, texts) {
        this.gl = gl;
        this.texts = texts;
        /** @type {Map<string, number>} */
        this.uniforms = new Map();
        /** Changes whenever the same points would come out of it differently. */
        this.version = 0;
        /** @type {Linked | null} */
        this.main = null;
        /** @type {Linked | null} */
        this.lines = null;
        this.texels = 0;
        /** @type {Launched | null} */
        this.launched = null;
    }

    /** @param {string[]} texts */
    isOf(texts) {
        return this.texts.every((text, i) => text === texts[i]);
    }

    /** Has it compiled and linked anew, and waits for nothing. */
    launch() {
        const { gl } = this;
        const [vertexText, pixelText] = this.texts;
        const varyings = varyingsOf(vertexText, pixelText);
        const vertex = compile(gl, gl.VERTEX_SHADER, vertexShader(vertexText, varyings));
        const pixels = compile(gl, gl.FRAGMENT_SHADER, pixelShader(pixelText, varyings));
        const line = compile(gl, gl.VERTEX_SHADER, quadShader(varyings));
        /** @type {(first: WebGLShader, kept: string[] | null) => WebGLProgram} */
        const link = (first, kept) => {
            const program = /** @type {WebGLProgram} */ (gl.createProgram());
            gl.attachShader(program, first);
            gl.attachShader(program, pixels);
            if (kept) gl.transformFeedbackVaryings(program, kept, gl.INTERLEAVED_ATTRIBS);
            gl.linkProgram(program);
            return program;
        };
        const main = link(vertex, caught(varyings));
        const lines = link(line, null);
        this.launched = { shaders: [vertex, pixels, line], main, lines, texels: caught(varyings).length };
    }

    /**
     * Takes what was launched in place of what is there, unless it is faulty.
     * @returns {(import("./glsl.js").Fault & {ofVertices: boolean})[]}
     */
    build() {
        const { gl } = this;
        if (!this.launched) this.launch();
        const { shaders, main, lines, texels } = /** @type {Launched} */ (this.launched);
        this.launched = null;
        const [vertex, pixels] = shaders;
        const faults = [
            ...faultsOfShader(gl, vertex).map((fault) => ({ ...fault, ofVertices: true })),
            ...faultsOfShader(gl, pixels).map((fault) => ({ ...fault, ofVertices: false })),
        ];
        for (const program of [main, lines]) {
            if (!faults.length && !gl.getProgramParameter(program, gl.LINK_STATUS) && !gl.isContextLost()) {
                const said = faultsOf(gl.getProgramInfoLog(program) ?? "");
                faults.push(...said.map((fault) => ({ ...fault, ofVertices: false })));
            }
        }
        for (const shader of shaders) gl.deleteShader(shader);
        if (faults.length) {
            gl.deleteProgram(main);
            gl.deleteProgram(lines);
            return faults;
        }
        this.delete();
        this.main = new Linked(gl, main, { show_matrices: 1 });
        this.lines = new Linked(gl, lines, { show_points: 2, show_lines: 3 });
        this.texels = texels;
        ++this.version;
        return [];
    }

    /**
     * Puts another text in place of one of the two; if that is no good, all stays as it was.
     * @param {boolean} ofVertices
     * @param {string} text
     */
    replace(ofVertices, text) {
        const former = this.texts;
        this.texts = ofVertices ? [text, former[1]] : [former[0], text];
        const faults = this.build();
        if (faults.length) {
            this.texts = former;
        }
        return faults;
    }

    delete() {
        this.main?.delete();
        this.lines?.delete();
        this.forget();
    }

    /** They are gone with their context. */
    forget() {
        this.main = null;
        this.lines = null;
        this.launched = null;
    }

    /**
     * @param {string} name
     * @param {number} value
     */
    setUniform(name, value) {
        if (this.uniforms.get(name) !== value) {
            this.uniforms.set(name, value);
            ++this.version;
        }
    }

    /** @param {Float32Array} projection */
    useMain(projection) {
        const place = this.use(this.main);
        this.gl.uniformMatrix4fv(place("show_ProjectionMatrix"), false, projection);
        return {
            setPointSize: (/** @type {number} */ size) => this.gl.uniform1f(place("show_pointSize"), size),
        };
    }

    /**
     * @param {number} halfWidth of the target, in pixels
     * @param {number} halfHeight
     */
    useLines(halfWidth, halfHeight) {
        const place = this.use(this.lines);
        this.gl.uniform2f(place("show_halfSize"), halfWidth, halfHeight);
        return {
            setWidth: (/** @type {number} */ width) => this.gl.uniform1f(place("show_halfWidth"), width / 2),
        };
    }

    /** @param {Linked | null} linked */
    use(linked) {
        const { gl } = this;
        gl.useProgram(linked?.program ?? null);
        const place = (/** @type {string} */ name) => linked?.at(name) ?? null;
        for (const [name, value] of this.uniforms) gl.uniform1f(place(name), value);
        return place;
    }
}

/** A program of WebGL and the places of its uniforms. */
class Linked {
    /**
     * @param {WebGL2RenderingContext} gl
     * @param {WebGLProgram} program
     * @param {Record<string, number>} samplers
     */
    constructor(gl, program, samplers) {
        this.gl = gl;
        this.program = program;
        /** @type {Map<string, WebGLUniformLocation | null>} */
        this.places = new Map();
        gl.useProgram(program);
        for (const [name, unit] of Object.entries(samplers)) {
            gl.uniform1i(this.at(name), unit);
        }
    }

    /** @param {string} name */
    at(name) {
        if (!this.places.has(name)) {
            this.places.set(name, this.gl.getUniformLocation(this.program, name));
        }
        return this.places.get(name) ?? null;
    }

    delete() {
        this.gl.deleteProgram(this.program);
    }
}
