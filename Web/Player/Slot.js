/** Texels in a row of the textures that are used as lists. */
const ROW = 1024;

/** A list on the graphics card, kept in a buffer. */
class ListBuffer {
    /** @param {WebGL2RenderingContext} gl */
    constructor(gl) {
        this.gl = gl;
        this.buffer = gl.createBuffer();
        this.capacity = 0; // numbers
    }

    /** @param {import("./Engine.js").List} list */
    take({ items, count, changedFrom, changedTo }) {
        const { gl } = this;
        if (changedFrom >= changedTo) {
            return false;
        }
        const size = items.length / count;
        gl.bindBuffer(gl.ARRAY_BUFFER, this.buffer);
        if (items.length > this.capacity) {
            this.capacity = 2 * items.length;
            gl.bufferData(gl.ARRAY_BUFFER, 4 * this.capacity, gl.DYNAMIC_DRAW);
            changedFrom = 0;
            changedTo = count;
        }
        gl.bufferSubData(
            gl.ARRAY_BUFFER,
            4 * size * changedFrom,
            items,
            size * changedFrom,
            size * (changedTo - changedFrom),
        );
        return true;
    }
}

/** A list on the graphics card that shaders read by number, kept in the rows of a texture. */
class ListTexture {
    /**
     * @param {WebGL2RenderingContext} gl
     * @param {number} row
     * @param {number} size
     * @param {number} inside
     * @param {number} format
     * @param {number} type
     */
    constructor(gl, row, size, inside, format, type) {
        this.gl = gl;
        this.row = row;
        this.size = size; // numbers in a texel
        this.inside = inside;
        this.format = format;
        this.type = type;
        /** @type {WebGLTexture | null} */
        this.texture = null;
        this.rows = 0;
    }

    /**
     * Makes room for so many texels, and binds the texture.
     * @param {number} texels
     */
    reserve(texels) {
        const { gl } = this;
        const rows = Math.ceil(texels / this.row);
        gl.activeTexture(gl.TEXTURE0);
        if (rows <= this.rows) {
            gl.bindTexture(gl.TEXTURE_2D, this.texture);
            return false;
        }
        this.rows = 2 * rows;
        gl.deleteTexture(this.texture);
        this.texture = gl.createTexture();
        gl.bindTexture(gl.TEXTURE_2D, this.texture);
        gl.texParameteri(gl.TEXTURE_2D, gl.TEXTURE_MIN_FILTER, gl.NEAREST);
        gl.texParameteri(gl.TEXTURE_2D, gl.TEXTURE_MAG_FILTER, gl.NEAREST);
        gl.texStorage2D(gl.TEXTURE_2D, 1, this.inside, this.row, this.rows);
        return true;
    }

    /**
     * @param {import("./Engine.js").List} list
     * @param {number} texels per item of the list: a fraction where it takes several
     */
    take({ items, count, changedFrom, changedTo }, texels) {
        if (changedFrom >= changedTo) {
            return false;
        }
        if (this.reserve(count * texels)) {
            changedFrom = 0;
            changedTo = count;
        }
        const { gl, row, size } = this;
        // Whole rows; the last one as far as the list goes.
        const first = Math.floor((changedFrom * texels) / row);
        const end = changedTo * texels;
        const whole = Math.floor(end / row);
        if (whole > first) {
            gl.texSubImage2D(
                gl.TEXTURE_2D,
                0,
                0,
                first,
                row,
                whole - first,
                this.format,
                this.type,
                items,
                first * row * size,
            );
        }
        if (end > whole * row) {
            gl.texSubImage2D(
                gl.TEXTURE_2D,
                0,
                0,
                whole,
                end - whole * row,
                1,
                this.format,
                this.type,
                items,
                whole * row * size,
            );
        }
        return true;
    }
}

/**
 * What the graphics card has of a batch of points or lines. The next batch in the same place of a frame is
 * mostly the same.
 */
export class Slot {
    /** @param {WebGL2RenderingContext} gl */
    constructor(gl) {
        this.gl = gl;
        this.points = new ListBuffer(gl);
        this.owners = new ListBuffer(gl);
        this.matrices = new ListTexture(gl, 4, 4, gl.RGBA32F, gl.RGBA, gl.FLOAT);
        this.lines = new ListTexture(gl, ROW, 2, gl.RG32UI, gl.RG_INTEGER, gl.UNSIGNED_INT);
        this.transformed = new ListTexture(gl, ROW, 4, gl.RGBA32F, gl.RGBA, gl.FLOAT);
        this.caught = gl.createBuffer();
        this.catching = gl.createTransformFeedback();
        this.caughtTexels = 0;
        this.changed = true;
        /** @type {{program: import("./Program.js").Program | null, version: number, projection: Float32Array}} */
        this.seen = { program: null, version: 0, projection: new Float32Array(16) };

        this.vertexArray = gl.createVertexArray();
        gl.bindVertexArray(this.vertexArray);
        gl.bindBuffer(gl.ARRAY_BUFFER, this.points.buffer);
        gl.enableVertexAttribArray(0);
        gl.vertexAttribPointer(0, 3, gl.FLOAT, false, 28, 0);
        gl.enableVertexAttribArray(1);
        gl.vertexAttribPointer(1, 4, gl.FLOAT, false, 28, 12);
        gl.bindBuffer(gl.ARRAY_BUFFER, this.owners.buffer);
        gl.enableVertexAttribArray(2);
        gl.vertexAttribIPointer(2, 1, gl.UNSIGNED_INT, 4, 0);
        gl.bindVertexArray(null);
    }

    /**
     * Takes what is new.
     * @param {import("./Engine.js").Batch} batch
     */
    take({ points, owners, matrices, lines }) {
        const changes = [this.points.take(points), this.owners.take(owners), this.matrices.take(matrices, 4)];
        this.lines.take(lines, 0.5);
        this.changed ||= changes.some((changed) => changed);
    }

    /**
     * Puts each point through a program's vertex shader, unless that would change nothing.
     * @param {import("./Program.js").Program} program
     * @param {Float32Array} projection
     * @param {number} count
     */
    transform(program, projection, count) {
        const { gl, seen } = this;
        if (
            !this.changed &&
            seen.program === program &&
            seen.version === program.version &&
            seen.projection.every((x, i) => x === projection[i])
        ) {
            return;
        }
        this.changed = false;
        seen.program = program;
        seen.version = program.version;
        seen.projection.set(projection);

        const texels = count * program.texels;
        const rows = Math.ceil(texels / ROW);
        if (rows * ROW > this.caughtTexels) {
            this.caughtTexels = 2 * rows * ROW;
            gl.bindBuffer(gl.ARRAY_BUFFER, this.caught);
            gl.bufferData(gl.ARRAY_BUFFER, 16 * this.caughtTexels, gl.DYNAMIC_COPY);
            gl.bindBuffer(gl.ARRAY_BUFFER, null);
        }
        program.useMain(projection);
        gl.activeTexture(gl.TEXTURE1);
        gl.bindTexture(gl.TEXTURE_2D, this.matrices.texture);
        gl.bindVertexArray(this.vertexArray);
        gl.bindTransformFeedback(gl.TRANSFORM_FEEDBACK, this.catching);
        gl.bindBufferBase(gl.TRANSFORM_FEEDBACK_BUFFER, 0, this.caught);
        gl.enable(gl.RASTERIZER_DISCARD);
        gl.beginTransformFeedback(gl.POINTS);
        gl.drawArrays(gl.POINTS, 0, count);
        gl.endTransformFeedback();
        gl.disable(gl.RASTERIZER_DISCARD);
        gl.bindBufferBase(gl.TRANSFORM_FEEDBACK_BUFFER, 0, null);
        gl.bindTransformFeedback(gl.TRANSFORM_FEEDBACK, null);
        gl.bindVertexArray(null);

        this.transformed.reserve(texels);
        gl.bindBuffer(gl.PIXEL_UNPACK_BUFFER, this.caught);
        gl.texSubImage2D(gl.TEXTURE_2D, 0, 0, 0, ROW, rows, gl.RGBA, gl.FLOAT, 0);
        gl.bindBuffer(gl.PIXEL_UNPACK_BUFFER, null);
    }
}
