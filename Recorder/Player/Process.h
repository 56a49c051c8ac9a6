#pragma once

#include <optional>
#include <string>
#include <sys/types.h>
#include <vector>

namespace recorder {

/// Another program that runs beside this one, as its child. It is killed and waited for if it still runs at
/// the end of this object. Status is what waitpid tells: of how it ended, once it has.
class Process {
public:
    /// What it has for standard input, output and error: open files of ours, or -1 for our own.
    struct Streams {
        int input = -1;
        int output = -1;
        int error = -1;
    };

    /// Whether what the user sends from the keyboard, Ctrl-C for one, reaches it too or us alone.
    enum class Keyboard { SHARED, OURS };

    /// A command is the program, to be found by PATH unless it is a path itself, and its arguments. Throws
    /// std::runtime_error with one line.
    Process(const std::vector<std::string>& command, const Streams& streams, Keyboard keyboard);
    ~Process();
    Process(const Process&) = delete;
    Process& operator=(const Process&) = delete;

    static bool isInstalled(const std::string& program);

    int wait();

    /// The same without waiting: nothing while it runs.
    std::optional<int> poll();

    void send(int signal) const;

private:
    pid_t process = -1; // none that runs
    int status = 0;
};

} // namespace recorder
