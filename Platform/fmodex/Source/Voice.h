#pragma once

#include "fmod_song.h"

#include <AL/al.h>

#include <cstdint>
#include <optional>
#include <vector>

namespace fmodex {

/// A song on the sound device, which holds all of it and plays by itself. Where the device does not take it,
/// or is lost, nothing is heard.
class Voice {
public:
    explicit Voice(const FMOD_SONG& song) : Voice(song.rate) { append(song, 0); }
    Voice(const Voice&) = delete;
    Voice& operator=(const Voice&) = delete;
    ~Voice();

    /// Lets it play on with a song from the frame of that number, which is its next one.
    void append(const FMOD_SONG& song, long long first);

    void playFrom(std::int64_t frame);
    void pause() { alSourcePause(source); }
    void resume() { alSourcePlay(source); }

    /// What reaches the ear now, in microseconds from the beginning of the song (less than none, as long as
    /// the first sound is on its way); nothing unless it plays.
    std::optional<std::int64_t> getPlace() const;

private:
    explicit Voice(int rate);

    const int rate;
    ALuint source = 0;
    std::vector<ALuint> buffers;
};

} // namespace fmodex
