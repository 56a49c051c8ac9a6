#pragma once

#include <chrono>

namespace recorder {

/// How far the recording is, on one line of standard error that is written over and over; nothing at all
/// where standard error is not a terminal.
class ProgressLine {
public:
    /// The last frame is where it is to be at the end.
    explicit ProgressLine(unsigned int lastFrame);

    /// To be told after each frame of the show, whether it was recorded or passed over.
    void update(unsigned int frame);

    /// Leaves the line free for something else, for good.
    void clear();

    unsigned int getLastFrame() const { return lastFrame; }

private:
    using Clock = std::chrono::steady_clock;

    bool visible;
    unsigned int lastFrame;
    unsigned int shownFrame = 0; ///< when the line was last written
    Clock::time_point shownTime;
    double framesPerSecond = 0.0;
};

} // namespace recorder
