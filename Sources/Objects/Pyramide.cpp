#include "Objects/Pyramide.h"

Pyramide::Pyramide(Vector3f position, Vector3f rotation, Colour3 colour, float scale)
    : Rising(position, rotation) {
    const float min = -scale;
    const float max = scale;
    renderer.addLines(
        {
            {{min, min, min}, colour},
            {{max, min, min}, colour},
            {{min, min, max}, colour},
            {{max, min, max}, colour},
            {{0, 1.5f * max, 0}, colour},
        },
        {0, 1, 0, 2, 0, 4, 1, 3, 1, 4, 2, 4, 2, 3, 3, 4});
}
