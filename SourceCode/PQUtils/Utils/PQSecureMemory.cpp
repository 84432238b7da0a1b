#if defined(PQUTILS_WIPE_memset_s)
#define __STDC_WANT_LIB_EXT1__ 1 // NOLINT(bugprone-reserved-identifier): asks for memset_s
#endif

#include "PQUtils/Utils/PQSecureMemory.h"

#include <atomic>
#include <string.h> // NOLINT(modernize-deprecated-headers): explicit_bzero and memset_s are not in <cstring>

namespace PQ_UTILS {
namespace {

std::atomic<PQWipeObserver> wipeObserver{nullptr};

#if !defined(PQUTILS_WIPE_explicit_bzero) && !defined(PQUTILS_WIPE_memset_s)
// The optimiser cannot know which function a volatile pointer holds when it
// is called, so it cannot drop the call as a dead store before a free.
void* (*const volatile wipeWithMemset)(void*, int, std::size_t) = memset;
#endif

} // namespace

// The build chooses the wipe (PQUTILS_WIPE in CMake): the C library's own
// where it has one, memset through a volatile pointer elsewhere.
void secureWipe(void* data, std::size_t size) noexcept {
#if defined(PQUTILS_WIPE_explicit_bzero)
    explicit_bzero(data, size);
#elif defined(PQUTILS_WIPE_memset_s)
    memset_s(data, size, 0, size);
#else
    wipeWithMemset(data, 0, size);
#endif
}

const char* secureWipeMethod() noexcept {
#if defined(PQUTILS_WIPE_explicit_bzero)
    return "explicit_bzero";
#elif defined(PQUTILS_WIPE_memset_s)
    return "memset_s";
#else
    return "volatile";
#endif
}

void secureWipe(kstring& text) noexcept {
    // Growing to the capacity never reallocates, and makes the bytes past
    // the end (left over from a longer text) part of the wiped range.
    text.resize(text.capacity());
    secureWipe(text.data(), text.size());
    if (const PQWipeObserver observer = wipeObserver.load(std::memory_order_acquire)) {
        observer(text.data(), text.size());
    }
    text.clear();
}

void setWipeObserver(PQWipeObserver observer) noexcept {
    wipeObserver.store(observer, std::memory_order_release);
}

} // namespace PQ_UTILS
