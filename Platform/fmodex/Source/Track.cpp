#include "Track.h"

#include "Error.h"
#include "faultOfFile.h"

#include <mpg123.h>

#include <array>
#include <chrono>
#include <cstddef>
#include <limits>
#include <memory>
#include <utility>

namespace fmodex {

namespace {

struct CloseDecoder {
    void operator()(mpg123_handle* decoder) const { mpg123_delete(decoder); }
};
using Decoder = std::unique_ptr<mpg123_handle, CloseDecoder>;

/// As long as decoding them is not noticed, and the rest comes long before they are over.
constexpr std::size_t BEGINNING_SECONDS = 2;

/// Goes on behind the given samples, until there are at least so many.
std::vector<short> decode(const Decoder& decoder, std::vector<short> samples, std::size_t wanted) {
    std::array<short, 65536> portion{};
    int state = MPG123_OK;
    while ((state == MPG123_OK || state == MPG123_NEW_FORMAT) && samples.size() < wanted) {
        std::size_t bytes = 0;
        state = mpg123_read(decoder.get(), portion.data(), sizeof portion, &bytes);
        samples.insert(samples.end(), portion.begin(), portion.begin() + bytes / sizeof(short));
    }
    return samples;
}

} // namespace

Track::Track(const std::string& path) {
    const FMOD_RESULT fault = faultOfFile(path);
    require(fault == FMOD_OK, fault);
    // The plain decoder is quick enough, and gives the same samples on every processor.
    Decoder decoder(mpg123_new("generic", nullptr));
    require(decoder != nullptr, FMOD_ERR_MEMORY);
    mpg123_param(decoder.get(), MPG123_ADD_FLAGS, MPG123_QUIET | MPG123_GAPLESS | MPG123_FORCE_STEREO, 0);

    // The music has to begin near the front, or anything with a few matching bytes would pass for an MP3.
    // From there on a damaged stretch may be of any length.
    int channels = 0;
    int encoding = 0;
    mpg123_frameinfo frame = {};
    require(mpg123_open(decoder.get(), path.c_str()) == MPG123_OK &&
                mpg123_getformat(decoder.get(), &rate, &channels, &encoding) == MPG123_OK &&
                mpg123_info(decoder.get(), &frame) == MPG123_OK && frame.layer == 3,
            FMOD_ERR_FILE_NOT_MP3);
    mpg123_param(decoder.get(), MPG123_RESYNC_LIMIT, -1, 0);

    beginning = decode(decoder, {}, 2 * BEGINNING_SECONDS * rate);
    samples = std::async(std::launch::async, [opened = std::move(decoder), first = beginning]() mutable {
        return decode(opened, std::move(first), std::numeric_limits<std::size_t>::max());
    });
}

bool Track::isWhole() const {
    return samples.wait_for(std::chrono::seconds::zero()) == std::future_status::ready;
}

FMOD_SONG Track::makeSong(const std::vector<short>& frames) const {
    return {frames.data(), static_cast<long long>(frames.size() / 2), static_cast<int>(rate), 1, 0};
}

} // namespace fmodex
