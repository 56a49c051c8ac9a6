#include "clock.h"

#include "fmod_clock.h"

#include <chrono>

static FMOD_CLOCK supplied = nullptr;

bool fmodex::isClockSupplied() { return supplied != nullptr; }

std::int64_t fmodex::now() {
    using std::chrono::microseconds;
    return supplied != nullptr
               ? static_cast<std::int64_t>(supplied())
               : std::chrono::duration_cast<microseconds>(std::chrono::steady_clock::now().time_since_epoch())
                     .count();
}

void FMOD_Clock_Set(FMOD_CLOCK microseconds) { supplied = microseconds; }
