#include "StageFolder.h"

#include <fcntl.h>
#include <fstream>
#include <stdexcept>
#include <system_error>

namespace recorder {

namespace fs = std::filesystem;

namespace {

const fs::path SETTINGS = "settings.ini";
const fs::path MUSIC = "music";
const fs::path TRACK = "quelar.mp3";

} // namespace

Scratch makeTemporaryFolder() {
    try {
        return {Scratch::Kind::FOLDER, fs::temp_directory_path() / "quelar-stage."};
    } catch (const std::system_error& error) {
        throw std::runtime_error("can't make a temporary folder: " + error.code().message());
    }
}

fs::path findData(const std::string& folder) {
    if (!fs::is_directory(folder)) {
        throw std::runtime_error("there is no data folder " + folder);
    }
    return fs::canonical(folder);
}

fs::path trackIn(const fs::path& data) { return data / MUSIC / TRACK; }

StageFolder::StageFolder(const std::string& data, const Changes& changes) : scratch(makeTemporaryFolder()) {
    fill(findData(data), changes);
}

void StageFolder::shareWithChildren() const { fcntl(scratch.getDescriptor(), F_SETFD, 0); }

void StageFolder::fill(const fs::path& data, const Changes& changes) const {
    const fs::path ours = getPath() / "data";
    fs::create_directory(ours);
    for (const fs::directory_entry& entry : fs::directory_iterator(data)) {
        const fs::path name = entry.path().filename();
        if (name != SETTINGS && (name != MUSIC || changes.track.empty())) {
            fs::create_symlink(entry.path(), ours / name);
        }
    }
    if (!changes.track.empty()) {
        fs::create_directory(ours / MUSIC);
        fs::create_symlink(fs::canonical(changes.track), getTrack());
    }
    // Of a setting given twice, the show takes the last.
    std::ofstream settings(ours / SETTINGS);
    if (std::ifstream users(data / SETTINGS); users && users.peek() != std::ifstream::traits_type::eof()) {
        settings << users.rdbuf();
    }
    if (changes.size) {
        settings << "\nhres " << changes.size->width << "\nvres " << changes.size->height << '\n';
    }
    if (changes.seed) {
        settings << "\nseed " << *changes.seed << '\n';
    }
    if (!settings.flush()) {
        throw std::runtime_error("can't write to the temporary folder " + getPath().string());
    }
}

} // namespace recorder
