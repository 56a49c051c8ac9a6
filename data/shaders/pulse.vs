#version 120
// The scene: in come its vertices and colours, the strength of the beat and the brightness; out go lit vertices.
uniform float amplif; // 1 on a beat, falling to 0, or just below it for a moment
uniform float fade;   // 0 black .. 1 full

const float CLEAR = 12.0; // world units up to which nothing is lost from sight ...
const float REACH = 55.0; // ... and where, in level flight, grey has sunk into the dark
const float MARGIN = 3.0; // more than from one point of the lattice to the next
const vec3 COLD = vec3(0.56, 0.78, 1.0); // grey in the dark

void main() {
    vec4 eye = gl_ModelViewMatrix * gl_Vertex;
    float distance = length(eye.xyz);

    // Level flights meet the far lattice edge-on, so dense that it would close into a wall: it thins out into the
    // dark. The more the view looks down (up then points at the eye) the farther it reaches, and the brighter the
    // light; and colour carries farther than grey.
    float steepness = max(normalize(gl_ModelViewMatrix[1].xyz).z, 0.0);
    float brightest = max(max(gl_Color.r, gl_Color.g), gl_Color.b);
    float grey = min(min(gl_Color.r, gl_Color.g), gl_Color.b) / max(brightest, 0.001);
    float haze = mix(0.3, 1.0, grey) * max(1.0 - steepness, 0.6 * (1.0 - brightest));
    float reach = REACH / max(haze, 0.01);
    float sight = 1.0 - smoothstep(CLEAR, reach, distance);

    float beat = max(amplif, 0.0);
    eye.xy *= 1.0 + 0.04 * beat;
    gl_Position = gl_ProjectionMatrix * eye;
    if (distance > reach + MARGIN) {
        gl_Position = vec4(2.0, 2.0, 2.0, 1.0); // dark, and so are its neighbours: nothing to draw
    }

    // Grey is cold, blue in the dark and white only at full strength; what is near, or rises, is brighter. Other
    // colours deepen.
    float cold = smoothstep(0.75, 1.0, grey);
    float rise = clamp(0.16 * gl_Vertex.y, 0.0, 0.8);
    float close = 0.4 * (1.0 - smoothstep(3.0, 25.0, distance));
    vec3 white = mix(COLD, vec3(1.0), smoothstep(0.4, 1.0, brightest + 0.4 * rise));
    vec3 clear = (1.0 + rise + close) * white * gl_Color.rgb;
    vec3 deep = (1.8 - 0.8 * brightest) * gl_Color.rgb * gl_Color.rgb / max(brightest, 0.001);
    vec3 light = mix(deep, clear, cold);
    light *= 1.0 + 1.8 * beat * (1.0 - 0.7 * brightest); // up to white
    gl_FrontColor = vec4(light * fade * sight * sight, gl_Color.a);
}
