#include "Voice.h"

#include "Error.h"

#include <AL/alext.h>

#include <algorithm>
#include <cstddef>
#include <utility>

namespace fmodex {

Voice::Voice(std::shared_ptr<Channel> channel)
    : channel_(std::move(channel)), track_(channel_->track()), portion_(portionFrames) {
    free_.reserve(portions);
    alGetError();
    alGenSources(1, &source_);
    require(alGetError() == AL_NO_ERROR, FMOD_ERR_MEMORY);
    alGenBuffers(portions, buffers_.data());
    if (alGetError() != AL_NO_ERROR) {
        alDeleteSources(1, &source_);
        throw Error(FMOD_ERR_MEMORY);
    }
    // Left to the left speaker and right to the right, whatever else is in the room.
    alSourcei(source_, AL_DIRECT_CHANNELS_SOFT, AL_TRUE);
    go(channel_->order());
}

Voice::~Voice() {
    alDeleteSources(1, &source_);
    alDeleteBuffers(portions, buffers_.data());
}

bool Voice::update() {
    const Channel::Order order = channel_->order();
    if (order.over) {
        return false;
    }
    if (order.jumps != jumps_) {
        go(order);
    }
    // Asked before the portions are taken back: a source that has stopped has finished all that it held then,
    // and none of it will be started again.
    ALint state = AL_STOPPED;
    alGetSourcei(source_, AL_SOURCE_STATE, &state);
    takeBack();
    hand();
    if (order.paused) {
        if (state == AL_PLAYING) {
            alSourcePause(source_);
        }
        return true;
    }
    if (state != AL_PLAYING) {
        if (first_ == next_) {
            // Behind the last frame the channel runs to its end by the clock.
            if (!track_.isOver(next_)) {
                channel_->wait();
            }
            return true;
        }
        alSourcePlay(source_);
    }
    measure();
    return true;
}

void Voice::go(const Channel::Order& order) {
    alSourceStop(source_);
    alSourcei(source_, AL_BUFFER, 0);
    free_.assign(buffers_.begin(), buffers_.end());
    jumps_ = order.jumps;
    first_ = order.frame;
    next_ = order.frame;
}

void Voice::takeBack() {
    ALint finished = 0;
    alGetSourcei(source_, AL_BUFFERS_PROCESSED, &finished);
    for (; finished > 0; --finished) {
        ALuint buffer = 0;
        ALint bytes = 0;
        alSourceUnqueueBuffers(source_, 1, &buffer);
        alGetBufferi(buffer, AL_SIZE, &bytes);
        first_ += bytes / static_cast<ALint>(sizeof(Frame));
        free_.push_back(buffer);
    }
}

void Voice::hand() {
    while (!free_.empty()) {
        const bool complete = track_.complete();
        const std::int64_t count = std::min(portionFrames, track_.decoded() - next_);
        if (count <= 0 || (count < portionFrames && !complete)) {
            return;
        }
        const ALuint buffer = free_.back();
        track_.copy(next_, static_cast<std::size_t>(count), portion_.data());
        alBufferData(buffer, AL_FORMAT_STEREO16, portion_.data(), static_cast<ALsizei>(count * sizeof(Frame)),
                     static_cast<ALsizei>(track_.rate()));
        alSourceQueueBuffers(source_, 1, &buffer);
        free_.pop_back();
        next_ += count;
    }
}

void Voice::measure() {
    // The frame being mixed, in units of 2^-32, and the nanoseconds until it is heard.
    std::array<ALint64SOFT, 2> mixed{};
    alGetSourcei64vSOFT(source_, AL_SAMPLE_OFFSET_LATENCY_SOFT, mixed.data());
    const double frame = static_cast<double>(first_) + static_cast<double>(mixed[0]) / 4294967296.0;
    const double microseconds = frame * 1e6 / static_cast<double>(track_.rate());
    heard_ = static_cast<std::int64_t>(microseconds) - mixed[1] / 1000;
    measured_ = true;
}

void Voice::report() {
    if (measured_) {
        channel_->follow(heard_, jumps_);
    }
}

} // namespace fmodex
