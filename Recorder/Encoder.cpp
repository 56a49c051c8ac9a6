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
#include <utility>

namespace recorder {

namespace {

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

Encoder::Encoder(const Arguments& arguments, const Output& output)
    : target(output.stream < 0 ? "file:" + output.path : "pipe:1"),
      name(output.name),
      log(memfd_create("encoder", MFD_CLOEXEC)) {
    std::array<int, 2> ends{-1, -1};
    if (log < 0 || pipe2(ends.data(), O_CLOEXEC) != 0) {
        throw std::system_error(errno, std::generic_category(), "can't talk to ffmpeg");
    }
    fcntl(ends[1], F_SETPIPE_SZ, PIPE_BYTES);
    process = std::make_unique<Process>(Process::Keyboard::OURS, [&] {
        return Process::become(
            joined({{"ffmpeg", "-nostdin", "-hide_banner", "-loglevel", "error", "-xerror", "-y"},
                    arguments,
                    {target}}),
            {ends[0], output.stream < 0 ? log : output.stream, log});
    });
    close(ends[0]);
    input = fdopen(ends[1], "wb");
    std::setbuf(input, nullptr);
}

Encoder::~Encoder() {
    if (input != nullptr) {
        std::fclose(input);
    }
    process.reset();
    close(log);
}

void Encoder::write(const std::vector<unsigned char>& bytes) {
    if (std::fwrite(bytes.data(), 1, bytes.size(), input) != bytes.size()) {
        finish();
        throw std::runtime_error("the encoder (ffmpeg) stopped before the end");
    }
}

void Encoder::finish() {
    std::fclose(std::exchange(input, nullptr));
    const int status = process->wait();
    if (WIFSIGNALED(status)) {
        throw std::runtime_error("the encoder (ffmpeg) was killed by signal " +
                                 std::to_string(WTERMSIG(status)));
    }
    if (WEXITSTATUS(status) != 0) {
        const std::string complaint = getComplaint();
        throw std::runtime_error(
            WEXITSTATUS(status) == Process::NOT_STARTED ? complaint
            : !complaint.empty() ? "can't write " + name + ": ffmpeg says '" + complaint + "'"
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
