#pragma once

#include "fmod_song.h"

#include <future>
#include <string>
#include <vector>

namespace fmodex {

/// The music of an MP3 file: its beginning is there when it is opened, the rest is decoded in the background.
class Track {
public:
    /// Throws the FMOD_ERR_FILE_ errors.
    explicit Track(const std::string& path);

    // What they answer is good for as long as the track.

    /// The first seconds: nobody has to wait for them.
    FMOD_SONG getBeginning() const { return makeSong(beginning); }

    /// Whether getSong would not wait.
    bool isWhole() const;

    /// Waits until all of it has been decoded, or what fits into memory.
    FMOD_SONG getSong() const { return makeSong(samples.get()); }

private:
    FMOD_SONG makeSong(const std::vector<short>& frames) const;

    long rate = 0; ///< frames per second
    std::vector<short> beginning;
    std::shared_future<std::vector<short>> samples; ///< the beginning among them
};

} // namespace fmodex
