#pragma once

#include <string>
#include <vector>

#include "fmod.h"

namespace sound {

// The supplied clock of the tests: it stands still until it is told to move. In microseconds.
void setTime(unsigned long long microseconds);
void passTime(unsigned long long microseconds);

// A system of ten channels, as the show has it. Throws when something fails that should not.
class Player {
public:
    enum class Time { supplied, real };

    explicit Player(Time time = Time::supplied, int channels = 10);
    Player(const Player&) = delete;
    Player& operator=(const Player&) = delete;
    ~Player();

    FMOD_SYSTEM* system() const { return system_; }

    FMOD_SOUND* load(const std::string& path) const;
    FMOD_CHANNEL* play(FMOD_SOUND* sound, bool paused = false) const;
    FMOD_CHANNEL* play(const std::string& path) const { return play(load(path)); }

private:
    FMOD_SYSTEM* system_ = nullptr;
};

// The way that the show opens its track.
FMOD_RESULT createStream(FMOD_SYSTEM* system, const std::string& path, FMOD_SOUND** sound);

unsigned int length(FMOD_SOUND* sound);
unsigned int position(FMOD_CHANNEL* channel);
std::vector<float> spectrum(FMOD_CHANNEL* channel, int count = 512);
bool alive(FMOD_CHANNEL* channel);

} // namespace sound
