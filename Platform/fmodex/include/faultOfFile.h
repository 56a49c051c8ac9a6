#pragma once

#include "fmod.h"

#include <cerrno>
#include <string>
#include <sys/stat.h>
#include <unistd.h>

/// Why a file cannot be music, whatever is in it; FMOD_OK if it can.
inline FMOD_RESULT faultOfFile(const std::string& path) {
    struct stat status = {};
    if (::stat(path.c_str(), &status) != 0 || ::access(path.c_str(), R_OK) != 0) {
        return errno == ENOENT || errno == ENOTDIR ? FMOD_ERR_FILE_MISSING : FMOD_ERR_FILE_UNREADABLE;
    }
    if (S_ISDIR(status.st_mode)) {
        return FMOD_ERR_FILE_FOLDER;
    }
    return S_ISREG(status.st_mode) && status.st_size == 0 ? FMOD_ERR_FILE_EMPTY : FMOD_OK;
}
