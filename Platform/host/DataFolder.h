#pragma once

#include <filesystem>

namespace host {

/// Brings the show to its data: as long as this object lives, they lie in "data" seen from the current
/// directory, where the show looks for them. A folder of another name is reached by a temporary folder with a
/// link in it.
class DataFolder {
public:
    /// Throws std::runtime_error with one line if there is no such folder, or no way to it.
    explicit DataFolder(const std::filesystem::path& folder);
    ~DataFolder();
    DataFolder(const DataFolder&) = delete;
    DataFolder& operator=(const DataFolder&) = delete;

private:
    void leave() const;

    std::filesystem::path home; ///< the current directory before
    std::filesystem::path made; ///< the temporary folder; empty: none
};

} // namespace host
