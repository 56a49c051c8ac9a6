#include "Track.h"

#include "Error.h"

#include <mpg123.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <cstring>
#include <fcntl.h>
#include <limits>
#include <new>
#include <string_view>
#include <sys/stat.h>
#include <unistd.h>

namespace fmodex {

namespace {

/// The smallest MP3 frame has 24 bytes (8 kbit/s at 24 kHz), the largest 2881. One of 24 bytes is worth 576
/// samples.
constexpr std::int64_t SMALLEST_FRAME = 24;
constexpr std::int64_t LARGEST_FRAME = 2881;
constexpr std::int64_t SAMPLES_OF_SMALLEST = 576;

/// Text of a tag, up to its first zero and without the blanks that old tags are filled up with.
std::string text(const char* bytes, std::size_t size) {
    const std::string_view all(bytes, size);
    const std::string_view used = all.substr(0, all.find('\0'));
    return std::string(used.substr(0, used.find_last_not_of(' ') + 1));
}

std::string fromLatin1(const std::string& latin1) {
    std::string utf8;
    for (const char c : latin1) {
        const auto code = static_cast<unsigned char>(c);
        if (code < 0x80) {
            utf8 += c;
        } else {
            utf8 += static_cast<char>(0xC0 | (code >> 6));
            utf8 += static_cast<char>(0x80 | (code & 0x3F));
        }
    }
    return utf8;
}

} // namespace

Track::File::File(const std::string& path)
    : // Without O_NONBLOCK a pipe would keep the show waiting for its other end.
      descriptor(::open(path.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK)) {
    if (descriptor < 0) {
        const bool missing = errno == ENOENT || errno == ENOTDIR;
        throw Error(missing ? FMOD_ERR_FILE_MISSING : FMOD_ERR_FILE_UNREADABLE);
    }
    struct stat status = {};
    FMOD_RESULT fault = FMOD_OK;
    if (::fstat(descriptor, &status) != 0 || !(S_ISREG(status.st_mode) || S_ISDIR(status.st_mode))) {
        fault = FMOD_ERR_FILE_UNREADABLE;
    } else if (S_ISDIR(status.st_mode)) {
        fault = FMOD_ERR_FILE_FOLDER;
    } else if (status.st_size == 0) {
        fault = FMOD_ERR_FILE_EMPTY;
    }
    if (fault != FMOD_OK) {
        ::close(descriptor);
        throw Error(fault);
    }
    size = status.st_size;
}

Track::File::~File() { ::close(descriptor); }

void Track::CloseDecoder::operator()(mpg123_handle_struct* decoder) const { mpg123_delete(decoder); }

Track::Track(const std::string& path, bool patient) : patient(patient), file(path) {
    openDecoder();
    readName(path);
    if (statesLength()) {
        statedLength = mpg123_length(decoder.get());
    }
    const std::int64_t mostFrames = (file.getSize() / SMALLEST_FRAME + 1) * SAMPLES_OF_SMALLEST;
    blocks.resize(mostFrames / BLOCK_FRAMES + 1);
    thread = std::thread(&Track::decode, this);
}

Track::~Track() {
    stopping = true;
    thread.join();
}

void Track::openDecoder() {
    // The plain decoder is quick enough, and gives the same samples on every processor.
    decoder.reset(mpg123_new("generic", nullptr));
    mpg123_handle* const handle = decoder.get();
    require(handle != nullptr, FMOD_ERR_MEMORY);
    mpg123_param(handle, MPG123_ADD_FLAGS, MPG123_QUIET | MPG123_GAPLESS | MPG123_FORCE_STEREO, 0);

    // The music has to begin near the front, or anything with a few matching bytes would pass for an MP3.
    int channels = 0;
    int encoding = 0;
    mpg123_frameinfo frame = {};
    require(mpg123_open_fd(handle, file.getDescriptor()) == MPG123_OK &&
                mpg123_getformat(handle, &rate, &channels, &encoding) == MPG123_OK &&
                mpg123_info(handle, &frame) == MPG123_OK && frame.layer == 3,
            FMOD_ERR_FILE_NOT_MP3);

    // From here on a damaged stretch may be of any length.
    mpg123_param(handle, MPG123_RESYNC_LIMIT, -1, 0);
}

void Track::readName(const std::string& path) {
    mpg123_id3v1* v1 = nullptr;
    mpg123_id3v2* v2 = nullptr;
    if (mpg123_id3(decoder.get(), &v1, &v2) == MPG123_OK) {
        if (v2 != nullptr && v2->title != nullptr) {
            name = text(v2->title->p, v2->title->fill);
        }
        if (name.empty() && v1 != nullptr) {
            name = fromLatin1(text(v1->title, sizeof v1->title));
        }
    }
    if (name.empty()) {
        name = path.substr(path.find_last_of('/') + 1);
    }
}

/// The first frame of sound then comes after one that only carries numbers, under one of two names.
bool Track::statesLength() const {
    std::array<char, LARGEST_FRAME> bytes{};
    const std::int64_t end = mpg123_framepos(decoder.get());
    const std::int64_t begin = std::max<std::int64_t>(0, end - LARGEST_FRAME);
    const ssize_t size =
        ::pread(file.getDescriptor(), bytes.data(), static_cast<std::size_t>(end - begin), begin);
    const std::string_view before(bytes.data(), static_cast<std::size_t>(std::max<ssize_t>(0, size)));
    return before.find("Info") != std::string_view::npos || before.find("Xing") != std::string_view::npos;
}

void Track::decode() {
    // Each fault costs some bytes of the file, so that it cannot have more of them than frames.
    std::int64_t faultsLeft = file.getSize() / SMALLEST_FRAME + 1;
    try {
        // The first frame has been read when the file was opened.
        int state = MPG123_OK;
        while (!stopping && faultsLeft > 0 && state != MPG123_DONE && state != MPG123_NEED_MORE) {
            unsigned char* sound = nullptr;
            std::size_t bytes = 0;
            if ((state == MPG123_OK || state == MPG123_NEW_FORMAT) && isOurs()) {
                state = mpg123_framebyframe_decode(decoder.get(), nullptr, &sound, &bytes);
                append(sound, bytes);
            }
            if (state != MPG123_OK && state != MPG123_NEW_FORMAT) {
                --faultsLeft;
            }
            state = mpg123_framebyframe_next(decoder.get());
        }
    } catch (const std::bad_alloc&) {
        // What fits into memory is played.
    }
    publish(getDecoded(), true);
}

/// Damage may look like a frame: of another layer, on which the decoder comments aloud, or of another rate.
bool Track::isOurs() const {
    mpg123_frameinfo frame = {};
    return mpg123_info(decoder.get(), &frame) == MPG123_OK && frame.layer == 3 && frame.rate == rate;
}

void Track::append(const unsigned char* sound, std::size_t bytes) {
    std::int64_t place = getDecoded();
    const std::int64_t end = std::min<std::int64_t>(place + static_cast<std::int64_t>(bytes / sizeof(Frame)),
                                                    BLOCK_FRAMES * static_cast<std::int64_t>(blocks.size()));
    while (place < end) {
        Block& block = blocks[place / BLOCK_FRAMES];
        if (!block) {
            block = std::make_unique<Frame[]>(BLOCK_FRAMES);
        }
        const std::int64_t offset = place % BLOCK_FRAMES;
        const std::int64_t stretch = std::min(BLOCK_FRAMES - offset, end - place);
        std::memcpy(&block[offset], sound, stretch * sizeof(Frame));
        sound += stretch * sizeof(Frame);
        place += stretch;
    }
    publish(end, false);
}

void Track::publish(std::int64_t frames, bool all) {
    {
        const std::lock_guard<std::mutex> lock(mutex);
        decoded.store(frames, std::memory_order_release);
        complete.store(all, std::memory_order_release);
    }
    progress.notify_all();
}

void Track::waitFor(std::int64_t frames) const {
    if (getDecoded() < frames && !isComplete()) {
        std::unique_lock<std::mutex> lock(mutex);
        progress.wait(lock, [this, frames] { return getDecoded() >= frames || isComplete(); });
    }
}

std::int64_t Track::getLength() const {
    if (statedLength >= 0 && !patient && !isComplete()) {
        return statedLength;
    }
    waitFor(std::numeric_limits<std::int64_t>::max());
    return getDecoded();
}

bool Track::isOver(std::int64_t frame) const {
    if (patient) {
        waitFor(frame + 1);
    }
    return isComplete() && frame >= getDecoded();
}

void Track::copy(std::int64_t first, std::size_t count, Frame* frames) const {
    const std::int64_t last = first + static_cast<std::int64_t>(count);
    if (patient) {
        waitFor(last);
    }
    const std::int64_t end = std::min(last, getDecoded());
    const std::int64_t before = std::clamp<std::int64_t>(-first, 0, last - first);
    Frame* next = std::fill_n(frames, before, Frame{});
    for (std::int64_t place = first + before; place < end;) {
        const std::int64_t offset = place % BLOCK_FRAMES;
        const std::int64_t stretch = std::min(BLOCK_FRAMES - offset, end - place);
        next = std::copy_n(&blocks[place / BLOCK_FRAMES][offset], stretch, next);
        place += stretch;
    }
    std::fill(next, frames + count, Frame{});
}

} // namespace fmodex
