#pragma once

#include "fmod_clock.h"

#include <cstdint>

namespace fmodex {

/// The one place that time comes from: the supplied clock, or else the steady one.
class Clock {
public:
    /// The clock that is in force at this moment, and stays so for the object's life.
    Clock();

    /// Whether somebody supplied it.
    bool isSupplied() const { return supplied != nullptr; }

    /// Microseconds since some fixed moment.
    std::int64_t now() const;

private:
    FMOD_CLOCK supplied;
};

} // namespace fmodex
