// The shader files are written for desktop OpenGL, in GLSL 1.20. Here they become GLSL ES 3.00: by renaming
// what is built in there, and by text before and behind that defines it here. Lines keep their numbers.

/**
 * @typedef {{type: string, name: string}} Varying
 * @typedef {{line: number, message: string}} Fault of a text, in its own lines
 */

const PRECISION = `#version 300 es
precision highp float;
precision highp int;
precision highp sampler2D;
`;

/**
 * What the vertex shader passes on to the pixels: its colour, and what the two texts agree on besides.
 * @param {string} vertexText
 * @param {string} pixelText
 * @returns {Varying[]}
 */
export function varyingsOf(vertexText, pixelText) {
    const varyings = [{ type: "vec4", name: "show_Colour" }];
    const coordinates = new Set(
        [...(vertexText + pixelText).matchAll(/\bgl_TexCoord\s*\[\s*(\d)\s*\]/g)].map((m) => m[1]),
    );
    for (const index of coordinates) {
        varyings.push({ type: "vec4", name: `show_TexCoord${index}` });
    }
    const own = vertexText.matchAll(/\bvarying\s+(?:(?:lowp|mediump|highp)\s+)?(float|vec[234])\s+([^;]+);/g);
    for (const [, type, names] of own) {
        for (const name of names.split(",")) {
            varyings.push({ type, name: name.trim() });
        }
    }
    return varyings;
}

/** @param {string} text */
function renamed(text) {
    return text
        .replace(/^[ \t]*#[ \t]*version.*$/m, "")
        .replace(/\bgl_TexCoord\s*\[\s*(\d)\s*\]/g, "show_TexCoord$1")
        .replace(
            /\bgl_(Color|FrontColor|FragColor|Vertex|MultiTexCoord0|ModelViewMatrix|ProjectionMatrix|ModelViewProjectionMatrix)\b/g,
            "show_$1",
        )
        .replace(/\bgl_FragData\s*\[\s*0\s*\]/g, "show_FragColor")
        .replace(/\btexture2D(Lod|Proj)?\s*\(/g, "texture$1(")
        .replace(/\bvoid\s+main\s*\(\s*(void)?\s*\)/, "void show_main()");
}

/**
 * The vertex shader. Which matrix is the model-view of a vertex, the vertex says itself.
 * @param {string} text
 * @param {Varying[]} varyings
 */
export function vertexShader(text, varyings) {
    const coordinates = varyings.filter(({ name }) => name.startsWith("show_TexCoord"));
    return `${PRECISION}
layout(location = 0) in vec3 show_position;
layout(location = 1) in vec4 show_Color;
layout(location = 2) in uint show_owner;
layout(location = 3) in vec2 show_coordinates;
uniform sampler2D show_matrices;
uniform mat4 show_ProjectionMatrix;
uniform float show_pointSize;
out vec4 show_Colour;
${varyings.map(({ name }) => `out vec4 caught_${name};`).join("\n")}
${coordinates.map(({ type, name }) => `out ${type} ${name};`).join("\n")}
mat4 show_ModelViewMatrix;
vec4 show_Vertex;
vec4 show_MultiTexCoord0;
vec4 show_FrontColor;
#define show_ModelViewProjectionMatrix (show_ProjectionMatrix * show_ModelViewMatrix)
vec4 ftransform() { return show_ModelViewProjectionMatrix * show_Vertex; }
#line 1
${renamed(text).replace(/\bvarying\b/g, "out")}
void main() {
    int row = int(show_owner);
    for (int column = 0; column < 4; ++column) {
        show_ModelViewMatrix[column] = texelFetch(show_matrices, ivec2(column, row), 0);
    }
    show_Vertex = vec4(show_position, 1.0);
    show_MultiTexCoord0 = vec4(show_coordinates, 0.0, 1.0);
    show_FrontColor = vec4(0.0);
    show_main();
    show_Colour = clamp(show_FrontColor, 0.0, 1.0); // as desktop OpenGL does between the two shaders
    gl_PointSize = show_pointSize;
${varyings.map(({ type, name }) => `    caught_${name} = vec4(${name}${PADDING[type]});`).join("\n")}
}
`;
}

/**
 * The pixel shader.
 * @param {string} text
 * @param {Varying[]} varyings
 */
export function pixelShader(text, varyings) {
    const builtIn = varyings.filter(({ name }) => name.startsWith("show_"));
    return `${PRECISION}
${builtIn.map(({ type, name }) => `in ${type} ${name};`).join("\n")}
out vec4 show_FragColor;
#define show_Color show_Colour
#line 1
${renamed(text).replace(/\bvarying\b/g, "in")}
void main() { show_main(); }
`;
}

/**
 * Varyings are kept in texels of four numbers: how a type is put into one, and taken out again.
 * @type {Record<string, string>}
 */
const PADDING = { float: ", 0.0, 0.0, 0.0", vec2: ", 0.0, 0.0", vec3: ", 0.0", vec4: "" };
/** @type {Record<string, string>} */
const PARTS = { float: ".x", vec2: ".xy", vec3: ".xyz", vec4: "" };

/**
 * What is caught of a point behind the vertex shader, in the order of its texels.
 * @param {Varying[]} varyings
 */
export const caught = (varyings) => ["gl_Position", ...varyings.map(({ name }) => `caught_${name}`)];

/**
 * Lines, which hardly any WebGL draws as wide as they are: a quad each, made of two points that have been through
 * the vertex shader. Cut where they come too near, widened across the axis along which they are shorter, as
 * OpenGL does it.
 * @param {Varying[]} varyings
 */
export function quadShader(varyings) {
    const texels = caught(varyings).length;
    return `${PRECISION}
precision highp usampler2D;
uniform sampler2D show_points;
uniform usampler2D show_lines;
uniform vec2 show_halfSize;  // of the target, in pixels
uniform float show_halfWidth; // of a line
${varyings.map(({ type, name }) => `out ${type} ${name};`).join("\n")}

vec4 texel(int index) { return texelFetch(show_points, ivec2(index & 1023, index >> 10), 0); }

void main() {
    int line = gl_VertexID >> 2;
    ivec2 ends = ivec2(texelFetch(show_lines, ivec2(line & 1023, line >> 10), 0).xy) * ${texels};
    bool atEnd = (gl_VertexID & 2) != 0;
    float side = (gl_VertexID & 1) != 0 ? 1.0 : -1.0;
    int here = atEnd ? ends.y : ends.x;
    int there = atEnd ? ends.x : ends.y;

    vec4 begin = texel(here);
    vec4 end = texel(there);
    gl_Position = begin; // the near plane cuts off what is before it, but tells which way the line goes
    float before = begin.z + begin.w;
    float endBefore = end.z + end.w;
    if (before < 0.0) begin = mix(begin, end, before / (before - endBefore));
    if (endBefore < 0.0) end = mix(end, begin, endBefore / (endBefore - before));
    vec2 along = abs(end.xy / end.w - begin.xy / begin.w) * show_halfSize;
    vec2 across = along.x >= along.y ? vec2(0.0, show_halfWidth) : vec2(show_halfWidth, 0.0);
    gl_Position.xy += side * across / show_halfSize * gl_Position.w;
${varyings.map(({ name, type }, i) => `    ${name} = texel(here + ${i + 1})${PARTS[type]};`).join("\n")}
}
`;
}

/**
 * What the compiler says of a text, in that text's own lines and names.
 * @param {string} log
 * @returns {Fault[]}
 */
export function faultsOf(log) {
    const faults = [];
    for (const said of log.split("\n")) {
        const found = said.replace(/\0/g, "").match(/^ERROR:\s*\d+:(\d+):\s*(.*)$/);
        if (found) {
            const message = found[2]
                .replace(/show_Colour/g, "gl_Color")
                .replace(/show_TexCoord(\d)/g, "gl_TexCoord[$1]")
                .replace(/show_main/g, "main")
                .replace(/'texture(Lod|Proj)?'/g, "'texture2D$1'")
                .replace(/show_/g, "gl_");
            faults.push({ line: Number(found[1]), message });
        }
    }
    if (!faults.length && log.trim()) {
        faults.push({ line: 1, message: log.replace(/\0/g, "").trim() });
    }
    return faults;
}
