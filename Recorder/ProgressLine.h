#pragma once

#include <chrono>

namespace recorder {

/// How far the recording is, on one line of standard error that is written over and over; nothing at all
/// where standard error is not a terminal.
class ProgressLine {
public:
    /// The frames that there are at the end.
    explicit ProgressLine(unsigned int total);
    ~ProgressLine() { clear(); }

    /// To be told often how many there are.
    void update(unsigned int done);

    /// The same for a program that listens, terminal or not, as a line of its own; also as a sign of life.
    void count(unsigned int done);

    /// Leaves the line free for something else, for good.
    void clear();

private:
    using Clock = std::chrono::steady_clock;

    bool visible;
    bool shown = false;
    unsigned int total;
    unsigned int before = 0; ///< when the line was last written
    Clock::time_point then;
    double framesPerSecond = 0.0;
};

} // namespace recorder
