#version 120
// The scene: in come its vertices and colours, the strength of the beat and the brightness; out go lit vertices.
uniform float amplif; // 1 on a beat, falling to 0, or just below it for a moment
uniform float fade;   // 0 black .. 1 full

const float CLEAR = 14.0;     // world units up to which nothing is lost from sight ...
const float REACH = 62.0;     // ... and where, in level flight, all has sunk into the dark
const float SPACING = 3.0;    // more than between two points of the lattice

void main() {
    vec4 eye = gl_ModelViewMatrix * gl_Vertex;

    // Level flights see the far lattice edge-on, so dense that it would close into a wall: it thins out into the
    // dark. The more the view looks down (up then points at the eye), the farther it reaches.
    float steepness = max(normalize(gl_ModelViewMatrix[1].xyz).z, 0.0);
    float reach = REACH / max(1.0 - steepness, 0.01);
    float distance = length(eye.xyz);
    float sight = 1.0 - smoothstep(CLEAR, reach, distance);

    float beat = max(amplif, 0.0);
    eye.xy *= 1.0 + 0.04 * beat;
    gl_Position = gl_ProjectionMatrix * eye;
    if (distance > reach + SPACING) {
        gl_Position = vec4(2.0, 2.0, 2.0, 1.0); // dark, and so are its neighbours: nothing to draw
    }
    gl_FrontColor = vec4(gl_Color.rgb * fade * sight * sight * (1.0 + 1.2 * beat), gl_Color.a);
}
