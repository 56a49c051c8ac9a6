#pragma once

#include "CommandLine.h"
#include "FrameSize.h"
#include "Utils/Defaults.h"

#include <optional>
#include <string>

namespace recorder {

/// What the user says about the show itself, whether it is played or recorded. File names are the user's own,
/// relative to the directory the program was started in.
struct ShowOptions {
    /// Adds these to a command line that this object outlives. A song may be named without its option where
    /// nothing else is.
    void addTo(CommandLine& line, bool songAlone);

    /// Fills in what the user left to the settings file, which is read as strictly as the options are. There
    /// a side of 0 stands for the screen's. Throws UsageError.
    void readSettings(const FrameSize& screen);

    /// The size of a show of which nothing else is said.
    static constexpr FrameSize USUAL_SIZE = {defaults::WIDTH, defaults::HEIGHT};

    std::string answer; ///< a text to tell instead of all else; empty: none
    std::string dataFolder = "data";
    std::optional<FrameSize> size;
    std::optional<unsigned int> seed;
    std::string track; ///< a song in place of the data folder's track; empty: none
};

} // namespace recorder
