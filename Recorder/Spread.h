#pragma once

#include "Draft.h"
#include "FrameRange.h"
#include "Options.h"
#include "Piece.h"
#include "Track.h"

#include <memory>
#include <string>
#include <vector>

namespace recorder {

/// A video that several processes make piece by piece, on one machine or many. Each of them is a recorder of
/// its own for a range of frames, reached by ssh where it is elsewhere: the song goes to its standard input,
/// the piece comes from its standard output, so that it lays down nothing there. Here the pieces are joined
/// as they are, and the sound is laid under them once.
class Spread {
public:
    /// Claims the file. Throws std::runtime_error with one line if that fails.
    Spread(const Options& options, const Track& track);

    /// Answers the exit status of the whole program; the summary is told on standard error. Throws
    /// std::runtime_error with one line, which names the piece that failed.
    int run();

    /// Tells shows apart, by version and data: all the pieces of a video are of the same.
    static std::string describeShow(const std::string& dataFolder);

private:
    Piece::Order order() const;
    /// Until all pieces are there or the user has had enough.
    void record();
    void join();

    const Options& options;
    const Track& track;
    FrameRange range;
    Draft draft;
    std::vector<FrameRange> ranges;
    std::vector<std::unique_ptr<Piece>> pieces; ///< as many of them as have been begun
};

} // namespace recorder
