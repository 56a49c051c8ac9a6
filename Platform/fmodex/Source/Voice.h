#pragma once

#include "fmod_song.h"

#include <AL/al.h>

#include <cstdint>
#include <optional>

namespace fmodex {

/// A song on the sound device, which holds all of it and plays by itself. Where the device does not take it,
/// or is lost, nothing is heard.
class Voice {
public:
    explicit Voice(const FMOD_SONG& song);
    Voice(const Voice&) = delete;
    Voice& operator=(const Voice&) = delete;
    ~Voice();

    void playFrom(std::int64_t frame);
    void pause() { alSourcePause(source); }
    void resume() { alSourcePlay(source); }

    /// What reaches the ear now, in microseconds from the beginning of the song (less than none, as long as
    /// the first sound is on its way); nothing unless it plays.
    std::optional<std::int64_t> getPlace() const;

private:
    const int rate;
    ALuint source = 0;
    ALuint buffer = 0;
};

} // namespace fmodex
