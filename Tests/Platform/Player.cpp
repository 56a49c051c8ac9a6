#include "Player.h"

#include <atomic>
#include <stdexcept>

#include "fmod_clock.h"
#include "fmod_errors.h"

namespace sound {

namespace {

std::atomic<unsigned long long> now{0};

unsigned long long time() { return now; }

void expect(FMOD_RESULT result) {
    if (result != FMOD_OK) {
        throw std::runtime_error(FMOD_ErrorString(result));
    }
}

} // namespace

void setTime(unsigned long long microseconds) { now = microseconds; }

void passTime(unsigned long long microseconds) { now += microseconds; }

Player::Player(Time time, int channels) {
    FMOD_Clock_Set(time == Time::supplied ? sound::time : nullptr);
    expect(FMOD_System_Create(&system_));
    expect(FMOD_System_Init(system_, channels, FMOD_INIT_NORMAL, nullptr));
}

Player::~Player() { FMOD_System_Release(system_); }

FMOD_SOUND* Player::load(const std::string& path) const {
    FMOD_SOUND* sound = nullptr;
    expect(createStream(system_, path, &sound));
    return sound;
}

FMOD_CHANNEL* Player::play(FMOD_SOUND* sound, bool paused) const {
    FMOD_CHANNEL* channel = nullptr;
    expect(FMOD_System_PlaySound(system_, FMOD_CHANNEL_FREE, sound, paused, &channel));
    return channel;
}

FMOD_RESULT createStream(FMOD_SYSTEM* system, const std::string& path, FMOD_SOUND** sound) {
    return FMOD_System_CreateStream(system, path.c_str(),
                                    FMOD_LOOP_OFF | FMOD_2D | FMOD_SOFTWARE | FMOD_CREATESAMPLE |
                                        FMOD_ACCURATETIME | FMOD_UNIQUE,
                                    nullptr, sound);
}

unsigned int length(FMOD_SOUND* sound) {
    unsigned int milliseconds = 0;
    expect(FMOD_Sound_GetLength(sound, &milliseconds, FMOD_TIMEUNIT_MS));
    return milliseconds;
}

unsigned int position(FMOD_CHANNEL* channel) {
    unsigned int milliseconds = 0;
    expect(FMOD_Channel_GetPosition(channel, &milliseconds, FMOD_TIMEUNIT_MS));
    return milliseconds;
}

std::vector<float> spectrum(FMOD_CHANNEL* channel, int count) {
    std::vector<float> values(count, -1);
    expect(FMOD_Channel_GetSpectrum(channel, values.data(), count, 0, FMOD_DSP_FFT_WINDOW_TRIANGLE));
    return values;
}

bool alive(FMOD_CHANNEL* channel) {
    FMOD_BOOL paused = 0;
    return FMOD_Channel_GetPaused(channel, &paused) == FMOD_OK;
}

} // namespace sound
