#pragma once

#include "3D/Camera/GLUCamera.h"

/// Circles a point, a step per update. direction is that point, in the world.
class RotatingCamera : public GLUCamera {
public:
    /// distance: radius of the orbit and height of the eye; moveStep: degrees per update.
    RotatingCamera(const Vector3f& interestPoint, float distance, float moveStep);

    void update();
    void apply() override;

private:
    float distance;
    float moveStep;
    float angle = 0; ///< degrees, never wrapped; at 0 the eye is on the side of the smaller z
};
