#include "Process.h"

#include <cerrno>
#include <csignal>
#include <cstdlib>
#include <filesystem>
#include <initializer_list>
#include <spawn.h>
#include <sstream>
#include <stdexcept>
#include <sys/wait.h>
#include <system_error>
#include <unistd.h>
#include <utility>

namespace recorder {

Process::Process(const std::vector<std::string>& command, const Streams& streams, Keyboard keyboard) {
    std::vector<char*> argv;
    argv.reserve(command.size() + 1);
    for (const std::string& word : command) {
        argv.push_back(const_cast<char*>(word.c_str()));
    }
    argv.push_back(nullptr);

    posix_spawn_file_actions_t files;
    posix_spawn_file_actions_init(&files);
    for (const auto& [ours, its] :
         {std::pair{streams.input, STDIN_FILENO}, std::pair{streams.output, STDOUT_FILENO},
          std::pair{streams.error, STDERR_FILENO}}) {
        if (ours >= 0) {
            posix_spawn_file_actions_adddup2(&files, ours, its);
        }
    }

    // It starts as if we had never touched a signal.
    sigset_t signals;
    posix_spawnattr_t attributes;
    posix_spawnattr_init(&attributes);
    sigemptyset(&signals);
    posix_spawnattr_setsigmask(&attributes, &signals);
    sigaddset(&signals, SIGPIPE);
    posix_spawnattr_setsigdefault(&attributes, &signals);
    posix_spawnattr_setpgroup(&attributes, 0);
    posix_spawnattr_setflags(&attributes,
                             static_cast<short>(POSIX_SPAWN_SETSIGDEF | POSIX_SPAWN_SETSIGMASK |
                                                (keyboard == Keyboard::OURS ? POSIX_SPAWN_SETPGROUP : 0)));

    const int error = posix_spawnp(&process, argv.front(), &files, &attributes, argv.data(), environ);
    posix_spawnattr_destroy(&attributes);
    posix_spawn_file_actions_destroy(&files);
    if (error != 0) {
        process = -1;
        throw std::runtime_error("can't start " + command.front() + ": " +
                                 std::generic_category().message(error));
    }
}

Process::~Process() {
    if (process > 0) {
        kill(process, SIGKILL);
        wait();
    }
}

bool Process::isInstalled(const std::string& program) {
    const char* const path = std::getenv("PATH");
    std::istringstream folders(path == nullptr ? "" : path);
    for (std::string folder; std::getline(folders, folder, ':');) {
        if (access((std::filesystem::path(folder) / program).c_str(), X_OK) == 0) {
            return true;
        }
    }
    return false;
}

int Process::wait() {
    while (process > 0 && waitpid(process, &status, 0) < 0 && errno == EINTR) {
    }
    process = -1;
    return status;
}

std::optional<int> Process::poll() {
    if (process > 0 && waitpid(process, &status, WNOHANG) == 0) {
        return std::nullopt;
    }
    process = -1;
    return status;
}

void Process::send(int signal) const {
    if (process > 0) {
        kill(process, signal);
    }
}

} // namespace recorder
