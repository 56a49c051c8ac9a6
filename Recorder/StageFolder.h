#pragma once

#include "FrameSize.h"

#include <filesystem>
#include <optional>

namespace recorder {

// A private folder in which the show runs: it finds there its data as ever, but with a settings file of our
// own, so that the user's stays as it is. Gone with this object, and what else was put into it too.
class StageFolder {
public:
    // The data folder is the show's, with its track, shaders and settings. Throws std::runtime_error.
    StageFolder(const std::filesystem::path& data, const std::optional<FrameSize>& size,
                const std::optional<unsigned int>& seed);
    ~StageFolder();
    StageFolder(const StageFolder&) = delete;
    StageFolder& operator=(const StageFolder&) = delete;

    // Absolute.
    const std::filesystem::path& getPath() const { return path; }

private:
    void fill(const std::filesystem::path& data, const std::optional<FrameSize>& size,
              const std::optional<unsigned int>& seed) const;

    std::filesystem::path path;
};

} // namespace recorder
