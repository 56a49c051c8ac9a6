#include "ProgressLine.h"

#include "Timeline.h"

#include <cmath>
#include <cstdio>
#include <unistd.h>

namespace recorder {

namespace {

constexpr double LEAST_SECONDS = 0.25; // between two lines

} // namespace

ProgressLine::ProgressLine(unsigned int total) : visible(isatty(STDERR_FILENO) != 0), total(total) {}

void ProgressLine::update(unsigned int done) {
    if (!visible) {
        return;
    }
    if (then == Clock::time_point()) {
        before = done; // what came earlier was not frames
        then = Clock::now();
    }
    const double elapsed = std::chrono::duration<double>(Clock::now() - then).count();
    if (elapsed < LEAST_SECONDS || done == before) {
        return;
    }
    const double rate = (done - before) / elapsed;
    framesPerSecond = shown ? 0.8 * framesPerSecond + 0.2 * rate : rate;
    before = done;
    then = Clock::now();
    shown = true;
    const auto left = std::lround((total - done) / framesPerSecond);
    std::fprintf(stderr, "\r%.1f of %.1f s, %.0f frames/s, %ld:%02ld left\033[K",
                 done * timeline::FRAME_MS / 1000.0, total * timeline::FRAME_MS / 1000.0, framesPerSecond,
                 left / 60, left % 60);
}

void ProgressLine::count(unsigned int done) {
    if (std::chrono::duration<double>(Clock::now() - then).count() >= LEAST_SECONDS) {
        then = Clock::now();
        std::fprintf(stderr, "%u\n", done);
    }
}

void ProgressLine::clear() {
    if (shown) {
        std::fputs("\r\033[K", stderr);
    }
    visible = shown = false;
}

} // namespace recorder
