#include "Objects/Star.h"

Star::Star(Vector3f position, Vector3f rotation, Colour3 colour) : Solid(position, rotation) {
    renderer.addLines(
        {
            {{0.5f, 0, 0.5f}, colour},
            {{0.5f, 0.5f, 1}, colour},
            {{0, 0.66f, 0.33f}, colour},
            {{1, 0.66f, 0.33f}, colour},
            {{0.5f, 1, 0.5f}, colour},
            {{0.5f, 0.5f, 0}, colour},
            {{0, 0.33f, 0.66f}, colour},
            {{1, 0.33f, 0.66f}, colour},
        },
        {0, 1, 0, 2, 0, 3, 1, 2, 1, 3, 2, 3, 4, 5, 4, 6, 4, 7, 5, 6, 5, 7, 6, 7});
}

void Star::update() { rotation.x += 0.1f; }
