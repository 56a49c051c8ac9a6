#pragma once

#include <cmath>
#include <cstddef>
#include <ebur128.h>
#include <new>

namespace song {

/// How loud a song is as a whole, by EBU R128, and what makes it as loud as the show's own track: the scenes
/// wait for beats and swells of that height.
class Loudness {
public:
    /// rate: frames per second.
    explicit Loudness(unsigned long rate) : state(ebur128_init(2, rate, EBUR128_MODE_I)) {
        if (state == nullptr) {
            throw std::bad_alloc();
        }
    }
    Loudness(const Loudness&) = delete;
    Loudness& operator=(const Loudness&) = delete;
    ~Loudness() { ebur128_destroy(&state); }

    /// The next frames of the song, left and right; one side made of two counts twice, as it is heard.
    void add(const short* frames, std::size_t count) { ebur128_add_frames_short(state, frames, count); }

    /// The factor for its samples. A song without a sound keeps what it has.
    float getGain() const {
        double loudness = 0;
        ebur128_loudness_global(state, &loudness);
        return std::isinf(loudness) ? 1.0f : std::pow(10.0f, gainOf(static_cast<float>(loudness)) / 20);
    }

private:
    static constexpr float OWN_TRACK = -14; ///< LUFS
    static constexpr float MOST = 20;       ///< dB, up and down: noise is not made music

    static float gainOf(float loudness) { return std::fmax(-MOST, std::fmin(MOST, OWN_TRACK - loudness)); }

    ebur128_state* state;
};

} // namespace song
