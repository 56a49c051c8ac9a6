#include "Host.h"
#include "Options.h"
#include "Recorder.h"
#include "Spread.h"
#include "StopRequest.h"
#include "Timeline.h"
#include "Track.h"
#include "report.h"

#include <fcntl.h>
#include <stdexcept>
#include <unistd.h>

int host::start(int argc, char** argv) {
    return recorder::attempt([&] {
        recorder::Options options;
        options.parse({argv + 1, argv + argc});
        if (!options.answer.empty()) {
            recorder::answer(options.answer);
            return 0;
        }
        while (open("/dev/null", O_RDWR | O_CLOEXEC) <= STDERR_FILENO) { // whatever was closed
        }
        recorder::StopRequest::listen();
        options.readSettings(recorder::ShowOptions::USUAL_SIZE); // there is no screen
        if (const std::string here = recorder::Spread::describeShow(options.dataFolder);
            !options.piece.empty() && options.piece != here) {
            throw std::runtime_error("the show here is " + here + ", not " + options.piece);
        }
        const recorder::Track track(options);
        return options.jobs > 0 ? recorder::Spread(options, track).run()
                                : recorder::Recorder(options, track).run();
    });
}
