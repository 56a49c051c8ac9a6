#include "3D/LineRenderer.h"

#include "3D/ColouredArrays.h"

#include <GL/glew.h>

#include <algorithm>
#include <iostream>

void LineRenderer::addLine(const Point& p1, const Point& p2) {
    const unsigned int first = getNbPoints();
    vertices.push_back(p1);
    vertices.push_back(p2);
    indices.push_back(first);
    indices.push_back(first + 1);
}

void LineRenderer::addLines(const std::vector<Point>& points) {
    auto end = points.end();
    if (points.size() % 2 != 0) {
        std::cout << "Warning: You are trying to add a odd number to the LineRenderer (last point truncated)"
                  << std::endl;
        --end;
    }
    const unsigned int first = getNbPoints();
    vertices.insert(vertices.end(), points.begin(), end);
    for (unsigned int i = first; i < getNbPoints(); ++i) {
        indices.push_back(i);
    }
}

void LineRenderer::addLines(const std::vector<Point>& points, const std::vector<unsigned int>& newIndices) {
    const unsigned int first = getNbPoints();
    const std::size_t end = indices.size();
    vertices.insert(vertices.end(), points.begin(), points.end());
    indices.insert(indices.end(), newIndices.begin(), newIndices.end());
    if (first != 0) { // not the lattice, of which this is twice a frame
        std::for_each(indices.begin() + static_cast<std::ptrdiff_t>(end), indices.end(),
                      [first](std::uint32_t& index) { index += first; });
    }
}

void LineRenderer::clear() {
    vertices.clear();
    indices.clear();
}

void LineRenderer::draw(unsigned int lineSize) const {
    const ColouredArrays arrays = ColouredArrays::of(vertices.data());
    glLineWidth(static_cast<float>(lineSize));
    glDrawElements(GL_LINES, static_cast<GLsizei>(indices.size()), GL_UNSIGNED_INT, indices.data());
}

unsigned int LineRenderer::getNbPoints() const { return static_cast<unsigned int>(vertices.size()); }

unsigned int LineRenderer::getNbIndices() const { return static_cast<unsigned int>(indices.size()); }
