#pragma once

#include "FrameRange.h"
#include "ShowOptions.h"

#include <string>
#include <vector>

namespace recorder {

/// One picture wanted from the show, as a PNG file.
struct StillRequest {
    unsigned int time; ///< milliseconds
    std::string file;
};

/// What the user asked the recorder for. Plain values: times are milliseconds of the show (its first frame is
/// shown at 0), or of the whole song.
struct Options : ShowOptions {
    /// Reads the arguments that follow the program's name. Throws UsageError; touches no file.
    void parse(const Arguments& arguments);

    /// The frames that the video is to have, of a show or song of so many. Throws UsageError if one of the
    /// wishes is for none of these.
    FrameRange rangeWithin(unsigned int frames) const;

    std::string video; ///< empty: none wanted; "-": raw frames on standard output
    unsigned int from = 0;
    unsigned int to = FOREVER;
    std::vector<StillRequest> stills;
    std::string contactSheet; ///< empty: none wanted
    bool whole = false;       ///< the show goes on, in rounds, to the end of the song
    bool smooth = false;
    bool fast = false;
    bool silent = false;
    unsigned int jobs = 0;      ///< processes to spread the video over, on each machine; 0: it is made here
    std::string machines = ":"; ///< as ssh knows them, with commas between; ":" is this one
    unsigned int patience = 60; ///< seconds for which a machine may be silent
    std::string piece;          ///< what show this is to be a piece of; empty: this is no piece

    static constexpr unsigned int FOREVER = 1000000000;
};

} // namespace recorder
