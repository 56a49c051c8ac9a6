#pragma once

#include "ShowOptions.h"

#include <cstdio>
#include <exception>
#include <string>

namespace recorder {

constexpr int FAILED = 1;
constexpr int WRONG_USAGE = 2;
constexpr int STOPPED_BY_SIGNAL = 128; ///< and the signal's number

/// One line for the user.
inline void say(const std::string& line) { std::fprintf(stderr, "quelar-record: %s\n", line.c_str()); }

/// Does a program's work and answers its exit status; tells in one line under the program's name why it
/// failed.
template <typename Work>
int attempt(const char* program, const Work& work) {
    try {
        return work();
    } catch (const UsageError& error) {
        std::fprintf(stderr, "%s: %s (--help tells more)\n", program, error.what());
        return WRONG_USAGE;
    } catch (const std::exception& error) {
        std::fprintf(stderr, "%s: %s\n", program, error.what());
        return FAILED;
    }
}

} // namespace recorder
