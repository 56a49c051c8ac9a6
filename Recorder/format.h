#pragma once

#include "Options.h"

/// Words for FFmpeg.
namespace recorder::format {

/// Frames coming on its standard input.
Arguments frames(const FrameSize& size);

/// The picture of a video.
Arguments picture(bool fast);

/// The file around picture and sound, with a word for those who wonder what they are looking at.
Arguments mp4(const Options& options);

} // namespace recorder::format
