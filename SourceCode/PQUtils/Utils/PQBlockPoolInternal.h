#pragma once

#include <cstddef>

namespace PQ_UTILS::internal {

// Blocks for the small objects that the library puts behind pointers (an
// order's state, a piece, a secured string's text), taken from large chunks
// instead of one malloc each.
//
// Sizes up to kPoolMaxBlock are rounded up to a multiple of 16, each rounding
// served by its own free blocks; a larger size goes to the global operator
// new. Every thread keeps a few hundred free blocks of each size for itself,
// without a lock; beyond that, or when it has none left, it moves half of
// them to or from a store shared under a lock. So a block may be taken on one
// thread and given back on another. Chunks are kept for the life of the
// process.
//
// A block given back is wiped before anything else can see it (it may have
// held secret text), and handed out again all zeros. Under AddressSanitizer,
// a free block is poisoned: touching it is reported.
inline constexpr std::size_t kPoolMaxBlock = 256;

// A block of at least `size` bytes, aligned as the global operator new
// aligns; throws std::bad_alloc as it does.
[[nodiscard]] void* poolAllocate(std::size_t size);
// Gives back a block that poolAllocate(size) returned, with the same size.
void poolRelease(void* block, std::size_t size) noexcept;

// What a thread holds, for tests: the free blocks of `size`'s rounding kept by
// the calling thread, and those in the shared store.
struct PoolCounts {
    std::size_t threadFree;
    std::size_t sharedFree;
};
[[nodiscard]] PoolCounts poolCounts(std::size_t size) noexcept;

} // namespace PQ_UTILS::internal

// Defines the class-level operator new and sized operator delete that a
// class declares, over the pool. The objects of derived classes come from the
// pool too; a class with a virtual destructor gives the derived object's size
// back, as the blocks require.
#define PQ_POOLED_ALLOCATION_OF(Class)                                                             \
    void* Class::operator new(std::size_t size) {                                                  \
        return ::PQ_UTILS::internal::poolAllocate(size);                                           \
    }                                                                                              \
    void Class::operator delete(void* block, std::size_t size) noexcept {                          \
        ::PQ_UTILS::internal::poolRelease(block, size);                                            \
    }
