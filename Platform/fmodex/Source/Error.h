#pragma once

#include "fmod.h"

namespace fmodex {

/// Why an operation cannot be done. Thrown inside the layer, and turned into a result at its surface.
struct Error {
    FMOD_RESULT result;
};

/// Throws unless a condition holds.
inline void require(bool condition, FMOD_RESULT otherwise = FMOD_ERR_ARGUMENT) {
    if (!condition) {
        throw Error{otherwise};
    }
}

} // namespace fmodex
