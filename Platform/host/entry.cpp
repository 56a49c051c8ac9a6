#include "Host.h"
#include "Utils/StandardStreams.h"

#include <array>

// The linker gives these two names to the start of the program and to the main of the show.
extern "C" int __real_main(int argc, char** argv);  // NOLINT(bugprone-reserved-identifier)
extern "C" int __wrap_main(int argc, char** argv) { // NOLINT(bugprone-reserved-identifier)
    StandardStreams::open();
    return host::start(argc, argv);
}

int host::playShow() {
    std::array<char*, 1> arguments = {nullptr};
    return __real_main(0, arguments.data());
}
