#include "ProgressLine.h"

#include "Timeline.h"

#include <cmath>
#include <cstdio>
#include <unistd.h>

namespace recorder {

ProgressLine::ProgressLine(unsigned int lastFrame)
    : visible(isatty(STDERR_FILENO) != 0), lastFrame(lastFrame) {}

void ProgressLine::update(unsigned int frame) {
    if (!visible) {
        return;
    }
    const Clock::time_point now = Clock::now();
    if (frame == 0) {
        shownTime = now; // what came before was not frames
        return;
    }
    const double elapsed = std::chrono::duration<double>(now - shownTime).count();
    if (elapsed < 0.25) {
        return;
    }
    const double rate = (frame - shownFrame) / elapsed;
    framesPerSecond = framesPerSecond == 0.0 ? rate : 0.8 * framesPerSecond + 0.2 * rate;
    shownFrame = frame;
    shownTime = now;
    const auto left = std::lround((lastFrame - frame) / framesPerSecond);
    std::fprintf(stderr, "\r%.1f of %.1f s, %.0f frames/s, %ld:%02ld left\033[K",
                 frame * timeline::FRAME_MS / 1000.0, (lastFrame + 1) * timeline::FRAME_MS / 1000.0,
                 framesPerSecond, left / 60, left % 60);
}

void ProgressLine::clear() {
    if (visible && framesPerSecond > 0.0) {
        std::fputs("\r\033[K", stderr);
        visible = false;
    }
}

} // namespace recorder
