#include "fmod.h"

#include "Channel.h"
#include "Error.h"
#include "Registry.h"
#include "System.h"
#include "Track.h"

#include <algorithm>
#include <cstddef>
#include <exception>
#include <memory>
#include <string>

namespace {

using fmodex::Channel;
using fmodex::Error;
using fmodex::require;
using fmodex::System;
using fmodex::Track;

constexpr int MOST_CHANNELS = 4096;
constexpr int LEAST_ENTRIES = 64;
constexpr int MOST_ENTRIES = 8192;
constexpr FMOD_MODE MODES =
    FMOD_LOOP_OFF | FMOD_2D | FMOD_SOFTWARE | FMOD_CREATESAMPLE | FMOD_ACCURATETIME | FMOD_UNIQUE;

fmodex::Sounds sounds;
fmodex::Channels channels;
fmodex::Registry<FMOD_SYSTEM, System> systems;

/// Does something and says how it went: nothing is thrown at a program that may be written in C.
template <typename Action>
FMOD_RESULT attempt(const Action& action) noexcept {
    try {
        action();
        return FMOD_OK;
    } catch (const Error& error) {
        return error.getResult();
    } catch (const std::exception&) {
        return FMOD_ERR_MEMORY;
    }
}

/// A channel that is not over. Throws FMOD_ERR_HANDLE.
std::shared_ptr<Channel> playing(FMOD_CHANNEL* handle) {
    std::shared_ptr<Channel> channel = channels.find(handle);
    if (channel->isOver()) {
        channels.drop(handle);
        throw Error(FMOD_ERR_HANDLE);
    }
    return channel;
}

unsigned int lengthOf(const Track& track) {
    return static_cast<unsigned int>(track.getLength() * 1000 / track.getRate());
}

/// How much of a UTF-8 text fits into so many bytes, without cutting a character.
std::size_t fitting(const std::string& text, std::size_t bytes) {
    std::size_t size = std::min(text.size(), bytes);
    while (size > 0 && size < text.size() && (static_cast<unsigned char>(text[size]) & 0xC0) == 0x80) {
        --size;
    }
    return size;
}

} // namespace

FMOD_RESULT FMOD_System_Create(FMOD_SYSTEM** system) {
    return attempt([=] {
        require(system != nullptr);
        const auto created = std::make_shared<System>(sounds, channels);
        FMOD_SYSTEM* const handle = systems.add(created, nullptr);
        created->setHandle(handle);
        *system = handle;
    });
}

FMOD_RESULT FMOD_System_Init(FMOD_SYSTEM* system, int maxchannels, FMOD_INITFLAGS flags,
                             void* extradriverdata) {
    return attempt([=] {
        const std::shared_ptr<System> found = systems.find(system);
        require(maxchannels >= 1 && maxchannels <= MOST_CHANNELS && flags == FMOD_INIT_NORMAL);
        require(extradriverdata == nullptr);
        found->init(maxchannels);
    });
}

FMOD_RESULT FMOD_System_CreateStream(FMOD_SYSTEM* system, const char* name, FMOD_MODE mode,
                                     FMOD_CREATESOUNDEXINFO* exinfo, FMOD_SOUND** sound) {
    return attempt([=] {
        const std::shared_ptr<System> found = systems.find(system);
        require(name != nullptr && sound != nullptr && (mode & ~MODES) == 0 && exinfo == nullptr);
        *sound = found->open(name);
    });
}

FMOD_RESULT FMOD_System_PlaySound(FMOD_SYSTEM* system, FMOD_CHANNELINDEX channelid, FMOD_SOUND* sound,
                                  FMOD_BOOL paused, FMOD_CHANNEL** channel) {
    return attempt([=] {
        const std::shared_ptr<System> found = systems.find(system);
        require(channelid == FMOD_CHANNEL_FREE && channel != nullptr);
        *channel = found->play(sound, paused != 0);
    });
}

FMOD_RESULT FMOD_System_Update(FMOD_SYSTEM* system) {
    return attempt([=] { systems.find(system)->check(); });
}

FMOD_RESULT FMOD_System_Close(FMOD_SYSTEM* system) {
    return attempt([=] { systems.find(system)->close(); });
}

FMOD_RESULT FMOD_System_Release(FMOD_SYSTEM* system) {
    return attempt([=] { systems.take(system)->discard(); });
}

FMOD_RESULT FMOD_Sound_Release(FMOD_SOUND* sound) {
    return attempt([=] { sounds.take(sound); });
}

FMOD_RESULT FMOD_Sound_GetLength(FMOD_SOUND* sound, unsigned int* length, FMOD_TIMEUNIT unit) {
    return attempt([=] {
        const std::shared_ptr<Track> track = sounds.find(sound);
        require(length != nullptr && unit == FMOD_TIMEUNIT_MS);
        *length = lengthOf(*track);
    });
}

FMOD_RESULT FMOD_Sound_GetName(FMOD_SOUND* sound, char* name, int namelength) {
    return attempt([=] {
        const std::shared_ptr<Track> track = sounds.find(sound);
        require(name != nullptr && namelength >= 1);
        const std::size_t size = fitting(track->getName(), static_cast<std::size_t>(namelength) - 1);
        std::copy_n(track->getName().data(), size, name);
        name[size] = '\0';
    });
}

FMOD_RESULT FMOD_Channel_GetPaused(FMOD_CHANNEL* channel, FMOD_BOOL* paused) {
    return attempt([=] {
        const std::shared_ptr<Channel> found = playing(channel);
        require(paused != nullptr);
        *paused = found->isPaused() ? 1 : 0;
    });
}

FMOD_RESULT FMOD_Channel_SetPaused(FMOD_CHANNEL* channel, FMOD_BOOL paused) {
    return attempt([=] { playing(channel)->setPaused(paused != 0); });
}

FMOD_RESULT FMOD_Channel_SetLoopCount(FMOD_CHANNEL* channel, int loopcount) {
    return attempt([=] {
        playing(channel);
        require(loopcount >= -1);
    });
}

FMOD_RESULT FMOD_Channel_Stop(FMOD_CHANNEL* channel) {
    return attempt([=] {
        playing(channel)->stop();
        channels.drop(channel);
    });
}

FMOD_RESULT FMOD_Channel_GetSpectrum(FMOD_CHANNEL* channel, float* spectrum, int numvalues, int channeloffset,
                                     FMOD_DSP_FFT_WINDOW window) {
    const FMOD_RESULT result = attempt([=] {
        const std::shared_ptr<Channel> found = playing(channel);
        const bool powerOfTwo = numvalues > 0 && (numvalues & (numvalues - 1)) == 0;
        require(spectrum != nullptr && powerOfTwo && numvalues >= LEAST_ENTRIES && numvalues <= MOST_ENTRIES);
        require(channeloffset == 0 && window == FMOD_DSP_FFT_WINDOW_TRIANGLE);
        found->getSpectrum(spectrum, numvalues);
    });
    if (result != FMOD_OK && spectrum != nullptr && numvalues >= 1 && numvalues <= MOST_ENTRIES) {
        std::fill_n(spectrum, numvalues, 0.0f);
    }
    return result;
}

FMOD_RESULT FMOD_Channel_GetPosition(FMOD_CHANNEL* channel, unsigned int* position, FMOD_TIMEUNIT unit) {
    return attempt([=] {
        const std::shared_ptr<Channel> found = playing(channel);
        require(position != nullptr && unit == FMOD_TIMEUNIT_MS);
        *position = static_cast<unsigned int>(found->getPosition() / 1000);
    });
}

FMOD_RESULT FMOD_Channel_SetPosition(FMOD_CHANNEL* channel, unsigned int position, FMOD_TIMEUNIT unit) {
    return attempt([=] {
        const std::shared_ptr<Channel> found = playing(channel);
        require(unit == FMOD_TIMEUNIT_MS && position <= lengthOf(found->getTrack()));
        found->setPosition(static_cast<std::int64_t>(position) * 1000);
    });
}
