#pragma once

#include "FrameSize.h"
#include "Scratch.h"

#include <filesystem>
#include <optional>
#include <string>

namespace recorder {

/// The folder's path, absolute. Throws std::runtime_error if the user named one that isn't there.
std::filesystem::path findData(const std::string& folder);

/// Where a data folder has its track.
std::filesystem::path trackIn(const std::filesystem::path& data);

/// A new temporary folder. Throws std::runtime_error with one line.
Scratch makeTemporaryFolder();

/// A private folder in which the show runs: it finds there its data as ever, but with a settings file and, if
/// so wished, a track of our own, so that the user's stay as they are. Gone with this object, and what else
/// was put into it too.
class StageFolder {
public:
    /// What differs from the data folder.
    struct Changes {
        std::optional<FrameSize> size;
        std::optional<unsigned int> seed;
        std::string track; ///< the file to play; empty: the data folder's
    };

    /// The data folder is the show's, with its track, shaders and settings. Throws std::runtime_error.
    StageFolder(const std::string& data, const Changes& changes);

    /// Absolute.
    const std::filesystem::path& getPath() const { return scratch.getPath(); }

    std::filesystem::path getTrack() const { return trackIn(getPath() / "data"); }

    /// Lets the processes that are started from now on keep the folder in use, should they outlive this one.
    void shareWithChildren() const;

private:
    void fill(const std::filesystem::path& data, const Changes& changes) const;

    Scratch scratch;
};

} // namespace recorder
