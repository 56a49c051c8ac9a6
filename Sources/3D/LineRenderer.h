#pragma once

#include "Types/Vector4.h"

#include <cstdint>
#include <vector>

/// A coloured vertex, laid out as OpenGL reads it from an array.
struct Point {
    Vector3f position;
    Colour4 colour;

    Point() = default;
    Point(Vector3f position, Colour4 colour) : position(position), colour(colour) {}
};
static_assert(sizeof(Point) == 28, "OpenGL steps from point to point by seven floats");

/// Coloured line segments, drawn in one call from client memory. Needs OpenGL for draw only.
class LineRenderer {
public:
    void addLine(const Point& p1, const Point& p2);
    /// A segment for each pair of points. An odd last point is left out, with a warning.
    void addLines(const std::vector<Point>& points);
    /// A mesh: segments given as pairs of indices into the points that come with them, which are not checked.
    void addLines(const std::vector<Point>& points, const std::vector<unsigned int>& newIndices);
    /// Removes all segments and keeps the storage: filling it again with as many allocates nothing.
    void clear();

    /// Line width in pixels; it stays in force.
    void draw(unsigned int lineSize) const;

    unsigned int getNbPoints() const;
    unsigned int getNbIndices() const;

private:
    std::vector<Point> vertices;
    std::vector<std::uint32_t> indices; ///< into vertices, two a segment
};
