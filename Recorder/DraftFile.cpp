#include "DraftFile.h"

#include <cerrno>
#include <cstdio>
#include <filesystem>
#include <stdexcept>
#include <sys/stat.h>
#include <system_error>

namespace recorder {

namespace fs = std::filesystem;

namespace {

std::runtime_error cannotWrite(const std::string& name, const std::string& why) {
    return std::runtime_error("can't write " + name + ": " + why);
}

} // namespace

DraftFile::DraftFile(const std::string& name) : name(name) {
    std::error_code ignored;
    // A link is followed, so that it goes on pointing to the finished file.
    const fs::path path = fs::weakly_canonical(fs::absolute(name), ignored);
    if (fs::exists(path, ignored) && !fs::is_regular_file(path, ignored)) {
        throw cannotWrite(name, "it is there already and not a plain file");
    }
    target = path.string();
    const std::string hidden = "." + path.filename().string() + ".";
    try {
        draft = std::make_unique<Scratch>(Scratch::Kind::FILE, path.parent_path() / hidden);
    } catch (const std::system_error& error) {
        throw cannotWrite(name, error.code().message());
    }
    // The draft is made for its owner alone; the finished file gets the rights of any new file.
    const mode_t mask = umask(0);
    umask(mask);
    fchmod(draft->getDescriptor(), 0666 & ~mask);
}

void DraftFile::publish() {
    if (std::rename(draft->getPath().c_str(), target.c_str()) != 0) {
        throw cannotWrite(name, std::generic_category().message(errno));
    }
    draft->release();
}

} // namespace recorder
