#pragma once

#include "3D/Camera/Camera.h"

/// A camera that looks along direction, an offset from its position.
class GLUCamera : public Camera {
public:
    using Camera::Camera;

    void apply() override;

protected:
    /// Loads the view from position towards a point, both in the world.
    void lookAt(const Vector3f& centre) const;
};
