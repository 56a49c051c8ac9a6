#pragma once

#include "Spectrum.h"
#include "Voice.h"
#include "fmod_song.h"

#include <cstdint>
#include <map>
#include <memory>
#include <optional>

namespace fmodex {

/// One playing of a song: where it is, and what is heard there. Its position runs by the clock, and is kept
/// in step with the sound device where there is one.
class Playing {
public:
    /// Starts at once, where the song says. owner keeps the samples, if they are in need of it.
    Playing(const FMOD_SONG& song, std::shared_ptr<const void> owner, bool onDevice);

    /// What has begun is only the beginning of this song.
    void goOnWith(const FMOD_SONG& whole);

    /// Whether the last frame has been heard.
    bool isOver() { return frameAt(getPosition()) >= song.count; }

    bool isPaused() const { return paused; }
    void setPaused(bool newPaused);

    /// What is heard now, in microseconds from the beginning of the song.
    std::int64_t getPosition();
    void setPosition(std::int64_t position);

    /// Writes count magnitudes, a power of two: all 0 while paused.
    void getSpectrum(float* values, int count);

private:
    std::int64_t frameAt(std::int64_t position) const { return position * song.rate / 1000000; }

    FMOD_SONG song;
    const std::shared_ptr<const void> owner;
    std::optional<Voice> voice;

    bool paused = false;
    bool settled = false;     ///< whether the device has told where it is since it was told where to be
    std::int64_t heard = 0;   ///< the position when it was last asked for; it never runs backwards
    std::int64_t advance = 0; ///< of the position before the clock

    std::map<int, Spectrum> spectra; ///< by count
};

} // namespace fmodex
