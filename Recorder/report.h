#pragma once

#include "CommandLine.h"

#include <cerrno>
#include <cstdio>
#include <exception>
#include <new>
#include <stdexcept>
#include <string>
#include <system_error>

namespace recorder {

constexpr int FAILED = 1;
constexpr int WRONG_USAGE = 2;
constexpr int STOPPED_BY_SIGNAL = 128; ///< and the signal's number

/// One line for the user.
inline void say(const std::string& line) {
    std::fprintf(stderr, "%s: %s\n", commandName().c_str(), line.c_str());
}

/// A text that the user asked for.
inline void answer(const std::string& text) {
    if (std::fputs(text.c_str(), stdout) < 0 || std::fflush(stdout) != 0) {
        throw std::runtime_error("can't write to standard output: " + std::generic_category().message(errno));
    }
}

/// Does a program's work and answers its exit status; tells in one line why it failed.
template <typename Work>
int attempt(const Work& work) {
    try {
        return work();
    } catch (const UsageError& error) {
        say(std::string(error.what()) + " (--help tells more)");
        return WRONG_USAGE;
    } catch (const std::bad_alloc&) {
        say("there is not enough memory");
    } catch (const std::exception& error) {
        say(error.what());
    }
    return FAILED;
}

} // namespace recorder
