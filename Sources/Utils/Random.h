#pragma once

#include <cstdlib>

/// The show's chance: the C library's generator, which the driver seeds. Nobody else may draw from it, so
/// that a seed and a track make the whole show.
class Random {
public:
    /// One draw as a fraction of 2^31, in single precision: 0..1, and exactly 1 for the largest draws.
    static float unit() { return static_cast<float>(std::rand()) / 2147483648.0f; }
};
