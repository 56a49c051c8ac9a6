#pragma once

#include "fmod_errors.h"

#include <exception>

namespace fmodex {

/// Why an operation cannot be done. Thrown inside the layer, and turned into a result at its surface.
class Error : public std::exception {
public:
    explicit Error(FMOD_RESULT result) : result(result) {}

    FMOD_RESULT getResult() const { return result; }
    const char* what() const noexcept override { return FMOD_ErrorString(result); }

private:
    FMOD_RESULT result;
};

/// Throws unless a condition holds.
inline void require(bool condition, FMOD_RESULT otherwise = FMOD_ERR_ARGUMENT) {
    if (!condition) {
        throw Error(otherwise);
    }
}

} // namespace fmodex
