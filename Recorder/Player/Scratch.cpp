#include "Scratch.h"

#include <algorithm>
#include <cctype>
#include <cerrno>
#include <cstdlib>
#include <fcntl.h>
#include <string>
#include <sys/file.h>
#include <sys/stat.h>
#include <system_error>
#include <unistd.h>
#include <vector>

namespace recorder {

namespace fs = std::filesystem;

namespace {

const std::string LETTERS = "XXXXXX";

bool lock(int descriptor) { return flock(descriptor, LOCK_EX | LOCK_NB) == 0; }

/// Whether what was opened still has that name, and is the user's own.
bool isOurs(int descriptor, const fs::path& path) {
    struct stat opened {};
    struct stat named {};
    return fstat(descriptor, &opened) == 0 && lstat(path.c_str(), &named) == 0 &&
           opened.st_ino == named.st_ino && opened.st_dev == named.st_dev && opened.st_uid == geteuid();
}

bool mayBeOne(const std::string& name, const std::string& prefix) {
    return name.size() == prefix.size() + LETTERS.size() && name.compare(0, prefix.size(), prefix) == 0 &&
           std::all_of(name.begin() + static_cast<std::ptrdiff_t>(prefix.size()), name.end(),
                       [](unsigned char letter) { return std::isalnum(letter) != 0; });
}

void removeLeftovers(Scratch::Kind kind, const fs::path& prefix) {
    std::error_code ignored;
    std::vector<fs::path> found;
    for (const fs::directory_entry& entry : fs::directory_iterator(prefix.parent_path(), ignored)) {
        if (mayBeOne(entry.path().filename().string(), prefix.filename().string())) {
            found.push_back(entry.path());
        }
    }
    for (const fs::path& path : found) {
        const bool right = kind == Scratch::Kind::FILE
                               ? fs::is_regular_file(fs::symlink_status(path, ignored))
                               : fs::is_directory(fs::symlink_status(path, ignored));
        const int descriptor = right ? open(path.c_str(), O_RDONLY | O_CLOEXEC | O_NOFOLLOW) : -1;
        if (descriptor >= 0) {
            if (lock(descriptor) && isOurs(descriptor, path)) {
                fs::remove_all(path, ignored);
            }
            close(descriptor);
        }
    }
}

int create(Scratch::Kind kind, std::string& name) {
    if (kind == Scratch::Kind::FILE) {
        return mkostemp(name.data(), O_CLOEXEC);
    }
    return mkdtemp(name.data()) == nullptr ? -1 : open(name.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
}

} // namespace

Scratch::Scratch(Kind kind, const fs::path& prefix) {
    removeLeftovers(kind, prefix);
    while (descriptor < 0) {
        std::string name = prefix.string() + LETTERS;
        descriptor = create(kind, name);
        if (descriptor < 0) {
            throw std::system_error(errno, std::generic_category());
        }
        path = name;
        lock(descriptor);
        // Until it was locked, it looked like a leftover to others.
        if (!isOurs(descriptor, path)) {
            close(descriptor);
            descriptor = -1;
        }
    }
}

Scratch::~Scratch() {
    std::error_code ignored;
    if (!path.empty()) {
        fs::remove_all(path, ignored);
    }
    close(descriptor);
}

} // namespace recorder
