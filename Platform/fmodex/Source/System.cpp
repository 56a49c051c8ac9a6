#include "System.h"

#include <utility>

namespace fmodex {

void System::init(int channels) {
    const std::lock_guard<std::mutex> lock(mutex_);
    require(session_ == nullptr, FMOD_ERR_INITIALISED);
    const Clock clock;
    session_ =
        std::make_unique<Session>(Session{clock, channels, clock.supplied() ? nullptr : Output::open()});
}

FMOD_SOUND* System::open(const std::string& path) {
    const std::lock_guard<std::mutex> lock(mutex_);
    require(session_ != nullptr, FMOD_ERR_NOT_INITIALISED);
    return sounds_.add(std::make_shared<Track>(path, session_->clock.supplied()), handle_);
}

FMOD_CHANNEL* System::play(FMOD_SOUND* sound, bool paused) {
    const std::lock_guard<std::mutex> lock(mutex_);
    require(session_ != nullptr, FMOD_ERR_NOT_INITIALISED);
    const std::shared_ptr<Track> track = sounds_.find(sound, handle_);
    int busy = 0;
    for (const auto& [handle, channel] : channels_.of(handle_)) {
        if (channel->over()) {
            channels_.drop(handle);
        } else {
            ++busy;
        }
    }
    require(busy < session_->most, FMOD_ERR_CHANNELS_BUSY);
    const auto channel =
        std::make_shared<Channel>(track, session_->clock, paused, session_->output != nullptr);
    FMOD_CHANNEL* const handle = channels_.add(channel, handle_);
    if (session_->output) {
        session_->output->play(channel);
    }
    return handle;
}

void System::check() const {
    const std::lock_guard<std::mutex> lock(mutex_);
    require(session_ != nullptr, FMOD_ERR_NOT_INITIALISED);
}

void System::close() {
    const std::lock_guard<std::mutex> lock(mutex_);
    for (const auto& [handle, channel] : channels_.of(handle_)) {
        channel->stop();
        channels_.drop(handle);
    }
    session_.reset();
}

void System::discard() {
    close();
    for (const auto& [handle, track] : sounds_.of(handle_)) {
        sounds_.drop(handle);
    }
}

} // namespace fmodex
