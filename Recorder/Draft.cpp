#include "Draft.h"

#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <fcntl.h>
#include <filesystem>
#include <stdexcept>
#include <sys/stat.h>
#include <system_error>
#include <unistd.h>
#include <utility>

namespace recorder {

namespace fs = std::filesystem;

namespace {

constexpr int MOST_LINKS = 40;

std::runtime_error cannotWrite(const std::string& name, const std::string& why) {
    return std::runtime_error("can't write " + name + ": " + why);
}

/// Where a name leads in the end, whether there is something or not.
fs::path follow(const std::string& name) {
    std::error_code ignored;
    fs::path path = fs::absolute(name, ignored);
    for (int i = 0; i < MOST_LINKS && fs::is_symlink(path, ignored); ++i) {
        path = path.parent_path() / fs::read_symlink(path, ignored);
    }
    return fs::weakly_canonical(path.parent_path(), ignored) / path.filename();
}

/// For its owner alone. The hidden name is one where the file has to have one, and short, since the others in
/// its folder may be as long as names can be.
int openDraft(const std::string& folder, std::string& hidden) {
    int descriptor = open(folder.c_str(), O_TMPFILE | O_RDWR | O_CLOEXEC, S_IRUSR | S_IWUSR);
    if (descriptor < 0 && (errno == EOPNOTSUPP || errno == EISDIR)) {
        hidden = folder + "/.quelar-XXXXXX";
        descriptor = mkostemp(hidden.data(), O_CLOEXEC);
    }
    if (descriptor < 0) {
        throw std::system_error(errno, std::generic_category());
    }
    fchmod(descriptor, S_IRUSR | S_IWUSR); // whatever the umask
    return descriptor;
}

} // namespace

int openNameless(const std::string& folder) {
    std::string hidden;
    const int descriptor = openDraft(folder, hidden);
    if (!hidden.empty()) {
        unlink(hidden.c_str());
    }
    return descriptor;
}

std::string pathOf(int descriptor) {
    return "/proc/" + std::to_string(getpid()) + "/fd/" + std::to_string(descriptor);
}

Draft::Draft(std::string given, const std::string& place) : name(std::move(given)), target(follow(place)) {
    struct stat present {};
    if (stat(target.c_str(), &present) == 0) {
        if (!S_ISREG(present.st_mode)) {
            throw cannotWrite(name, "it is there already and not a plain file");
        }
        // Who may do anything may still have protected it from himself.
        if (access(target.c_str(), W_OK) != 0 || (present.st_mode & (S_IWUSR | S_IWGRP | S_IWOTH)) == 0) {
            throw cannotWrite(name, "it is there already and write-protected");
        }
        mode = present.st_mode & ACCESSPERMS;
    } else {
        const mode_t mask = umask(0);
        umask(mask);
        mode = DEFFILEMODE & ~mask;
    }
    try {
        descriptor = openDraft(fs::path(target).parent_path(), hidden);
    } catch (const std::system_error& error) {
        throw cannotWrite(name, error.code().message());
    }
}

Draft::~Draft() {
    if (!hidden.empty()) {
        unlink(hidden.c_str());
    }
    close(descriptor);
}

std::uintmax_t Draft::getBytes() const { return fs::file_size(getPath()); }

void Draft::publish() {
    fchmod(descriptor, mode);
    // No link takes a name that is taken: the file gets another one, which is then moved there.
    for (int i = 0; hidden.empty(); ++i) {
        const std::string link = fs::path(target).parent_path() /
                                 (".quelar-" + std::to_string(getpid()) + "-" + std::to_string(i));
        if (linkat(AT_FDCWD, getPath().c_str(), AT_FDCWD, link.c_str(), AT_SYMLINK_FOLLOW) == 0) {
            hidden = link;
        } else if (errno != EEXIST) {
            throw cannotWrite(name, std::generic_category().message(errno));
        }
    }
    if (std::rename(hidden.c_str(), target.c_str()) != 0) {
        throw cannotWrite(name, std::generic_category().message(errno));
    }
    hidden.clear();
}

} // namespace recorder
