#include "Performance.h"

#include "StopRequest.h"
#include "Timeline.h"
#include "Widths.h"
#include "report.h"

#include <fmod_clock.h>
#include <fmod_song.h>

#include <stdexcept>

namespace recorder {

namespace {

unsigned long long soundClock() { return 1000ULL * host::Host::current().getTicks(); }

} // namespace

Performance::Performance(const Play& play, unsigned int round, std::FILE* stream)
    : play(play),
      round(round),
      frame(round * timeline::SHOW_FRAMES),
      end(frame + timeline::SHOW_FRAMES),
      stream(stream),
      pixels(play.size.bytes()) {}

int Performance::run() {
    FMOD_Clock_Set(soundClock);
    if (play.song != nullptr) {
        const FMOD_SONG song = play.song->playedFrom(frame * timeline::FRAME_MS);
        FMOD_Song_Set(&song);
    }
    const int status = host::playShow();
    FMOD_Song_Set(nullptr);
    return status;
}

host::Extent Performance::openWindow(int /*width*/, int /*height*/) {
    try {
        if (canvas != nullptr) {
            throw std::runtime_error("the size of a recording can't change");
        }
        const FrameSize size = play.size.times(play.smooth ? 2 : 1);
        canvas = std::make_unique<Canvas>(size, play.size);
        canvas->setDrawing(isWanted());
        return {size.width, size.height};
    } catch (const std::runtime_error& error) {
        say(error.what());
        throw;
    }
}

float Performance::getPixelScale() const {
    return (play.smooth ? 2.0f : 1.0f) * host::scaleOf(play.size.height);
}

unsigned int Performance::seedFor(unsigned int /*asked*/) { return play.seed + round; }

void Performance::showFrame() {
    const FrameNews news = {frame, isWanted()};
    std::fwrite(&news, sizeof news, 1, stream);
    if (news.drawn) {
        canvas->read(pixels.data());
        std::fwrite(pixels.data(), 1, pixels.size(), stream);
    }
    ++frame;
    canvas->setDrawing(isWanted());
}

bool Performance::wantsEscape() { return play.next(frame) >= end || StopRequest::getSignal() != 0; }

} // namespace recorder
