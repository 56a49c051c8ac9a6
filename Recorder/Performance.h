#pragma once

#include "Canvas.h"
#include "FrameSize.h"
#include "Host.h"
#include "Song.h"

#include <atomic>
#include <cstdio>
#include <functional>
#include <memory>
#include <vector>

namespace recorder {

/// What is recorded, for whoever draws it.
struct Play {
    FrameSize size;
    bool smooth;            ///< drawn twice as large each way and averaged
    unsigned int seed;      ///< of the first round
    const song::Song* song; ///< null: the show plays its own track
    /// The first frame from this one on that is wanted; behind all of them: a large number.
    std::function<unsigned int(unsigned int frame)> next;
};

/// What is said of a frame, before its pixels if it was drawn.
struct FrameNews {
    unsigned int frame;
    bool drawn;
};

/// One round of the show, drawn: answers the show for the window, the keyboard and the clock. The show's time
/// is in its hands: it stands still while a frame is drawn and moves by what the show itself waits, so every
/// frame is exactly 15 ms long, however long drawing it took.
class Performance : public host::Host {
public:
    /// Frames are counted over all rounds. What they look like goes to a stream.
    Performance(const Play& play, unsigned int round, std::FILE* stream);

    /// Answers the show's exit status.
    int run();

    host::Extent openWindow(int width, int height) override;
    void closeWindow() override { canvas.reset(); }
    float getPixelScale() const override;
    unsigned int seedFor(unsigned int asked) override;
    void showFrame() override;
    bool wantsEscape() override;
    /// May be asked from any thread.
    unsigned int getTicks() override { return ticks; }
    void wait(unsigned int milliseconds) override { ticks += milliseconds; }

private:
    bool isWanted() const { return play.next(frame) == frame; }

    const Play& play;
    unsigned int round;
    unsigned int frame; ///< that is being drawn
    unsigned int end;   ///< the first one of the next round
    std::FILE* stream;
    std::vector<unsigned char> pixels;
    std::unique_ptr<Canvas> canvas;
    std::atomic<unsigned int> ticks{0};
};

} // namespace recorder
