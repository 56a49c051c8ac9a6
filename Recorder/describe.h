#pragma once

#include "DraftFile.h"
#include "FrameSize.h"
#include "Timeline.h"

#include <array>
#include <cstdint>
#include <cstdio>
#include <filesystem>
#include <string>

namespace recorder {

/// For the summary lines: "6880 frames, 103.2 s of 640x480".
inline std::string describeFrames(unsigned int frames, const FrameSize& size) {
    std::array<char, 32> seconds{};
    std::snprintf(seconds.data(), seconds.size(), "%g", frames * timeline::FRAME_MS / 1000.0);
    return std::to_string(frames) + " frames, " + seconds.data() + " s of " + size.text();
}

/// "24.1 MB", "9 KB".
inline std::string describeBytes(std::uintmax_t bytes) {
    const std::uintmax_t tenths = bytes / 100000;
    return tenths == 0 ? std::to_string((bytes + 999) / 1000) + " KB"
                       : std::to_string(tenths / 10) + "." + std::to_string(tenths % 10) + " MB";
}

/// "quelar.mp4 (24.1 MB)", of what is in the draft.
inline std::string describeFile(const DraftFile& file) {
    return file.getName() + " (" + describeBytes(std::filesystem::file_size(file.getDraft())) + ")";
}

} // namespace recorder
