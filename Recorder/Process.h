#pragma once

#include "CommandLine.h"

#include <functional>
#include <sys/types.h>

namespace recorder {

/// Something that runs beside this program, as its child. It is killed and waited for if it still runs at the
/// end of this object.
class Process {
public:
    /// What another program has for standard input, output and error: open files of ours, or -1 for our own.
    struct Streams {
        int input = -1;
        int output = -1;
        int error = -1;
    };

    /// Whether what the user sends from the keyboard, Ctrl-C for one, reaches it too or us alone.
    enum class Keyboard { SHARED, OURS };

    /// Another program, to be found by PATH unless it is a path itself, and its arguments. Throws
    /// std::runtime_error with one line.
    Process(const Arguments& command, const Streams& streams, Keyboard keyboard);

    /// This program as it is now, doing some work, whose answer is its exit status. It has all that is open
    /// here, and dies with us.
    explicit Process(const std::function<int()>& work);

    ~Process();
    Process(const Process&) = delete;
    Process& operator=(const Process&) = delete;

    static bool isInstalled(const std::string& program);

    void send(int signal) const;

    /// Answers what waitpid tells of how it ended.
    int wait();

private:
    pid_t process = -1; // none that runs
    int status = 0;
};

} // namespace recorder
