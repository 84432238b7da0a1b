#include <array>
#include <cstring>
#include <mutex>
#include <new>
#include <vector>

#include "PQUtils/Utils/PQBlockPoolInternal.h"
#include "PQUtils/Utils/PQSecureMemory.h"

#if defined(__has_feature)
#if __has_feature(address_sanitizer)
#define PQ_POOL_POISONS 1
#endif
#endif
#if defined(__SANITIZE_ADDRESS__) && !defined(PQ_POOL_POISONS)
#define PQ_POOL_POISONS 1
#endif
#if defined(PQ_POOL_POISONS)
#include <sanitizer/asan_interface.h>
#endif

namespace PQ_UTILS::internal {
namespace {

constexpr std::size_t kGranule = 16;
constexpr std::size_t kClasses = kPoolMaxBlock / kGranule;
// Free blocks a thread keeps per size, and how many move at once between it
// and the shared store (also the blocks of one new chunk).
constexpr std::size_t kThreadCapacity = 128;
constexpr std::size_t kBatch = kThreadCapacity / 2;

static_assert(kPoolMaxBlock % kGranule == 0);
static_assert(kGranule % __STDCPP_DEFAULT_NEW_ALIGNMENT__ == 0,
              "blocks keep the alignment of operator new");

constexpr std::size_t classOf(std::size_t size) noexcept {
    return size == 0 ? 0 : (size - 1) / kGranule;
}
constexpr std::size_t blockSizeOf(std::size_t sizeClass) noexcept {
    return (sizeClass + 1) * kGranule;
}

// Free blocks are poisoned: under AddressSanitizer, touching one is reported.
// Nothing is ever written into a free block (the free lists are arrays of
// pointers), so it stays wiped until it is handed out.
void poison([[maybe_unused]] void* block, [[maybe_unused]] std::size_t size) noexcept {
#if defined(PQ_POOL_POISONS)
    ASAN_POISON_MEMORY_REGION(block, size);
#endif
}
void unpoison([[maybe_unused]] void* block, [[maybe_unused]] std::size_t size) noexcept {
#if defined(PQ_POOL_POISONS)
    ASAN_UNPOISON_MEMORY_REGION(block, size);
#endif
}

struct SharedStore {
    std::mutex lock;
    std::array<std::vector<void*>, kClasses> free;
    // Every chunk, kept so that leak checkers see its blocks as reachable.
    std::vector<void*> chunks;

    // Carves a new chunk of kBatch zeroed, poisoned blocks into `out`.
    // Called with the lock held.
    void carve(std::size_t sizeClass, void** out) {
        const std::size_t blockSize = blockSizeOf(sizeClass);
        const std::size_t chunkSize = kBatch * blockSize;
        chunks.reserve(chunks.size() + 1);
        auto* const chunk = static_cast<unsigned char*>(::operator new(chunkSize));
        chunks.push_back(chunk);
        std::memset(chunk, 0, chunkSize);
        poison(chunk, chunkSize);
        for (std::size_t i = 0; i < kBatch; ++i) {
            out[i] = chunk + (kBatch - 1 - i) * blockSize; // handed out lowest first
        }
    }
};

// Never destroyed: objects of static storage may give blocks back during
// the exit, after every destructor that could have run before.
SharedStore& shared() {
    static auto* const store = new SharedStore; // NOLINT(cppcoreguidelines-owning-memory)
    return *store;
}

struct ThreadCache {
    std::array<std::array<void*, kThreadCapacity>, kClasses> blocks{};
    std::array<std::size_t, kClasses> count{};

    ThreadCache() = default;
    ThreadCache(const ThreadCache&) = delete;
    ThreadCache& operator=(const ThreadCache&) = delete;
    ~ThreadCache();

    // Fills an empty list of `sizeClass` with kBatch blocks.
    void refill(std::size_t sizeClass) {
        SharedStore& store = shared();
        const std::lock_guard<std::mutex> guard(store.lock);
        std::vector<void*>& from = store.free[sizeClass];
        if (from.size() >= kBatch) {
            std::memcpy(blocks[sizeClass].data(), from.data() + from.size() - kBatch,
                        kBatch * sizeof(void*));
            from.resize(from.size() - kBatch);
        } else {
            store.carve(sizeClass, blocks[sizeClass].data());
        }
        count[sizeClass] = kBatch;
    }

    // Moves the upper half of a full list to the shared store.
    void spill(std::size_t sizeClass) noexcept {
        SharedStore& store = shared();
        const std::lock_guard<std::mutex> guard(store.lock);
        std::vector<void*>& to = store.free[sizeClass];
        try {
            to.insert(to.end(), blocks[sizeClass].begin() + kBatch, blocks[sizeClass].end());
        } catch (...) {
            // Without room to record them, the blocks stay unused: safe, and
            // only when memory is exhausted.
        }
        count[sizeClass] = kBatch;
    }
};

thread_local ThreadCache threadCache;
// Set once this thread's cache is destroyed (it is trivially destructible,
// so it can still be read): later blocks go straight to the shared store.
thread_local bool threadCacheGone = false;

ThreadCache::~ThreadCache() {
    SharedStore& store = shared();
    const std::lock_guard<std::mutex> guard(store.lock);
    for (std::size_t sizeClass = 0; sizeClass < kClasses; ++sizeClass) {
        try {
            store.free[sizeClass].insert(store.free[sizeClass].end(), blocks[sizeClass].begin(),
                                         blocks[sizeClass].begin() +
                                             static_cast<std::ptrdiff_t>(count[sizeClass]));
        } catch (...) {
            // As in spill: the blocks stay unused.
        }
        count[sizeClass] = 0;
    }
    threadCacheGone = true;
}

// The paths of a thread whose cache is gone (during its exit).
void* allocateShared(std::size_t sizeClass) {
    SharedStore& store = shared();
    const std::lock_guard<std::mutex> guard(store.lock);
    std::vector<void*>& from = store.free[sizeClass];
    if (from.empty()) {
        std::array<void*, kBatch> carved{};
        store.carve(sizeClass, carved.data());
        from.insert(from.end(), carved.begin(), carved.end());
    }
    void* const block = from.back();
    from.pop_back();
    return block;
}

void releaseShared(void* block, std::size_t sizeClass) noexcept {
    SharedStore& store = shared();
    const std::lock_guard<std::mutex> guard(store.lock);
    try {
        store.free[sizeClass].push_back(block);
    } catch (...) {
        // As in spill.
    }
}

} // namespace

void* poolAllocate(std::size_t size) {
    if (size > kPoolMaxBlock) {
        return ::operator new(size);
    }
    const std::size_t sizeClass = classOf(size);
    void* block = nullptr;
    if (threadCacheGone) {
        block = allocateShared(sizeClass);
    } else {
        ThreadCache& cache = threadCache;
        if (cache.count[sizeClass] == 0) {
            cache.refill(sizeClass);
        }
        block = cache.blocks[sizeClass][--cache.count[sizeClass]];
    }
    unpoison(block, blockSizeOf(sizeClass));
    return block;
}

void poolRelease(void* block, std::size_t size) noexcept {
    if (block == nullptr) {
        return;
    }
    if (size > kPoolMaxBlock) {
        ::operator delete(block); // the unsized form: Clang declares the sized one only when asked
        return;
    }
    const std::size_t sizeClass = classOf(size);
    // Wiped before anything else can see it: it may have held secret text.
    secureWipe(block, blockSizeOf(sizeClass));
    poison(block, blockSizeOf(sizeClass));
    if (threadCacheGone) {
        releaseShared(block, sizeClass);
        return;
    }
    ThreadCache& cache = threadCache;
    if (cache.count[sizeClass] == kThreadCapacity) {
        cache.spill(sizeClass);
    }
    cache.blocks[sizeClass][cache.count[sizeClass]++] = block;
}

PoolCounts poolCounts(std::size_t size) noexcept {
    if (size > kPoolMaxBlock) {
        return {0, 0};
    }
    const std::size_t sizeClass = classOf(size);
    SharedStore& store = shared();
    const std::lock_guard<std::mutex> guard(store.lock);
    return {threadCacheGone ? 0 : threadCache.count[sizeClass], store.free[sizeClass].size()};
}

} // namespace PQ_UTILS::internal
