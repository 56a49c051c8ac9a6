#pragma once

#include <filesystem>

namespace recorder {

/// A new, empty file or folder under a name that nobody else has: a prefix and six random letters. It is for
/// its owner alone and goes with this object, whatever was put into it.
///
/// Somebody who is killed leaves his behind. So each is locked while it is in use, and whoever makes a new
/// one removes those of the same prefix and the same user that nobody holds any more.
class Scratch {
public:
    enum class Kind { FILE, FOLDER };

    /// Throws std::system_error.
    Scratch(Kind kind, const std::filesystem::path& prefix);
    ~Scratch();
    Scratch(const Scratch&) = delete;
    Scratch& operator=(const Scratch&) = delete;

    const std::filesystem::path& getPath() const { return path; }

    /// The descriptor that holds the lock: of the file, open for reading and writing, or of the folder.
    int getDescriptor() const { return descriptor; }

    /// Leaves it alone from now on: somebody has taken it over, or moved it.
    void release() { path.clear(); }

private:
    std::filesystem::path path;
    int descriptor = -1;
};

} // namespace recorder
