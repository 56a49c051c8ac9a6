#pragma once

#include "CommandLine.h"

#include <array>
#include <functional>
#include <sys/types.h>

namespace recorder {

/// Something that runs beside this program, as its child. It is killed and waited for if it still runs at the
/// end of this object, and dies with us.
class Process {
public:
    /// Whether what the user sends from the keyboard, Ctrl-C for one, reaches it too or us alone.
    enum class Keyboard { SHARED, OURS };

    /// This program as it is now, with all that is open, doing some work; the answer is its exit status.
    /// Throws std::runtime_error with one line.
    Process(Keyboard keyboard, const std::function<int()>& work);
    ~Process();
    Process(const Process&) = delete;
    Process& operator=(const Process&) = delete;

    /// For the work: becomes another program, found by PATH, with these for standard input, output and error
    /// (-1: our own). If that fails it says so, and answers NOT_STARTED.
    static int become(const Arguments& command, const std::array<int, 3>& streams);
    static constexpr int NOT_STARTED = 127;

    void send(int signal) const;

    /// Answers what waitpid tells of how it ended.
    int wait();

private:
    pid_t process = -1; // none that runs
    int status = 0;
};

} // namespace recorder
