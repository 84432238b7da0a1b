#include "PQUtils/Utils/PQSecureMemory.h"

#include <atomic>
#include <string.h> // NOLINT(modernize-deprecated-headers): explicit_bzero is POSIX, not <cstring>

namespace PQ_UTILS {
namespace {

std::atomic<PQWipeObserver> wipeObserver{nullptr};

} // namespace

void secureWipe(void* data, std::size_t size) noexcept {
#if defined(__GLIBC__)
    explicit_bzero(data, size);
#else
    // Writes through a volatile pointer are observable behaviour: they
    // cannot be dropped as dead stores before a free.
    auto* volatile bytes = static_cast<volatile unsigned char*>(data);
    for (std::size_t i = 0; i < size; ++i) {
        bytes[i] = 0;
    }
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
