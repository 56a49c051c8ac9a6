#include "Heap.h"

#include <cstddef>
#include <cstdlib>
#include <new>

namespace {

thread_local int count = 0;

} // namespace

int sound::allocations() { return count; }

void* operator new(std::size_t bytes) {
    ++count;
    void* const memory = std::malloc(bytes);
    if (memory == nullptr) {
        throw std::bad_alloc();
    }
    return memory;
}

void operator delete(void* memory) noexcept { std::free(memory); }

void operator delete(void* memory, std::size_t /*bytes*/) noexcept { std::free(memory); }
