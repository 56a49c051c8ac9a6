#pragma once

#include "FrameRange.h"
#include "FrameSize.h"
#include "Options.h"
#include "ShowSettings.h"

#include <initializer_list>
#include <string>
#include <vector>

namespace recorder {

/// Arguments of FFmpeg.
using Arguments = std::vector<std::string>;

Arguments joined(std::initializer_list<Arguments> parts);

/// How it is told about frames of this size coming on its standard input.
Arguments frameInput(const FrameSize& size);

/// What is in a video of the show, in words for FFmpeg.
struct VideoFormat {
    FrameRange range;
    std::string track;   ///< a sound file that starts with frame 0 of the show; empty: the video is silent
    std::string comment; ///< for those who wonder what they are looking at
    bool fast;           ///< whether time counts more than the size of the file

    /// What the options ask for; with the track left out, and a word about it, if it can't be played.
    static VideoFormat of(const Options& options, const ShowSettings& settings, const std::string& track);

    Arguments picture() const;

    /// The second input of a run, and what to make of it: the part of the track that belongs to the range,
    /// with silence after its end.
    Arguments sound() const;

    /// The file around them, to be named next.
    Arguments file() const;
};

} // namespace recorder
