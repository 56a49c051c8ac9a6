#version 120
// A picture over the whole target: texture coordinates are positions.
void main() {
    gl_Position = ftransform();
    gl_TexCoord[0] = gl_MultiTexCoord0;
}
