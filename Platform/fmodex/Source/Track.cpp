#include "Track.h"

#include "Error.h"
#include "faultOfFile.h"

#include <mpg123.h>

#include <array>
#include <cstddef>
#include <memory>
#include <utility>

namespace fmodex {

namespace {

struct CloseDecoder {
    void operator()(mpg123_handle* decoder) const { mpg123_delete(decoder); }
};
using Decoder = std::unique_ptr<mpg123_handle, CloseDecoder>;

std::vector<short> decode(const Decoder& decoder) {
    std::vector<short> samples;
    std::array<short, 65536> portion{};
    int state = MPG123_OK;
    while (state == MPG123_OK || state == MPG123_NEW_FORMAT) {
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

    samples = std::async(std::launch::async, [opened = std::move(decoder)] { return decode(opened); });
}

FMOD_SONG Track::getSong() const {
    const std::vector<short>& all = samples.get();
    return {all.data(), static_cast<long long>(all.size() / 2), static_cast<int>(rate), 1, 0};
}

} // namespace fmodex
