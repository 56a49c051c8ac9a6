#pragma once

#include <cstddef>
#include <string>

namespace recorder {

/// The size of a frame in pixels, and of its raw form: four bytes a pixel (blue, green, red, unused), rows
/// from the bottom of the picture to its top, without gaps. That is how OpenGL keeps it, so reading it back
/// converts nothing.
struct FrameSize {
    unsigned int width;
    unsigned int height;

    std::size_t rowBytes() const { return std::size_t{4} * width; }
    std::size_t bytes() const { return rowBytes() * height; }
    std::string text() const { return std::to_string(width) + "x" + std::to_string(height); }

    /// The same picture with so many pixels for each of its own, each way.
    FrameSize times(unsigned int scale) const { return {scale * width, scale * height}; }
};

} // namespace recorder
