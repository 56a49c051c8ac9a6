// The C library's random numbers. The show's chance is theirs, seed by seed, and the toolchain's own library
// draws others: so this is the generator of the library that the show runs on elsewhere, an additive one.
// Each number is the sum of those 3 and 31 draws before, of which the lowest bit, the weakest, is left out.

#include "Host.h"

#include <array>
#include <cstdint>
#include <cstdlib>

namespace {
const int LONG_LAG = 31;
const int SHORT_LAG = 3;

std::array<std::uint32_t, LONG_LAG> last; // the draws before, in a ring
int next = 0;

std::uint32_t draw() {
    last[next] += last[(next + LONG_LAG - SHORT_LAG) % LONG_LAG];
    const std::uint32_t drawn = last[next];
    next = (next + 1) % LONG_LAG;
    return drawn;
}
} // namespace

extern "C" {

void srand(unsigned int seed) {
    // The first draws come from a generator of powers modulo a prime, 2^31 - 1.
    seed = host::Host::current().seedFor(seed);
    auto value = static_cast<std::int32_t>(seed == 0 ? 1 : seed);
    for (std::uint32_t& draw : last) {
        draw = static_cast<std::uint32_t>(value);
        value = static_cast<std::int32_t>(16807LL * value % 2147483647);
        value = value < 0 ? value + 2147483647 : value;
    }
    next = SHORT_LAG;
    for (int i = 0; i < 10 * LONG_LAG; ++i) {
        draw(); // too close to the seed
    }
}

int rand() { return static_cast<int>(draw() >> 1); }
}
