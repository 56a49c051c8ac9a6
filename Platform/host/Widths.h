#pragma once

#include "Utils/Defaults.h"

#include <algorithm>
#include <cmath>

/// Widths of lines and sizes of points, in pixels. The show asks for them as in a picture of its default
/// height; a higher one is to look the same.
namespace host {

/// The strokes of the words, by far the widest lines.
constexpr float WORD_WIDTH = 8.0f;

/// Pixels for each that the show thinks of, in a picture of that height.
inline float scaleOf(unsigned int height) {
    return std::max(1.0f, static_cast<float>(height) / static_cast<float>(defaults::HEIGHT));
}

/// Pixels for a width that the show asks for, in a picture of that scale. All grows with the picture but the
/// words: at 480 their strokes all but fill the letters, so they stay behind, and the letters open.
inline float shownWidth(float width, float scale) {
    return width < WORD_WIDTH ? width * scale : std::max(width, 0.8f * width * std::sqrt(scale));
}

/// Of the picture that the show draws at the moment: supplied by what answers its window.
float pixelScale();

} // namespace host
