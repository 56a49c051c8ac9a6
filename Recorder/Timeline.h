#pragma once

#include <array>

namespace recorder {

// The show's time in frames: frame n is on screen from 15 n milliseconds on.
constexpr unsigned int FRAME_MS = 15;

// Where the six scenes begin, and where the last one ends, in milliseconds of the show.
constexpr std::array<unsigned int, 7> SCENE_STARTS = {0, 11400, 33530, 53100, 63170, 78200, 103200};
constexpr unsigned int SHOW_MS = SCENE_STARTS.back();

// The frame on screen at a time.
constexpr unsigned int frameAt(unsigned int time) { return time / FRAME_MS; }

// The first frame that appears at a time or later.
constexpr unsigned int firstFrameFrom(unsigned int time) { return (time + FRAME_MS - 1) / FRAME_MS; }

// Frames first to last, both included.
struct FrameRange {
    unsigned int first;
    unsigned int last;

    bool holds(unsigned int frame) const { return frame >= first && frame <= last; }
};

} // namespace recorder
