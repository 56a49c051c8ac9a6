#include "DraftFile.h"

#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <stdexcept>
#include <sys/stat.h>
#include <system_error>
#include <unistd.h>

namespace recorder {

namespace {

std::runtime_error cannotWrite(const std::string& name, const std::string& why) {
    return std::runtime_error("can't write " + name + ": " + why);
}

} // namespace

DraftFile::DraftFile(const std::string& name) : name(name) {
    namespace fs = std::filesystem;
    std::error_code ignored;
    // A link is followed, so that it goes on pointing to the finished file.
    const fs::path path = fs::weakly_canonical(fs::absolute(name), ignored);
    if (fs::exists(path, ignored) && !fs::is_regular_file(path, ignored)) {
        throw cannotWrite(name, "it is there already and not a plain file");
    }
    target = path.string();
    draft = (path.parent_path() / ("." + path.filename().string() + ".XXXXXX")).string();
    const int file = mkstemp(draft.data());
    if (file < 0) {
        throw cannotWrite(name, std::generic_category().message(errno));
    }
    // The draft is made for its owner alone; the finished file gets the rights of any new file.
    const mode_t mask = umask(0);
    umask(mask);
    fchmod(file, 0666 & ~mask);
    close(file);
}

DraftFile::~DraftFile() {
    if (!draft.empty()) {
        unlink(draft.c_str());
    }
}

void DraftFile::publish() {
    if (std::rename(draft.c_str(), target.c_str()) != 0) {
        throw cannotWrite(name, std::generic_category().message(errno));
    }
    draft.clear();
}

} // namespace recorder
