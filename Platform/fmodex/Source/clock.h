#pragma once

#include <cstdint>

namespace fmodex {

/// Whether somebody supplied the clock.
bool isClockSupplied();

/// Microseconds since some fixed moment, by the supplied clock, or else the steady one.
std::int64_t now();

} // namespace fmodex
