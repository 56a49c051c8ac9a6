#pragma once

#include "Batch.h"

#include <cstdint>
#include <glm/mat4x4.hpp>
#include <memory>
#include <vector>

namespace web {

/// A vertex of points and lines.
struct Vertex {
    float position[3];
    float colour[4];
};

/// Vertices in memory, as the show describes them to OpenGL.
struct Vertices {
    const void* first = nullptr; ///< position, and the colour right behind it
    std::size_t stride = 0;      ///< bytes from one to the next
};

/// What the show draws, on its way to the page: neighbours become batches, so that a frame takes a handful of
/// calls, and what the page has already stays where it is. The lattice, which is drawn twice a frame, is sent
/// once.
class Drawing {
public:
    /// While off, nothing is drawn.
    bool on = true;

    // Set before what they apply to.
    std::uint32_t program = 0;
    bool blended = false;
    bool tested = false;
    glm::mat4 projection{1};
    glm::mat4 modelView{1};

    void clear(float r, float g, float b, float a);
    void setTarget(std::uint32_t texture);
    /// Segments between pairs of vertices.
    void addLines(const Vertices& vertices, const std::uint32_t* indices, std::size_t count, float width);
    void addPoints(const Vertices& vertices, std::size_t count, float size);
    /// Four corners, of two coordinates and two texture coordinates each.
    void drawQuad(std::uint32_t texture, const float* corners);
    /// Sends what has been gathered. To be called before anything that is set above changes, but modelView.
    void flush();
    /// The page has lost its copies, or they belong to another moment.
    void forget();

private:
    struct Batch {
        Kept<Vertex> points;
        Kept<std::uint32_t> owners;
        Kept<glm::mat4> matrices;
        Kept<std::uint32_t> lines;
        std::vector<PageRun> runs;
        bool ofLines = false;
    };

    Batch& open(bool ofLines);
    void addVertices(Batch& batch, const Vertices& vertices, std::size_t count);
    static void addRun(Batch& batch, std::size_t count, float width);

    /// In the order of a pass over the scene; every clear begins a pass.
    std::vector<std::unique_ptr<Batch>> batches;
    std::size_t next = 0;
    Batch* gathering = nullptr;
    std::vector<Vertex> packed; ///< for a moment
    std::vector<std::uint32_t> numbers;
};

} // namespace web
