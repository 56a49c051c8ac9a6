#pragma once

#include "3D/Camera/GLUCamera.h"

/// Looks straight down and pans over the ground in steps: up on screen is +x, right is +z.
class TopDownCamera : public GLUCamera {
public:
    /// moveStep: world units per step.
    TopDownCamera(const Vector3f& position, float moveStep);

    void moveLeft();
    void moveRight();
    void moveUp();
    void moveDown();

    /// A step in each of the directions set, the AD_ bits of the input controllers.
    void update(int directions);

private:
    float moveStep;
};
