#pragma once

#include "3D/LineRenderer.h"

#include <GL/glew.h>

#include <array>
#include <cmath>

/// Where things are drawn: their axes and their origin, in the world.
struct Place {
    Vector3f x{1, 0, 0}, y{0, 1, 0}, z{0, 0, 1}, origin{};

    Vector3f at(const Vector3f& p) const { return origin + x * p.x + y * p.y + z * p.z; }
    void move(const Vector3f& by) { origin = at(by); }
    void scale(const Vector3f& by) { *this = {x * by.x, y * by.y, z * by.z, origin}; }
    void turn(double degrees, const Vector3f& axis) {
        const auto s = static_cast<float>(std::sin(degrees * M_PI / 180));
        const auto c = static_cast<float>(std::cos(degrees * M_PI / 180));
        const auto turned = [&](const Vector3f& v) {
            return at(v * c + axis.cross(v) * s + axis * (axis.dot(v) * (1 - c))) - origin;
        };
        *this = {turned({1, 0, 0}), turned({0, 1, 0}), turned({0, 0, 1}), origin};
    }
};

/// What one call puts into the picture, and how.
struct Drawing {
    GLenum kind = 0;
    std::vector<Point> points{};  ///< in the world, two a line
    std::array<float, 2> sizes{}; ///< of points and of lines, in pixels
    GLuint target = 0;            ///< the texture drawn into, 0: the window
    GLuint program = 0, texture = 0;
    bool blends = false, adds = false, tested = false;

    bool added() const { return blends && adds; } ///< to what is there
};

/// Eye, point looked at, upwards.
inline std::array<double, 9> view{};
