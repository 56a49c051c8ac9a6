#include "Encoder.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <fcntl.h>
#include <stdexcept>
#include <sys/mman.h>
#include <sys/wait.h>
#include <system_error>
#include <unistd.h>

namespace recorder {

namespace {

constexpr const char* PROGRAM = "ffmpeg";
// Room for a frame of 640x480, so that both sides get on with their work. More may not be allowed.
constexpr int PIPE_BYTES = 1 << 20;
// How FFmpeg ends when it was asked to by a signal; it says nothing then.
constexpr int ENDED_BY_SIGNAL = 255;

} // namespace

Arguments joined(std::initializer_list<Arguments> parts) {
    Arguments all;
    for (const Arguments& part : parts) {
        all.insert(all.end(), part.begin(), part.end());
    }
    return all;
}

void Encoder::requireInstalled() {
    if (!Process::isInstalled(PROGRAM)) {
        throw std::runtime_error("ffmpeg is not installed; it writes the files");
    }
}

Encoder::Encoder(const Arguments& arguments, const Output& output)
    : target(output.stream < 0 ? "file:" + output.path : "pipe:1"), name(output.name) {
    std::array<int, 2> ends{-1, -1};
    log = memfd_create("encoder", MFD_CLOEXEC);
    if (log < 0 || pipe2(ends.data(), O_CLOEXEC) != 0) {
        const int error = errno;
        close(log);
        throw std::runtime_error("can't talk to ffmpeg: " + std::generic_category().message(error));
    }
    input = ends[1];
    fcntl(input, F_SETPIPE_SZ, PIPE_BYTES);
    try {
        process = std::make_unique<Process>(
            joined({{PROGRAM, "-nostdin", "-hide_banner", "-loglevel", "error", "-xerror", "-y"},
                    arguments,
                    {target}}),
            Process::Streams{ends[0], output.stream < 0 ? log : output.stream, log}, Process::Keyboard::OURS);
    } catch (...) {
        close(ends[0]);
        close(input);
        close(log);
        throw;
    }
    close(ends[0]);
}

Encoder::~Encoder() {
    if (input >= 0) {
        close(input);
    }
    process.reset();
    close(log);
}

void Encoder::write(const unsigned char* bytes, std::size_t count) {
    for (std::size_t done = 0; done < count;) {
        const ssize_t written = ::write(input, bytes + done, count - done);
        if (written < 0 && errno != EINTR) {
            finish();
            throw std::runtime_error("the encoder (ffmpeg) stopped before the end");
        }
        done += written > 0 ? static_cast<std::size_t>(written) : 0;
    }
}

void Encoder::finish() {
    close(input);
    input = -1;
    const int status = process->wait();
    if (WIFSIGNALED(status)) {
        throw std::runtime_error("the encoder (ffmpeg) was killed by signal " +
                                 std::to_string(WTERMSIG(status)));
    }
    if (WEXITSTATUS(status) != 0) {
        const std::string complaint = getComplaint();
        throw std::runtime_error(
            !complaint.empty() ? "can't write " + name + ": ffmpeg says '" + complaint + "'"
            : WEXITSTATUS(status) == ENDED_BY_SIGNAL
                ? "the encoder (ffmpeg) was stopped by a signal"
                : "the encoder (ffmpeg) ended with status " + std::to_string(WEXITSTATUS(status)));
    }
}

std::string Encoder::getComplaint() const {
    std::array<char, 400> text{};
    const ssize_t length = pread(log, text.data(), text.size(), 0);
    std::string line(text.data(), static_cast<std::size_t>(std::max<ssize_t>(length, 0)));
    line.resize(std::min(line.find('\n'), line.size()));
    const std::size_t place = line.find(target);
    return place == std::string::npos ? line : line.replace(place, target.size(), name);
}

} // namespace recorder
