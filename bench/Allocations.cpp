#include "bench/Allocations.h"

#include <cstdlib>
#include <new>

namespace {
std::size_t count = 0; // the operators below get no argument of ours
}

std::size_t vigilo::bench::allocationCount() {
    return count;
}

void* operator new(std::size_t size) {
    ++count;
    void* const memory = std::malloc(size);
    if (memory == nullptr) {
        throw std::bad_alloc();
    }
    return memory;
}

void operator delete(void* memory) noexcept {
    std::free(memory);
}

void operator delete(void* memory, std::size_t) noexcept {
    std::free(memory);
}
