#include "Options.h"
#include "Recorder.h"

#include <array>
#include <csignal>
#include <cstdio>
#include <exception>

// The linker gives these two names to the start of the program and to the main of the show.
extern "C" int __real_main(int argc, char** argv);  // NOLINT(bugprone-reserved-identifier)
extern "C" int __wrap_main(int argc, char** argv) { // NOLINT(bugprone-reserved-identifier)
    constexpr int FAILED = 1;
    constexpr int WRONG_USAGE = 2;
    try {
        const auto options = recorder::Options::parse({argv + 1, argv + argc});
        if (options.wantsHelp) {
            std::fputs(recorder::Options::help(), stdout);
            return 0;
        }
        // A reader that goes away is noticed when writing to it fails.
        std::signal(SIGPIPE, SIG_IGN);
        recorder::Recorder recording(options);
        return recording.run([&] {
            std::array<char*, 2> arguments = {argv[0], nullptr};
            return __real_main(1, arguments.data());
        });
    } catch (const recorder::UsageError& error) {
        std::fprintf(stderr, "quelar-record: %s (--help tells more)\n", error.what());
        return WRONG_USAGE;
    } catch (const std::exception& error) {
        std::fprintf(stderr, "quelar-record: %s\n", error.what());
        return FAILED;
    }
}
