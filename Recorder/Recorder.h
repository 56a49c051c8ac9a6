#pragma once

#include "Film.h"
#include "Options.h"
#include "Performance.h"
#include "ProgressLine.h"
#include "Track.h"

#include <string>
#include <vector>

namespace recorder {

/// One recording: another process draws the show, round by round, so that each starts fresh; this one makes
/// of its frames what is wanted.
class Recorder {
public:
    /// Claims every file the options name. Throws std::runtime_error with one line if that fails.
    Recorder(const Options& options, const Track& track);

    /// Answers the exit status of the whole program; the summary is told on standard error. Throws
    /// std::runtime_error with one line.
    int run();

private:
    int record(unsigned int round, ProgressLine& progress);
    int finish();

    std::string dataFolder;
    bool isPiece;
    std::vector<Film> films;
    Play play;
};

} // namespace recorder
