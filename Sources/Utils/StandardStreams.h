#pragma once

#include <fcntl.h>
#include <unistd.h>

class StandardStreams {
public:
    /// What was closed when the program started would be open again as something else, the window's
    /// connection for one, and the lines for the console would go there: standard input, output and error
    /// lead nowhere instead.
    static void open() {
        int descriptor = 0;
        do {
            descriptor = ::open("/dev/null", O_RDWR);
        } while (0 <= descriptor && descriptor <= STDERR_FILENO);
        close(descriptor);
    }
};
