// Counts what is taken from the heap.

#include <cstddef>
#include <cstdlib>
#include <new>

static thread_local int count = 0;

int allocations() { return count; }

void* operator new(std::size_t bytes) {
    ++count;
    return std::malloc(bytes);
}

void operator delete(void* memory) noexcept { std::free(memory); }

void operator delete(void* memory, std::size_t /*bytes*/) noexcept { std::free(memory); }
