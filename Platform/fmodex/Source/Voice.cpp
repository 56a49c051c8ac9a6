#include "Voice.h"

#include "Error.h"

#include <AL/alext.h>

#include <algorithm>
#include <cstddef>
#include <utility>

namespace fmodex {

Voice::Voice(std::shared_ptr<Channel> played)
    : channel(std::move(played)), track(channel->getTrack()), portion(PORTION_FRAMES) {
    idle.reserve(PORTIONS);
    alGetError();
    alGenSources(1, &source);
    require(alGetError() == AL_NO_ERROR, FMOD_ERR_MEMORY);
    alGenBuffers(PORTIONS, buffers.data());
    if (alGetError() != AL_NO_ERROR) {
        alDeleteSources(1, &source);
        throw Error(FMOD_ERR_MEMORY);
    }
    // Left to the left speaker and right to the right, whatever else is in the room.
    alSourcei(source, AL_DIRECT_CHANNELS_SOFT, AL_TRUE);
    go(channel->getOrder());
}

Voice::~Voice() {
    alDeleteSources(1, &source);
    alDeleteBuffers(PORTIONS, buffers.data());
}

bool Voice::update() {
    measured = false;
    const Channel::Order order = channel->getOrder();
    if (order.over) {
        return false;
    }
    if (order.jumps != jumps) {
        go(order);
    }
    // Asked before the portions are taken back: a source that has stopped has finished all that it held then,
    // and none of it will be started again.
    ALint state = AL_STOPPED;
    alGetSourcei(source, AL_SOURCE_STATE, &state);
    takeBack();
    hand();
    if (order.paused) {
        if (state == AL_PLAYING) {
            alSourcePause(source);
        }
        return true;
    }
    if (state != AL_PLAYING) {
        if (first == next) {
            // Behind the last frame the channel runs to its end by the clock.
            if (!track.isOver(next)) {
                channel->wait();
            }
            return true;
        }
        alSourcePlay(source);
    }
    measure();
    return true;
}

void Voice::go(const Channel::Order& order) {
    alSourceStop(source);
    alSourcei(source, AL_BUFFER, 0);
    idle.assign(buffers.begin(), buffers.end());
    jumps = order.jumps;
    first = order.frame;
    next = order.frame;
}

void Voice::takeBack() {
    ALint finished = 0;
    alGetSourcei(source, AL_BUFFERS_PROCESSED, &finished);
    for (; finished > 0; --finished) {
        ALuint buffer = 0;
        ALint bytes = 0;
        alSourceUnqueueBuffers(source, 1, &buffer);
        alGetBufferi(buffer, AL_SIZE, &bytes);
        first += bytes / static_cast<ALint>(sizeof(Frame));
        idle.push_back(buffer);
    }
}

void Voice::hand() {
    while (!idle.empty()) {
        const bool complete = track.isComplete();
        const std::int64_t count = std::min(PORTION_FRAMES, track.getDecoded() - next);
        if (count <= 0 || (count < PORTION_FRAMES && !complete)) {
            return;
        }
        const ALuint buffer = idle.back();
        track.copy(next, static_cast<std::size_t>(count), portion.data());
        alBufferData(buffer, AL_FORMAT_STEREO16, portion.data(), static_cast<ALsizei>(count * sizeof(Frame)),
                     static_cast<ALsizei>(track.getRate()));
        alSourceQueueBuffers(source, 1, &buffer);
        idle.pop_back();
        next += count;
    }
}

void Voice::measure() {
    // The frame being mixed, in units of 2^-32, and the nanoseconds until it is heard.
    std::array<ALint64SOFT, 2> mixed{};
    alGetSourcei64vSOFT(source, AL_SAMPLE_OFFSET_LATENCY_SOFT, mixed.data());
    const double frame = static_cast<double>(first) + static_cast<double>(mixed[0]) / 4294967296.0;
    const double microseconds = frame * 1e6 / static_cast<double>(track.getRate());
    heard = static_cast<std::int64_t>(microseconds) - mixed[1] / 1000;
    measured = true;
}

void Voice::report() {
    if (measured) {
        channel->follow(heard, jumps);
    }
}

} // namespace fmodex
