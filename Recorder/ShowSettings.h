#pragma once

#include "FrameSize.h"

#include <string>

namespace recorder {

struct ShowOptions;

/// What the show to be recorded is like: as the options say, or else the settings file, or else the show
/// itself.
struct ShowSettings {
    /// Throws UsageError if no recording is made in the size that the settings file asks for.
    explicit ShowSettings(const ShowOptions& options);

    FrameSize size;
    std::string seed; ///< for people to read
};

} // namespace recorder
