#pragma once

#include "fmod_song.h"

#include <future>
#include <string>
#include <vector>

namespace fmodex {

/// The music of an MP3 file, decoded in the background, from when it is opened until somebody wants it.
class Track {
public:
    /// Throws the FMOD_ERR_FILE_ errors.
    explicit Track(const std::string& path);

    /// Waits until all of it has been decoded, or what fits into memory. Good for as long as the track.
    FMOD_SONG getSong() const;

private:
    long rate = 0; ///< frames per second
    std::shared_future<std::vector<short>> samples;
};

} // namespace fmodex
