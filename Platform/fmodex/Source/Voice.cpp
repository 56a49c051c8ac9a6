#include "Voice.h"

#include <AL/alext.h>

#include <algorithm>
#include <array>
#include <limits>

namespace fmodex {

Voice::Voice(int rate) : rate(rate) {
    alGenSources(1, &source);
    // Left to the left speaker and right to the right, whatever else is in the room.
    alSourcei(source, AL_DIRECT_CHANNELS_SOFT, AL_TRUE);
}

Voice::~Voice() {
    alDeleteSources(1, &source);
    alDeleteBuffers(static_cast<ALsizei>(buffers.size()), buffers.data());
}

void Voice::append(const FMOD_SONG& song, long long first) {
    constexpr long long FRAME_BYTES = 2 * sizeof(short);
    constexpr long long MOST = std::numeric_limits<ALsizei>::max() / FRAME_BYTES; // three hours and more
    ALuint& buffer = buffers.emplace_back();
    alGenBuffers(1, &buffer);
    alBufferData(buffer, AL_FORMAT_STEREO16, song.frames + 2 * first,
                 static_cast<ALsizei>(std::min(song.count - first, MOST) * FRAME_BYTES), rate);
    alSourceQueueBuffers(source, 1, &buffer);
}

void Voice::playFrom(std::int64_t frame) {
    alSourceStop(source);
    alSourcei(source, AL_SAMPLE_OFFSET, static_cast<ALint>(frame));
    alSourcePlay(source);
}

std::optional<std::int64_t> Voice::getPlace() const {
    // The frame being mixed, in units of 2^-32, and the nanoseconds until it is heard.
    std::array<ALint64SOFT, 2> mixed{};
    alGetSourcei64vSOFT(source, AL_SAMPLE_OFFSET_LATENCY_SOFT, mixed.data());
    // Asked afterwards: if it still plays, what it said of its place was true.
    ALint state = AL_STOPPED;
    alGetSourcei(source, AL_SOURCE_STATE, &state);
    if (state != AL_PLAYING) {
        return std::nullopt;
    }
    const double frame = static_cast<double>(mixed[0]) / 4294967296.0;
    return static_cast<std::int64_t>(frame * 1e6 / rate) - mixed[1] / 1000;
}

} // namespace fmodex
