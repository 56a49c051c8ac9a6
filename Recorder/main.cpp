#include "Host.h"
#include "Options.h"
#include "Recorder.h"

#include <csignal>
#include <cstdio>
#include <exception>

int host::start(int argc, char** argv) {
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
        return recording.run();
    } catch (const recorder::UsageError& error) {
        std::fprintf(stderr, "quelar-record: %s (--help tells more)\n", error.what());
        return WRONG_USAGE;
    } catch (const std::exception& error) {
        std::fprintf(stderr, "quelar-record: %s\n", error.what());
        return FAILED;
    }
}
