#pragma once

#include <cerrno>
#include <cstddef>
#include <unistd.h>
#include <vector>

namespace recorder {

/// Writes every byte, however small the pieces that are accepted at a time. False, with errno set, if that
/// fails.
inline bool writeAll(int file, const std::vector<unsigned char>& bytes) {
    std::size_t done = 0;
    while (done < bytes.size()) {
        const ssize_t written = write(file, bytes.data() + done, bytes.size() - done);
        if (written < 0 && errno != EINTR) {
            return false;
        }
        done += written > 0 ? static_cast<std::size_t>(written) : 0;
    }
    return true;
}

} // namespace recorder
