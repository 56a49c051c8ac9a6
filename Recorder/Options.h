#pragma once

#include "FrameSize.h"

#include <optional>
#include <stdexcept>
#include <string>
#include <vector>

namespace recorder {

// A command line that can't be obeyed; what() is one line for the user.
class UsageError : public std::runtime_error {
    using std::runtime_error::runtime_error;
};

// One picture wanted from the show, as a PNG file.
struct StillRequest {
    unsigned int time; // milliseconds of the show
    std::string file;
};

// What the user asked for on the command line. Plain values: times are milliseconds of the show (its first
// frame is shown at 0), file names are the user's own, relative to the directory the recorder was started in.
struct Options {
    // Reads the arguments that follow the program's name. Throws UsageError; touches no file.
    static Options parse(const std::vector<std::string>& arguments);

    static const char* help();

    bool wantsHelp = false;
    std::string dataFolder = "data";
    std::string video; // empty: none wanted; "-": raw frames on standard output
    std::optional<FrameSize> size;
    std::optional<unsigned int> seed;
    unsigned int from = 0;
    std::optional<unsigned int> to;
    std::vector<StillRequest> stills;
    std::string contactSheet; // empty: none wanted
};

} // namespace recorder
