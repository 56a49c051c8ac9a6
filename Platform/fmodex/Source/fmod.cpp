#include "fmod.h"

#include "Error.h"
#include "Output.h"
#include "Playing.h"
#include "Track.h"
#include "clock.h"
#include "fmod_song.h"

#include <algorithm>
#include <cstdint>
#include <cstdio>
#include <exception>
#include <memory>
#include <optional>
#include <string>

namespace {

using fmodex::Error;
using fmodex::Output;
using fmodex::Playing;
using fmodex::require;
using fmodex::Track;

constexpr int LEAST_ENTRIES = 64;
constexpr int MOST_ENTRIES = 8192;

/// All that there is: one system, which has one sound, which plays on one channel. A handle is a number that
/// none had before, null where nothing is alive.
struct Layer {
    FMOD_SYSTEM* system = nullptr;
    FMOD_SOUND* sound = nullptr;
    FMOD_CHANNEL* channel = nullptr;

    bool initialised = false;
    std::string path;                   ///< of the sound
    std::shared_ptr<const Track> track; ///< likewise, unless it is a song
    std::optional<FMOD_SONG> song;
    std::unique_ptr<Output> output;   ///< null: nothing is heard
    std::unique_ptr<Playing> playing; ///< on the channel; or of the song, between two
    bool begun = false;               ///< it has only the beginning of the track so far
};
Layer layer;

template <typename Handle>
Handle* newHandle() {
    static std::uintptr_t last = 1;
    return reinterpret_cast<Handle*>(last += 2); // NOLINT(performance-no-int-to-ptr): it stays a number
}

/// Does something with what a handle stands for, and says how it went.
template <typename Handle, typename Action>
FMOD_RESULT with(Handle* handle, Handle* alive, const Action& action) noexcept {
    try {
        require(handle != nullptr && handle == alive, FMOD_ERR_HANDLE);
        action();
        return FMOD_OK;
    } catch (const Error& error) {
        return error.result;
    } catch (const std::exception&) {
        return FMOD_ERR_MEMORY;
    }
}

template <typename Action>
FMOD_RESULT withSystem(FMOD_SYSTEM* system, const Action& action) {
    return with(system, layer.system, action);
}

template <typename Action>
FMOD_RESULT withSound(FMOD_SOUND* sound, const Action& action) {
    return with(sound, layer.sound, action);
}

/// A channel that has come to the end of its sound is none any more.
template <typename Action>
FMOD_RESULT withChannel(FMOD_CHANNEL* channel, const Action& action) {
    return with(channel, layer.channel, [&] {
        if (layer.begun && (layer.track->isWhole() || layer.playing->isOver())) {
            layer.begun = false;
            layer.playing->goOnWith(layer.track->getSong());
        }
        require(!layer.playing->isOver(), FMOD_ERR_HANDLE);
        action(*layer.playing);
    });
}

/// Whether what plays goes on without the show: a song does in real time.
bool goesOn() { return layer.song && !fmodex::isClockSupplied(); }

void stop() {
    layer.channel = nullptr;
    if (!goesOn()) {
        layer.playing.reset();
    }
}

void close() {
    stop();
    layer.initialised = false;
    if (!layer.playing) {
        layer.output.reset();
    }
}

unsigned int lengthOf(const FMOD_SONG& song) {
    return static_cast<unsigned int>(song.count * 1000 / song.rate);
}

FMOD_SONG sounding() { return layer.song ? *layer.song : layer.track->getSong(); }

} // namespace

void FMOD_Song_Set(const FMOD_SONG* song) {
    layer.sound = nullptr;
    layer.channel = nullptr;
    layer.playing.reset();
    layer.song.reset();
    if (song != nullptr) {
        layer.song = *song;
    } else if (!layer.initialised) {
        layer.output.reset();
    }
}

int FMOD_Song_IsOver() { return layer.song && layer.playing && layer.playing->isOver() ? 1 : 0; }

FMOD_RESULT FMOD_System_Create(FMOD_SYSTEM** system) {
    if (layer.system != nullptr) {
        return FMOD_ERR_INITIALISED;
    }
    *system = layer.system = newHandle<FMOD_SYSTEM>();
    return FMOD_OK;
}

FMOD_RESULT FMOD_System_Init(FMOD_SYSTEM* system, int /*maxchannels*/, FMOD_INITFLAGS /*flags*/,
                             void* /*extradriverdata*/) {
    return withSystem(system, [] {
        require(!layer.initialised, FMOD_ERR_INITIALISED);
        layer.initialised = true;
        if (!layer.output && !fmodex::isClockSupplied()) {
            layer.output = Output::open();
        }
    });
}

FMOD_RESULT FMOD_System_CreateStream(FMOD_SYSTEM* system, const char* name, FMOD_MODE /*mode*/,
                                     FMOD_CREATESOUNDEXINFO* /*exinfo*/, FMOD_SOUND** sound) {
    return withSystem(system, [&] {
        require(layer.initialised, FMOD_ERR_NOT_INITIALISED);
        layer.track = layer.song ? nullptr : std::make_shared<Track>(name);
        layer.path = name;
        *sound = layer.sound = newHandle<FMOD_SOUND>();
    });
}

FMOD_RESULT FMOD_System_PlaySound(FMOD_SYSTEM* system, FMOD_CHANNELINDEX /*channelid*/, FMOD_SOUND* sound,
                                  FMOD_BOOL paused, FMOD_CHANNEL** channel) {
    return withSystem(system, [&] {
        require(layer.initialised, FMOD_ERR_NOT_INITIALISED);
        require(sound != nullptr && sound == layer.sound, FMOD_ERR_HANDLE);
        if (!goesOn() || !layer.playing) {
            layer.playing.reset();
            layer.begun = !layer.song && !fmodex::isClockSupplied();
            layer.playing = std::make_unique<Playing>(layer.begun ? layer.track->getBeginning() : sounding(),
                                                      layer.track, layer.output != nullptr);
        }
        layer.playing->setPaused(paused != 0);
        *channel = layer.channel = newHandle<FMOD_CHANNEL>();
    });
}

FMOD_RESULT FMOD_System_Update(FMOD_SYSTEM* system) {
    return withSystem(system, [] {});
}

FMOD_RESULT FMOD_System_Close(FMOD_SYSTEM* system) { return withSystem(system, close); }

FMOD_RESULT FMOD_System_Release(FMOD_SYSTEM* system) {
    return withSystem(system, [] {
        close();
        FMOD_Sound_Release(layer.sound);
        layer.system = nullptr;
    });
}

FMOD_RESULT FMOD_Sound_Release(FMOD_SOUND* sound) {
    return withSound(sound, [] {
        stop();
        layer.sound = nullptr;
        layer.track.reset();
    });
}

FMOD_RESULT FMOD_Sound_GetLength(FMOD_SOUND* sound, unsigned int* length, FMOD_TIMEUNIT /*unit*/) {
    return withSound(sound, [=] { *length = lengthOf(sounding()); });
}

FMOD_RESULT FMOD_Sound_GetName(FMOD_SOUND* sound, char* name, int namelength) {
    return withSound(sound, [=] {
        const std::string file = layer.path.substr(layer.path.find_last_of('/') + 1);
        std::snprintf(name, static_cast<std::size_t>(namelength), "%s", file.c_str());
    });
}

FMOD_RESULT FMOD_Channel_GetPaused(FMOD_CHANNEL* channel, FMOD_BOOL* paused) {
    return withChannel(channel, [=](const Playing& playing) { *paused = playing.isPaused() ? 1 : 0; });
}

FMOD_RESULT FMOD_Channel_SetPaused(FMOD_CHANNEL* channel, FMOD_BOOL paused) {
    return withChannel(channel, [=](Playing& playing) { playing.setPaused(paused != 0); });
}

FMOD_RESULT FMOD_Channel_SetLoopCount(FMOD_CHANNEL* channel, int /*loopcount*/) {
    return withChannel(channel, [](const Playing&) {});
}

FMOD_RESULT FMOD_Channel_Stop(FMOD_CHANNEL* channel) {
    return withChannel(channel, [](const Playing&) { stop(); });
}

FMOD_RESULT FMOD_Channel_GetSpectrum(FMOD_CHANNEL* channel, float* spectrum, int numvalues,
                                     int /*channeloffset*/, FMOD_DSP_FFT_WINDOW /*window*/) {
    const FMOD_RESULT result = withChannel(channel, [=](Playing& playing) {
        const bool powerOfTwo = numvalues > 0 && (numvalues & (numvalues - 1)) == 0;
        require(powerOfTwo && numvalues >= LEAST_ENTRIES && numvalues <= MOST_ENTRIES);
        playing.getSpectrum(spectrum, numvalues);
    });
    if (result != FMOD_OK) {
        std::fill_n(spectrum, std::max(numvalues, 0), 0.0f);
    }
    return result;
}

FMOD_RESULT FMOD_Channel_GetPosition(FMOD_CHANNEL* channel, unsigned int* position, FMOD_TIMEUNIT /*unit*/) {
    return withChannel(channel, [=](Playing& playing) {
        *position = static_cast<unsigned int>(playing.getPosition() / 1000);
    });
}

FMOD_RESULT FMOD_Channel_SetPosition(FMOD_CHANNEL* channel, unsigned int position, FMOD_TIMEUNIT /*unit*/) {
    return withChannel(channel, [=](Playing& playing) { playing.setPosition(position * 1000LL); });
}
