#pragma once

#include "FrameSize.h"
#include "Timeline.h"

#include <array>
#include <cstdint>
#include <cstdio>
#include <string>

namespace recorder {

/// How long so many frames are, or when a frame is shown, in a format for a number of seconds.
inline std::string describeSeconds(const char* format, unsigned int frames) {
    std::array<char, 32> text{};
    std::snprintf(text.data(), text.size(), format, frames * timeline::FRAME_MS / 1000.0);
    return text.data();
}

/// For the summary lines: "6880 frames, 103.2 s of 640x480".
inline std::string describeFrames(unsigned int frames, const FrameSize& size) {
    return std::to_string(frames) + " frames, " + describeSeconds("%g", frames) + " s of " + size.text();
}

/// "24.1 MB", "9 KB".
inline std::string describeBytes(std::uintmax_t bytes) {
    const std::uintmax_t tenths = bytes / 100000;
    return tenths == 0 ? std::to_string((bytes + 999) / 1000) + " KB"
                       : std::to_string(tenths / 10) + "." + std::to_string(tenths % 10) + " MB";
}

} // namespace recorder
