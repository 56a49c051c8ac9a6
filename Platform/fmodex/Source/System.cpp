#include "System.h"

#include <utility>

namespace fmodex {

void System::init(int mostChannels) {
    const std::lock_guard<std::mutex> lock(mutex);
    require(session == nullptr, FMOD_ERR_INITIALISED);
    const Clock clock;
    session = std::make_unique<Session>(
        Session{clock, mostChannels, clock.isSupplied() ? nullptr : Output::open()});
}

FMOD_SOUND* System::open(const std::string& path) {
    const std::lock_guard<std::mutex> lock(mutex);
    require(session != nullptr, FMOD_ERR_NOT_INITIALISED);
    return sounds.add(std::make_shared<Track>(path, session->clock.isSupplied()), ownHandle);
}

FMOD_CHANNEL* System::play(FMOD_SOUND* sound, bool paused) {
    const std::lock_guard<std::mutex> lock(mutex);
    require(session != nullptr, FMOD_ERR_NOT_INITIALISED);
    const std::shared_ptr<Track> track = sounds.find(sound, ownHandle);
    int busy = 0;
    for (const auto& [handle, channel] : channels.of(ownHandle)) {
        if (channel->isOver()) {
            channels.drop(handle);
        } else {
            ++busy;
        }
    }
    require(busy < session->most, FMOD_ERR_CHANNELS_BUSY);
    const auto channel = std::make_shared<Channel>(track, session->clock, paused, session->output != nullptr);
    FMOD_CHANNEL* const handle = channels.add(channel, ownHandle);
    if (session->output) {
        session->output->play(channel);
    }
    return handle;
}

void System::check() const {
    const std::lock_guard<std::mutex> lock(mutex);
    require(session != nullptr, FMOD_ERR_NOT_INITIALISED);
}

void System::close() {
    const std::lock_guard<std::mutex> lock(mutex);
    for (const auto& [handle, channel] : channels.of(ownHandle)) {
        channel->stop();
        channels.drop(handle);
    }
    session.reset();
}

void System::discard() {
    close();
    for (const auto& [handle, track] : sounds.of(ownHandle)) {
        sounds.drop(handle);
    }
}

} // namespace fmodex
