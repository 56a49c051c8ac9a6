#pragma once

#include "Channel.h"
#include "Clock.h"
#include "Output.h"
#include "Registry.h"
#include "Track.h"

#include <memory>
#include <mutex>
#include <string>

namespace fmodex {

using Sounds = Registry<FMOD_SOUND, Track>;
using Channels = Registry<FMOD_CHANNEL, Channel>;

/// Opens tracks and plays them. The handles are kept by two registries that all systems share.
class System {
public:
    System(Sounds& sounds, Channels& channels) : sounds(sounds), channels(channels) {}

    /// Under which handle its sounds and channels are registered; to be called before anything else.
    void setHandle(const FMOD_SYSTEM* handle) { ownHandle = handle; }

    /// Opens the device, for so many channels at a time. Throws FMOD_ERR_INITIALISED.
    void init(int mostChannels);

    /// Throws FMOD_ERR_NOT_INITIALISED and what Track throws.
    FMOD_SOUND* open(const std::string& path);

    /// Throws FMOD_ERR_NOT_INITIALISED, FMOD_ERR_HANDLE, FMOD_ERR_CHANNELS_BUSY.
    FMOD_CHANNEL* play(FMOD_SOUND* sound, bool paused);

    /// Throws FMOD_ERR_NOT_INITIALISED unless it is.
    void check() const;

    /// Stops the channels and closes the device; discard gives the sounds back as well.
    void close();
    void discard();

private:
    /// What there is between init and close.
    struct Session {
        Clock clock;
        int most;                       ///< channels at a time
        std::unique_ptr<Output> output; ///< null: nothing is heard
    };

    Sounds& sounds;
    Channels& channels;
    const FMOD_SYSTEM* ownHandle = nullptr;
    mutable std::mutex mutex;
    std::unique_ptr<Session> session;
};

} // namespace fmodex
