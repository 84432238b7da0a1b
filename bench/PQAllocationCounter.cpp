#include "PQAllocationCounter.h"

#include <cstdlib>
#include <new>

namespace {
thread_local std::uint64_t t_allocations = 0;
} // namespace

std::uint64_t pqbench::allocationCount() noexcept { return t_allocations; }

// The replaceable global allocation functions; the other forms (arrays,
// nothrow) are defined by the library in terms of these two.
void* operator new(std::size_t size) {
    ++t_allocations;
    if (void* const block = std::malloc(size == 0 ? 1 : size)) {
        return block;
    }
    throw std::bad_alloc();
}

void operator delete(void* block) noexcept { std::free(block); }

void operator delete(void* block, std::size_t /*size*/) noexcept { std::free(block); }
