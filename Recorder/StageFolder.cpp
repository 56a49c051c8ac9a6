#include "StageFolder.h"

#include <cerrno>
#include <cstdlib>
#include <fstream>
#include <stdexcept>
#include <string>
#include <system_error>

namespace recorder {

namespace fs = std::filesystem;

namespace {

constexpr const char* SETTINGS = "settings.ini";

} // namespace

StageFolder::StageFolder(const fs::path& data, const std::optional<FrameSize>& size,
                         const std::optional<unsigned int>& seed) {
    if (!fs::is_directory(data)) {
        throw std::runtime_error("there is no data folder " + data.string());
    }
    std::error_code error;
    std::string name = (fs::temp_directory_path(error) / "quelar-record.XXXXXX").string();
    if (error || mkdtemp(name.data()) == nullptr) {
        throw std::runtime_error("can't make a temporary folder: " + std::generic_category().message(errno));
    }
    path = name;
    try {
        fill(fs::canonical(data), size, seed);
    } catch (...) {
        fs::remove_all(path, error);
        throw;
    }
}

StageFolder::~StageFolder() {
    std::error_code ignored;
    fs::remove_all(path, ignored);
}

void StageFolder::fill(const fs::path& data, const std::optional<FrameSize>& size,
                       const std::optional<unsigned int>& seed) const {
    const fs::path ours = path / "data";
    fs::create_directory(ours);
    for (const fs::directory_entry& entry : fs::directory_iterator(data)) {
        if (entry.path().filename() != SETTINGS) {
            fs::create_symlink(entry.path(), ours / entry.path().filename());
        }
    }
    // Of a setting given twice, the show takes the last.
    std::ofstream settings(ours / SETTINGS);
    if (std::ifstream users(data / SETTINGS); users && users.peek() != std::ifstream::traits_type::eof()) {
        settings << users.rdbuf();
    }
    if (size) {
        settings << "\nhres " << size->width << "\nvres " << size->height << '\n';
    }
    if (seed) {
        settings << "\nseed " << *seed << '\n';
    }
    if (!settings.flush()) {
        throw std::runtime_error("can't write to the temporary folder " + path.string());
    }
}

} // namespace recorder
