#include "Registry.h"

#include <atomic>

namespace fmodex {

std::uintptr_t newTicket() {
    static std::atomic<std::uintptr_t> last{0x51A00001};
    return last += 2;
}

} // namespace fmodex
