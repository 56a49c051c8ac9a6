#pragma once

#include "FrameRange.h"
#include "ShowOptions.h"

#include <optional>
#include <string>
#include <vector>

namespace recorder {

/// One picture wanted from the show, as a PNG file.
struct StillRequest {
    unsigned int time; ///< milliseconds of the show
    std::string file;
};

/// What the user asked the recorder for on the command line. Plain values: times are milliseconds of the show
/// (its first frame is shown at 0).
struct Options : ShowOptions {
    /// Reads the arguments that follow the program's name. Throws UsageError; touches no file.
    static Options parse(const std::vector<std::string>& arguments);

    static std::string help();

    /// The frames of the show that the video is to have.
    FrameRange range() const;

    std::string video; ///< empty: none wanted; "-": raw frames on standard output
    unsigned int from = 0;
    std::optional<unsigned int> to;
    std::vector<StillRequest> stills;
    std::string contactSheet; ///< empty: none wanted
    bool smooth = false;
    bool fast = false;
    bool silent = false;
    unsigned int jobs = 0; ///< processes to spread the video over, on each machine; 0: it is made here
    std::string machines;  ///< as GNU parallel's --sshlogin takes them; empty: this one
};

} // namespace recorder
