#include "DataFolder.h"

#include <array>
#include <cerrno>
#include <cstdlib>
#include <stdexcept>
#include <string>
#include <system_error>

namespace host {

namespace fs = std::filesystem;

namespace {

const fs::path DATA = "data";

fs::path makeTemporaryFolder() {
    const char* const wish = std::getenv("TMPDIR");
    std::string name =
        (fs::path(wish == nullptr || *wish == 0 ? "/tmp" : wish) / "quelar-data.XXXXXX").string();
    if (mkdtemp(name.data()) == nullptr) {
        throw std::runtime_error("can't make a temporary folder: " + std::generic_category().message(errno));
    }
    return fs::absolute(name);
}

} // namespace

DataFolder::DataFolder(const fs::path& folder) {
    std::error_code error;
    const fs::path data = fs::canonical(folder, error);
    if (error || !fs::is_directory(data, error)) {
        throw std::runtime_error("there is no data folder " + folder.string());
    }
    std::error_code gone;
    home = fs::current_path(gone); // where that is gone, there is no way back
    fs::path parent = data.parent_path();
    if (data.filename() != DATA) {
        parent = made = makeTemporaryFolder();
        fs::permissions(made, fs::perms::owner_all, error); // whatever the umask
        fs::create_directory_symlink(data, made / DATA, error);
    }
    if (!error) {
        fs::current_path(parent, error);
    }
    if (error) {
        leave();
        throw std::runtime_error("can't go to the data folder " + folder.string() + ": " + error.message());
    }
}

DataFolder::~DataFolder() { leave(); }

void DataFolder::leave() const {
    std::error_code error;
    if (!home.empty()) {
        fs::current_path(home, error);
    }
    if (!made.empty()) {
        fs::remove(made / DATA, error);
        fs::remove(made, error);
    }
}

} // namespace host
