#pragma once

#include "Types/Vector3.h"

/// A viewpoint in the world: y is up, the lattice lies in the x-z plane. A plain value; only apply needs
/// OpenGL.
class Camera {
public:
    Camera(Vector3f position, Vector3f direction, Vector3f up);
    virtual ~Camera() = default;

    virtual Vector3f getPosition() const;
    virtual Vector3f getDirection() const;
    virtual Vector3f getUp() const;
    /// Loads the view into the current matrix, which should be the model-view matrix.
    virtual void apply() = 0;

    /// Prints the three vectors.
    void display() const;

protected:
    Vector3f position;
    Vector3f direction; ///< an offset from position, or the point looked at: see the camera at hand
    Vector3f up;
};
