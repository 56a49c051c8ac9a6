#pragma once

#include "CommandLine.h"
#include "Draft.h"
#include "FrameRange.h"
#include "Options.h"
#include "Song.h"

#include <optional>
#include <string>

namespace recorder {

/// What is heard with the show: a song of the user's own, or the track of the data folder.
class Track {
public:
    /// Reads a song whole, from standard input too. Throws std::runtime_error with one line.
    explicit Track(const Options& options);
    ~Track();
    Track(const Track&) = delete;
    Track& operator=(const Track&) = delete;

    /// Null: the show plays its own.
    const song::Song* getSong() const { return song ? &*song : nullptr; }

    /// The file of the song, absolute; empty: the user named none.
    const std::string& getSongFile() const { return songFile; }

    /// Throws UsageError if the song itself would be written over.
    void requireOther(const Draft& draft) const;

    /// How many frames there are to record.
    unsigned int getFrames() const { return frames; }

    /// For FFmpeg, its second input and what to make of it: the part that belongs to the frames, with silence
    /// after its end. Nothing, if there is to be no sound.
    Arguments soundOf(const FrameRange& range) const;

private:
    std::string songFile;
    std::string soundFile; ///< of the video; empty: it is silent
    std::optional<song::Song> song;
    unsigned int frames;
    int spooled = -1; ///< what came from somewhere that can be read only once
};

} // namespace recorder
