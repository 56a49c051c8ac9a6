// Answers of the sound device and the decoder that a test has a say in; the rest is left to the real ones.

#include "Room.h"

#include <AL/al.h>
#include <AL/alext.h>
#include <mpg123.h>

#include <chrono>
#include <climits>
#include <cmath>
#include <cstdlib>
#include <dlfcn.h>
#include <thread>

Room* Room::present = nullptr;
std::atomic<int> decodable{INT_MAX};

/// What this machine has for sound is none of our business, unless somebody asks for it. OpenAL reads it
/// once, when it is first called, and starts threads of the sound servers that it finds.
[[maybe_unused]] static const int NO_SOUND_SERVERS = ::setenv("ALSOFT_DRIVERS", "null", 0);

/// The function that one of the same name and kind stands before.
template <typename Function>
static Function* real(Function* /*before*/, const char* name) {
    return reinterpret_cast<Function*>(::dlsym(RTLD_NEXT, name));
}

Room::Room(bool entered) {
    present = this;
    if (entered) {
        context = alcCreateContext(alcOpenDevice(nullptr), nullptr);
        alcMakeContextCurrent(context);
    }
}

Room::~Room() {
    present = nullptr;
    if (context != nullptr) {
        alcMakeContextCurrent(nullptr);
        alcDestroyContext(context);
        alcCloseDevice(device);
    }
}

std::vector<Speakers> Room::hear(int frames) const {
    std::vector<Speakers> heard(frames);
    alcRenderSamplesSOFT(device, heard.data(), frames);
    for (Speakers& levels : heard) {
        for (float& level : levels) {
            level = std::round(level * 32768);
        }
    }
    return heard;
}

ALCdevice* alcOpenDevice(const ALCchar* name) {
    if (Room::present == nullptr) {
        return real(alcOpenDevice, "alcOpenDevice")(name);
    }
    return Room::present->device = alcLoopbackOpenDeviceSOFT(nullptr);
}

ALCcontext* alcCreateContext(ALCdevice* device, const ALCint* attributes) {
    constexpr std::array<ALCint, 7> QUAD{
        ALC_FREQUENCY,  44100, ALC_FORMAT_CHANNELS_SOFT, ALC_QUAD_SOFT, ALC_FORMAT_TYPE_SOFT,
        ALC_FLOAT_SOFT, 0};
    const ALCint* const wanted = Room::present != nullptr ? QUAD.data() : attributes;
    return real(alcCreateContext, "alcCreateContext")(device, wanted);
}

void alcGetIntegerv(ALCdevice* device, ALCenum what, ALCsizei size, ALCint* values) {
    real(alcGetIntegerv, "alcGetIntegerv")(device, what, size, values);
    if (Room::present != nullptr && what == ALC_CONNECTED) {
        *values = Room::present->isConnected() ? ALC_TRUE : ALC_FALSE;
    }
}

void alGetSourcei64vSOFT(ALuint source, ALenum what, ALint64SOFT* values) {
    real(alGetSourcei64vSOFT, "alGetSourcei64vSOFT")(source, what, values);
    if (Room::present != nullptr) {
        values[1] = Room::present->latency;
    }
}

// NOLINTNEXTLINE(readability-inconsistent-declaration-parameter-name)
int mpg123_framebyframe_next(mpg123_handle* decoder) {
    while (decodable <= 0) {
        std::this_thread::sleep_for(std::chrono::milliseconds(1));
    }
    --decodable;
    return real(mpg123_framebyframe_next, "mpg123_framebyframe_next")(decoder);
}
