#pragma once

#include "Objects/Solid.h"

/// A pyramid on a square, its base below and its top well above its position.
class Pyramide : public Rising<Solid> {
public:
    /// scale: half the edge of the base.
    Pyramide(Vector3f position, Vector3f rotation, Colour3 colour, float scale);
};
