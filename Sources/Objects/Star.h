#pragma once

#include "Objects/Solid.h"

/// Two interlocked tetrahedra in the unit cube at its position, ever turning about the x axis.
class Star : public Solid {
public:
    Star(Vector3f position, Vector3f rotation, Colour3 colour);

    void update();
};
