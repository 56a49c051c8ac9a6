#pragma once

#include <cstdint>

namespace fmodex {

/// One sample of both sides, as the sound card takes it: -32768..32767.
struct Frame {
    std::int16_t left;
    std::int16_t right;
};

} // namespace fmodex
