#version 120
// The quad shrinks into the corner that two small pictures share: texture coordinates are positions in the target.
const vec2 CORNER = vec2(0.32, 0.26); // a little more than both need, so that each has a rim; vblur.ps knows it

void main() {
    vec2 position = CORNER * gl_MultiTexCoord0.st;
    gl_TexCoord[0] = vec4(position, 0.0, 1.0);
    gl_Position = gl_ProjectionMatrix * (gl_ModelViewMatrix * vec4(position, 0.0, 1.0));
}
