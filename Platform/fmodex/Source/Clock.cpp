#include "Clock.h"

#include <atomic>
#include <chrono>

namespace fmodex {

namespace {

std::atomic<FMOD_CLOCK> inForce{nullptr};

} // namespace

Clock::Clock() : supplied(inForce.load()) {}

std::int64_t Clock::now() const {
    if (supplied != nullptr) {
        return static_cast<std::int64_t>(supplied());
    }
    const auto sinceStart = std::chrono::steady_clock::now().time_since_epoch();
    return std::chrono::duration_cast<std::chrono::microseconds>(sinceStart).count();
}

} // namespace fmodex

void FMOD_Clock_Set(FMOD_CLOCK microseconds) { fmodex::inForce.store(microseconds); }
