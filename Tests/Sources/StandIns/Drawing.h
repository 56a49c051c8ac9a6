#pragma once

#include "3D/LineRenderer.h"

#include <GL/glew.h>

#include <array>

/// Where things are drawn: their axes and their origin, in the world.
struct Place {
    Vector3f x{1, 0, 0}, y{0, 1, 0}, z{0, 0, 1}, origin{};

    Vector3f at(const Vector3f& p) const { return origin + x * p.x + y * p.y + z * p.z; }
};

/// What one call puts into the picture, and how.
struct Drawing {
    GLenum kind = 0;
    std::vector<Point> points{};  ///< in the world, two a line; of a quad, with texture coordinates as colour
    std::array<float, 2> sizes{}; ///< of points and of lines, in pixels
    std::array<double, 4> lens{}; ///< opening, shape, near and far; or the edges
    GLuint target = 0;            ///< the texture drawn into, 0: the window
    GLuint program = 0, texture = 0;
    float beat = 0, fade = 0;           ///< that the program was told
    bool added = false, tested = false; ///< to what is there; by its depth
};

/// Eye, point looked at, upwards.
inline std::array<double, 9> view{};
