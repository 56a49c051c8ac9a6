#pragma once

#include "Objects/Solid.h"

/// A cube around its position.
class Cube : public Rising<OffsetSolid> {
public:
    /// scale: half the edge.
    Cube(Vector3f position, Vector3f rotation, Colour3 colour, float scale, float offset);
};
