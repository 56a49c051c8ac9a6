#include "RawStream.h"

#include "describe.h"
#include "writeAll.h"

#include <cerrno>
#include <fcntl.h>
#include <stdexcept>
#include <system_error>
#include <unistd.h>

namespace recorder {

namespace {

std::runtime_error cannotWrite() {
    return std::runtime_error("can't write to standard output: " + std::generic_category().message(errno));
}

} // namespace

RawStream::RawStream(const FrameRange& range)
    : range(range), output(fcntl(STDOUT_FILENO, F_DUPFD_CLOEXEC, STDERR_FILENO + 1)) {
    if (output < 0) {
        throw cannotWrite();
    }
    if (isatty(output) != 0) {
        close(output);
        throw std::runtime_error("bare frames are not for a terminal: send standard output elsewhere");
    }
    dup2(STDERR_FILENO, STDOUT_FILENO);
}

RawStream::~RawStream() { close(output); }

void RawStream::open(const FrameSize& size) {
    frameSize = size;
    packed.resize(std::size_t{3} * size.width * size.height);
}

void RawStream::take(const Frame& frame) {
    auto to = packed.begin();
    for (unsigned int row = frameSize.height; row-- > 0;) {
        const unsigned char* from = frame.pixels.data() + row * frameSize.rowBytes();
        for (unsigned int column = 0; column < frameSize.width; ++column, from += 4) {
            *to++ = from[2];
            *to++ = from[1];
            *to++ = from[0];
        }
    }
    if (!writeAll(output, packed)) {
        throw cannotWrite();
    }
    ++frames;
}

std::string RawStream::finish() {
    return frames == 0 ? "" : describeFrames(frames, frameSize) + " on " + name;
}

} // namespace recorder
