#include "Playing.h"

#include "clock.h"

#include <algorithm>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <utility>

namespace fmodex {

namespace {

/// The device moves on in steps of some 20 ms. Of each difference from it only a part is made up for, so that
/// the position runs smoothly: the show asks for it some 130 times a second, and it follows within a third of
/// one.
constexpr std::int64_t SMOOTHING = 40;

/// With a difference above this the device has stumbled, and the position follows at once. Microseconds.
constexpr std::int64_t STUMBLE = 100000;

} // namespace

Playing::Playing(const FMOD_SONG& song, std::shared_ptr<const void> owner, bool onDevice)
    : song(song), owner(std::move(owner)) {
    if (onDevice) {
        voice.emplace(song);
    }
    setPosition(1000LL * song.start);
}

void Playing::goOnWith(const FMOD_SONG& whole) {
    const bool late = isOver();
    if (voice) {
        voice->append(whole, song.count);
    }
    song = whole;
    if (late) {
        setPosition(heard);
    }
}

void Playing::setPaused(bool newPaused) {
    if (newPaused == paused) {
        return;
    }
    getPosition();
    paused = newPaused;
    settled = false;
    advance = heard - now();
    if (voice) {
        paused ? voice->pause() : voice->resume();
    }
}

std::int64_t Playing::getPosition() {
    if (paused) {
        return heard;
    }
    const std::int64_t time = now();
    if (const auto place = voice ? voice->getPlace() : std::nullopt) {
        const std::int64_t behind = *place - (time + advance);
        advance += settled && std::abs(behind) <= STUMBLE ? behind / SMOOTHING : behind;
        settled = true;
    }
    heard = std::max(heard, time + advance);
    return heard;
}

void Playing::setPosition(std::int64_t position) {
    heard = position;
    advance = heard - now();
    settled = false;
    if (voice) {
        voice->playFrom(frameAt(position));
        if (paused) {
            voice->pause();
        }
    }
}

void Playing::getSpectrum(float* values, int count) {
    if (paused) {
        std::fill_n(values, count, 0.0f);
        return;
    }
    Spectrum& spectrum = spectra.try_emplace(count, count).first->second;
    std::vector<Frame>& frames = spectrum.getFrames();
    // The frame that is heard now goes to the top of the triangle; around the song there is silence.
    const std::int64_t first = frameAt(getPosition()) - count;
    for (std::size_t i = 0; i < frames.size(); ++i) {
        const std::int64_t frame = first + static_cast<std::int64_t>(i);
        const bool inside = frame >= 0 && frame < song.count;
        frames[i] = inside ? Frame{song.frames[2 * frame], song.frames[2 * frame + 1]} : Frame{};
    }
    spectrum.measure(values, song.gain);
}

} // namespace fmodex
