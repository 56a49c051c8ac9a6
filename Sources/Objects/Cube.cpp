#include "Objects/Cube.h"

Cube::Cube(Vector3f position, Vector3f rotation, Colour3 colour, float scale, float offset)
    : Rising(position, rotation, offset) {
    const float min = -scale;
    const float max = scale;
    renderer.addLines(
        {
            {{min, min, min}, colour},
            {{max, min, min}, colour},
            {{min, max, min}, colour},
            {{max, max, min}, colour},
            {{min, min, max}, colour},
            {{max, min, max}, colour},
            {{min, max, max}, colour},
            {{max, max, max}, colour},
        },
        {0, 1, 0, 2, 0, 4, 1, 3, 1, 5, 2, 3, 2, 6, 3, 7, 4, 5, 4, 6, 5, 7, 6, 7});
}
