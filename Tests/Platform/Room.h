#pragma once

#include <AL/alc.h>

#include <array>
#include <atomic>
#include <cstdint>
#include <functional>
#include <vector>

/// What comes from front left, front right, rear left and rear right: -32768..32767.
using Speakers = std::array<float, 4>;

/// While one lives, the sound device is the mixer of OpenAL alone, which plays on when told to, into a room
/// where one can listen.
struct Room {
    /// Whether the device is opened at once, for this thread; it is closed with the room then.
    explicit Room(bool entered = false);
    ~Room();

    /// Plays so many frames on, 44100 a second, and returns what they sound like.
    std::vector<Speakers> hear(int frames) const;

    static Room* present;
    std::function<bool()> isConnected = [] { return true; }; ///< asked by the thread of the device
    std::int64_t latency = 0;                                ///< nanoseconds from the mixer to the ear
    ALCdevice* device = nullptr;
    ALCcontext* context = nullptr;
};

/// How many more frames the decoder may go on to before it is kept waiting.
extern std::atomic<int> decodable;
