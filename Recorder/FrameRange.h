#pragma once

namespace recorder {

/// Frames first to last, both included.
struct FrameRange {
    unsigned int first;
    unsigned int last;

    unsigned int count() const { return last - first + 1; }
};

} // namespace recorder
