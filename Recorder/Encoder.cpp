#include "Encoder.h"

#include "FrameSize.h"
#include "writeAll.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <csignal>
#include <cstdlib>
#include <fcntl.h>
#include <filesystem>
#include <spawn.h>
#include <sstream>
#include <stdexcept>
#include <sys/mman.h>
#include <sys/wait.h>
#include <system_error>
#include <unistd.h>
#include <utility>

namespace recorder {

namespace {

constexpr const char* PROGRAM = "ffmpeg";
// Room for a frame of 640x480, so that both sides get on with their work. More may not be allowed.
constexpr int PIPE_BYTES = 1 << 20;

pid_t start(const std::vector<std::string>& arguments, int input, int log) {
    std::vector<char*> argv{const_cast<char*>(PROGRAM)};
    for (const std::string& argument : arguments) {
        argv.push_back(const_cast<char*>(argument.c_str()));
    }
    argv.push_back(nullptr);

    posix_spawn_file_actions_t files;
    posix_spawn_file_actions_init(&files);
    posix_spawn_file_actions_adddup2(&files, input, STDIN_FILENO);
    posix_spawn_file_actions_addopen(&files, STDOUT_FILENO, "/dev/null", O_WRONLY, 0);
    posix_spawn_file_actions_adddup2(&files, log, STDERR_FILENO);

    sigset_t pipeSignal;
    sigemptyset(&pipeSignal);
    sigaddset(&pipeSignal, SIGPIPE);
    posix_spawnattr_t attributes;
    posix_spawnattr_init(&attributes);
    posix_spawnattr_setpgroup(&attributes, 0);
    posix_spawnattr_setsigdefault(&attributes, &pipeSignal);
    posix_spawnattr_setflags(&attributes, POSIX_SPAWN_SETPGROUP | POSIX_SPAWN_SETSIGDEF);

    pid_t process = -1;
    const int error = posix_spawnp(&process, PROGRAM, &files, &attributes, argv.data(), environ);
    posix_spawnattr_destroy(&attributes);
    posix_spawn_file_actions_destroy(&files);
    if (error != 0) {
        throw std::runtime_error("can't start ffmpeg: " + std::generic_category().message(error));
    }
    return process;
}

} // namespace

bool Encoder::isInstalled() {
    const char* const path = std::getenv("PATH");
    std::istringstream folders(path == nullptr ? "" : path);
    for (std::string folder; std::getline(folders, folder, ':');) {
        if (access((std::filesystem::path(folder) / PROGRAM).c_str(), X_OK) == 0) {
            return true;
        }
    }
    return false;
}

Encoder::Encoder(std::vector<std::string> arguments, const std::string& file, std::string name)
    : output("file:" + file), name(std::move(name)) {
    arguments.push_back(output);
    std::array<int, 2> ends{-1, -1};
    log = memfd_create("encoder", MFD_CLOEXEC);
    if (log < 0 || pipe2(ends.data(), O_CLOEXEC) != 0) {
        throw std::runtime_error("can't talk to ffmpeg: " + std::generic_category().message(errno));
    }
    input = ends[1];
    fcntl(input, F_SETPIPE_SZ, PIPE_BYTES);
    try {
        process = start(arguments, ends[0], log);
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
    if (process > 0) {
        kill(process, SIGKILL);
        waitpid(process, nullptr, 0);
    }
    close(log);
}

void Encoder::write(const std::vector<unsigned char>& bytes) {
    if (!writeAll(input, bytes)) {
        finish();
        throw std::runtime_error("the encoder (ffmpeg) stopped before the end");
    }
}

void Encoder::finish() {
    close(input);
    input = -1;
    int status = 0;
    while (waitpid(process, &status, 0) < 0 && errno == EINTR) {
    }
    process = -1;
    if (WIFSIGNALED(status)) {
        throw std::runtime_error("the encoder (ffmpeg) was killed by signal " +
                                 std::to_string(WTERMSIG(status)));
    }
    if (WEXITSTATUS(status) != 0) {
        throw std::runtime_error("can't write " + name + ": ffmpeg says '" + getComplaint() + "'");
    }
}

std::string Encoder::getComplaint() const {
    std::array<char, 400> text{};
    const ssize_t length = pread(log, text.data(), text.size(), 0);
    std::string line(text.data(), static_cast<std::size_t>(std::max<ssize_t>(length, 0)));
    line.resize(std::min(line.find('\n'), line.size()));
    const std::size_t place = line.find(output);
    return place == std::string::npos ? line : line.replace(place, output.size(), name);
}

std::vector<std::string> frameInput(const FrameSize& size) {
    return {"-nostdin", "-hide_banner",  "-loglevel", "error",       "-xerror",   "-y",         "-f",
            "rawvideo", "-pixel_format", "bgr0",      "-video_size", size.text(), "-framerate", "200/3",
            "-i",       "pipe:0"};
}

} // namespace recorder
