#pragma once

#include <string>

namespace recorder {

/// What the sound layer has to say against a file as a track: one sentence, or nothing if it can be played.
std::string faultOfTrack(const std::string& file);

/// Throws std::runtime_error with one line if there is such a fault; a file without a name has none.
void checkTrack(const std::string& file);

} // namespace recorder
