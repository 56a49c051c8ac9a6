#pragma once

#include "Objects/Solid.h"

/// A sphere of rings around the z axis, without meridians.
class Sphere : public Rising<OffsetSolid> {
public:
    /// size: the radius; nbPpL: bands from pole to pole and divisions of a ring, at least 1.
    Sphere(Vector3f position, Vector3f rotation, Colour3 colour, float size, unsigned int nbPpL,
           float offset);
};
