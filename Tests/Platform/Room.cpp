// Answers of the sound device that a test has a say in; the rest is left to the real ones.

#include "Room.h"

#include <AL/al.h>
#include <AL/alext.h>

#include <cmath>
#include <cstdlib>
#include <dlfcn.h>

Room* Room::present = nullptr;

/// What this machine has for sound is none of our business, unless somebody asks for it. OpenAL reads it
/// once, when it is first called, and starts threads of the sound servers that it finds.
[[maybe_unused]] static const int NO_SOUND_SERVERS = ::setenv("ALSOFT_DRIVERS", "null", 0);

/// The function that one of the same name and kind stands before.
template <typename Function>
static Function* real(Function* /*before*/, const char* name) {
    return reinterpret_cast<Function*>(::dlsym(RTLD_NEXT, name));
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

void alGetSourcei(ALuint source, ALenum what, ALint* value) {
    real(alGetSourcei, "alGetSourcei")(source, what, value);
    if (Room::present != nullptr && Room::present->lost && what == AL_SOURCE_STATE) {
        *value = AL_STOPPED;
    }
}

void alGetSourcei64vSOFT(ALuint source, ALenum what, ALint64SOFT* values) {
    real(alGetSourcei64vSOFT, "alGetSourcei64vSOFT")(source, what, values);
    if (Room::present != nullptr) {
        values[1] = Room::present->latency;
    }
}
