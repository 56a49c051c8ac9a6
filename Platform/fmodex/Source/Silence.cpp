#include "Silence.h"

#include <cstdio>
#include <fcntl.h>
#include <unistd.h>

namespace fmodex {

Silence::Silence() : standardError(::fcntl(STDERR_FILENO, F_DUPFD_CLOEXEC, STDERR_FILENO + 1)) {
    const int nowhere = ::open("/dev/null", O_WRONLY | O_CLOEXEC);
    if (standardError >= 0 && nowhere >= 0) {
        std::fflush(stderr);
        ::dup2(nowhere, STDERR_FILENO);
    }
    if (nowhere >= 0) {
        ::close(nowhere);
    }
}

Silence::~Silence() {
    if (standardError >= 0) {
        std::fflush(stderr);
        ::dup2(standardError, STDERR_FILENO);
        ::close(standardError);
    }
}

} // namespace fmodex
