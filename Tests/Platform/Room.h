#pragma once

#include <AL/alc.h>

#include <array>
#include <cstdint>
#include <vector>

/// What comes from front left, front right, rear left and rear right: -32768..32767.
using Speakers = std::array<float, 4>;

/// While one lives, the sound device is the mixer of OpenAL alone, which plays on when told to, into a room
/// where one can listen.
struct Room {
    Room() { present = this; }
    ~Room() { present = nullptr; }

    /// Plays so many frames on, 44100 a second, and returns what they sound like.
    std::vector<Speakers> hear(int frames) const;

    static Room* present;
    std::int64_t latency = 0; ///< nanoseconds from the mixer to the ear
    bool lost = false;        ///< pulled out of the machine
    ALCdevice* device = nullptr;
};
