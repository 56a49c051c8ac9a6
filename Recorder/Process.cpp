#include "Process.h"

#include <cerrno>
#include <csignal>
#include <cstdio>
#include <cstring>
#include <stdexcept>
#include <sys/prctl.h>
#include <sys/wait.h>
#include <unistd.h>
#include <vector>

namespace recorder {

Process::Process(Keyboard keyboard, const std::function<int()>& work) {
    std::fflush(nullptr);
    process = fork();
    if (process < 0) {
        throw std::runtime_error(std::string("can't start another process: ") + std::strerror(errno));
    }
    if (process == 0) {
        prctl(PR_SET_PDEATHSIG, SIGKILL);
        if (keyboard == Keyboard::OURS) {
            setpgid(0, 0);
        }
        const int answer = work();
        std::fflush(nullptr);
        _exit(answer);
    }
}

Process::~Process() {
    send(SIGKILL);
    wait();
}

int Process::become(const Arguments& command, const std::array<int, 3>& streams) {
    for (int i = 0; i < static_cast<int>(streams.size()); ++i) {
        dup2(streams[static_cast<std::size_t>(i)], i);
    }
    std::signal(SIGPIPE, SIG_DFL);
    std::vector<char*> words;
    for (const std::string& word : command) {
        words.push_back(const_cast<char*>(word.c_str()));
    }
    words.push_back(nullptr);
    execvp(words.front(), words.data());
    std::fprintf(stderr, "can't start %s: %s\n", words.front(), std::strerror(errno));
    return NOT_STARTED;
}

void Process::send(int signal) const {
    if (process > 0) {
        kill(process, signal);
    }
}

int Process::wait() {
    while (process > 0 && waitpid(process, &status, 0) < 0 && errno == EINTR) {
    }
    process = -1;
    return status;
}

} // namespace recorder
