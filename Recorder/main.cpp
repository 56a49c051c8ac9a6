#include "Host.h"
#include "Options.h"
#include "Recorder.h"
#include "Spread.h"
#include "checkTrack.h"
#include "report.h"

#include <csignal>
#include <cstdio>

int host::start(int argc, char** argv) {
    return recorder::attempt("quelar-record", [&] {
        const auto options = recorder::Options::parse({argv + 1, argv + argc});
        if (options.wantsHelp) {
            std::fputs(recorder::Options::help().c_str(), stdout);
            return 0;
        }
        // A reader that goes away is noticed when writing to it fails.
        std::signal(SIGPIPE, SIG_IGN);
        recorder::checkTrack(options.track);
        return options.jobs > 0 ? recorder::Spread(options).run() : recorder::Recorder(options).run();
    });
}
