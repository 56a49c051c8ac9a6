// The linker leads the show's seeding of its chance here, so that its host has a say in it.

#include "Host.h"

extern "C" {

// NOLINTBEGIN(bugprone-reserved-identifier)
void __real_srand(unsigned int seed);
void __wrap_srand(unsigned int seed) { __real_srand(host::Host::current().seedFor(seed)); }
// NOLINTEND(bugprone-reserved-identifier)

} // extern "C"
