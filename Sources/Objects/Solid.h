#pragma once

#include "3D/LineRenderer.h"

/// What the wireframe solids share: a place, a turn, and lines 4 pixels wide, relative to the place.
/// Geometry is built by the solid's constructor and stays; only draw needs OpenGL.
class Solid {
public:
    void draw() const;

protected:
    /// rotation: degrees about x, y and z.
    Solid(const Vector3f& position, const Vector3f& rotation) : position(position), rotation(rotation) {}

    Vector3f position;
    Vector3f rotation;
    LineRenderer renderer;
};

/// A solid that carries a number of its owner's.
class OffsetSolid : public Solid {
protected:
    OffsetSolid(const Vector3f& position, const Vector3f& rotation, float offset)
        : Solid(position, rotation), offset(offset) {}

    float offset;
};

/// A solid that rises, once it is active: 0.05 world units per update.
template <typename Base>
class Rising : public Base {
public:
    void update() {
        if (active) {
            this->position.y += 0.05f;
        }
    }

    void setActive(bool newState) { active = newState; }
    bool getActive() const { return active; }

protected:
    using Base::Base;

    bool active = false;
};
